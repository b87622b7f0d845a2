// D-Bus: a daemon of our own, a service on it, and a client, both by libsystemd.
#ifndef WAP_BENCH_PEERS_DBUS_H
#define WAP_BENCH_PEERS_DBUS_H

#include <systemd/sd-bus.h>

#include <string>

#include "common/children.h"
#include "common/ready_answers.h"

namespace wap::bench {

/// Starts a daemon on a socket of that path, and the service. Gives the address of the bus.
std::string StartBus(Children &stChildren, const std::string &acPath);

/// A connection to the bus.
class BusClient {
  public:
    explicit BusClient(const std::string &acAddress);
    ~BusClient();
    BusClient(const BusClient &) = delete;
    BusClient &operator=(const BusClient &) = delete;

    /// Makes one call and reads what came back, which is lent until the next one.
    void Once(Work eWork);
    /// The last answer as a text.
    std::string Answer() const;

  private:
    sd_bus *m_pstBus = nullptr;
    sd_bus_message *m_pstReply = nullptr;
    uint32_t m_uiAnswer = 0;
    const char *m_pcAnswer = nullptr;  ///< null when the last answer was a number
};

}  // namespace wap::bench

#endif
