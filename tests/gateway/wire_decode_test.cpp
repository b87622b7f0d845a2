// Requests and replies as people see them: what is shown, what is hidden, and what becomes of bytes
// that are no record.
#include "framework/wire_decode.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/wire_bytes.h"

namespace wap::gateway {
namespace {

using test::Field;
using test::Word;

const WireRpc &Rpc(uint32_t uiId) {
    const WireRpc *pstRpc = FindWireRpc(uiId);
    EXPECT_NE(pstRpc, nullptr) << std::hex << uiId;
    return pstRpc == nullptr ? WireRpcs().front() : *pstRpc;
}

std::string Shown(const WireContent &stContent, std::string_view sBytes) {
    return PrintJson(DecodeContent(stContent, sBytes).get(), false);
}

constexpr uint32_t kGetLanHostInfoByMac = 0x471030B1;
constexpr uint32_t kGetCurrentRoutes = 0x46345865;
constexpr uint32_t kGetDeviceInfo = 0x47209035;
constexpr uint32_t kSetHttpPassword = 0x47209044;
constexpr uint32_t kSetWan = 0x47209078;
constexpr uint32_t kAddFtpAccount = 0x4720903A;
constexpr uint32_t kGetWanList = 0x47302025;
constexpr uint32_t kIsSsidExcluded = 0x49350180;
constexpr uint32_t kDelWan = 0x47209077;
constexpr uint32_t kGetFlowMembers = 0x4830419E;
constexpr uint32_t kGetFlowStats = 0x4830419F;
constexpr uint32_t kGetFlowSpeed = 0x483041A0;
constexpr uint32_t kGetIptvWan = 0x47317140;
constexpr uint32_t kGetWanStatus = 0x4710308D;
constexpr uint32_t kMonitorChanged = 39;

std::string DeviceInfo() {
    return Word(262144) + Word(4294967295) + Field("1", 2) + Field("SH-GW100", 65) +
           Field("SimHome", 65) + Field("H\"1\"", 65) + Field("SIM.2", 65) + Field("CHIP", 66);
}

TEST(WireDecodeTest, ShowsARecordFieldByField) {
    EXPECT_EQ(Shown(Rpc(kGetDeviceInfo).stReply, DeviceInfo()),
              R"({"uiRamSize":262144,"uiFlashSize":4294967295,"acNfc":"1",)"
              R"("acProductClass":"SH-GW100","acVendor":"SimHome","acHardwareVer":"H\"1\"",)"
              R"("acFirmwareVer":"SIM.2","acMainChipClass":"CHIP"})");
}

TEST(WireDecodeTest, ShowsNumbersOfEachWidthAndSign) {
    EXPECT_EQ(Shown(Rpc(kGetFlowStats).stReply, std::string(8, '\xFF') + Word(1) + Word(2)),
              R"({"ulUpBytes":18446744073709551615,"ulDownBytes":8589934593})");
    EXPECT_EQ(Shown(Rpc(kGetFlowSpeed).stReply, Word(0xFFFFFFFE) + Word(7)),
              R"({"iUp":-2,"iDown":7})");
    EXPECT_EQ(Shown(Rpc(kGetIptvWan).stReply,
                    Word(1) + Word(2) + Word(3) + Word(4) + std::string("\x34\x12\xFF\xFF", 4)),
              R"({"uiWanIndex":1,"uiStatus":2,"uiServiceType":3,"uiIpv4Enable":4,)"
              R"("usIpv4Mvlan":4660,"usIpv6Mvlan":65535})");
}

TEST(WireDecodeTest, ShowsWordsByTheirNames) {
    EXPECT_EQ(Shown(Rpc(kIsSsidExcluded).stRequest, Word(3)), R"({"uiSsid":3})");
    EXPECT_EQ(Shown(Rpc(kGetWanList).stRequest, Word(0)), R"({"word":0})");
    EXPECT_EQ(Shown(Rpc(kIsSsidExcluded).stRequest, "\1\2"), R"({"bytesMissing":2})");
    EXPECT_EQ(Shown(Rpc(kDelWan).stReply, ""), "{}");
    EXPECT_EQ(Shown(Rpc(kDelWan).stReply, Word(0)), R"({"bytesExtra":4})");
}

TEST(WireDecodeTest, ShowsRecordsInRecordsAndDescriptors) {
    EXPECT_EQ(Shown(Rpc(kGetFlowMembers).stReply, Word(2) + Word(4097) + Word(544) + Word(120)),
              R"({"uiCount":2,"stTable":{"uiDataID":4097,"uiOriginalLen":544,)"
              R"("uiCompressedLen":120}})");
    EXPECT_EQ(Rpc(kGetFlowMembers).stReply.astParts[0].pstRecord->astFields[1].eKind,
              WireKind::kDescriptor);
    EXPECT_EQ(Rpc(kGetFlowMembers).eBlockSide, WireSide::kReply);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetFlowMembers).stReply), 4u);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetCurrentRoutes).stReply), 4u);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetLanHostInfoByMac).stReply), 0u);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetLanHostInfoByMac).stRequest), std::nullopt);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetDeviceInfo).stReply), std::nullopt);
    EXPECT_EQ(DescriptorOffset(Rpc(kGetWanStatus).stReply), std::nullopt);
}

