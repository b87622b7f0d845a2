// The simulated USB devices, through the nodes that usb_mngt gives: what they say, and what becomes
// of the line.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "gateway_fixture.h"
#include "usb_rpcs.h"

namespace wap::test {

namespace {

constexpr uint32_t kModem = 1;
constexpr uint32_t kEcho = 2;

constexpr int kPatienceMs = 20000;

/// A node that is open.
class Line {
  public:
    explicit Line(const std::string &acNode)
        : m_iFd(open(acNode.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
        EXPECT_GE(m_iFd, 0) << acNode;
    }
    ~Line() { close(m_iFd); }
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;

    int Get() const { return m_iFd; }

    void Send(const std::string &acBytes) const {
        EXPECT_EQ(write(m_iFd, acBytes.data(), acBytes.size()),
                  static_cast<ssize_t>(acBytes.size()));
    }

    /// Reads that many bytes; fewer when they do not come.
    std::string Read(size_t uiCount) const {
        std::string acRead;
        while (acRead.size() < uiCount && IsReadable(kPatienceMs)) {
            char acPiece[512];
            const ssize_t iGot =
                read(m_iFd, acPiece, std::min(sizeof(acPiece), uiCount - acRead.size()));
            if (iGot <= 0) {
                break;
            }
            acRead.append(acPiece, static_cast<size_t>(iGot));
        }
        return acRead;
    }

    bool IsReadable(int iTimeoutMs) const {
        struct pollfd stWait = {m_iFd, POLLIN, 0};
        return poll(&stWait, 1, iTimeoutMs) == 1;
    }

    /// Sends a command and expects its answer and nothing more.
    void Expect(const std::string &acSent, const std::string &acAnswer) const {
        Send(acSent);
        EXPECT_EQ(Read(acAnswer.size()), acAnswer) << acSent;
        EXPECT_FALSE(IsReadable(20)) << acSent;
    }

  private:
    int m_iFd;
};

class UsbLineTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "usb_mngt", "--timeout", "60"});
        EXPECT_EQ(Status(kRegister, Word(1) + Field("tests", 128)), 0u);
    }

    static uint32_t Status(uint32_t uiRpcId, const std::string &acRequest) {
        return Call("usb_mngt", uiRpcId, acRequest, 68).uiStatus;
    }

    static std::string NodeOf(uint32_t uiDevice) {
        EXPECT_EQ(Status(kLock, Word(uiDevice)), 0u);
        const RpcReply stReply = Call("usb_mngt", kOpen, Word(uiDevice), 100);
        EXPECT_EQ(stReply.uiStatus, 0u);
        EXPECT_EQ(WordAt(stReply.acBytes, 0), 0u);
        return stReply.acBytes.c_str() + 4;
    }
};

}  // namespace

TEST_F(UsbLineTest, TheEchoAdapterReturnsEveryByte) {
    const Line stLine(NodeOf(kEcho));
    std::string acAll;
    for (int iByte = 0; iByte < 256; ++iByte) {
        acAll += static_cast<char>(iByte);
    }
    stLine.Expect(acAll, acAll);
    // More than the line holds at once.
    const auto stEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
    std::string acSent;
    std::string acBack;
    while (acBack.size() < 50000 && std::chrono::steady_clock::now() < stEnd) {
        char acPiece[512];
        const ssize_t iGot = read(stLine.Get(), acPiece, sizeof(acPiece));
        acBack.append(acPiece, iGot > 0 ? static_cast<size_t>(iGot) : 0);
        const std::string acNext = std::to_string(acSent.size()) + ",";
        const ssize_t iDone =
            acSent.size() < 50000 ? write(stLine.Get(), acNext.data(), acNext.size()) : 0;
        acSent.append(acNext, 0, iDone > 0 ? static_cast<size_t>(iDone) : 0);
    }
    acBack += stLine.Read(acSent.size() - std::min(acSent.size(), acBack.size()));
    EXPECT_GE(acSent.size(), 50000u);
    EXPECT_TRUE(acBack == acSent) << acBack.size() << " of " << acSent.size() << " bytes";
}

