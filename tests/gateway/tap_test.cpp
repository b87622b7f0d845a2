// Those who watch a process, from the process's side: nobody, one, one that has gone, one that does
// not read.
#include "framework/tap.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "framework/control.h"
#include "framework/files.h"
#include "framework/tap_socket.h"
#include "monitor/frame_reader.h"
#include "tap_events.h"
#include "vt_ssp_basic.h"

namespace wap::gateway {
namespace {

using Clock = std::chrono::steady_clock;
using test::Word;

/// The other end: takes connections, and what comes on the first of them.
class Reader {
  public:
    explicit Reader(const RuntimeDir &stDir) : m_stListener(stDir) {}

    /// Whether a process has connected.
    bool Accept() {
        FileDescriptor stNew = m_stListener.Accept();
        if (stNew.Get() < 0) {
            return false;
        }
        m_pstConnection = std::make_unique<FileDescriptor>(std::move(stNew));
        return true;
    }

    void Disconnect() { m_pstConnection.reset(); }

    /// Says what nobody who watches has to say.
    void Say(const std::string &acText) const {
        EXPECT_EQ(send(m_pstConnection->Get(), acText.data(), acText.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(acText.size()));
    }

    /// The next frame, waiting for it; nothing at the end of the connection.
    std::optional<Arrival> Next() {
        const auto stEnd = Clock::now() + std::chrono::minutes(1);
        while (Clock::now() < stEnd) {
            if (std::optional<Arrival> stArrival = m_stReader.Next()) {
                return stArrival;
            }
            char acBytes[65536];
            const ssize_t iCount = recv(m_pstConnection->Get(), acBytes, sizeof(acBytes), 0);
            if (iCount == 0) {
                return std::nullopt;
            }
            if (iCount > 0) {
                m_stReader.Add({acBytes, static_cast<size_t>(iCount)});
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        ADD_FAILURE() << "nothing comes";
        return std::nullopt;
    }

    /// The next event, of a kind.
    TapEvent NextEvent(TapKind eKind) {
        std::optional<Arrival> stArrival = Next();
        if (!stArrival || !stArrival->stEvent) {
            ADD_FAILURE() << "no event";
            return TapEvent();
        }
        EXPECT_EQ(stArrival->stEvent->eKind, eKind);
        return *stArrival->stEvent;
    }

  private:
    TapListener m_stListener;
    std::unique_ptr<FileDescriptor> m_pstConnection;
    FrameReader m_stReader;
};

uint64_t NowUs() {
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch())
            .count());
}

/// A process that somebody watches, from its first call on.
struct WatchedTap {
    WatchedTap() {
        stTap.Look();
        EXPECT_TRUE(stReader.Accept());
        (void)stReader.NextEvent(TapKind::kHello);
    }

    Reader stReader = Reader(RuntimeDir::FromEnvironment());
    Tap stTap = Tap(RuntimeDir::FromEnvironment(), "gulm");
};

/// How often this thread has waited for something.
int64_t WaitsSoFar() {
    struct rusage stUsage = {};
    EXPECT_EQ(getrusage(RUSAGE_THREAD, &stUsage), 0);
    return stUsage.ru_nvcsw;
}

/// More than one who watches.
class Readers {
  public:
    Readers(const RuntimeDir &stDir, const std::string &acDir, size_t uiCount) {
        for (size_t i = 0; i < uiCount; ++i) {
            m_astReaders.push_back(std::make_unique<Reader>(stDir));
            // The next one is called so.
            m_asPaths.push_back(acDir + "/monitor." + std::to_string(9000000 + i));
            EXPECT_EQ(rename((acDir + "/monitor." + std::to_string(getpid())).c_str(),
                             m_asPaths.back().c_str()),
                      0);
        }
    }
    Readers(const Readers &) = delete;
    Readers &operator=(const Readers &) = delete;
    ~Readers() {
        for (size_t i = 0; i < m_asPaths.size(); ++i) {
            Remove(i);
        }
    }

    void Remove(size_t uiAt) {
        m_astReaders[uiAt].reset();
        (void)unlink(m_asPaths[uiAt].c_str());
    }