TEST(WireDecodeTest, LeavesOutWhatIsZeroAtTheEndOfAnArray) {
    std::string sList = Word(77) + Word(1) + Field("wan1", 260) + Word(0) + Field("", 260) +
                        Word(3) + Field("wan3", 260);
    sList.resize(2116, '\0');
    EXPECT_EQ(Shown(Rpc(kGetWanList).stReply, sList),
              R"({"uiCount":77,"astEntries":[{"uiWanIndex":1,"acName":"wan1"},)"
              R"({"uiWanIndex":0,"acName":""},{"uiWanIndex":3,"acName":"wan3"}]})");
    EXPECT_EQ(Shown(Rpc(kGetWanList).stReply, std::string(2116, '\0')),
              R"({"uiCount":0,"astEntries":[]})");
}

TEST(WireDecodeTest, ShowsSomeOfTheBytesWithoutAMeaningUnlessAllAreZero) {
    std::string sAdd = Field("ann", 257) + Field("", 257) + std::string(10, '\0');
    EXPECT_EQ(Shown(Rpc(kAddFtpAccount).stRequest, sAdd), R"({"acUser":"ann","acPassword":""})");
    sAdd[523] = '\xAB';
    EXPECT_EQ(Shown(Rpc(kAddFtpAccount).stRequest, sAdd),
              R"({"acUser":"ann","acPassword":"","aucUnused":"000000000000000000ab"})");
    const WireField astFields[] = {{"aucLong", 0, 65, 1, WireKind::kBytes, false, nullptr}};
    const WireRecord stLong = {"Long", 65, astFields};
    const JsonValue stShown = DecodeRecord(stLong, std::string(65, '\x11'));
    EXPECT_EQ(GetText(stShown.get(), "aucLong"),
              std::string(size_t{2} * kWireBytesShown, '1') + "...");
}

TEST(WireDecodeTest, ShowsRowsAndCountsThoseThatAreTooMany) {
    const std::string sRow = Field("198.51.100.7", 256) + Field("80", 12) + Field("5", 4);
    EXPECT_EQ(Shown(Rpc(kGetFlowMembers).stBlock, sRow),
              R"({"rows":[{"acAddress":"198.51.100.7","acPort":"80","acFlow":"5"}]})");
    std::string sRows;
    for (uint32_t i = 0; i < kWireRowsShown + 3; ++i) {
        sRows += sRow;
    }
    const JsonValue stRows = DecodeContent(Rpc(kGetFlowMembers).stBlock, sRows + "more");
    EXPECT_EQ(Elements(FindMember(stRows.get(), "rows")).size(), kWireRowsShown);
    EXPECT_EQ(GetNumber(stRows.get(), "rowsMore"), 3);
    EXPECT_EQ(GetNumber(stRows.get(), "bytesExtra"), 4);
    EXPECT_EQ(Shown(Rpc(kGetFlowMembers).stBlock, "part"), R"({"rows":[],"bytesExtra":4})");
}

