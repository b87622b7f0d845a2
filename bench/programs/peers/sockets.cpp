#include "peers/sockets.h"

#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vt_ssp_basic.h>
#include <zlib.h>

#include <array>
#include <cerrno>
#include <functional>
#include <stdexcept>
#include <thread>

#include "host/msg_wire.h"

namespace wap::bench {

namespace {

constexpr size_t kWord = sizeof(uint32_t);

[[noreturn]] void Fail(const char *pcWhat) {
    throw std::runtime_error(std::string(pcWhat) + ": " + strerror(errno));
}

/// What the process of the gateway puts behind the frame of its reply.
size_t ReplySize(Work eWork) {
    switch (eWork) {
        case Work::kUpTime:
            return kWord;
        case Work::kMac:
            return sizeof(kMac);
        case Work::kWanStatus:
            return sizeof(kWanStatus);
        case Work::kHosts:
            return HostsText().size() + 1;
    }
    return 0;
}

[[noreturn]] void ServePackets(int iSocket, size_t uiReply, int iReady) {
    std::vector<char> acRequest(sizeof(host::RequestFrame) + kWord);
    const std::vector<char> acReply(uiReply);
    TellReady(iReady);
    while (recv(iSocket, acRequest.data(), acRequest.size(), 0) > 0 &&
           send(iSocket, acReply.data(), acReply.size(), MSG_NOSIGNAL) > 0) {
    }
    _exit(0);
}

/// All answers as they go to Java: a word of length and the bytes.
using Answers = std::array<std::string, 5>;

std::string WithLength(const std::string &acBytes) {
    const auto uiLength = static_cast<uint32_t>(acBytes.size());
    return std::string(reinterpret_cast<const char *>(&uiLength), kWord) + acBytes;
}

Answers ReadyAnswers() {
    const std::string &acHosts = HostsText();
    uLongf ulLength = compressBound(acHosts.size());
    std::string acCompressed(ulLength, '\0');
    if (compress2(reinterpret_cast<Bytef *>(acCompressed.data()), &ulLength,
                  reinterpret_cast<const Bytef *>(acHosts.data()), acHosts.size(),
                  Z_DEFAULT_COMPRESSION) != Z_OK) {
        throw std::runtime_error("zlib does not compress the host list");
    }
    acCompressed.resize(ulLength);
    const uint32_t uiUpTime = kUpTime;
    return {WithLength({reinterpret_cast<const char *>(&uiUpTime), kWord}), WithLength(kMac),
            WithLength(kWanStatus), WithLength(acHosts), WithLength(acCompressed)};
}

bool SendAll(int iSocket, const std::string &acBytes) {
    size_t uiSent = 0;
    while (uiSent < acBytes.size()) {
        const ssize_t iDone =
            send(iSocket, acBytes.data() + uiSent, acBytes.size() - uiSent, MSG_NOSIGNAL);
        if (iDone <= 0) {
            return false;
        }
        uiSent += static_cast<size_t>(iDone);
    }
    return true;
}

/// Serves one connection, on a thread of its own that blocks, which is the fastest way.
void ServeStream(int iSocket, const Answers &acAnswers) {
    struct {
        uint32_t uiWork;
        uint32_t uiArgument;
    } stRequest = {};
    while (recv(iSocket, &stRequest, sizeof(stRequest), MSG_WAITALL) ==
               static_cast<ssize_t>(sizeof(stRequest)) &&
           stRequest.uiWork < acAnswers.size() && SendAll(iSocket, acAnswers[stRequest.uiWork])) {
    }
    close(iSocket);
}

[[noreturn]] void ServeStreams(const std::string &acPath, int iReady) {
    const Answers acAnswers = ReadyAnswers();
    sockaddr_un stAddress{};
    stAddress.sun_family = AF_UNIX;
    if (acPath.size() >= sizeof(stAddress.sun_path)) {
        throw std::runtime_error("the path " + acPath +
                                 " is too long; set TMPDIR to a shorter one");
    }
    memcpy(stAddress.sun_path, acPath.c_str(), acPath.size() + 1);
    const int iListener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (iListener < 0 ||
        bind(iListener, reinterpret_cast<const sockaddr *>(&stAddress), sizeof(stAddress)) != 0 ||
        listen(iListener, 16) != 0) {
        Fail("cannot listen");
    }
    TellReady(iReady);
    for (;;) {
        // cppcheck-suppress nullPointer ; the two may be null together
        const int iSocket = accept4(iListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (iSocket < 0) {
            Fail("cannot accept");
        }
        std::thread(ServeStream, iSocket, std::cref(acAnswers)).detach();
    }
}

}  // namespace

size_t ReplyPacketSize(Work eWork) {
    return sizeof(host::ReplyFrame) + ReplySize(eWork);
}

PingPong::PingPong(Children &stChildren, Work eWork)
    : m_acRequest(sizeof(host::RequestFrame) + kWord), m_acReply(ReplyPacketSize(eWork)) {
    int aiPair[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, aiPair) != 0) {
        Fail("cannot make a pair of sockets");
    }
    stChildren.Start("ping-pong", [&](int iReady) {
        close(aiPair[0]);
        ServePackets(aiPair[1], m_acReply.size(), iReady);
    });
    close(aiPair[1]);
    m_iSocket = aiPair[0];
}

PingPong::~PingPong() {
    close(m_iSocket);
}

void PingPong::Once() {
    if (send(m_iSocket, m_acRequest.data(), m_acRequest.size(), MSG_NOSIGNAL) < 0) {
        Fail("cannot send a packet");
    }
    const ssize_t iReceived = recv(m_iSocket, m_acReply.data(), m_acReply.size(), 0);
    if (iReceived <= 0) {
        Fail("no packet comes back");
    }
    m_uiReceived = static_cast<size_t>(iReceived);
}

void StartStreamServer(Children &stChildren, const std::string &acPath) {
    stChildren.Start("stream server", [&acPath](int iReady) { ServeStreams(acPath, iReady); });
}

}  // namespace wap::bench
