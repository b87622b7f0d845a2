// Sockets without a message service: the bare exchange of packets, and a server for plain Java.
#ifndef WAP_BENCH_PEERS_SOCKETS_H
#define WAP_BENCH_PEERS_SOCKETS_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/children.h"
#include "common/ready_answers.h"

namespace wap::bench {

/// Packets there and back between this process and another one over SOCK_SEQPACKET, as long as
/// those of the message service for the same work, and nothing else.
class PingPong {
  public:
    /// Starts the other process.
    PingPong(Children &stChildren, Work eWork);
    ~PingPong();
    PingPong(const PingPong &) = delete;
    PingPong &operator=(const PingPong &) = delete;

    void Once();
    /// How long the packet was that came back.
    size_t Received() const { return m_uiReceived; }

  private:
    int m_iSocket;
    std::vector<char> m_acRequest;
    std::vector<char> m_acReply;
    size_t m_uiReceived = 0;
};

/// How long the packet is that brings an answer.
size_t ReplyPacketSize(Work eWork);

/// Starts the server that plain Java asks, on a Unix-domain stream socket.
void StartStreamServer(Children &stChildren, const std::string &acPath);

}  // namespace wap::bench

#endif