TEST(WireDecodeTest, TellsAlternativesApartByTheirLength) {
    const WireContent &stHosts = Rpc(kGetLanHostInfoByMac).stRequest;
    EXPECT_EQ(Shown(stHosts, Word(0)), R"({"uiZero":0})");
    EXPECT_EQ(Shown(stHosts, Field("02:00:00:00:00:01", 32) + Field("02:00:00:00:00:02", 32)),
              R"({"rows":[{"acMac":"02:00:00:00:00:01"},{"acMac":"02:00:00:00:00:02"}]})");
    EXPECT_EQ(Shown(stHosts, "odd"), R"({"rows":[],"bytesExtra":3})");
}

TEST(WireDecodeTest, TellsRowsOfABlockApartByHowManyTheReplyCounts) {
    const WireRpc &stRoutes = Rpc(kGetCurrentRoutes);
    // "2 Ipv4", or what is odd about them.
    const auto fnRows = [&](const std::string &sReply, size_t uiBytes) {
        const JsonValue stShown = DecodeBlock(stRoutes, sReply, std::string(uiBytes, '\0'));
        const auto astRows = Elements(FindMember(stShown.get(), "rows"));
        const bool bIpv4 = !astRows.empty() && FindMember(astRows[0], "acDest") != nullptr;
        const bool bOdd = FindMember(stShown.get(), "bytesExtra") != nullptr;
        return std::to_string(astRows.size()) + (bIpv4 ? " Ipv4" : " Ipv6") +
               (bOdd ? " and a part" : "");
    };
    const auto fnReply = [](uint32_t uiNum, uint32_t uiBytes) {
        return Word(uiNum) + Word(1) + Word(uiBytes) + Word(uiBytes);
    };
    EXPECT_EQ(fnRows(fnReply(2, 224), 224), "2 Ipv4");
    EXPECT_EQ(fnRows(fnReply(1, 220), 220), "1 Ipv6");
    // As long as 55 of the one or 28 of the other.
    EXPECT_EQ(fnRows(fnReply(55, 6160), 6160), "55 Ipv4");
    EXPECT_EQ(fnRows(fnReply(28, 6160), 6160), "28 Ipv6");
    // A count that fits neither leaves the length; where both would do, the first of them.
    EXPECT_EQ(fnRows(fnReply(3, 6160), 6160), "55 Ipv4");
    EXPECT_EQ(fnRows(fnReply(3, 220), 220), "1 Ipv6");
    EXPECT_EQ(fnRows("", 220), "1 Ipv6");
    EXPECT_EQ(fnRows(fnReply(1, 221), 221), "1 Ipv4 and a part");
    // Others are read as ever.
    EXPECT_EQ(PrintJson(DecodeBlock(Rpc(kGetFlowMembers), fnReply(2, 4), "part").get(), false),
              R"({"rows":[],"bytesExtra":4})");
    for (const auto astRpcs : {WireRpcs(), WireMessages()}) {
        for (const WireRpc &stRpc : astRpcs) {
            if (stRpc.stBlock.eJoin == WireJoin::kEither) {
                const bool bRequest = stRpc.eBlockSide == WireSide::kRequest;
                EXPECT_GE(DescriptorOffset(bRequest ? stRpc.stRequest : stRpc.stReply), 4u)
                    << stRpc.pcName << " counts no rows";
            }
        }
    }
}

TEST(WireDecodeTest, ShowsOnePartBehindTheOther) {
    const WireRpc *pstNotice = FindWireMessage(kMonitorChanged);
    ASSERT_NE(pstNotice, nullptr);
    const std::string sHead = '\1' + Field("org.example.watcher", 128);
    EXPECT_EQ(Shown(pstNotice->stBlock, sHead + std::string("192.0.2.1,192.0.2.2\0", 20)),
              R"({"ucOperation":1,"acBundleName":"org.example.watcher",)"
              R"("text":"192.0.2.1,192.0.2.2"})");
    EXPECT_EQ(Shown(pstNotice->stBlock, sHead.substr(0, 4)),
              R"({"ucOperation":1,"acBundleName":"org","bytesMissing":125})");
}