    void AcceptAll() {
        for (const auto &pstReader : m_astReaders) {
            EXPECT_TRUE(pstReader->Accept());
        }
    }
    void SayAll(const char *pcText) {
        for (const auto &pstReader : m_astReaders) {
            pstReader->Say(pcText);
        }
    }
    size_t Count() const { return m_astReaders.size(); }
    Reader &At(size_t uiAt) { return *m_astReaders[uiAt]; }

  private:
    std::vector<std::unique_ptr<Reader>> m_astReaders;
    std::vector<std::string> m_asPaths;
};

/// A block whose reader is held up, and that turns out to be none then: opening a pipe waits for
/// who writes to it.
class HeldBlock {
  public:
    HeldBlock(const std::string &acDir, uint32_t uiId) {
        char acName[24];
        snprintf(acName, sizeof(acName), "/vdata/%08x", uiId);
        m_acPath = acDir + acName;
        EXPECT_EQ(mkfifo(m_acPath.c_str(), 0600), 0);
        m_stThread = std::thread([this, iReader = gettid()] { LetGo(iReader); });
    }
    HeldBlock(const HeldBlock &) = delete;
    HeldBlock &operator=(const HeldBlock &) = delete;
    ~HeldBlock() { EXPECT_EQ(unlink(m_acPath.c_str()), 0); }

    /// A time at which this thread, which has read it, was held up.
    uint64_t AwaitHeldUs() {
        m_stThread.join();
        return m_ulHeldUs;
    }

  private:
    static bool IsAsleep(pid_t iThread) {
        const auto acState = ReadTextFile("/proc/self/task/" + std::to_string(iThread) + "/stat");
        return acState && acState->find(") S ") != std::string::npos;
    }

    /// As somebody reads it; who does is let go.
    bool OpensToWrite() const {
        return FileDescriptor(open(m_acPath.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)).Get() >= 0;
    }

    void LetGo(pid_t iReader) {
        constexpr std::chrono::milliseconds kSome(20);
        const auto stEnd = Clock::now() + std::chrono::minutes(1);
        while (!IsAsleep(iReader) && Clock::now() < stEnd) {
            std::this_thread::yield();
        }
        std::this_thread::sleep_for(kSome);
        m_ulHeldUs = NowUs();
        std::this_thread::sleep_for(kSome);
        while (!OpensToWrite() && Clock::now() < stEnd) {
            std::this_thread::sleep_for(kSome);
        }
        EXPECT_LT(Clock::now(), stEnd) << "nobody has read it";
    }

    std::string m_acPath;
    uint64_t m_ulHeldUs = 0;
    std::thread m_stThread;
};

class TapTest : public testing::Test {
  protected:
    void SetUp() override {
        char acDir[] = "/tmp/wap-tap-test-XXXXXX";
        ASSERT_NE(mkdtemp(acDir), nullptr);
        m_acDir = acDir;
        setenv("VT_RUNTIME_DIR", acDir, 1);
    }
    void TearDown() override {
        EXPECT_EQ(rmdir((m_acDir + "/vdata").c_str()) == 0 || errno == ENOENT, true);
        EXPECT_EQ(rmdir(m_acDir.c_str()), 0) << "no socket stays";
    }

    static bool IsOffSoon(const Tap &stTap) {
        const auto stEnd = Clock::now() + std::chrono::minutes(1);
        while (stTap.IsOn() && Clock::now() < stEnd) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return !stTap.IsOn();
    }

    /// One of which few are more than anything holds.
    static TapEvent LongEvent() {
        TapEvent stLong = test::TapMac();
        test::SetPart(stLong, kTapRequest, std::string(VT_HOST_MAX_PAYLOAD, 'x'));
        return stLong;
    }

    /// A call as the message service hands it over.
    static VtHostCall HostCall(const RpcMsgHead &stHead, uint32_t uiId,
                               const std::string &acRequest) {
        return {&stHead, uiId, 7,   acRequest.data(), static_cast<uint32_t>(acRequest.size()),
                nullptr, 64,   4711};
    }

