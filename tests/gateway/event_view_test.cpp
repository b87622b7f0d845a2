// Events as people and programs see them, and which of them are wanted.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "framework/codes.h"
#include "framework/error.h"
#include "monitor/event_filter.h"
#include "monitor/event_json.h"
#include "monitor/event_text.h"
#include "tap_events.h"

namespace wap::gateway {
namespace {

using test::Field;
using test::SetPart;
using test::TapAddresses;
using test::TapCall;
using test::TapMac;
using test::Word;

class EventTextTest : public testing::Test {
  protected:
    void SetUp() override {
        setenv("TZ", "UTC", 1);
        tzset();
    }
    void TearDown() override {
        unsetenv("TZ");
        tzset();
    }

    /// What is shown of a reply that is a text.
    static std::string ShownReply(const std::string &acText) {
        const std::string acShown =
            PrintEvent(TapCall(0x4710308D, "app_m", Word(1), acText + '\0'), 100);
        return acShown.substr(acShown.find("    reply"));
    }

    /// What stands in the headline behind the duration.
    static std::string Ending(const TapEvent &stEvent) {
        const std::string acLine = Headline(stEvent);
        return acLine.substr(acLine.find(" ms  ") + 5);
    }
};

TEST_F(EventTextTest, HeadlineTellsWhoAskedWhomForWhatAndHowItEnded) {
    EXPECT_EQ(Headline(TapMac()),
              "22:13:20.123456  jamvm/281    -> osgi_proxy  GetDeviceMac           0x47209032"
              "       0.312 ms  ok");
    TapEvent stInner = TapAddresses();
    strcpy(stInner.stHead.acSndApp, "osgi_proxy");
    stInner.stHead.uiSndMid = 0;
    stInner.ulDurationUs = 1234567;
    stInner.uiCode = kRefused;
    EXPECT_EQ(Headline(stInner),
              "22:13:20.123456  osgi_proxy   -> gulm        AddMonitoredAddresses  0x48304173"
              "    1234.567 ms  0xF7300001 refused");
    TapEvent stMessage = TapCall(39, "app_m", Word(1) + Word(2) + Word(2), "");
    stMessage.eKind = TapKind::kMessage;
    stMessage.bAnswered = false;
    EXPECT_EQ(Headline(stMessage),
              "22:13:20.123456  jamvm/281    -> app_m       TrafficMonitorChanged  39        "
              "       0.312 ms  ok");
    stMessage.uiId = 40;
    EXPECT_NE(Headline(stMessage).find("-> app_m       (unknown message)      40  "),
              std::string::npos);
}

TEST_F(EventTextTest, HeadlineTellsFaults) {
    TapEvent stEvent = TapMac();
    stEvent.stFault = Fault{FaultKind::kDrop, 0, 0, std::nullopt};
    stEvent.bAnswered = false;
    EXPECT_EQ(Ending(stEvent), "no answer  [fault: drop]");
    stEvent.stFault = Fault{FaultKind::kCode, 5, 20, std::nullopt};
    stEvent.bAnswered = true;
    stEvent.uiCode = 5;
    EXPECT_EQ(Ending(stEvent), "0x00000005  [fault: code 0x00000005 after 20 ms]");
    stEvent.stFault = Fault{FaultKind::kTruncate, 6, 0, std::nullopt};
    stEvent.uiCode = 0;
    EXPECT_EQ(Ending(stEvent), "ok  [fault: truncate 6]");
    stEvent.stFault = Fault{FaultKind::kNone, 0, 700, std::nullopt};
    EXPECT_EQ(Ending(stEvent), "ok  [fault: late by 700 ms]");
}

TEST_F(EventTextTest, NamesDoNothingToATerminal) {
    TapEvent stEvent = TapMac();
    strcpy(stEvent.stHead.acSndApp, "\x1B[2J\x7F\xC2\x9B\xFF");
    const std::string acLine = Headline(stEvent);
    EXPECT_NE(acLine.find("\"\\u001b[2J\\u007f\\u009b\\\\xff\"/281"), std::string::npos) << acLine;
    strcpy(stEvent.stHead.acSndApp, "");
    EXPECT_NE(Headline(stEvent).find("  \"\"/281"), std::string::npos);
}

TEST_F(EventTextTest, ContentsStandBelow) {
    const std::string acHead = Headline(TapMac()) + "\n";
    EXPECT_EQ(PrintEvent(TapMac(), 100), acHead +
                                             "    request  uiZero=0\n"
                                             "    reply    acMac=\"02:A1:B2:00:10:01\"\n");
    const std::string acAddresses = PrintEvent(TapAddresses(), 100);
    EXPECT_EQ(acAddresses.substr(acAddresses.find('\n') + 1),
              "    request  stAddrList.uiDataID=4097 stAddrList.uiOriginalLen=18"
              " stAddrList.uiCompressedLen=18\n"
              "             acBundleName=\"org.example.a\"\n"
              "    block    text=\"10.0.0.1,10.0.0.2\"\n"
              "    reply    uiUnused=0\n");
}

TEST_F(EventTextTest, RowsStandOnLinesOfTheirOwn) {
    TapEvent stRoutes =
        TapCall(test::kTapGetRoutes, "gulm", Word(4), Word(2) + Word(4097) + Word(224) + Word(224));
    stRoutes.eBlockSide = WireSide::kReply;
    std::string acRows;
    for (const char *pcDest : {"10.0.0.0", "10.1.0.0"}) {
        acRows += Field(pcDest, 16) + Field("255.255.0.0", 16) + Field("0.0.0.0", 16) +
                  Field("LAN\tx\x7F", 64);
    }
    SetPart(stRoutes, kTapBlock, acRows);
    const std::string acText = PrintEvent(stRoutes, 80);
    EXPECT_EQ(
        acText.substr(acText.find('\n') + 1),
        "    request  uiFamily=4\n"
        "    reply    uiNum=2 uiDataID=4097 uiOriginalLen=224 uiCompressedLen=224\n"
        "    block    rows[0] acDest=\"10.0.0.0\" acMask=\"255.255.0.0\" acGateway=\"0.0.0.0\"\n"
        "             acInterface=\"LAN\\tx\\u007f\"\n"
        "             rows[1] acDest=\"10.1.0.0\" acMask=\"255.255.0.0\" acGateway=\"0.0.0.0\"\n"
        "             acInterface=\"LAN\\tx\\u007f\"\n");
    stRoutes.astParts[kTapBlock].acHeld.resize(112);
    EXPECT_NE(PrintEvent(stRoutes, 80)
                  .find("    block    (the first 112 of 224 bytes)\n             rows[0] acDest"),
              std::string::npos)
        << PrintEvent(stRoutes, 80);
    stRoutes.astParts[kTapBlock].acHeld.clear();
    EXPECT_NE(PrintEvent(stRoutes, 80).find("    block    (224 bytes that can't be read)\n"),
              std::string::npos);
}

TEST_F(EventTextTest, TextsThatAreJsonAreTakenApart) {
    EXPECT_EQ(ShownReply(
                  R"({"Result":0,"List":[{"Name":"a\u001b","On":true},{"Name":"b"}],"N":[1,2.5]})"),
              "    reply    text.Result=0\n"
              "             text.List[0] Name=\"a\\u001b\" On=true\n"
              "             text.List[1] Name=\"b\"\n"
              "             text.N=[1,2.5]\n");
    EXPECT_EQ(ShownReply("{\"a b\\u001b\":1}"), "    reply    text.\"a b\\u001b\"=1\n")
        << "names are anybody's, too";
    EXPECT_EQ(ShownReply("{}"), "    reply    text={}\n");
    EXPECT_EQ(ShownReply("[1]"), "    reply    text=[1]\n");
    EXPECT_EQ(ShownReply("{\"cut\":"), "    reply    text=\"{\\\"cut\\\":\"\n");
}

TEST_F(EventTextTest, OfLongListsInTextsTheStartIsTakenApart) {
    std::string acText = "[{\"a\":1}";
    std::string acShown = "    reply    text[0] a=1\n";
    for (int i = 1; i < 131; ++i) {
        acText += ",{\"a\":1}";
        acShown += i < 128 ? "             text[" + std::to_string(i) + "] a=1\n" : "";
    }
    EXPECT_EQ(ShownReply(acText + "]"), acShown + "             (3 more)\n");
}

TEST_F(EventTextTest, TextsThatWouldGrowTooMuchStandAsTheyAre) {
    // A long name that would stand before each of many values.
    const std::string acName(10000, 'k');
    std::string acMembers;
    for (int i = 0; i < 2000; ++i) {
        acMembers += (i > 0 ? ",\"" : "\"") + std::to_string(i) + "\":1";
    }
    std::string acShown = acMembers;
    for (size_t i = 0; (i = acShown.find('"', i)) != std::string::npos; i += 2) {
        acShown.insert(i, 1, '\\');
    }
    EXPECT_EQ(ShownReply("{\"" + acName + "\":{" + acMembers + "}}"),
              "    reply    text=\"{\\\"" + acName + "\\\":{" + acShown + "}}\"\n");
    // Only the text within another one is too much.
    std::string acInner = "{\"" + std::string(400, 'k') + "\":[{}";
    for (int i = 1; i < 100; ++i) {
        acInner += ",{}";
    }
    acInner += "]}";
    std::string acQuoted = acInner;
    for (size_t i = 0; (i = acQuoted.find('"', i)) != std::string::npos; i += 2) {
        acQuoted.insert(i, 1, '\\');
    }
    EXPECT_EQ(
        ShownReply("{\"a\":1,\"b\":\"" + acQuoted + "\",\"c\":2}"),
        "    reply    text.a=1\n             text.b=\"" + acQuoted + "\"\n             text.c=2\n");
    // It takes a lot of memory to read a long one.
    const std::string acLong(70000, 'x');
    EXPECT_EQ(ShownReply("[\"" + acLong + "\"]"),
              "    reply    text=\"[\\\"" + acLong + "\\\"]\"\n");
}

TEST_F(EventTextTest, SecretsAndUnknownBytesAreNotShown) {
    const std::string acSecret =
        PrintEvent(TapCall(test::kTapGetPassword, "osgi_proxy", Word(0), Field("Sesame", 64)), 100);
    EXPECT_NE(acSecret.find("    reply    acPassword=\"(secret)\"\n"), std::string::npos)
        << acSecret;
    EXPECT_EQ(acSecret.find("Sesame"), std::string::npos);
    const std::string acUnknown =
        PrintEvent(TapCall(test::kTapUnknown, "osgi_proxy", "Sesame", "Open"), 100);
    EXPECT_NE(acUnknown.find("(unknown RPC)          0x12345678"), std::string::npos) << acUnknown;
    EXPECT_NE(acUnknown.find("    request  (6 bytes of an unknown RPC, which may be secret)\n"
                             "    reply    (4 bytes of an unknown RPC, which may be secret)\n"),
              std::string::npos)
        << acUnknown;
    // 68 bytes that nobody knows the meaning of, all zero.
    const std::string acDone =
        PrintEvent(TapCall(0x47103043, "usb_mngt", Word(1), std::string(68, '\0')), 100);
    EXPECT_NE(acDone.find("    reply    (68 bytes without a meaning)\n"), std::string::npos)
        << acDone;
}

TEST(EventJsonTest, HasEverything) {
    EXPECT_EQ(PrintJson(EventToJson(TapMac(), 0).get(), false),
              R"({"time":"2023-11-14T22:13:20.123456Z","kind":"rpc",)"
              R"("sender":{"name":"jamvm","pid":100,"module":281},)"
              R"("receiver":{"name":"osgi_proxy","pid":200},"id":"0x47209032",)"
              R"("name":"GetDeviceMac","durationUs":312,"answered":true,"code":0,)"
              R"("meaning":"ok","requestBytes":4,"request":{"uiZero":0},"replyBytes":18,)"
              R"("reply":{"acMac":"02:A1:B2:00:10:01"}})");
    TapEvent stAddresses = TapAddresses();
    stAddresses.uiDstMid = 9;
    stAddresses.uiCode = 5;
    stAddresses.stFault = Fault{FaultKind::kCode, 5, 0, std::nullopt};
    SetPart(stAddresses, kTapReply, "");
    EXPECT_EQ(PrintJson(EventToJson(stAddresses, 17).get(), false),
              R"({"lostBefore":17,"time":"2023-11-14T22:13:20.123456Z","kind":"rpc",)"
              R"("sender":{"name":"jamvm","pid":100,"module":281},)"
              R"("receiver":{"name":"gulm","pid":200,"module":9},"id":"0x48304173",)"
              R"("name":"AddMonitoredAddresses","durationUs":312,"answered":true,"code":5,)"
              R"("fault":"code 0x00000005","requestBytes":268,"request":{"stAddrList":)"
              R"({"uiDataID":4097,"uiOriginalLen":18,"uiCompressedLen":18},)"
              R"("acBundleName":"org.example.a"},"replyBytes":0,)"
              R"("block":{"of":"request","bytes":18,"content":{"text":"10.0.0.1,10.0.0.2"}}})");
    TapEvent stUnknown = TapCall(test::kTapUnknown, "gulm", "Sesame", "");
    stUnknown.bAnswered = false;
    stUnknown.stFault = Fault{FaultKind::kDrop, 0, 0, std::nullopt};
    stUnknown.uiSenderPid = 0;
    EXPECT_EQ(PrintJson(EventToJson(stUnknown, 0).get(), false),
              R"({"time":"2023-11-14T22:13:20.123456Z","kind":"rpc",)"
              R"("sender":{"name":"jamvm","module":281},"receiver":{"name":"gulm","pid":200},)"
              R"("id":"0x12345678","durationUs":312,"answered":false,"fault":"drop",)"
              R"("requestBytes":6})");
}

TEST(EventFilterTest, WithoutWordsWantsAll) {
    EXPECT_TRUE(EventFilter().Wants(TapMac()));
    EXPECT_TRUE(EventFilter().Wants(TapCall(test::kTapUnknown, "gulm", "", "")));
}

TEST(EventFilterTest, AsksForProcessesOnEitherSide) {
    EventFilter stFilter;
    stFilter.AddProcess("gulm");
    EXPECT_FALSE(stFilter.Wants(TapMac()));
    EXPECT_TRUE(stFilter.Wants(TapAddresses()));
    TapEvent stFrom = TapMac();
    strcpy(stFrom.stHead.acSndApp, "gulm");
    EXPECT_TRUE(stFilter.Wants(stFrom));
    stFilter.AddProcess("osgi_proxy");
    EXPECT_TRUE(stFilter.Wants(TapMac()));
}

TEST(EventFilterTest, AsksForRpcsByIdNameAndPattern) {
    for (const char *pcWord : {"0x47209032", "1193316402", "GetDeviceMac", "getdevicemac",
                               "GetDevice*", "*mac", "GetDeviceM?c"}) {
        EventFilter stFilter;
        stFilter.AddRpc(pcWord);
        EXPECT_TRUE(stFilter.Wants(TapMac())) << pcWord;
        EXPECT_FALSE(stFilter.Wants(TapAddresses())) << pcWord;
        stFilter.AddRpc("AddMonitoredAddresses");
        EXPECT_TRUE(stFilter.Wants(TapAddresses())) << pcWord;
    }
    EventFilter stMessages;
    stMessages.AddRpc("TrafficMonitorChanged");
    TapEvent stMessage = TapCall(39, "app_m", "", "");
    EXPECT_FALSE(stMessages.Wants(stMessage)) << "an RPC of that number";
    stMessage.eKind = TapKind::kMessage;
    EXPECT_TRUE(stMessages.Wants(stMessage));
    EventFilter stFilter;
    for (const char *pcWord : {"", "Nothing", "0x", "0x1ffffffff", "-1", "12 ", "Get"}) {
        EXPECT_THROW(stFilter.AddRpc(pcWord), GatewayError) << pcWord;
    }
    EXPECT_TRUE(stFilter.Wants(TapMac())) << "a word that is wrong adds nothing";
}

TEST(EventFilterTest, AsksForCodes) {
    EventFilter stFailed;
    stFailed.AddCode("failed");
    EventFilter stZero;
    stZero.AddCode("0");
    EventFilter stRefused;
    stRefused.AddCode("0xF7300001");
    TapEvent stEvent = TapMac();
    EXPECT_FALSE(stFailed.Wants(stEvent));
    EXPECT_TRUE(stZero.Wants(stEvent));
    EXPECT_FALSE(stRefused.Wants(stEvent));
    stEvent.bAnswered = false;
    EXPECT_TRUE(stFailed.Wants(stEvent)) << "no answer";
    EXPECT_FALSE(stZero.Wants(stEvent));
    stEvent.bAnswered = true;
    stEvent.uiCode = kRefused;
    EXPECT_TRUE(stFailed.Wants(stEvent));
    EXPECT_FALSE(stZero.Wants(stEvent));
    EXPECT_TRUE(stRefused.Wants(stEvent));
    stRefused.AddProcess("gulm");
    EXPECT_FALSE(stRefused.Wants(stEvent)) << "each kind must be right";
    EXPECT_THROW(stZero.AddCode("some"), GatewayError);
}

TEST(CodesTest, AreDescribed) {
    EXPECT_EQ(DescribeCode(0), "ok");
    EXPECT_EQ(DescribeCode(5), "0x00000005");
    EXPECT_EQ(DescribeCode(0xF700000B), "0xF700000B unknown RPC");
    EXPECT_EQ(DescribeCode(0xF7300002), "0xF7300002 table full");
}

}  // namespace
}  // namespace wap::gateway
