// The frames of the message service. One SOCK_SEQPACKET packet carries one frame, so a frame
// arrives whole or not at all.
#ifndef WAP_HOST_MSG_WIRE_H
#define WAP_HOST_MSG_WIRE_H

#include <sys/un.h>

#include <memory>

#include "host_util.h"

namespace wap::host {

constexpr uint32_t kRequestMagic = 0x31515456u;  // "VTQ1"
constexpr uint32_t kReplyMagic = 0x31505456u;    // "VTP1"

/** What a request frame is. */
enum RequestKind : uint32_t {
    kKindRpc = 1,   /**< a call; the reply is the handler's */
    kKindAsync = 2, /**< a message for the queue; the reply says whether it was taken */
};

/** The start of a request packet; uiLen bytes of payload follow. */
struct RequestFrame {
    uint32_t uiMagic;
    uint32_t uiKind;
    uint32_t uiSerial; /**< comes back in the reply */
    uint32_t uiCode;   /**< RPC id, or type of the message */
    uint32_t uiDstMid;
    uint32_t uiLen;
    uint32_t uiRspCap;
    RpcMsgHead stHead;
};
static_assert(sizeof(RequestFrame) == 28 + sizeof(RpcMsgHead));

/** The start of a reply packet; uiLen bytes of payload follow. */
struct ReplyFrame {
    uint32_t uiMagic;
    uint32_t uiSerial;
    uint32_t uiStatus;
    uint32_t uiLen;
};
static_assert(sizeof(ReplyFrame) == 16);

/** Fills in the address of a process's socket. @return 0, or the code that explains why not */
uint32_t SocketAddress(const char *pcName, sockaddr_un &stAddress);

/** Makes a socket that takes packets of the longest frame. */
Fd NewSocket();

/** Lets a socket send packets of the longest frame without waiting for memory. */
void WidenSendBuffer(int iFd);

/**
 * Looks who is at the other end.
 * @param piPid receives the id of the process that connected; may be null
 * @return whether it belongs to this process's user
 */
bool PeerIsUs(int iFd, pid_t *piPid = nullptr);

/** Sends one packet. @return as send, but never EINTR */
ssize_t SendWhole(int iFd, const void *pvPacket, size_t uiPacket, int iFlags);

/**
 * Receives one packet.
 * @return its length; 0 at the end of the connection; -1 with errno, never EINTR, and EMSGSIZE when
 *         the packet was longer than the room
 */
ssize_t ReceiveWhole(int iFd, void *pvRoom, size_t uiRoom);

/** Sends one packet of two parts. @return as SendWhole */
ssize_t SendParts(int iFd, const void *pvFrame, size_t uiFrame, const void *pvData, size_t uiData,
                  int iFlags);

/** Receives one packet into two parts. @return as ReceiveWhole, but -1 with EINTR at a signal */
ssize_t ReceivePartsOnce(int iFd, void *pvFrame, size_t uiFrame, void *pvData, size_t uiData,
                         int iFlags);

/** Starts a thread that no signal handler of the program runs on. */
bool StartServiceThread(pthread_t &stThread, void *(*pfnEntry)(void *), void *pvArg);

}  // namespace wap::host
#endif
