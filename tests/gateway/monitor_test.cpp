// gatewayctl monitor: what it shows of a gateway's calls, and how it ends.
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <regex>
#include <sstream>

#include "framework/error.h"
#include "framework/files.h"
#include "framework/json_value.h"
#include "vt_ssp_basic.h"
#include "watcher.h"

namespace wap::test {

using namespace std::string_literals;

namespace {

constexpr char kMacLine[] =
    "TIME  gateway_tests -> osgi_proxy  GetDeviceMac           0x47209032 TOOK  ok\n";

/// The lines of a text that hold a part.
std::string LinesWith(const std::string &acText, const std::string &acPart) {
    std::istringstream stText(acText);
    std::string acLines;
    for (std::string acLine; std::getline(stText, acLine);) {
        if (acLine.find(acPart) != std::string::npos) {
            acLines += acLine + "\n";
        }
    }
    return acLines;
}

/// Each line as the JSON object that it must be.
std::vector<gateway::JsonValue> Objects(const std::string &acLines) {
    std::vector<gateway::JsonValue> astObjects;
    std::istringstream stLines(acLines);
    for (std::string acLine; std::getline(stLines, acLine);) {
        astObjects.push_back(gateway::ParseJson(acLine, "a line"));
        EXPECT_EQ(gateway::PrintJson(astObjects.back().get(), false), acLine);
    }
    return astObjects;
}

/// The block of a page that shows a monitor.
std::string Shown(const char *pcPage) {
    const std::string acPage =
        gateway::ReadTextFile(std::string(WAP_TEST_ROOT) + "/" + pcPage).value_or("");
    const std::string acBegin = "$ gatewayctl monitor\n";
    const size_t uiBegin = acPage.find("```\n" + acBegin);
    EXPECT_NE(uiBegin, std::string::npos) << pcPage;
    if (uiBegin == std::string::npos) {
        return "";
    }
    const size_t uiEnd = acPage.find("```\n", uiBegin + 4);
    return acPage.substr(uiBegin + 4, uiEnd - uiBegin - 4);
}

/// Lines of a monitor without what differs from run to run, and from one who calls to another.
std::string WithoutNumbers(const std::string &acLines) {
    static const std::regex kSender("TIME  \\S+ +->");
    static const std::regex kBlock("uiDataID=\\d+");
    return std::regex_replace(std::regex_replace(WithoutTimes(acLines), kSender, "TIME  SENDER ->"),
                              kBlock, "uiDataID=BLOCK");
}

std::string TextAt(const gateway::JsonValue &stObject, const char *pcKey) {
    return gateway::GetText(stObject.get(), pcKey).value_or("(none)");
}

}  // namespace

TEST_F(WatchTest, CallsAreShownAsTheyPass) {
    const pid_t iWatch = Watch("watch", {});
    EXPECT_EQ(Err("watch"), "gatewayctl: watching osgi_proxy, cwmp\n");
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    Await("watch.out", "acMac");
    EXPECT_EQ(WithoutTimes(Out("watch")), std::string(kMacLine) +
                                              "    request  uiZero=0\n"
                                              "    reply    acMac=\"02:A1:B2:00:10:01\"\n")
        << "before it ends";
    EXPECT_EQ(Query("cwmp", kMacRpc, 18).uiStatus, 0xF700000Bu);
    (void)Ctl({"status"});
    CtlOk({"get", "device.vendor"});
    Await("watch.out", "unknown RPC\n");
    EndWatch("watch", iWatch, SIGINT);
    EXPECT_EQ(LinesWith(WithoutTimes(Out("watch")), " -> "),
              std::string(kMacLine) +
                  "TIME  gateway_tests -> cwmp        GetDeviceMac"
                  "           0x47209032 TOOK  0xF700000B unknown RPC\n")
        << "gatewayctl's own questions are no calls";
    EXPECT_EQ(Err("watch"),
              "gatewayctl: watching osgi_proxy, cwmp\ngatewayctl: 2 seen, 2 shown, 0 lost\n");
    EXPECT_EQ(Files("monitor"), "");
}

TEST_F(WatchTest, PagesShowWhatIsPrinted) {
    CtlOk({"start", "--timeout", "60"});
    const pid_t iWatch = Watch("watch", {});
    EXPECT_EQ(Query("osgi_proxy", 0x47209050, 64).uiStatus, 0u);
    const RpcReply stTable = Query("gulm", 0x47309029, 12);
    EXPECT_EQ(stTable.uiStatus, 0u);
    (void)BlockOf(stTable);
    Await("watch.out", "GetPortMappingTable");
    EXPECT_EQ(Call("gulm", 0x47301049, Word(0) + Word(269488129), 284).uiStatus, 0u);
    Await("watch.out", "GetWanRecord");
    CtlOk({"fault", "osgi_proxy", "0x47209036", "--code", "5", "--times", "1"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209036, 4).uiStatus, 5u);
    Await("watch.out", "[fault: code 0x00000005]\n    request  uiZero=0\n");
    EndWatch("watch", iWatch);
    const std::string acErr = Err("watch");
    const size_t uiFirst = acErr.find('\n') + 1;
    const std::string acAll = WithoutNumbers("$ gatewayctl monitor\n" + acErr.substr(0, uiFirst) +
                                             Out("watch") + acErr.substr(uiFirst));
    EXPECT_EQ(WithoutNumbers(Shown("docs/monitor.md")), acAll);
    const std::string acShort = WithoutNumbers(Shown("README.md"));
    EXPECT_EQ(acShort, acAll.substr(0, acShort.size()));
}

TEST_F(WatchTest, JsonIsAnObjectForEachCall) {
    const pid_t iWatch = Watch("watch", {"--json"});
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--drop", "--times", "1"});
    EXPECT_EQ(Query("osgi_proxy", kMacRpc, 18, 300).uiStatus, 0xF7000004u);
    Await("watch.out", "\"drop\"");
    EndWatch("watch", iWatch);
    const auto astObjects = Objects(Out("watch"));
    ASSERT_EQ(astObjects.size(), 2u);
    EXPECT_TRUE(std::regex_match(TextAt(astObjects[0], "time"),
                                 std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z)")));
    EXPECT_EQ(TextAt(astObjects[0], "id"), "0x47209032");
    EXPECT_EQ(TextAt(astObjects[0], "name"), "GetDeviceMac");
    json_object *pstSender = gateway::FindMember(astObjects[0].get(), "sender");
    EXPECT_EQ(gateway::GetText(pstSender, "name"), "gateway_tests");
    EXPECT_EQ(gateway::GetNumber(pstSender, "pid"), getpid());
    json_object *pstReceiver = gateway::FindMember(astObjects[0].get(), "receiver");
    EXPECT_EQ(gateway::GetNumber(pstReceiver, "pid"),
              strtol(ReadFile("osgi_proxy.pid").c_str(), nullptr, 10));
    EXPECT_EQ(gateway::GetNumber(astObjects[0].get(), "code"), 0);
    EXPECT_GE(gateway::GetNumber(astObjects[0].get(), "durationUs").value_or(-1), 0);
    EXPECT_EQ(gateway::GetText(gateway::FindMember(astObjects[0].get(), "reply"), "acMac"),
              "02:A1:B2:00:10:01");
    EXPECT_EQ(TextAt(astObjects[1], "fault"), "drop");
    EXPECT_FALSE(json_object_get_boolean(gateway::FindMember(astObjects[1].get(), "answered")));
    EXPECT_EQ(gateway::FindMember(astObjects[1].get(), "code"), nullptr);
}

TEST_F(WatchTest, FaultsAreShown) {
    const pid_t iWatch = Watch("watch", {});
    const struct {
        std::vector<std::string> astFault;
        const char *pcEnding;
    } astFaults[] = {
        {{"--code", "5"}, "0x00000005  [fault: code 0x00000005]\n"},
        {{"--truncate", "6"},
         "ok  [fault: truncate 6]\n    request  uiZero=0\n"
         "    reply    acMac=\"02:A1:\" bytesMissing=12\n"},
        {{"--fill", "65"},
         "ok  [fault: fill 65]\n    request  uiZero=0\n"
         "    reply    acMac=\"AAAAAAAAAAAAAAAAAA\"\n"},
        {{"--garbage"}, "ok  [fault: garbage]\n"},
        {{"--delay", "30"}, "ok  [fault: late by 30 ms]\n"},
    };
    for (const auto &stFault : astFaults) {
        std::vector<std::string> astWords = {"fault", "osgi_proxy", "0x47209032", "--times", "1"};
        astWords.insert(astWords.end(), stFault.astFault.begin(), stFault.astFault.end());
        CtlOk(astWords);
        (void)AskForMac();
        Await("watch.out", stFault.pcEnding);
    }
    EndWatch("watch", iWatch);
    EXPECT_TRUE(std::regex_search(Out("watch"), std::regex(R"( (3\d|[4-9]\d|\d{3,})\.\d{3} ms  ok)"
                                                           R"(  \[fault: late by 30 ms\])")))
        << "the delay is part of it: " << Out("watch");
}

TEST_F(WatchTest, FiltersLeaveOutTheOthers) {
    const pid_t iProcess = Watch("process", {"--brief", "--process", "cwmp"});
    const pid_t iRpc = Watch("rpc", {"--brief", "--rpc", "GetDeviceUp*", "--rpc", "0x4720136A"});
    const pid_t iCode = Watch("code", {"--brief", "--code", "failed"});
    const pid_t iAll = Watch("all", {"--brief"});
    (void)AskForMac();
    (void)Query("osgi_proxy", 0x47209036, 4);
    // Two processes tell independently of each other.
    Await("all.out", "GetDeviceUpTime");
    Await("rpc.out", "GetDeviceUpTime");
    // The last one is shown by all that count them.
    (void)Query("cwmp", kMacRpc, 18);
    (void)Query("cwmp", 0x4720136A, 265);
    for (const char *pcName : {"process", "rpc", "all"}) {
        Await(std::string(pcName) + ".out", "GetDeviceIdentity");
    }
    Await("code.out", "unknown RPC\n");
    const std::string acMac = " osgi_proxy  GetDeviceMac           0x47209032 TOOK  ok\n";
    const std::string acUpTime = " osgi_proxy  GetDeviceUpTime        0x47209036 TOOK  ok\n";
    const std::string acIdentity = " cwmp        GetDeviceIdentity      0x4720136A TOOK  ok\n";
    const std::string acUnknown =
        " cwmp        GetDeviceMac           0x47209032 TOOK  0xF700000B unknown RPC\n";
    const std::string acFrom = "TIME  gateway_tests ->";
    EXPECT_EQ(WithoutTimes(Out("process")), acFrom + acUnknown + acFrom + acIdentity);
    EXPECT_EQ(WithoutTimes(Out("rpc")), acFrom + acUpTime + acFrom + acIdentity);
    EXPECT_EQ(WithoutTimes(Out("code")), acFrom + acUnknown);
    EXPECT_EQ(WithoutTimes(Out("all")),
              acFrom + acMac + acFrom + acUpTime + acFrom + acUnknown + acFrom + acIdentity);
    EndWatch("process", iProcess);
    EndWatch("rpc", iRpc);
    EndWatch("code", iCode);
    EndWatch("all", iAll);
    EXPECT_NE(Err("rpc").find("gatewayctl: 4 seen, 2 shown, 0 lost\n"), std::string::npos);
}

TEST_F(WatchTest, ProcessesAreShownAskingEachOther) {
    CtlOk({"start", "app_m", "--timeout", "60"});
    const pid_t iWatch = Watch("watch", {"--brief"});
    EXPECT_EQ(Call("osgi_proxy", 0x4720909E, Field("New name", 257), 4).uiStatus, 0u);
    // Two processes tell independently of each other.
    Await("watch.out", "gateway_tests -> osgi_proxy");
    Await("watch.out", "-> app_m");
    EndWatch("watch", iWatch);
    const std::string acInner =
        "TIME  osgi_proxy   -> app_m       SetGatewayName         0x4720909E TOOK  ok\n";
    const std::string acOuter =
        "TIME  gateway_tests -> osgi_proxy  SetGatewayName         0x4720909E TOOK  ok\n";
    const std::string acOut = WithoutTimes(Out("watch"));
    EXPECT_TRUE(acOut == acInner + acOuter || acOut == acOuter + acInner) << acOut;
}

TEST_F(WatchTest, BlocksAndMessagesAreShown) {
    CtlOk({"start", "app_m", "gulm", "--timeout", "60"});
    const pid_t iWatch = Watch("watch", {"--json"});
    // In a request, in a reply, in a message, and one that is not there.
    EXPECT_EQ(
        Call("gulm", 0x48304173, NewBlock("10.0.0.1\0"s) + Field("org.example.a", 256), 4).uiStatus,
        0u);
    EXPECT_EQ(BlockOf(Query("gulm", 0x483041A5, 20), 8), "org.example.a[\"10.0.0.1\"]\0"s);
    // Two processes tell independently of each other.
    Await("watch.out", "GetMonitoredAddresses");
    const std::string acNotice = NewBlock('\1' + Field("org.example.b", 128) + "10.0.0.2\0"s);
    EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acNotice.data(), 12), 0u);
    Await("watch.out", "TrafficMonitorChanged");
    EXPECT_NE(Call("gulm", 0x48304174, Word(1) + Word(9) + Word(9) + Field("org.example.c", 256), 4)
                  .uiStatus,
              0u);
    Await("watch.out", "org.example.c");
    EndWatch("watch", iWatch);
    const auto astObjects = Objects(Out("watch"));
    ASSERT_EQ(astObjects.size(), 4u);
    const auto fnBlock = [&](size_t uiAt) {
        return gateway::PrintJson(gateway::FindMember(astObjects[uiAt].get(), "block"), false);
    };
    EXPECT_EQ(fnBlock(0), R"({"of":"request","bytes":9,"content":{"text":"10.0.0.1"}})");
    EXPECT_EQ(fnBlock(1),
              R"({"of":"reply","bytes":26,"content":{"text":"org.example.a[\"10.0.0.1\"]"}})");
    EXPECT_EQ(fnBlock(2), R"({"of":"request","bytes":138,"content":{"ucOperation":1,)"
                          R"("acBundleName":"org.example.b","text":"10.0.0.2"}})");
    EXPECT_EQ(TextAt(astObjects[2], "kind"), "message");
    EXPECT_EQ(TextAt(astObjects[2], "id"), "39");
    EXPECT_FALSE(json_object_get_boolean(gateway::FindMember(astObjects[2].get(), "answered")));
    EXPECT_EQ(gateway::GetNumber(astObjects[2].get(), "code"), 0);
    EXPECT_EQ(fnBlock(3), R"({"of":"request","bytes":9,"bytesHeld":0})");
    EXPECT_EQ(Run({"ls", m_acDir + "/vdata"}).acOut, "") << "nobody who watches keeps a block";
}

