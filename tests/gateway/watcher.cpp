#include "watcher.h"

#include <unistd.h>

#include <chrono>
#include <regex>
#include <thread>

#include "vt_ssp_basic.h"

namespace wap::test {

RpcReply AskForMac() {
    return Query("osgi_proxy", kMacRpc, 18);
}

std::string NewBlock(const std::string &acBytes) {
    const auto uiLength = static_cast<uint32_t>(acBytes.size());
    VDataDesc stDesc = {0, uiLength, uiLength};
    EXPECT_EQ(VT_VDATA_CreShm(uiLength, &stDesc), 0u);
    EXPECT_EQ(VT_VDATA_UpdateData(stDesc.uiDataID, uiLength, acBytes.data()), 0u);
    return Word(stDesc.uiDataID) + Word(uiLength) + Word(uiLength);
}

std::string WithoutTimes(const std::string &acLines) {
    static const std::regex kTime(R"(\d\d:\d\d:\d\d\.\d{6})");
    static const std::regex kTook(R"( +\d+\.\d{3} ms)");
    return std::regex_replace(std::regex_replace(acLines, kTime, "TIME"), kTook, " TOOK");
}

size_t NumberBefore(const std::string &acText, const std::string &acWord) {
    std::smatch stMatch;
    return std::regex_search(acText, stMatch, std::regex("(\\d+) " + acWord))
               ? std::stoul(stMatch[1].str())
               : 0;
}

bool Soon(const std::function<bool()> &fnIsSo) {
    for (int iWait = 0; iWait < 6000; ++iWait) {
        if (fnIsSo()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

void WatchTest::SetUp() {
    // Those that end a monitor must not have been switched off for the tests.
    signal(SIGINT, SIG_DFL);
    signal(SIGTERM, SIG_DFL);
    RunningGatewayTest::SetUp();
}

pid_t WatchTest::WatchWith(const std::string &acScript, const std::string &acName,
                           const std::vector<std::string> &astArguments) const {
    std::vector<std::string> astWords = {"sh", "-c", acScript, m_acDir + "/" + acName};
    std::vector<std::string> astMonitor = {"monitor"};
    astMonitor.insert(astMonitor.end(), astArguments.begin(), astArguments.end());
    for (const std::string &acWord : CtlWords(astMonitor)) {
        astWords.push_back(acWord);
    }
    // What an earlier one has said must not be taken for this one's.
    (void)unlink((m_acDir + "/" + acName + ".err").c_str());
    const pid_t iPid = Launch(astWords);
    Await(acName + ".err", "gatewayctl: watching ");
    return iPid;
}

pid_t WatchTest::Watch(const std::string &acName,
                       const std::vector<std::string> &astArguments) const {
    (void)unlink((m_acDir + "/" + acName + ".out").c_str());
    return WatchWith(R"(exec "$@" >"$0.out" 2>"$0.err")", acName, astArguments);
}

void WatchTest::Await(const std::string &acFile, const std::string &acPart) const {
    EXPECT_TRUE(Soon([&] { return ReadFile(acFile).find(acPart) != std::string::npos; }))
        << acFile << " without " << acPart << ":\n"
        << ReadFile(acFile);
}

void WatchTest::EndWatch(const std::string &acName, pid_t iPid, int iSignal) const {
    EXPECT_EQ(kill(iPid, iSignal), 0);
    EXPECT_EQ(GatewayTest::Await(iPid), 0) << Err(acName);
    EXPECT_NE(Err(acName).find(" lost\n"), std::string::npos) << Err(acName);
}

std::string WatchTest::Files(const std::string &acBegin) const {
    return Run({"sh", "-c", R"(cd "$0" && ls | grep "^$1")", m_acDir, acBegin}).acOut;
}

}  // namespace wap::test
