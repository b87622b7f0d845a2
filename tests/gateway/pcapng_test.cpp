// Captures: the bytes of the files, and files of anybody's.
#include "monitor/pcapng.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <random>
#include <sstream>

#include "framework/error.h"
#include "monitor/capture.h"
#include "tap_events.h"

namespace wap::gateway {
namespace {

using test::Field;
using test::TapAddresses;
using test::TapCall;
using test::TapMac;
using test::Word;

/// Numbers of 16 bits, and of both sizes with the most significant byte first.
std::string Half(uint32_t uiValue) {
    return Word(uiValue).substr(0, 2);
}
std::string Big(uint32_t uiValue) {
    const std::string acBytes = Word(uiValue);
    return {acBytes.rbegin(), acBytes.rend()};
}
std::string BigHalf(uint32_t uiValue) {
    return Big(uiValue).substr(2);
}

/// A file by hand, of one packet: 40 + 40 + 64 bytes.
std::string FileBytes() {
    return Word(0x0A0D0D0A) + Word(40) + Word(0x1A2B3C4D) + Half(1) + Half(0) +
           std::string(8, '\xFF') + Half(4) + Half(4) + "prog" + Word(0) + Word(40) +  //
           Word(1) + Word(40) + Half(252) + Half(0) + Word(262144) + Half(2) + Half(3) +
           std::string("if0\0", 4) + Half(9) + Half(1) + std::string("\6\0\0\0", 4) + Word(0) +
           Word(40) +  //
           Word(6) + Word(64) + Word(0) + Word(5) + Word(7) + Word(5) + Word(5) +
           std::string("abcde\0\0\0", 8) + Half(1) + Half(3) + std::string("hey\0", 4) + Half(4) +
           Half(8) + Word(9) + Word(0) + Word(0) + Word(64);
}

/// The packets of a file, or why it is refused.
struct Reading {
    std::vector<Packet> astPackets;
    std::string acError;
    bool bEndsTooEarly = false;
};

Reading Read(const std::string &acFile) {
    std::istringstream stFile(acFile);
    PcapngReader stReader(stFile);
    Reading stReading;
    try {
        while (auto stPacket = stReader.Next()) {
            stReading.astPackets.push_back(std::move(*stPacket));
        }
    } catch (const GatewayError &stError) {
        stReading.acError = stError.what();
    }
    stReading.bEndsTooEarly = stReader.EndsTooEarly();
    return stReading;
}

std::string Little(const std::string &acType, const std::string &acBody) {
    const std::string acLength = Word(static_cast<uint32_t>(acBody.size()) + 12);
    return acType + acLength + acBody + acLength;
}
std::string BigBlock(uint32_t uiType, const std::string &acBody) {
    const std::string acLength = Big(static_cast<uint32_t>(acBody.size()) + 12);
    return Big(uiType) + acLength + acBody + acLength;
}

const std::string kSectionBody = Word(0x1A2B3C4D) + Half(1) + Half(0) + std::string(8, '\xFF');
const std::string kSectionBlock = Little(Word(0x0A0D0D0A), kSectionBody);
const std::string kInterfaceBlock = Little(Word(1), Half(252) + Half(0) + Word(0));

/// An interface with an option.
std::string InterfaceWith(const std::string &acOption) {
    return Little(Word(1), Half(252) + Half(0) + Word(0) + acOption);
}
/// A packet without bytes at a time.
std::string PacketAt(uint64_t ulTime) {
    return Little(Word(6), Word(0) + Word(static_cast<uint32_t>(ulTime >> 32)) +
                               Word(static_cast<uint32_t>(ulTime)) + Word(0) + Word(0));
}

TEST(PcapngTest, IsWrittenByteForByte) {
    EXPECT_EQ(PcapngStart("prog", "if0", 252) + PcapngPacket(0x500000007, "abcde", 5, "hey", 9),
              FileBytes());
    const std::string acPlain = PcapngPacket(1, "", 0, "", 0);
    EXPECT_EQ(acPlain, Word(6) + Word(40) + Word(0) + Word(0) + Word(1) + Word(0) + Word(0) +
                           Half(1) + Half(0) + Word(0) + Word(40));
    EXPECT_EQ(PcapngStatistics(0x500000007, 9), Word(5) + Word(40) + Word(0) + Word(5) + Word(7) +
                                                    Half(5) + Half(8) + Word(9) + Word(0) +
                                                    Word(0) + Word(40));
    EXPECT_EQ(PcapngPacket(1, "ab", 7, "", 0).substr(20, 12),
              Word(2) + Word(7) + std::string("ab\0\0", 4))
        << "one that was cut";
    const std::string acLong = PcapngPacket(1, "", 0, std::string(70000, 'c'), 0);
    EXPECT_EQ(acLong.size(), 40u + 65536);
    EXPECT_EQ(acLong.substr(30, 2), "\xFF\xFF");
}

TEST(PcapngTest, IsRead) {
    const Reading stReading = Read(FileBytes() + PcapngPacket(8, "x", 1, "", 0));
    EXPECT_EQ(stReading.acError, "");
    ASSERT_EQ(stReading.astPackets.size(), 2u);
    EXPECT_EQ(stReading.astPackets[0].acBytes, "abcde");
    EXPECT_EQ(stReading.astPackets[0].ulTimeUs, 0x500000007u);
    EXPECT_EQ(stReading.astPackets[0].usLinkType, 252);
    EXPECT_EQ(stReading.astPackets[1].acBytes, "x");
}

TEST(PcapngTest, IsReadInEitherByteOrderAndPastWhatIsNoPacket) {
    const std::string acBig =
        BigBlock(0x0A0D0D0A, Big(0x1A2B3C4D) + BigHalf(1) + BigHalf(2) + std::string(8, '\xFF')) +
        BigBlock(0x80000001, "anything") + BigBlock(1, BigHalf(147) + BigHalf(0) + Big(0)) +
        BigBlock(6, Big(0) + Big(5) + Big(7) + Big(3) + Big(3) + std::string("abc\0", 4)) +
        BigBlock(5, Big(0) + Big(0) + Big(0));
    const Reading stReading = Read(acBig + FileBytes());
    EXPECT_EQ(stReading.acError, "");
    ASSERT_EQ(stReading.astPackets.size(), 2u);
    EXPECT_EQ(stReading.astPackets[0].usLinkType, 147);
    EXPECT_EQ(stReading.astPackets[0].ulTimeUs, 0x500000007u);
    EXPECT_EQ(stReading.astPackets[0].acBytes, "abc");
    EXPECT_EQ(stReading.astPackets[1].acBytes, "abcde");
}

TEST(PcapngTest, TimesAreReadInTheirUnit) {
    const struct {
        std::string acOption;
        uint64_t ulTime;
        uint64_t ulMicroseconds;
    } astUnits[] = {
        {"", 1700000000123456, 1700000000123456},
        {Half(9) + Half(1) + std::string("\0\0\0\0", 4), 1700000000, 1700000000000000},
        {Half(9) + Half(1) + std::string("\3\0\0\0", 4), 1700000000123, 1700000000123000},
        {Half(9) + Half(1) + std::string("\11\0\0\0", 4), 1700000000123456789, 1700000000123456},
        {Half(9) + Half(1) + std::string("\x81\0\0\0", 4), 3, 1500000},
        {Half(9) + Half(1) + std::string("\x94\0\0\0", 4), (7ull << 20) + (1 << 18), 7250000},
        {Half(9) + Half(1) + std::string("\xFF\0\0\0", 4), ~0ull, 0},
        {Half(14) + Half(8) + Word(100) + Word(0), 5, 100000005},
        {Half(14) + Half(8) + Word(0xFFFFFFFF) + Word(0xFFFFFFFF), 3000000, 2000000},
    };
    for (const auto &stUnit : astUnits) {
        const Reading stReading =
            Read(kSectionBlock + InterfaceWith(stUnit.acOption) + PacketAt(stUnit.ulTime));
        EXPECT_EQ(stReading.acError, "");
        ASSERT_EQ(stReading.astPackets.size(), 1u);
        EXPECT_EQ(stReading.astPackets[0].ulTimeUs, stUnit.ulMicroseconds);
    }
}

TEST(PcapngTest, FilesThatEndTooEarlyAreRefused) {
    const std::string acFile = FileBytes();
    std::vector<size_t> auiWhole;
    for (size_t uiLength = 0; uiLength < acFile.size(); ++uiLength) {
        const Reading stReading = Read(acFile.substr(0, uiLength));
        EXPECT_EQ(stReading.astPackets.size(), 0u);
        if (stReading.acError.empty()) {
            auiWhole.push_back(uiLength);
        }
    }
    EXPECT_EQ(auiWhole, (std::vector<size_t>{40, 80})) << "between blocks";
    EXPECT_EQ(Read("").acError, "it is empty (the block at byte 0)");
    EXPECT_EQ(Read(acFile.substr(0, 100)).acError, "it ends too early (the block at byte 80)");
    // What is whole is there all the same.
    const Reading stCut = Read(acFile + PcapngPacket(8, "x", 1, "", 0).substr(0, 30));
    EXPECT_EQ(stCut.acError, "it ends too early (the block at byte 144)");
    EXPECT_TRUE(stCut.bEndsTooEarly);
    EXPECT_EQ(stCut.astPackets.size(), 1u);
    EXPECT_FALSE(Read(acFile).bEndsTooEarly);
    EXPECT_FALSE(Read(acFile + Word(6) + Word(13)).bEndsTooEarly) << "it is damaged";
}

TEST(PcapngTest, DamagedFilesAreRefused) {
    const std::string acStart = kSectionBlock + kInterfaceBlock;
    const struct {
        std::string acFile;
        const char *pcSays;
    } astCases[] = {
        {std::string(100, '\0'), "it is no pcapng file"},
        {"\xD4\xC3\xB2\xA1 the older format", "it is no pcapng file"},
        {kInterfaceBlock, "it is no pcapng file"},
        {Word(0x0A0D0D0A) + Word(28) + Word(0x1A2B3C4E) + std::string(16, '\0'), "it is no pcapng"},
        {Little(Word(0x0A0D0D0A), Word(0x1A2B3C4D) + Half(2) + Half(0) + std::string(8, '\0')),
         "its version is 2"},
        {Little(Word(0x0A0D0D0A), Word(0x1A2B3C4D) + Half(1) + Half(0)), "too short"},
        {Word(0x0A0D0D0A) + Word(12) + Word(0x1A2B3C4D) + Word(12), "can't have 12 bytes"},
        {acStart + Word(6) + Word(0) + Word(0), "can't have 0 bytes"},
        {acStart + Word(6) + Word(8), "can't have 8 bytes"},
        {acStart + Word(6) + Word(13), "can't have 13 bytes"},
        {acStart + Word(6) + Word(0xFFFFFFFC), "can't have 4294967292 bytes"},
        {acStart + Word(5) + Word(16) + Word(0) + Word(20), "ends with another length"},
        {acStart + Little(Word(6), ""), "too short"},
        {acStart + Little(Word(6), std::string(16, '\0')), "too short"},
        {acStart + Little(Word(6), Word(1) + std::string(16, '\0')), "does not have"},
        {acStart + Little(Word(6), std::string(12, '\0') + Word(5) + Word(5) + "abcd"),
         "longer than its block"},
        {acStart + Little(Word(6), std::string(12, '\0') + Word(0xFFFFFFFF) + Word(5) + "abcd"),
         "longer than its block"},
        // The next section has no interface of its own.
        {acStart + kSectionBlock + PacketAt(1), "does not have"},
        {kSectionBlock + Little(Word(1), Half(1) + Half(0)), "too short"},
        {kSectionBlock + InterfaceWith(Half(9) + Half(4)), "option is longer"},
        {kSectionBlock + InterfaceWith(Half(3) + Half(0xFFFF) + "abcd"), "option is longer"},
        {kSectionBlock + InterfaceWith(Half(9) + Half(0)), "too short"},
        {kSectionBlock + InterfaceWith(Half(14) + Half(4) + Word(1)), "too short"},
        {kSectionBlock + InterfaceWith(Half(9) + Half(1) + std::string("\x14\0\0\0", 4)),
         "too small"},
    };
    for (const auto &stCase : astCases) {
        const Reading stReading = Read(stCase.acFile);
        EXPECT_NE(stReading.acError.find(stCase.pcSays), std::string::npos)
            << stReading.acError << ", not " << stCase.pcSays;
        EXPECT_EQ(stReading.astPackets.size(), 0u);
    }
    std::string acMany = kSectionBlock;
    for (int i = 0; i < 1025; ++i) {
        acMany += kInterfaceBlock;
    }
    EXPECT_NE(Read(acMany).acError.find("more than 1024 interfaces"), std::string::npos);
}

TEST(PcapngTest, AnyBytesAreReadOrRefused) {
    // The same bytes in every run.
    std::mt19937 stEngine(20261122);  // NOLINT(cert-msc51-cpp)
    size_t uiRefused = 0;
    constexpr size_t kRounds = 4000;
    const std::string acWhole =
        PcapngStart("prog", "if0", 252) +
        PcapngPacket(test::kTapTime, PacketOf(TapMac()), WholePacketLength(TapMac()), "a", 3);
    for (size_t uiRound = 0; uiRound < kRounds; ++uiRound) {
        std::string acFile = acWhole;
        for (int iChange = 0; iChange < 3; ++iChange) {
            acFile[stEngine() % acFile.size()] = static_cast<char>(stEngine());
        }
        const Reading stReading = Read(acFile);
        uiRefused += stReading.acError.empty() ? 0 : 1;
        for (const Packet &stPacket : stReading.astPackets) {
            try {
                (void)EventIn(stPacket);
            } catch (const GatewayError &) {
                ++uiRefused;
            }
        }
    }
    EXPECT_GT(uiRefused, 0u);
    EXPECT_LT(uiRefused, kRounds);
}

/// What stands before an event in a packet.
const std::string kTags = std::string("\0\14\0\4data", 8) +
                          std::string("\0\41\0\10VT-RPC\0\0", 12) + std::string(4, '\0');

TEST(CaptureTest, PacketsSayWhatTheyAre) {
    EXPECT_EQ(PacketOf(TapMac()), kTags + EncodeEvent(TapMac()));
    const auto stEvent = EventIn({252, 1, PacketOf(TapAddresses())});
    ASSERT_TRUE(stEvent);
    EXPECT_EQ(EncodeEvent(*stEvent), EncodeEvent(TapAddresses()));
}

TEST(CaptureTest, PacketsOfOthersArePassedOver) {
    const std::string acEvent = EncodeEvent(TapMac());
    EXPECT_FALSE(EventIn({147, 1, kTags + acEvent}));
    EXPECT_FALSE(EventIn({252, 1, ""}));
    EXPECT_FALSE(EventIn({252, 1, acEvent})) << "no tags";
    EXPECT_FALSE(EventIn({252, 1, std::string("\0\14\0\4http", 8) + std::string(4, '\0')}));
    for (size_t uiLength = 0; uiLength < kTags.size(); ++uiLength) {
        EXPECT_FALSE(EventIn({252, 1, kTags.substr(0, uiLength)})) << uiLength;
    }
    // Other tags may stand before the end.
    const auto stEvent = EventIn({252, 1, std::string("\0\36\0\4\0\0\0\7", 8) + kTags + acEvent});
    EXPECT_TRUE(stEvent);
    for (const std::string &acDamaged : {std::string(), acEvent.substr(0, 200), acEvent + "x"}) {
        EXPECT_THROW((void)EventIn({252, 1, kTags + acDamaged}), GatewayError);
    }
    TapEvent stHello;
    stHello.eKind = TapKind::kHello;
    EXPECT_THROW((void)EventIn({252, 1, kTags + EncodeEvent(stHello)}), GatewayError);
}

TEST(CaptureTest, TooMuchIsCutWhereItIsNeededLeast) {
    const std::string acLong(VT_HOST_MAX_PAYLOAD, 'l');
    TapEvent stEvent = TapAddresses();
    test::SetPart(stEvent, kTapRequest, acLong);
    test::SetPart(stEvent, kTapReply, acLong);
    test::SetPart(stEvent, kTapBlock, std::string(100, 'b'));
    std::string acPacket = PacketOf(stEvent);
    EXPECT_EQ(acPacket.size(), kPacketMax);
    EXPECT_EQ(WholePacketLength(stEvent), 24u + 196 + 131072 + 131072 + 100);
    std::optional<TapEvent> stRead = EventIn({252, 1, acPacket});
    ASSERT_TRUE(stRead);
    EXPECT_TRUE(stRead->astParts[kTapRequest].IsWhole());
    EXPECT_TRUE(stRead->astParts[kTapBlock].IsWhole()) << "a replay needs it";
    EXPECT_EQ(stRead->astParts[kTapReply].acHeld.size(), kPacketMax - 24 - 196 - 131072 - 100);
    EXPECT_EQ(stRead->astParts[kTapReply].uiLength, VT_HOST_MAX_PAYLOAD);

    test::SetPart(stEvent, kTapBlock, std::string(kTapBlockMax, 'b'));
    stRead = EventIn({252, 1, PacketOf(stEvent)});
    ASSERT_TRUE(stRead);
    EXPECT_TRUE(stRead->astParts[kTapReply].acHeld.empty());
    EXPECT_EQ(stRead->astParts[kTapBlock].acHeld.size(), kPacketMax - 24 - 196 - 131072);

    stEvent.eBlockSide = WireSide::kReply;
    stRead = EventIn({252, 1, PacketOf(stEvent)});
    ASSERT_TRUE(stRead);
    EXPECT_TRUE(stRead->astParts[kTapBlock].acHeld.empty());
    EXPECT_EQ(stRead->astParts[kTapReply].acHeld.size(), kPacketMax - 24 - 196 - 131072);
}

TEST(CaptureTest, SecretsAreWrittenOver) {
    TapEvent stEvent = TapCall(test::kTapSetPassword, "osgi_proxy", Field("Sesame", 128), Word(0));
    MaskEvent(stEvent);
    EXPECT_TRUE(stEvent.bMasked);
    EXPECT_EQ(stEvent.astParts[kTapRequest].acHeld, Field("(secret)", 128));
    EXPECT_EQ(stEvent.astParts[kTapReply].acHeld, Word(0));
    TapEvent stMac = TapMac();
    MaskEvent(stMac);
    EXPECT_EQ(EncodeEvent(stMac), EncodeEvent(TapMac())) << "nothing is secret in it";
    TapEvent stUnknown = TapCall(test::kTapUnknown, "osgi_proxy", "Sesame", "Open");
    MaskEvent(stUnknown);
    EXPECT_TRUE(stUnknown.bMasked);
    EXPECT_EQ(stUnknown.astParts[kTapRequest].acHeld, "");
    EXPECT_EQ(stUnknown.astParts[kTapRequest].uiLength, 6u);
    EXPECT_EQ(stUnknown.astParts[kTapReply].acHeld, "");
}

TEST(CaptureTest, FilesAreTheirOwnersAlone) {
    char acPath[] = "/tmp/wap-capture-test-XXXXXX";
    const FileDescriptor stOld(mkstemp(acPath));
    ASSERT_GE(stOld.Get(), 0);
    ASSERT_EQ(fchmod(stOld.Get(), 0644), 0);
    ASSERT_EQ(write(stOld.Get(), "something older", 15), 15);
    {
        CaptureFile stFile(acPath, false);
        stFile.Add(TapMac(), 0);
        struct stat stInfo = {};
        ASSERT_EQ(stat(acPath, &stInfo), 0);
        EXPECT_EQ(stInfo.st_mode & 0777, 0600u);
        // Whole before the next one comes.
        std::ifstream stRead(acPath, std::ios::binary);
        PcapngReader stReader(stRead);
        const auto stPacket = stReader.Next();
        ASSERT_TRUE(stPacket);
        EXPECT_EQ(stPacket->ulTimeUs, test::kTapTime);
        EXPECT_EQ(stPacket->acBytes, PacketOf(TapMac()));
        EXPECT_FALSE(stReader.Next());
    }
    EXPECT_EQ(unlink(acPath), 0);
    EXPECT_THROW(CaptureFile("/nowhere/at/all.pcapng", false), GatewayError);
}

/// A path for a capture, removed at the end.
class CapturePathTest : public testing::Test {
  protected:
    void SetUp() override {
        char acDir[] = "/tmp/wap-capture-test-XXXXXX";
        ASSERT_NE(mkdtemp(acDir), nullptr);
        m_acDir = acDir;
        m_acPath = m_acDir + "/calls.pcapng";
    }
    void TearDown() override {
        EXPECT_EQ(unlink(m_acPath.c_str()), 0);
        EXPECT_EQ(rmdir(m_acDir.c_str()), 0);
    }

