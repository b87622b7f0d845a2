// Peers that do not keep to the protocol. The frames are written out by hand.
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class ForeignCaller : public RuntimeDirTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(0u, VT_MSG_Init("echo", 8, 0, 0));
        ASSERT_EQ(0u, VT_HOST_Serve(TestHandler, nullptr));
    }

    /** Sends one packet on a fresh connection. @return the answering packet, empty at the end */
    std::string Exchange(const std::string &strPacket) {
        int iFd = NewRawSocket();
        EXPECT_EQ(0, ConnectRaw(iFd, "echo"));
        EXPECT_EQ(static_cast<ssize_t>(strPacket.size()),
                  send(iFd, strPacket.data(), strPacket.size(), MSG_NOSIGNAL));
        char acAnswer[4096];
        ssize_t iGot = recv(iFd, acAnswer, sizeof acAnswer, 0);
        close(iFd);
        return iGot > 0 ? std::string(acAnswer, static_cast<size_t>(iGot)) : "";
    }
};

TEST_F(ForeignCaller, AProperRequestIsAnswered) {
    EXPECT_EQ("VTP1" + Word(99) + Word(0) + Word(3) + "abc",
              Exchange(RawRequest("VTQ1", 1, 3, 10, "abc")));
}

TEST_F(ForeignCaller, AnythingElseEndsTheConnectionAndNothingMore) {
    std::string strGood = RawRequest("VTQ1", 1, 3, 10, "abc");
    EXPECT_EQ("", Exchange(RawRequest("XTQ1", 1, 3, 10, "abc"))) << "magic";
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 3, 3, 10, "abc"))) << "kind";
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 1, 4, 10, "abc"))) << "length too long";
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 1, 2, 10, "abc"))) << "length too short";
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 1, 0xFFFFFFFF, 10, "abc"))) << "length absurd";
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 1, 3, VT_HOST_MAX_PAYLOAD + 1, "abc"))) << "room";
    EXPECT_EQ("", Exchange(strGood.substr(0, 111))) << "cut in the header";
    EXPECT_EQ("", Exchange("x"));
    EXPECT_EQ("", Exchange(RawRequest("VTQ1", 1, VT_HOST_MAX_PAYLOAD + 1, 10,
                                      std::string(VT_HOST_MAX_PAYLOAD + 1, 'x'))))
        << "payload beyond the limit";
    EXPECT_NE("", Exchange(strGood)) << "the service goes on";
}

/** A receiver made by hand, which treats each connection as the test wants. */
class ForeignReceiver : public RuntimeDirTest {
  protected:
    using Behaviour = std::function<void(int iFd)>;

    void Receive(int iConnections, Behaviour pfnBehave) {
        iListener = NewRawSocket();
        ASSERT_EQ(0, ListenRaw(iListener, "odd"));
        stThread = std::thread([this, iConnections, pfnBehave = std::move(pfnBehave)] {
            for (int i = 0; i < iConnections; i++) {
                int iFd = accept(iListener, nullptr, nullptr);
                pfnBehave(iFd);
                close(iFd);
            }
        });
    }

    ~ForeignReceiver() override {
        if (stThread.joinable()) {
            stThread.join();
        }
        close(iListener);
    }

    /** Takes one request. @return its serial number as four bytes, empty at the end */
    static std::string TakeRequest(int iFd) {
        char acRequest[1024];
        ssize_t iGot = recv(iFd, acRequest, sizeof acRequest, 0);
        return iGot >= 112 ? std::string(acRequest + 8, 4) : "";
    }

    static void Reply(int iFd, const std::string &strPacket) {
        EXPECT_EQ(static_cast<ssize_t>(strPacket.size()),
                  send(iFd, strPacket.data(), strPacket.size(), MSG_NOSIGNAL));
    }

    /** Calls a receiver that answers with the given packet instead of a good one. */
    uint32_t CallAnsweredBy(const std::function<std::string(const std::string &)> &pfnPacket,
                            size_t uiRoom = 4) {
        Receive(1, [&pfnPacket](int iFd) { Reply(iFd, pfnPacket(TakeRequest(iFd))); });
        std::string strRsp(uiRoom, '#');
        uint32_t uiStatus = Call("odd", kEcho, "abcd", strRsp, 3000);
        stThread.join();
        return uiStatus;
    }