TEST_F(WatchTest, SecretsAreNotShown) {
    CtlOk({"start", "tarn", "--timeout", "60"});
    CtlOk({"set", "device.password", "Sesame-77"});
    const pid_t iText = Watch("text", {"--capture", m_acDir + "/masked.pcapng"});
    const pid_t iJson =
        Watch("json", {"--json", "--capture", m_acDir + "/open.pcapng", "--with-secrets"});
    EXPECT_EQ(TextIn(Query("osgi_proxy", 0x47209050, 64)), "Sesame-77");
    EXPECT_EQ(Call("osgi_proxy", 0x47209044, Field("Sesame-88", 128), 4).uiStatus, 0u);
    // An RPC of which nobody knows what it holds, and a request that is too long.
    EXPECT_NE(Call("osgi_proxy", 0x12345678, "Sesame-99", 4).uiStatus, 0u);
    EXPECT_NE(Call("osgi_proxy", 0x47209044, Field("", 128) + "Sesame-66", 4).uiStatus, 0u);
    Await("text.out", "0xF7000001 bad request\n");
    Await("json.out", "\"bad request\"");
    EndWatch("text", iText);
    EndWatch("json", iJson);
    EXPECT_EQ(CountOf(Out("text"), "acPassword=\"(secret)\""), 3u) << Out("text");
    EXPECT_EQ(CountOf(Out("json"), "\"acPassword\":\"(secret)\""), 3u) << Out("json");
    for (const char *pcFile : {"text.out", "json.out", "masked.pcapng"}) {
        EXPECT_EQ(ReadFile(pcFile).find("Sesame"), std::string::npos) << pcFile;
        EXPECT_NE(ReadFile(pcFile).find("(secret)"), std::string::npos) << pcFile;
    }
    for (const char *pcSecret : {"Sesame-66", "Sesame-77", "Sesame-88", "Sesame-99"}) {
        EXPECT_NE(ReadFile("open.pcapng").find(pcSecret), std::string::npos) << pcSecret;
    }
}