    std::string m_acDir;
    std::string m_acPath;
};

TEST_F(CapturePathTest, WhatIsNoFileStaysAsOpenAsItWas) {
    ASSERT_EQ(mkfifo(m_acPath.c_str(), 0600), 0);
    ASSERT_EQ(chmod(m_acPath.c_str(), 0644), 0);
    const FileDescriptor stReader(open(m_acPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_GE(stReader.Get(), 0);
    CaptureFile(m_acPath, false).Finish(test::kTapTime, 7);
    struct stat stInfo = {};
    ASSERT_EQ(stat(m_acPath.c_str(), &stInfo), 0);
    EXPECT_EQ(stInfo.st_mode & 0777, 0644u);
    std::string acWritten(1000, '\0');
    const ssize_t iCount = read(stReader.Get(), acWritten.data(), acWritten.size());
    ASSERT_GE(iCount, 0);
    acWritten.resize(static_cast<size_t>(iCount));
    EXPECT_EQ(acWritten, PcapngStart("gatewayctl monitor", "gateway", 252) +
                             PcapngStatistics(test::kTapTime, 7));
}

TEST_F(CapturePathTest, WhatCantBeWrittenWholeIsNotWritten) {
    CaptureFile stFile(m_acPath, false);
    stFile.Add(TapMac(), 0);
    struct stat stBefore = {};
    ASSERT_EQ(stat(m_acPath.c_str(), &stBefore), 0);
    struct rlimit stLimit = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &stLimit), 0);
    const auto fnSignal = signal(SIGXFSZ, SIG_IGN);
    const struct rlimit stLess = {static_cast<rlim_t>(stBefore.st_size) + 100, stLimit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &stLess), 0);
    std::string acError;
    try {
        stFile.Add(TapMac(), 0);
    } catch (const GatewayError &stError) {
        acError = stError.what();
    }
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &stLimit), 0);
    (void)signal(SIGXFSZ, fnSignal);
    EXPECT_EQ(acError, "cannot write " + m_acPath + ": File too large");
    struct stat stAfter = {};
    ASSERT_EQ(stat(m_acPath.c_str(), &stAfter), 0);
    EXPECT_EQ(stAfter.st_size, stBefore.st_size);
}

}  // namespace
}  // namespace wap::gateway