    std::string m_acDir;
};

TEST_F(TapTest, NobodyIsToldWhenNobodyWatches) {
    Tap stTap(RuntimeDir::FromEnvironment(), "cwmp");
    stTap.Look();
    EXPECT_FALSE(stTap.IsOn());
    stTap.Post(test::TapMac());
    stTap.Lose();
    stTap.End();
}

TEST_F(TapTest, CallsAreToldToWhoWatches) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Reader stReader(stDir);
    Tap stTap(stDir, "osgi_proxy");
    EXPECT_FALSE(stTap.IsOn()) << "it has not looked yet";
    stTap.Look();
    stTap.Look();
    EXPECT_TRUE(stTap.IsOn());
    ASSERT_TRUE(stReader.Accept());
    EXPECT_FALSE(stReader.Accept()) << "once is enough";
    const TapEvent stHello = stReader.NextEvent(TapKind::kHello);
    EXPECT_EQ(stHello.acReceiver, "osgi_proxy");
    EXPECT_EQ(stHello.uiReceiverPid, static_cast<uint32_t>(getpid()));

    RpcMsgHead stHead = {};
    strcpy(stHead.acSndApp, "jamvm");
    stHead.uiSndMid = 281;
    const std::string acRequest = Word(0);
    {
        TappedCall stControl(stTap, HostCall(stHead, kControlStatus, acRequest));
        stControl.End(0, "", 0);
        TappedCall stCall(stTap, HostCall(stHead, test::kTapGetMac, acRequest));
        stCall.NoteFault({FaultKind::kTruncate, 3, 0, std::nullopt});
        stCall.End(0, "02:", 3);
        TappedCall stDropped(stTap, HostCall(stHead, test::kTapUnknown, ""));
        stDropped.End(0, nullptr, VT_HOST_NO_REPLY);
    }
    const TapEvent stEvent = stReader.NextEvent(TapKind::kRpc);
    EXPECT_EQ(stEvent.uiId, test::kTapGetMac) << "gatewayctl's own calls are not told";
    EXPECT_STREQ(stEvent.stHead.acSndApp, "jamvm");
    EXPECT_EQ(stEvent.acReceiver, "osgi_proxy");
    EXPECT_EQ(stEvent.uiSenderPid, 4711u);
    EXPECT_EQ(stEvent.uiDstMid, 7u);
    EXPECT_EQ(stEvent.uiRoom, 64u);
    EXPECT_EQ(stEvent.astParts[kTapRequest].acHeld, acRequest);
    EXPECT_EQ(stEvent.astParts[kTapReply].acHeld, "02:");
    EXPECT_TRUE(stEvent.bAnswered);
    ASSERT_TRUE(stEvent.stFault);
    EXPECT_EQ(DescribeFault(*stEvent.stFault), "truncate 3");
    EXPECT_FALSE(stReader.NextEvent(TapKind::kRpc).bAnswered);
    stTap.End();
    EXPECT_FALSE(stReader.Next()) << "it has ended";
}

TEST_F(TapTest, BlocksAreReadAndLeftAlone) {
    WatchedTap stWatched;
    auto &[stReader, stTap] = stWatched;
    VDataDesc stDesc = {0, 9, 9};
    ASSERT_EQ(VT_VDATA_CreShm(9, &stDesc), 0u);
    ASSERT_EQ(VT_VDATA_UpdateData(stDesc.uiDataID, 9, "10.0.0.1"), 0u);
    const std::string acNames = Word(stDesc.uiDataID) + Word(9) + Word(9) + std::string(256, 'b');
    const RpcMsgHead stHead = {};
    TappedCall stWith(stTap, HostCall(stHead, test::kTapAddAddresses, acNames));
    EXPECT_EQ(VT_VDATA_FreeShm(stDesc.uiDataID), 0u) << "as whoever serves it does";
    stWith.End(0, "", 0);
    const TapEvent stEvent = stReader.NextEvent(TapKind::kRpc);
    EXPECT_EQ(stEvent.eBlockSide, WireSide::kRequest);
    EXPECT_EQ(stEvent.astParts[kTapBlock].acHeld, std::string("10.0.0.1\0", 9));
    // One that is not there any more, one that says too much of itself, and a failure's.
    TappedCall stGone(stTap, HostCall(stHead, test::kTapAddAddresses, acNames));
    stGone.End(0, "", 0);
    const TapEvent stNone = stReader.NextEvent(TapKind::kRpc);
    EXPECT_EQ(stNone.astParts[kTapBlock].uiLength, 9u);
    EXPECT_EQ(stNone.astParts[kTapBlock].acHeld, "");
    const std::string acReply = Word(2) + Word(1) + Word(0xFFFFFFFF) + Word(0xFFFFFFF0);
    for (const uint32_t uiCode : {0u, 5u}) {
        TappedCall stRoutes(stTap, HostCall(stHead, test::kTapGetRoutes, Word(4)));
        stRoutes.End(uiCode, acReply.data(), 16);
        const TapEvent stTold = stReader.NextEvent(TapKind::kRpc);
        EXPECT_EQ(stTold.eBlockSide, uiCode == 0 ? WireSide::kReply : WireSide::kNone);
        EXPECT_EQ(stTold.astParts[kTapBlock].uiLength, uiCode == 0 ? 0xFFFFFFFF : 0u);
        EXPECT_EQ(stTold.astParts[kTapBlock].acHeld, "");
    }
}

TEST_F(TapTest, TheTimeTakenIsNotThatOfWatching) {
    WatchedTap stWatched;
    auto &[stReader, stTap] = stWatched;
    const RpcMsgHead stHead = {};
    ASSERT_EQ(mkdir((m_acDir + "/vdata").c_str(), 0700), 0);
    {
        HeldBlock stBlock(m_acDir, 0x1234);
        TappedCall stCall(stTap,
                          HostCall(stHead, test::kTapAddAddresses,
                                   Word(0x1234) + Word(9) + Word(9) + std::string(256, 'b')));
        stCall.End(0, "", 0);
        const uint64_t ulAfter = NowUs();
        EXPECT_LE(stReader.NextEvent(TapKind::kRpc).ulDurationUs, ulAfter - stBlock.AwaitHeldUs())
            << "it begins when the request's block has been looked at";
    }
    {
        HeldBlock stBlock(m_acDir, 0x1234);
        const uint64_t ulBefore = NowUs();
        TappedCall stCall(stTap, HostCall(stHead, test::kTapGetRoutes, Word(4)));
        const std::string acReply = Word(1) + Word(0x1234) + Word(112) + Word(112);
        stCall.End(0, acReply.data(), 16);
        EXPECT_LE(stReader.NextEvent(TapKind::kRpc).ulDurationUs, stBlock.AwaitHeldUs() - ulBefore)
            << "it ends before the reply's block is looked at";
    }
}

TEST_F(TapTest, WhoHasGoneIsForgotten) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Tap stTap(stDir, "gulm");
    for (int iRound = 0; iRound < 3; ++iRound) {
        Reader stReader(stDir);
        stTap.Look();
        EXPECT_TRUE(stTap.IsOn());
        ASSERT_TRUE(stReader.Accept());
        stReader.Disconnect();
        stTap.Post(test::TapMac());
        EXPECT_TRUE(IsOffSoon(stTap));
    }
    // Without a call in between it is the next look that finds out.
    {
        Reader stReader(stDir);
        stTap.Look();
        ASSERT_TRUE(stReader.Accept());
    }
    stTap.Look();
    EXPECT_FALSE(stTap.IsOn());
}

TEST_F(TapTest, ManyWhoHaveGoneTakeNoLongerThanOne) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Readers stReaders(stDir, m_acDir, 14);
    Tap stTap(stDir, "gulm");
    stTap.Look();
    const TapEvent stLong = LongEvent();
    for (int i = 0; i < 20; ++i) {
        stTap.Post(stLong);
    }
    // They say what nobody has to say, but don't read, so that their threads can't go on.
    stReaders.AcceptAll();
    stReaders.SayAll("x");
    const auto stBegin = Clock::now();
    stTap.Look();
    EXPECT_LT(Clock::now() - stBegin, std::chrono::seconds(5)) << "half a second each";
}