TEST_F(WatchTest, EndsAfterSoManyOrSoLong) {
    const pid_t iCount = Watch("count", {"--count", "2"});
    const pid_t iSeconds = Watch("seconds", {"--seconds", "5"});
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(AskForMac().uiStatus, 0u);
    }
    EXPECT_EQ(GatewayTest::Await(iCount), 0);
    EXPECT_EQ(CountOf(Out("count"), "GetDeviceMac"), 2u);
    EXPECT_NE(Err("count").find(" 2 shown, 0 lost\n"), std::string::npos) << Err("count");
    EXPECT_TRUE(Soon([this] { return CountOf(Out("seconds"), "GetDeviceMac") == 3; }));
    EXPECT_EQ(GatewayTest::Await(iSeconds), 0);
}

TEST_F(WatchTest, EndsQuietlyWhenNobodyReads) {
    const pid_t iPipe = WatchWith(R"("$@" 2>"$0.err" | head -n 1)", "pipe", {"--brief"});
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    EXPECT_EQ(GatewayTest::Await(iPipe), 0);
    EXPECT_EQ(WithoutTimes(ReadFile("test.out")), kMacLine);
    EXPECT_EQ(ReadFile("pipe.err"), "gatewayctl: watching osgi_proxy, cwmp\n");
    EXPECT_EQ(Files("monitor"), "");
}