TEST(WireDecodeTest, EndsTextsAtTheirZeroOrTheirFieldAndEscapesWhatIsNoText) {
    const WireContent &stText = Rpc(kGetWanStatus).stReply;
    EXPECT_EQ(Shown(stText, std::string("up\0dropped", 10)), R"({"text":"up"})");
    EXPECT_EQ(Shown(stText, "no zero"), R"({"text":"no zero"})");
    EXPECT_EQ(Shown(stText, ""), R"({"text":""})");
    EXPECT_EQ(Shown(stText, "tab\t\x01"), R"({"text":"tab\t\u0001"})");
    EXPECT_EQ(ReadableText("gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80"),
              "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80");
    // A byte alone, a character cut off, one in more bytes than it needs, half a pair, one too
    // high.
    EXPECT_EQ(ReadableText("\xFF"), "\\xff");
    EXPECT_EQ(ReadableText("\x80z"), "\\x80z");
    EXPECT_EQ(ReadableText("\xE2\x82"), "\\xe2\\x82");
    EXPECT_EQ(ReadableText("\xE2\x82z"), "\\xe2\\x82z");
    EXPECT_EQ(ReadableText("\xC0\xAF"), "\\xc0\\xaf");
    EXPECT_EQ(ReadableText("\xE0\x80\xAF"), "\\xe0\\x80\\xaf");
    EXPECT_EQ(ReadableText("\xED\xA0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(ReadableText("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(WireDecodeTest, ShowsWhatIsThereOfRepliesThatAreCut) {
    const std::string sInfo = DeviceInfo();
    const WireContent &stReply = Rpc(kGetDeviceInfo).stReply;
    EXPECT_EQ(Shown(stReply, sInfo.substr(0, 6)), R"({"uiRamSize":262144,"bytesMissing":330})");
    EXPECT_EQ(Shown(stReply, sInfo.substr(0, 14)),
              R"({"uiRamSize":262144,"uiFlashSize":4294967295,"acNfc":"1",)"
              R"("acProductClass":"SH-G","bytesMissing":322})");
    EXPECT_EQ(Shown(stReply, ""), R"({"bytesMissing":336})");
    const JsonValue stLonger = DecodeContent(stReply, sInfo + "behind");
    EXPECT_EQ(GetNumber(stLonger.get(), "bytesExtra"), 6);
    EXPECT_EQ(GetText(stLonger.get(), "acMainChipClass"), "CHIP");
}

TEST(WireDecodeTest, HidesSecretsAlsoWhenBytesAreMissing) {
    const WireContent &stPassword = Rpc(kSetHttpPassword).stRequest;
    EXPECT_EQ(Shown(stPassword, Field("open sesame", 128)), R"~({"acPassword":"(secret)"})~");
    EXPECT_EQ(Shown(stPassword, "open"), R"~({"acPassword":"(secret)","bytesMissing":124})~");
    // Its length, and what stands behind a zero, is nobody's affair either.
    EXPECT_EQ(Shown(stPassword, std::string(127, '\0') + "s"), R"~({"acPassword":"(secret)"})~");
    EXPECT_EQ(Shown(stPassword, Field("", 128)), R"({"acPassword":""})");
    std::string sWan(1080, '\0');
    sWan.replace(144, 4, "user");
    sWan.replace(212, 6, "sesame");
    const JsonValue stWan = DecodeContent(Rpc(kSetWan).stRequest, sWan);
    EXPECT_EQ(GetText(stWan.get(), "acUsername"), kSecretShown);
    EXPECT_EQ(GetText(stWan.get(), "acPassword"), kSecretShown);
    EXPECT_EQ(GetText(stWan.get(), "acIpMode"), "");
}

/// All contents of the table.
std::vector<const WireContent *> AllContents() {
    std::vector<const WireContent *> apstContents;
    for (const auto astRpcs : {WireRpcs(), WireMessages()}) {
        for (const WireRpc &stRpc : astRpcs) {
            apstContents.insert(apstContents.end(),
                                {&stRpc.stRequest, &stRpc.stReply, &stRpc.stBlock});
        }
    }
    return apstContents;
}

constexpr std::string_view kMark = "Sesame!";

/// Puts the mark into each secret of a record, as often as it fits. The number of secrets.
uint32_t MarkSecrets(const WireRecord &stRecord, size_t uiAt, std::string &sBytes) {
    uint32_t uiSecrets = 0;
    for (const WireField &stField : stRecord.astFields) {
        for (uint32_t i = 0; i < stField.uiCount; ++i) {
            const size_t uiPlace = uiAt + stField.uiOffset + size_t{i} * stField.uiSize;
            if (stField.bSecret) {
                ++uiSecrets;
                for (uint32_t uiByte = 0; uiByte < stField.uiSize; ++uiByte) {
                    sBytes.at(uiPlace + uiByte) = kMark[uiByte % kMark.size()];
                }
            } else if (stField.pstRecord != nullptr) {
                uiSecrets += MarkSecrets(*stField.pstRecord, uiPlace, sBytes);
            }
        }
    }
    return uiSecrets;
}

TEST(WireDecodeTest, ShowsNoSecretOfAnyRecord) {
    uint32_t uiSecrets = 0;
    for (const WireContent *pstContent : AllContents()) {
        const WirePart &stPart = pstContent->astParts[0];
        if (stPart.pstRecord == nullptr) {
            continue;
        }
        std::string sBytes(stPart.uiSize, '\0');
        uiSecrets += MarkSecrets(*stPart.pstRecord, 0, sBytes);
        EXPECT_EQ(Shown(*pstContent, sBytes).find(kMark), std::string::npos)
            << stPart.pstRecord->pcName;
    }
    // Of two kinds of accounts, the web service, the gateway, its factory state and a WAN
    // connection.
    EXPECT_EQ(uiSecrets, 8u);
}

TEST(WireDecodeTest, ReadsAnyBytesOfAnyLength) {
    // The same bytes in every run.
    std::mt19937 stEngine(20261122);  // NOLINT(cert-msc51-cpp)
    for (const WireContent *pstContent : AllContents()) {
        const size_t uiWhole = pstContent->astParts[0].uiSize;
        for (const size_t uiLength :
             {size_t{0}, size_t{1}, size_t{3}, size_t{5}, uiWhole / 2, uiWhole - (uiWhole != 0),
              uiWhole, uiWhole + 1, 2 * uiWhole + 7}) {
            std::string sBytes(uiLength, '\xFF');
            const std::string sFull = Shown(*pstContent, sBytes);
            EXPECT_EQ(PrintJson(ParseJson(sFull, "what is shown").get(), false), sFull);
            for (char &cByte : sBytes) {
                cByte = static_cast<char>(stEngine());
            }
            const std::string sRandom = Shown(*pstContent, sBytes);
            EXPECT_EQ(PrintJson(ParseJson(sRandom, "what is shown").get(), false), sRandom);
        }
    }
}

TEST(WireTableTest, KnowsIdsAndNoOthers) {
    EXPECT_STREQ(Rpc(kGetWanList).pcName, "GetWanList");
    EXPECT_EQ(FindWireRpc(0), nullptr);
    EXPECT_EQ(FindWireRpc(kGetWanList + 1), nullptr);
    EXPECT_EQ(FindWireRpc(0xFFFFFFFF), nullptr);
    EXPECT_EQ(FindWireMessage(kMonitorChanged + 1), nullptr);
    EXPECT_EQ(FindWireRpc(kMonitorChanged), nullptr);
}

}  // namespace
}  // namespace wap::gateway
