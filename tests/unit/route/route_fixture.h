// What the tests of the routes share.
#ifndef WAP_TESTS_UNIT_ROUTE_FIXTURE_H
#define WAP_TESTS_UNIT_ROUTE_FIXTURE_H

#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_portmap.h"
#include "support/furnish_route.h"

namespace wap::test {

inline constexpr uint32_t kAskWans = 0x47302025;
inline constexpr uint32_t kAskWan = 0x47301049;
inline constexpr uint32_t kAskCurrent = 0x46345865;

/// What the buffers hold before a call.
inline constexpr uint32_t kUntouched = 0xA5A5A5A5;

inline constexpr const char *kFile = "jni_l3forward_route.cpp";
inline constexpr const char *kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";

inline std::string JsonRow4(const std::string &sIndex, const std::string &sDest,
                            const std::string &sMask, const std::string &sGateway,
                            const std::string &sInterface) {
    return "{ \"Index\": \"" + sIndex + "\", \"DestIPAddress\": \"" + sDest +
           "\", \"DestSubnetMask\": \"" + sMask + "\", \"GatewayIPAddress\": \"" + sGateway +
           "\", \"Interface\": \"" + sInterface + "\" }";
}

inline std::string JsonRow6(const std::string &sIndex, const std::string &sPrefix,
                            const std::string &sNextHop, const std::string &sInterface) {
    return "{ \"Index\": \"" + sIndex + "\", \"DestIPPrefix\": \"" + sPrefix +
           "\", \"NextHop\": \"" + sNextHop + "\", \"Interface\": \"" + sInterface + "\" }";
}

inline std::string JsonList(const std::string &sRows) {
    return "{ \"Result\": 0, \"List\": [ " + sRows + " ] }";
}

/// How a list shows an interface.
inline std::string NameTrace(const std::string &sShown) {
    return "pcAliasName:" + sShown + " \r\n";
}

/// The query for the record of a route's WAN connection.
inline WantedRpc WanQuery(uint32_t uiWanIndex = 0x10102003) {
    return {"gulm", 321, kAskWan, Word(0) + Word(uiWanIndex), 284};
}

/// A worker that lists.
using ListWorker = uint32_t (*)(char **ppcText);

/// A gateway with routes; the requests, traces and faults of a call are looked at.
class RouteTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishRoutes(stWorld);
    }

    /// The text that a worker gave, which is released; empty for none.
    static std::string Taken(char *pcText) {
        std::string sText = pcText == nullptr ? "" : pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }

    /// Lists, and expects this code, and a text with 0 only.
    static std::string List(ListWorker pfnWorker, uint32_t uiWanted = 0) {
        char *pcText = nullptr;
        EXPECT_EQ(pfnWorker(&pcText), uiWanted);
        EXPECT_EQ(pcText == nullptr, uiWanted != 0);
        return Taken(pcText);
    }

    void ExpectRpcs(const std::vector<WantedRpc> &astWanted) {
        test::ExpectRpcs(stPlatform, astWanted);
    }

    /// The RPC ids that were asked, in order.
    Codes Rpcs() const { return RpcIds(stPlatform); }

    /// A file has recorded this code with these numbers.
    bool HasRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs) const {
        return TimesRecorded(stPlatform, sFile, uiCode, auiArgs) != 0;
    }

    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId].uiStatus = kRefused; }
    void AnswerAlias(const std::string &sAlias) {
        stPlatform.mapReplies[kAskWan] = {0, WanBytes({.sName = sAlias})};
    }
};

}  // namespace wap::test

#endif