TEST_F(UsbLineTest, TheModemAnswersCommands) {
    const Line stLine(NodeOf(kModem));
    stLine.Expect("AT\r", "AT\r\r\nOK\r\n");
    stLine.Expect("ATE0\r", "ATE0\r\r\nOK\r\n");
    stLine.Expect("AT\r", "\r\nOK\r\n");
    stLine.Expect("at + csq\r\n", "\r\n+CSQ: 20,99\r\n\r\nOK\r\n");
    stLine.Expect("ATI\r", "\r\nSimulated modem\r\nRevision 1.0\r\n\r\nOK\r\n");
    stLine.Expect("AT+CGMI\r", "\r\nSimulated gateway\r\n\r\nOK\r\n");
    stLine.Expect("AT+CGMM\r", "\r\nSimulated modem\r\n\r\nOK\r\n");
    stLine.Expect("AT+CGMR\r", "\r\n1.0\r\n\r\nOK\r\n");
    stLine.Expect("AT+CGSN\r", "\r\n000000000000001\r\n\r\nOK\r\n");
    stLine.Expect("AT+CPIN?\r", "\r\n+CPIN: READY\r\n\r\nOK\r\n");
    stLine.Expect("AT+CREG?\r", "\r\n+CREG: 0,1\r\n\r\nOK\r\n");
    stLine.Expect("AT+COPS?\r", "\r\n+COPS: 0,0,\"Simulated network\"\r\n\r\nOK\r\n");
    stLine.Expect("AT+CSQ=1\r", "\r\nERROR\r\n");
    stLine.Expect("HELLO\r", "\r\nERROR\r\n");
    stLine.Expect("\r\r\n", "");
    stLine.Expect("A", "");
    stLine.Expect("TXY\b\x7F\r", "\r\nOK\r\n");
    stLine.Expect("ATX\bX\r", "\r\nERROR\r\n");
    stLine.Expect("AX\bT\r", "\r\nOK\r\n");
    stLine.Expect("\b\bAT\r", "\r\nOK\r\n");
    stLine.Expect("ATE1\r", "\r\nOK\r\n");
    stLine.Expect("AT", "AT");
    stLine.Expect("\r", "\r\r\nOK\r\n");
    stLine.Expect("ATE0\r", "ATE0\r\r\nOK\r\n");
    stLine.Expect("ATZ\r", "\r\nOK\r\n");
    stLine.Expect("AT\r", "AT\r\r\nOK\r\n");
}

TEST_F(UsbLineTest, TheModemBearsLongLines) {
    const Line stLine(NodeOf(kModem));
    stLine.Expect("ATE0\r", "ATE0\r\r\nOK\r\n");
    stLine.Expect("AT" + std::string(254, ' ') + "\r", "\r\nOK\r\n");
    stLine.Expect("AT" + std::string(255, ' ') + "\r", "\r\nERROR\r\n");
    for (int iPiece = 0; iPiece < 20; ++iPiece) {
        stLine.Expect(std::string(1000, 'A'), "");
    }
    stLine.Expect("\r", "\r\nERROR\r\n");
    stLine.Expect("AT\r", "\r\nOK\r\n");
}