TEST_F(WatchTest, ProcessesThatStartAreWatchedFromTheirFirstCallOn) {
    const pid_t iWatch = Watch("watch", {"--brief"});
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    for (const char *pcEnd : {"kill", "stop"}) {
        CtlOk({pcEnd, "osgi_proxy"});
        CtlOk({"start", "osgi_proxy", "--timeout", "60"});
        EXPECT_EQ(AskForMac().uiStatus, 0u);
    }
    Await("watch.err",
          "osgi_proxy has started\ngatewayctl: osgi_proxy has ended\n"
          "gatewayctl: osgi_proxy has started\n");
    EXPECT_TRUE(Soon([&] { return CountOf(Out("watch"), "GetDeviceMac") == 3; })) << Out("watch");
    EndWatch("watch", iWatch);
}

TEST_F(WatchTest, CanBeThereBeforeTheGateway) {
    CtlOk({"stop"});
    const pid_t iWatch = Watch("watch", {"--brief"});
    EXPECT_EQ(Err("watch"), "gatewayctl: watching for processes that start; none runs\n");
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(AskForMac().uiStatus, 0u);
    Await("watch.out", "GetDeviceMac");
    CtlOk({"stop"});
    Await("watch.err", "osgi_proxy has ended\n");
    EndWatch("watch", iWatch);
    EXPECT_EQ(WithoutTimes(Out("watch")), kMacLine);
}

