// gatewayctl and answers that no message has room for.
#include <stdio.h>
#include <string.h>

#include <mutex>

#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

constexpr int kHosts = 2000;
constexpr uint32_t kControlGet = 0x7F000002;

std::string Printed(const char *pcFormat, int iHost) {
    char acText[400];
    // cppcheck-suppress wrongPrintfScanfArgNum ; a format may leave out what it does not print
    EXPECT_LT(snprintf(acText, sizeof(acText), pcFormat, iHost >> 8, iHost & 0xFF, iHost >> 8,
                       iHost & 0xFF, iHost),
              static_cast<int>(sizeof(acText)));
    return acText;
}

std::string ForEachHost(const char *pcFormat) {
    std::string acText;
    for (int iHost = 0; iHost < kHosts; ++iHost) {
        acText += Printed(pcFormat, iHost);
    }
    return acText;
}

/// What a process that can't be trusted answers.
class OddAnswer {
  public:
    void Set(const std::string &acText) {
        const std::scoped_lock stLock(m_stMutex);
        m_acText = acText;
    }
    std::string Get() {
        const std::scoped_lock stLock(m_stMutex);
        return m_acText;
    }

  private:
    std::mutex m_stMutex;
    std::string m_acText;
};

uint32_t GiveOddAnswer(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen) {
    const std::string acText = static_cast<OddAnswer *>(pvContext)->Get();
    if (pstCall->uiRpcId != kControlGet) {
        return VT_HOST_ERR_UNKNOWN_RPC;
    }
    if (acText.empty()) {
        return VT_HOST_ERR_TOO_LONG;
    }
    memcpy(pstCall->pvRsp, acText.c_str(), acText.size() + 1);
    *puiRspLen = static_cast<uint32_t>(acText.size() + 1);
    return 0;
}

/// A block with those bytes; its id.
uint32_t BlockOf(std::string_view pcBytes) {
    VDataDesc stDesc = {};
    EXPECT_EQ(VT_VDATA_CreShm(static_cast<uint32_t>(pcBytes.size()), &stDesc), 0u);
    EXPECT_EQ(
        VT_VDATA_UpdateData(stDesc.uiDataID, static_cast<uint32_t>(pcBytes.size()), pcBytes.data()),
        0u);
    return stDesc.uiDataID;
}

std::string BlockAnswer(uint32_t uiId, uint64_t uiOriginal, uint64_t uiStored) {
    return "{\"block\":{\"id\":" + std::to_string(uiId) +
           ",\"original\":" + std::to_string(uiOriginal) +
           ",\"stored\":" + std::to_string(uiStored) + "}}";
}

}  // namespace

TEST_F(GatewayTest, HomeOfTwoThousandHostsIsShown) {
    CtlOk({"start", "cwmp", "--timeout", "60"});  // brings the shipped home
    CtlOk({"stop"});
    std::string acHome = ReadFile("state/home.json");
    constexpr char kList[] = "\"hosts\": [";
    const size_t uiList = acHome.find(kList);
    ASSERT_NE(uiList, std::string::npos);
    acHome.insert(
        uiList + strlen(kList),
        ForEachHost("{\"mac\": \"02:FF:00:00:%02X:%02X\", \"ip\": \"10.0.%d.%d\","
                    " \"name\": \"guest-%d\", \"class\": \"PC\", \"interface\": \"LAN1\","
                    " \"active\": true, \"onlineTime\": 0, \"rxBytes\": 0, \"txBytes\": 0,"
                    " \"rxPackets\": 0, \"txPackets\": 0, \"upSpeed\": 0, \"downSpeed\": 0},\n"));
    WriteFile("own.json", acHome);
    CtlOk({"start", "--fresh", "--home", m_acDir + "/own.json", "--timeout", "120"});

    std::string acRows;
    for (int iHost = 0; iHost < kHosts; ++iHost) {
        char acRow[100];
        snprintf(
            acRow, sizeof(acRow), "%-18s %-16s %-10s %-8s %s\n",
            Printed("02:FF:00:00:%02X:%02X", iHost).c_str(),
            ("10.0." + std::to_string(iHost >> 8) + "." + std::to_string(iHost & 0xFF)).c_str(),
            "LAN1", "PC", ("guest-" + std::to_string(iHost)).c_str());
        acRows += acRow;
    }
    const std::string acList = CtlOk({"host", "list"});
    const size_t uiRows = acList.find('\n') + 1;
    EXPECT_TRUE(acList.substr(uiRows).starts_with(acRows)) << acList.substr(0, 400);
    EXPECT_EQ(CountOf(acList.substr(uiRows + acRows.size()), "\n"), 5u) << "those of the home";

    const std::string acHosts = CtlOk({"get", "hosts"});
    EXPECT_GT(acHosts.size(), VT_HOST_MAX_PAYLOAD);
    EXPECT_EQ(CountOf(acHosts, "\"mac\""), 2005u);
    EXPECT_EQ(CountOf(acHosts, "\"name\": \"guest-"), 2000u);
    EXPECT_TRUE(acHosts.starts_with("[\n")) << acHosts.substr(0, 100);
    EXPECT_TRUE(acHosts.ends_with("\n]\n")) << acHosts.substr(acHosts.size() - 100);

    const std::string acAll = CtlOk({"get"});
    EXPECT_EQ(CountOf(acAll, "\"mac\": \"02:FF:"), 2000u);
    EXPECT_EQ(CountOf(acAll, "\n  \"device\":"), 1u);
    EXPECT_EQ(CountOf(acAll, "\n  \"attachControl\":"), 1u);

    // The blocks are gone; the folder is there because there were some.
    const Outcome stBlocks = Run({"ls", m_acDir + "/vdata"});
    EXPECT_EQ(stBlocks.iExit, 0);
    EXPECT_EQ(stBlocks.acOut, "");
}