TEST_F(UsbLineTest, TheLineStaysAsItsUserSetsItUntilTheNextOne) {
    const std::string acNode = NodeOf(kModem);
    struct termios stSettings = {};
    {
        const Line stLine(acNode);
        ASSERT_EQ(tcgetattr(stLine.Get(), &stSettings), 0);
        EXPECT_EQ(stSettings.c_lflag & (ICANON | ECHO | ISIG), 0u);
        EXPECT_EQ(stSettings.c_iflag & (ICRNL | INLCR | IGNCR | IXON), 0u);
        EXPECT_EQ(stSettings.c_oflag & OPOST, 0u);
        stSettings.c_iflag |= IXOFF;
        stSettings.c_cflag |= CSTOPB;
        ASSERT_EQ(cfsetspeed(&stSettings, B115200), 0);
        ASSERT_EQ(tcsetattr(stLine.Get(), TCSANOW, &stSettings), 0);
        stLine.Expect("ATE0\r", "ATE0\r\r\nOK\r\n");
        stLine.Send("AT\r");
        ASSERT_TRUE(stLine.IsReadable(kPatienceMs));
    }
    {
        const Line stLine(acNode);
        ASSERT_EQ(tcgetattr(stLine.Get(), &stSettings), 0);
        EXPECT_NE(stSettings.c_iflag & IXOFF, 0u) << "closing is not the end";
        EXPECT_EQ(cfgetospeed(&stSettings), static_cast<speed_t>(B115200));
        EXPECT_EQ(stLine.Read(6), "\r\nOK\r\n");
        stLine.Send("AT+CG");
        EXPECT_FALSE(stLine.IsReadable(20));
    }
    EXPECT_EQ(Status(kUnlock, Word(kModem)), 0u);
    const Line stLine(NodeOf(kModem));
    ASSERT_EQ(tcgetattr(stLine.Get(), &stSettings), 0);
    EXPECT_EQ(stSettings.c_iflag, 0u);
    EXPECT_EQ(stSettings.c_oflag, 0u);
    EXPECT_EQ(stSettings.c_lflag, 0u);
    EXPECT_EQ(stSettings.c_cflag & (CSIZE | CSTOPB | PARENB), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(cfgetospeed(&stSettings), static_cast<speed_t>(B9600));
    EXPECT_EQ(stSettings.c_cc[VMIN], 1);
    stLine.Expect("AT\r", "AT\r\r\nOK\r\n");
}

TEST_F(UsbLineTest, NothingOldIsOnTheLineOfANewUser) {
    const Line stOld(NodeOf(kEcho));
    stOld.Send("left behind");
    ASSERT_TRUE(stOld.IsReadable(kPatienceMs));
    EXPECT_EQ(Status(kUnlock, Word(kEcho)), 0u);
    const Line stLine(NodeOf(kEcho));
    stLine.Expect("new", "new");
}

TEST_F(UsbLineTest, WhoeverDoesNotReadHoldsNobodyUp) {
    const Line stLine(NodeOf(kEcho));
    struct termios stSettings = {};
    ASSERT_EQ(tcgetattr(stLine.Get(), &stSettings), 0);
    stSettings.c_lflag |= ECHO;  // each byte comes back to the adapter once more
    ASSERT_EQ(tcsetattr(stLine.Get(), TCSANOW, &stSettings), 0);
    const std::string acPiece(256, 'x');
    size_t uiSent = 0;
    while (uiSent < (1u << 20)) {
        struct pollfd stWait = {stLine.Get(), POLLOUT, 0};
        if (poll(&stWait, 1, 200) != 1) {
            break;
        }
        const ssize_t iSent = write(stLine.Get(), acPiece.data(), acPiece.size());
        uiSent += iSent > 0 ? static_cast<size_t>(iSent) : 0;
    }
    EXPECT_LT(uiSent, 1u << 20) << "the adapter takes no more";
    const Line stModem(NodeOf(kModem));
    stModem.Expect("AT\r", "AT\r\r\nOK\r\n");
    EXPECT_EQ(Status(kUnlock, Word(kEcho)), 0u);
    const Line stNext(NodeOf(kEcho));
    stNext.Expect("again", "again");
}

TEST_F(UsbLineTest, ADeviceThatIsPulledOutEndsItsLine) {
    const std::string acNode = NodeOf(kModem);
    const Line stLine(acNode);
    stLine.Expect("AT\r", "AT\r\r\nOK\r\n");
    CtlOk({"usb", "unplug", "modem0"});
    ASSERT_TRUE(stLine.IsReadable(kPatienceMs));
    char cByte = 0;
    EXPECT_EQ(read(stLine.Get(), &cByte, 1), 0) << "its end";
    EXPECT_EQ(write(stLine.Get(), "A", 1), -1);
    EXPECT_EQ(errno, EIO);
    const RpcReply stReply = Call("usb_mngt", kOpen, Word(kModem), 100);
    EXPECT_EQ(stReply.uiStatus, 0u);
    EXPECT_EQ(stReply.acBytes, Word(1) + std::string(96, '\0'));
    EXPECT_EQ(Status(kLock, Word(kModem)), 0xF7300001u);

    // Another one in the same socket is another device: nobody has it.
    CtlOk({"usb", "plug", "adapter", "--kind", "echo"});
    const Line stAdapter(NodeOf(kModem));
    stAdapter.Expect("AT\r", "AT\r");
}

TEST_F(UsbLineTest, AnOpenLineDoesNotKeepTheProcessFromEnding) {
    const Line stLine(NodeOf(kEcho));
    stLine.Send("never read");
    CtlOk({"stop", "usb_mngt", "--timeout", "20"});
    EXPECT_TRUE(stLine.IsReadable(kPatienceMs));
}

}  // namespace wap::test