TEST_F(TapTest, OneTooManyIsToldSo) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Readers stReaders(stDir, m_acDir, kTapWatchersMost + 1);
    EXPECT_EQ(kTapWatchersMost, 16u);
    Tap stTap(stDir, "gulm");
    stTap.Look();
    stReaders.AcceptAll();
    size_t uiTold = 0;
    size_t uiLeftOut = 0;
    for (size_t i = 0; i < stReaders.Count(); ++i) {
        const std::optional<Arrival> stArrival = stReaders.At(i).Next();
        ASSERT_TRUE(stArrival && stArrival->stEvent);
        EXPECT_EQ(stArrival->stEvent->acReceiver, "gulm");
        if (stArrival->stEvent->eKind == TapKind::kFull) {
            EXPECT_EQ(uiLeftOut, 0u);
            uiLeftOut = i;
            EXPECT_FALSE(stReaders.At(i).Next()) << "it is the last word";
        } else {
            EXPECT_EQ(stArrival->stEvent->eKind, TapKind::kHello);
            ++uiTold;
        }
    }
    EXPECT_EQ(uiTold, kTapWatchersMost);
    // It takes the place of one that goes.
    stReaders.Remove(uiLeftOut == 0 ? 1 : 0);
    stTap.Look();
    ASSERT_TRUE(stReaders.At(uiLeftOut).Accept());
    const TapEvent stHello = stReaders.At(uiLeftOut).NextEvent(TapKind::kHello);
    EXPECT_EQ(stHello.acReceiver, "gulm");
}

