// What processes tell of their calls: the bytes, what they are read as, and what no process says.
#include "framework/tap_event.h"

#include <gtest/gtest.h>
#include <string.h>

#include "framework/error.h"
#include "framework/tap_socket.h"
#include "framework/wire_decode.h"
#include "framework/wire_mask.h"
#include "monitor/frame_reader.h"
#include "tap_events.h"

namespace wap::gateway {
namespace {

using test::Field;
using test::Word;

/// The bytes of a call whose truncated reply names no block any more, as docs/monitor.md has them.
std::string CallBytes() {
    return std::string("VTM1\1\3\4\1") + Word(0x55667788) + Word(0x11223344) + Word(312) + Word(0) +
           Word(0x48304173) + Word(7) + Word(0xF7300001) + Word(4) + Word(100) + Word(200) +
           Field("gulm", 32) + Word(2) + Word(1000) +                   // the fault
           Word(6) + Word(2) + Word(9) + Word(6) + Word(2) + Word(5) +  // lengths, and what is held
           Word(0) + Field("jamvm", 32) + Word(3) + Field("gulm", 32) + Word(216) +
           std::string(8, '\0') + "abcdef" + "gh" + "ijklm";
}

TapEvent CallEvent() {
    TapEvent stEvent;
    stEvent.bAnswered = true;
    stEvent.bMasked = true;
    stEvent.stFault = Fault{FaultKind::kTruncate, 2, 1000, std::nullopt};
    stEvent.eBlockSide = WireSide::kRequest;
    stEvent.ulTimeUs = 0x1122334455667788;
    stEvent.ulDurationUs = 312;
    stEvent.uiId = 0x48304173;
    stEvent.uiDstMid = 7;
    stEvent.uiCode = 0xF7300001;
    stEvent.uiRoom = 4;
    stEvent.uiSenderPid = 100;
    stEvent.uiReceiverPid = 200;
    stEvent.acReceiver = "gulm";
    strcpy(stEvent.stHead.acSndApp, "jamvm");
    strcpy(stEvent.stHead.acRcvApp, "gulm");
    stEvent.stHead.uiDstMid = 3;
    stEvent.stHead.uiSndMid = 216;
    stEvent.astParts[kTapRequest] = {6, "abcdef"};
    stEvent.astParts[kTapReply] = {2, "gh"};
    stEvent.astParts[kTapBlock] = {9, "ijklm"};
    return stEvent;
}

TEST(TapEventTest, IsWrittenByteForByte) {
    EXPECT_EQ(EncodeEvent(CallEvent()), CallBytes());
}

TEST(TapEventTest, IsReadField) {
    const std::optional<TapEvent> stEvent = DecodeEvent(CallBytes());
    ASSERT_TRUE(stEvent);
    EXPECT_EQ(stEvent->eKind, TapKind::kRpc);
    EXPECT_TRUE(stEvent->bAnswered);
    EXPECT_TRUE(stEvent->bMasked);
    ASSERT_TRUE(stEvent->stFault);
    EXPECT_EQ(DescribeFault(*stEvent->stFault), "truncate 2 after 1000 ms");
    EXPECT_EQ(stEvent->eBlockSide, WireSide::kRequest);
    EXPECT_EQ(stEvent->ulTimeUs, 0x1122334455667788u);
    EXPECT_EQ(stEvent->ulDurationUs, 312u);
    EXPECT_EQ(stEvent->uiDstMid, 7u);
    EXPECT_EQ(stEvent->uiCode, 0xF7300001u);
    EXPECT_EQ(stEvent->uiSenderPid, 100u);
    EXPECT_EQ(stEvent->acReceiver, "gulm");
    EXPECT_STREQ(stEvent->stHead.acSndApp, "jamvm");
    EXPECT_EQ(stEvent->stHead.uiSndMid, 216u);
    EXPECT_TRUE(stEvent->astParts[kTapRequest].IsWhole());
    EXPECT_FALSE(stEvent->astParts[kTapBlock].IsWhole());
    EXPECT_EQ(stEvent->astParts[kTapBlock].acHeld, "ijklm");
    EXPECT_EQ(EncodeEvent(*stEvent), CallBytes());
}

TEST(TapEventTest, IsNoneWhenAnythingIsMissingOrTooMuch) {
    const std::string acBytes = CallBytes();
    for (size_t uiLength = 0; uiLength < acBytes.size(); ++uiLength) {
        EXPECT_FALSE(DecodeEvent(std::string_view(acBytes).substr(0, uiLength))) << uiLength;
    }
    EXPECT_FALSE(DecodeEvent(acBytes + "x"));
}

TEST(TapEventTest, IsNoneWhenAFieldIsImpossible) {
    const struct {
        size_t uiAt;
        std::string acBytes;
    } astWrong[] = {
        {0, "VTM2"},  // another version
        {4, std::string(1, '\0')},
        {4, "\5"},
        {6, "\7"},  // a fault that there is not
        {7, "\3"},
        {7, std::string(1, '\0')},  // a block that nothing names
        {36, Word(131073)},         // more room than a message has
        {88, Word(5)},              // more is held than there was
        {88, Word(131073)},
        {92, Word(0xFFFFFFFF)},
        {100, Word(7)},
        {100, Word(0xFFFFFFFF)},
        {108, Word(0xFFFFFFF9)},
    };
    for (const auto &stWrong : astWrong) {
        std::string acBytes = CallBytes();
        acBytes.replace(stWrong.uiAt, stWrong.acBytes.size(), stWrong.acBytes);
        EXPECT_FALSE(DecodeEvent(acBytes)) << stWrong.uiAt;
    }
    std::string acBytes = CallBytes();
    acBytes.replace(96, 4, Word(0xFFFFFFFF));
    EXPECT_TRUE(DecodeEvent(acBytes)) << "a block may say anything of itself";
}

TEST(TapEventTest, EndsTextsThatDoNotEnd) {
    std::string acBytes = CallBytes();
    acBytes.replace(48, 32, std::string(32, 'r'));
    acBytes.replace(116, 32, std::string(32, 's'));
    acBytes.replace(152, 32, std::string(32, 'd'));
    const std::optional<TapEvent> stEvent = DecodeEvent(acBytes);
    ASSERT_TRUE(stEvent);
    EXPECT_EQ(stEvent->acReceiver, std::string(31, 'r'));
    EXPECT_EQ(stEvent->stHead.acSndApp, std::string(31, 's'));
    EXPECT_EQ(stEvent->stHead.acRcvApp, std::string(31, 'd'));
}

TEST(TapEventTest, FindsTheDescriptorOfABlock) {
    const WireRpc &stRpc = *FindWireRpc(test::kTapGetRoutes);
    const std::string acReply = Word(2) + Word(4097) + Word(224) + Word(224);
    const auto stDesc = DescriptorIn(stRpc, WireSide::kReply, acReply);
    ASSERT_TRUE(stDesc);
    EXPECT_EQ(stDesc->uiDataID, 4097u);
    EXPECT_EQ(stDesc->uiOriginalLen, 224u);
    EXPECT_FALSE(DescriptorIn(stRpc, WireSide::kRequest, acReply));
    EXPECT_FALSE(DescriptorIn(stRpc, WireSide::kReply, acReply.substr(0, 15)));
    EXPECT_FALSE(DescriptorIn(stRpc, WireSide::kReply, ""));
    EXPECT_FALSE(DescriptorIn(stRpc, WireSide::kReply, std::string(16, '\0'))) << "it names none";
}

/// A frame as it comes.
std::string Frame(const std::string &acEvent, uint32_t uiLost = 0) {
    return Word(static_cast<uint32_t>(acEvent.size())) + Word(uiLost) + acEvent;
}

TEST(FrameReaderTest, TakesFramesApartHoweverTheyCome) {
    const std::string acStream = Frame(CallBytes()) + Frame("", 9) + Frame(CallBytes(), 4);
    for (const size_t uiPiece : {size_t{1}, size_t{7}, size_t{250}, acStream.size()}) {
        FrameReader stReader;
        std::string acSeen;
        for (size_t uiAt = 0; uiAt < acStream.size(); uiAt += uiPiece) {
            stReader.Add(std::string_view(acStream).substr(uiAt, uiPiece));
            while (const auto stArrival = stReader.Next()) {
                acSeen += stArrival->stEvent ? "event " : "nothing ";
                acSeen += std::to_string(stArrival->uiLost) + ";";
            }
        }
        EXPECT_EQ(acSeen, "event 0;nothing 9;event 4;") << uiPiece;
    }
}

TEST(FrameReaderTest, RefusesWhatNoProcessSays) {
    for (const std::string &acStream : {Frame("no event"), Word(kTapEventMax + 1) + Word(0)}) {
        FrameReader stReader;
        stReader.Add(acStream);
        EXPECT_THROW((void)stReader.Next(), GatewayError);
    }
}

std::string Masked(const WireContent &stContent, std::string acBytes, bool bAny = true) {
    EXPECT_EQ(MaskContent(stContent, acBytes), bAny);
    return acBytes;
}

TEST(WireMaskTest, WritesOverSecretsAndNothingElse) {
    const WireContent &stPassword = FindWireRpc(test::kTapSetPassword)->stRequest;
    EXPECT_EQ(Masked(stPassword, Field("open sesame", 128)), Field("(secret)", 128));
    EXPECT_EQ(Masked(stPassword, Field("x", 128)), Field("(secret)", 128));
    EXPECT_EQ(Masked(stPassword, "open"), "(sec");
    EXPECT_EQ(Masked(stPassword, Field("", 128), false), Field("", 128)) << "there is none";
    EXPECT_EQ(Masked(stPassword, Field("", 128) + "behind"), Field("", 128) + "(secre");
    EXPECT_EQ(Masked(stPassword, "", false), "");
    const WireContent &stDefaults = FindWireRpc(0x47209037)->stReply;
    EXPECT_EQ(Masked(stDefaults, Field("name", 32) + Field("one", 32) + Field("two", 128)),
              Field("name", 32) + Field("(secret)", 32) + Field("(secret)", 128));
    EXPECT_EQ(Masked(stDefaults, Field("name", 32) + Field("", 32) + Field("", 128), false),
              Field("name", 32) + Field("", 160));
    const WireContent &stMac = FindWireRpc(test::kTapGetMac)->stReply;
    EXPECT_EQ(Masked(stMac, "any bytes, many of them", false), "any bytes, many of them");
}

TEST(WireMaskTest, LeavesWhatPeopleSeeAsItWas) {
    size_t uiMasked = 0;
    for (const auto astRpcs : {WireRpcs(), WireMessages()}) {
        for (const WireRpc &stRpc : astRpcs) {
            for (const WireContent *pstContent :
                 {&stRpc.stRequest, &stRpc.stReply, &stRpc.stBlock}) {
                std::string acBytes(size_t{pstContent->astParts[0].uiSize} * 2, 'Z');
                const std::string acBefore =
                    PrintJson(DecodeContent(*pstContent, acBytes).get(), false);
                uiMasked += MaskContent(*pstContent, acBytes) ? 1 : 0;
                EXPECT_EQ(PrintJson(DecodeContent(*pstContent, acBytes).get(), false), acBefore)
                    << stRpc.pcName;
            }
        }
    }
    // Passwords of FTP, Samba and web accounts that are set, of the gateway and its defaults that
    // are asked for, and a WAN connection that is set.
    EXPECT_EQ(uiMasked, 6u);
}

}  // namespace
}  // namespace wap::gateway
