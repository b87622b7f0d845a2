// Where those who watch the gateway listen: a socket each, in the runtime directory.
#ifndef WAP_GATEWAY_FRAMEWORK_TAP_SOCKET_H
#define WAP_GATEWAY_FRAMEWORK_TAP_SOCKET_H

#include <stdint.h>
#include <sys/types.h>

#include <string>
#include <vector>

#include "framework/runtime_dir.h"

namespace wap::gateway {

/// The frames on a connection from a process to who watches it.
struct TapFrame {
    uint32_t uiLength;  ///< of the event that follows; 0 for none
    uint32_t uiLost;    ///< how many events are missing here; 0 before an event
};
static_assert(sizeof(TapFrame) == 8);

/// A socket of someone who watches, or watched.
struct TapSocket {
    std::string acPath;
    ino_t uiNode;  ///< the file, whatever it is called
};

/// Those that are there.
std::vector<TapSocket> TapSockets(const RuntimeDir &stDir);

/// Connects to one without waiting; a descriptor of -1 when that is not possible. One on which
/// nobody listens any more is removed.
FileDescriptor ConnectTap(const TapSocket &stSocket);

/// Removes those on which nobody listens any more.
void RemoveDeadTaps(const RuntimeDir &stDir);

/// A socket on which this process listens to the gateway's, as long as the object is there.
class TapListener {
  public:
    /// Throws GatewayError.
    explicit TapListener(const RuntimeDir &stDir);
    TapListener(const TapListener &) = delete;
    TapListener &operator=(const TapListener &) = delete;
    ~TapListener();

    int Get() const { return m_stSocket.Get(); }
    /// The next connection that waits to be taken; a descriptor of -1 when none does.
    FileDescriptor Accept() const;

  private:
    std::string m_acPath;
    FileDescriptor m_stSocket;
};

}  // namespace wap::gateway

#endif