TEST_F(TapTest, SocketsWithoutAReaderAreRemoved) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    {
        Reader stReader(stDir);
        ASSERT_EQ(TapSockets(stDir).size(), 1u);
        // As one that is killed leaves it: the reader unlinks what is called so no more.
        ASSERT_EQ(rename(TapSockets(stDir)[0].acPath.c_str(), (m_acDir + "/monitor.1").c_str()), 0);
        RemoveDeadTaps(stDir);
        EXPECT_EQ(TapSockets(stDir).size(), 1u) << "somebody listens";
    }
    EXPECT_EQ(TapSockets(stDir).size(), 1u);
    // What only looks like one is left alone.
    for (const char *pcName : {"/monitor.2", "/monitor.3x"}) {
        ASSERT_EQ(mkdir((m_acDir + pcName).c_str(), 0700), 0);
    }
    Tap stTap(stDir, "gulm");
    stTap.Look();
    EXPECT_FALSE(stTap.IsOn());
    EXPECT_TRUE(TapSockets(stDir).empty());
    for (const char *pcName : {"/monitor.2", "/monitor.3x"}) {
        EXPECT_EQ(rmdir((m_acDir + pcName).c_str()), 0);
    }
}

TEST_F(TapTest, WhoDoesNotReadLosesWhatThereIsNoRoomFor) {
    constexpr uint32_t kPosted = 200;
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Reader stReader(stDir);
    Tap stTap(stDir, "gulm");
    stTap.Look();
    ASSERT_TRUE(stReader.Accept());
    const std::string acLong(VT_HOST_MAX_PAYLOAD, 'x');
    const RpcMsgHead stHead = {};
    const int64_t iWaits = WaitsSoFar();
    for (uint32_t i = 0; i < kPosted; ++i) {
        TappedCall stCall(stTap, HostCall(stHead, test::kTapGetMac, acLong));
        stCall.End(i, "", 0);
    }
    // However short or long: whoever waits gives up the processor, a hundred times at least.
    EXPECT_LT(WaitsSoFar() - iWaits, 50) << "nobody waits";
    (void)stReader.NextEvent(TapKind::kHello);
    uint32_t uiSeen = 0;
    uint32_t uiLost = 0;
    while (uiSeen + uiLost < kPosted) {
        const std::optional<Arrival> stArrival = stReader.Next();
        ASSERT_TRUE(stArrival);
        uiLost += stArrival->uiLost;
        if (stArrival->stEvent) {
            EXPECT_EQ(stArrival->stEvent->uiCode, uiSeen + uiLost) << "in order, and none twice";
            ++uiSeen;
        }
    }
    EXPECT_EQ(uiSeen + uiLost, kPosted);
    EXPECT_GE(uiLost, 100u);
    EXPECT_GE(uiSeen, 60u) << "8 MiB are kept";
}

TEST_F(TapTest, TheEndWaitsALittleForWhatIsOnItsWay) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    Reader stReader(stDir);
    Tap stTap(stDir, "gulm");
    stTap.Look();
    ASSERT_TRUE(stReader.Accept());
    TapEvent stLong = LongEvent();
    for (int i = 0; i < 20; ++i) {
        stTap.Post(stLong);
    }
    const auto stBegin = Clock::now();
    stTap.End();
    EXPECT_LT(Clock::now() - stBegin, std::chrono::seconds(20))
        << "but not for one who never reads";
    EXPECT_FALSE(stTap.IsOn());
    uint32_t uiWhole = 0;
    while (stReader.Next()) {
        ++uiWhole;
    }
    EXPECT_GE(uiWhole, 2u);
    EXPECT_LT(uiWhole, 21u);
}

}  // namespace
}  // namespace wap::gateway