    int iListener = -1;
    std::thread stThread;
};

TEST_F(ForeignReceiver, AGoodReplyIsTaken) {
    EXPECT_EQ(7u, CallAnsweredBy([](const std::string &strSerial) {
                  return "VTP1" + strSerial + Word(7) + Word(2) + "ok";
              }));
}

TEST_F(ForeignReceiver, AShortReplyIsABreak) {
    EXPECT_EQ(VT_HOST_ERR_BROKEN, CallAnsweredBy([](const std::string &) { return "VTP1"; }));
}

TEST_F(ForeignReceiver, AWrongMagicIsABreak) {
    EXPECT_EQ(VT_HOST_ERR_BROKEN, CallAnsweredBy([](const std::string &strSerial) {
                  return "VTX1" + strSerial + Word(0) + Word(0);
              }));
}

TEST_F(ForeignReceiver, AnotherCallsReplyIsABreak) {
    EXPECT_EQ(VT_HOST_ERR_BROKEN, CallAnsweredBy([](const std::string &) {
                  return "VTP1" + Word(0xDEADBEEF) + Word(0) + Word(0);
              }));
}

TEST_F(ForeignReceiver, ALyingLengthIsABreak) {
    EXPECT_EQ(VT_HOST_ERR_BROKEN, CallAnsweredBy([](const std::string &strSerial) {
                  return "VTP1" + strSerial + Word(0) + Word(1000) + "ok";
              }));
}

TEST_F(ForeignReceiver, AReplyBeyondTheRoomIsABreak) {
    EXPECT_EQ(VT_HOST_ERR_BROKEN, CallAnsweredBy([](const std::string &strSerial) {
                  return "VTP1" + strSerial + Word(0) + Word(5) + "abcde";
              }));
}

/** A reply that is a byte longer than the room. */
std::string Beyond(const std::string &strSerial, uint32_t uiRoom) {
    return "VTP1" + strSerial + Word(0) + Word(uiRoom + 1) + std::string(uiRoom + 1, 'x');
}

TEST_F(ForeignReceiver, AReplyBeyondTheRoomOfAShortPacketIsABreak) {
    EXPECT_EQ(
        VT_HOST_ERR_BROKEN,
        CallAnsweredBy([](const std::string &strSerial) { return Beyond(strSerial, 4080); }, 4080));
}

TEST_F(ForeignReceiver, AReplyBeyondTheRoomOfALongPacketIsABreak) {
    EXPECT_EQ(
        VT_HOST_ERR_BROKEN,
        CallAnsweredBy([](const std::string &strSerial) { return Beyond(strSerial, 4081); }, 4081));
}

TEST_F(ForeignReceiver, ARequestThatWasTakenIsNeverSentAgain) {
    std::atomic<int> iTaken{0};
    Receive(2, [&iTaken](int iFd) {
        if (iTaken == 0) {
            Reply(iFd, "VTP1" + TakeRequest(iFd) + Word(0) + Word(0));  // then it stays open
            iTaken += TakeRequest(iFd).empty() ? 0 : 1;                 // and closes unanswered
        } else {
            Reply(iFd, "VTP1" + TakeRequest(iFd) + Word(0) + Word(0));
        }
    });
    std::string strRsp;
    EXPECT_EQ(0u, Call("odd", kEcho, "one", strRsp));
    EXPECT_EQ(VT_HOST_ERR_BROKEN, Call("odd", kEcho, "two", strRsp));
    EXPECT_EQ(1, iTaken.load());
    EXPECT_EQ(0u, Call("odd", kEcho, "three", strRsp)) << "the next call opens a new connection";
}

TEST_F(ForeignReceiver, OneThatNeverAcceptsCostsTheTimeOut) {
    iListener = NewRawSocket();
    ASSERT_EQ(0, ListenRaw(iListener, "odd", 0));
    std::string strRsp;
    for (int i = 0; i < 4; i++) {  // the first fit its backlog, the others cannot even connect
        Stopwatch stWatch;
        EXPECT_EQ(VT_HOST_ERR_TIMEOUT, Call("odd", kEcho, "x", strRsp, 100));
        EXPECT_GE(stWatch.Ms(), 100);
        EXPECT_LT(stWatch.Ms(), 600);
    }
}

}  // namespace
}  // namespace wap::test