TEST_F(GatewayTest, WrongUseOfMonitorAndReplayIsExplained) {
    const struct {
        std::vector<std::string> astArguments;
        const char *pcSays;
    } astCases[] = {
        {{"monitor", "extra"}, "extra"},
        {{"monitor", "--rpc", "Nothing"}, "no RPC and no message is called \"Nothing\""},
        {{"monitor", "--code", "some"}, "\"some\" is no code"},
        {{"monitor", "--count", "0"}, "is no number from 1 to"},
        {{"monitor", "--seconds", "86401"}, "from 1 to 86400"},
        {{"monitor", "--json", "--brief"}, "--brief"},
        {{"monitor", "--with-secrets"}, "--capture"},
        {{"monitor", "--quiet"}, "--capture"},
        {{"replay"}, "FILE is required"},
        {{"replay", "f", "--speed", "0"}, "0.001"},
        {{"replay", "f", "--speed", "2", "--fast"}, "--speed"},
        {{"replay", "f", "--rpc", "Nothing"}, "\"Nothing\""},
    };
    for (const auto &stCase : astCases) {
        const Outcome stOutcome = Ctl(stCase.astArguments);
        EXPECT_EQ(stOutcome.iExit, 2) << stCase.pcSays;
        EXPECT_EQ(stOutcome.acOut, "") << stCase.pcSays;
        EXPECT_NE(stOutcome.acErr.find(stCase.pcSays), std::string::npos) << stOutcome.acErr;
    }
    const Outcome stCapture = Ctl({"monitor", "--capture", "/nowhere/at/all.pcapng"});
    EXPECT_EQ(stCapture.iExit, 1);
    EXPECT_NE(stCapture.acErr.find("cannot make /nowhere/at/all.pcapng: No such file"),
              std::string::npos)
        << stCapture.acErr;
    EXPECT_NE(CtlOk({"monitor", "--help"}).find("--with-secrets"), std::string::npos);
    EXPECT_NE(CtlOk({"monitor", "--help"}).find("who sends may have any name"), std::string::npos);
    EXPECT_NE(CtlOk({"replay", "--help"}).find("Exit code 1"), std::string::npos);
}

}  // namespace wap::test