TEST_F(GatewayTest, AnswerInABlockIsNotTrusted) {
    const std::string acShort = "{\"value\":\"from a block\"}";
    const std::string acLong = "{\"value\":\"" + std::string(3000, 'x') + "\"}";
    std::string acPacked(acLong.size() + 1, '\0');
    auto uiPacked = static_cast<uint32_t>(acPacked.size());
    ASSERT_EQ(VT_OS_Compress(acLong.c_str(), uiPacked, acPacked.data(), &uiPacked), 0u);
    acPacked.resize(uiPacked);

    const struct {
        std::string acBytes;  // of the block
        uint64_t uiOriginal;
        uint64_t uiStored;
        std::string acOut;
        const char *pcSays;
    } astCases[] = {
        {acShort, 24, 24, "from a block\n", ""},
        {acPacked, acLong.size() + 1, uiPacked, std::string(3000, 'x') + "\n", ""},
        {acShort, 24, 25, "", "can't be a text"},
        {acShort, 0, 24, "", "impossible"},
        {acShort, 24, 0, "", "impossible"},
        {acShort, 0x100000000, 24, "", "impossible"},
        {acShort, 0xFFFFFFFF, 24, "", "can't be a text"},
        {acShort, 2000, 2000, "", "cannot read a bulk block"},
        {acShort, 3000, 24, "", "is damaged"},
        {acPacked, acLong.size() + 1, acLong.size() + 1, "", "can't be a text"},
        {acPacked, acLong.size() - 1, uiPacked, "", "is damaged"},
        {acShort, 10, 10, "", "no valid JSON"},
        {"{\"error\":\"no luck\"}", 19, 19, "", "gatewayctl: no luck"},
    };
    OddAnswer stAnswer;
    ASSERT_EQ(VT_MSG_Init("app_m", 0, 0, 0), 0u);
    ASSERT_EQ(VT_HOST_Serve(GiveOddAnswer, &stAnswer), 0u);
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(std::to_string(stCase.uiOriginal) + " " + std::to_string(stCase.uiStored));
        const uint32_t uiId = BlockOf(stCase.acBytes);
        stAnswer.Set(BlockAnswer(uiId, stCase.uiOriginal, stCase.uiStored));
        const Outcome stGet = Ctl({"get", "hosts"});
        EXPECT_EQ(stGet.iExit, stCase.acOut.empty() ? 1 : 0);
        EXPECT_EQ(stGet.acOut, stCase.acOut);
        EXPECT_NE(stGet.acErr.find(stCase.pcSays), std::string::npos) << stGet.acErr;
        const bool bNamed = stGet.acErr.find("impossible") == std::string::npos;
        EXPECT_EQ(VT_VDATA_FreeShm(uiId), bNamed ? VT_HOST_ERR_NO_BLOCK : 0u) << "freed";
    }
    for (const char *pcNoBlock :
         {"{\"block\":{}}", "{\"block\":7}", "{\"block\":{\"id\":\"1\"}}"}) {
        stAnswer.Set(pcNoBlock);
        const Outcome stGet = Ctl({"get", "hosts"});
        EXPECT_EQ(stGet.iExit, 1);
        EXPECT_NE(stGet.acErr.find("the answer of app_m is lost"), std::string::npos)
            << stGet.acErr;
    }
    stAnswer.Set("");
    const Outcome stTooLong = Ctl({"get", "hosts"});
    EXPECT_EQ(stTooLong.iExit, 1);
    EXPECT_NE(stTooLong.acErr.find("longer than the 131072 bytes of a message"), std::string::npos)
        << stTooLong.acErr;
    EXPECT_EQ(VT_HOST_Stop(), 0u);
}

}  // namespace wap::test
