// Bundles that try to get at the monitored addresses of others: what they say goes to the registry
// as their own name and their own addresses, whatever separators stand in it.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/tricky_texts.h"
#include "support/furnish_monitor.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

struct Change {
    const char *pcMethod;
    uint32_t uiRpcId;
    char cNotice;
};
constexpr Change kChanges[] = {{"addTrafficMonitoringDestAddress", kAddMonitored, 1},
                               {"deleteTrafficMonitoringDestAddress", kDelMonitored, 0}};

/// What the two processes get of a change.
struct Told {
    std::vector<std::string> asLists;
    std::vector<std::string> asNotices;
    std::vector<RpcRecord> astRequests;
};

Told TellRegistry(const Change &stChange, const Arguments &astArguments) {
    const Native &stNative = NativeOf(stChange.pcMethod);
    Caller stCaller(stNative);
    Platform &stPlatform = stCaller.Gateway();
    Told stTold;
    stPlatform.fnReply = [&](const RpcRecord &stRpc) -> std::optional<Reply> {
        stTold.asLists.push_back(stPlatform.TakeBulk(stRpc.sRequest).value_or("none"));
        return std::nullopt;
    };
    stPlatform.fnMessage = [&](const MessageRecord &stMessage) {
        stTold.asNotices.push_back(stPlatform.TakeBulk(stMessage.sData).value_or("none"));
    };
    EXPECT_EQ(stCaller.Call(astArguments), NumberAnswerOf(0));
    stTold.astRequests = stPlatform.astRpcs;
    return stTold;
}

TEST(RegistryTest, SeparatorsStayInTheBundlesOwnFields) {
    const std::string sName = "a\"];com.example.shield[\"192.0.2.7\"];b,c|\n";
    for (const Change &stChange : kChanges) {
        SCOPED_TRACE(stChange.pcMethod);
        const Told stTold =
            TellRegistry(stChange, {JavaStrings({u"10.0.0.1\"];com.example.shield[\"10.0.0.2",
                                                 u"10.0.0.3,10.0.0.4", u"10.0.0.5;x[]"}),
                                    JavaString(FromUtf8(sName))});
        // A comma in an address makes two of it, both of this bundle.
        const std::string sList =
            "10.0.0.1\"];com.example.shield[\"10.0.0.2,10.0.0.3,10.0.0.4,10.0.0.5;x[]";
        ASSERT_EQ(stTold.astRequests.size(), 1u);
        EXPECT_EQ(stTold.astRequests[0].uiRpcId, stChange.uiRpcId);
        EXPECT_EQ(stTold.astRequests[0].sRequest.substr(12), Field(sName, 256));
        EXPECT_EQ(stTold.asLists, std::vector<std::string>{sList + '\0'});
        EXPECT_EQ(stTold.asNotices,
                  std::vector<std::string>{stChange.cNotice + Field(sName, 128) + sList + '\0'});
    }
}

// A name that is cut does not run into the list.
TEST(RegistryTest, LongNamesEndInTheirFields) {
    const std::string sName(1000, ';');
    for (const Change &stChange : kChanges) {
        const Told stTold =
            TellRegistry(stChange, {JavaStrings({u"10.0.0.1"}), JavaString(FromUtf8(sName))});
        ASSERT_EQ(stTold.astRequests.size(), 1u);
        EXPECT_EQ(stTold.astRequests[0].sRequest.substr(12), Field(sName.substr(0, 255), 256));
        EXPECT_EQ(stTold.asNotices,
                  std::vector<std::string>{stChange.cNotice + Field(sName.substr(0, 127), 128) +
                                           "10.0.0.1" + '\0'});
    }
}

// The names in the registry's text are passed as they stand, as the method says, or not at all:
// here as there, the name is between the same others. Names with the separators of that text the
// registry refuses.
TEST(RegistryTest, NamesAreListedAsTheyStand) {
    // The others end their text of JSON, or may not stand in one.
    const std::set<std::string_view> stPassed = {"%n%s%5$x", "%999999d", "../../x/", "\\u0022\\\"",
                                                 "$(boot) "};
    const Native &stNative = NativeOf("getTrafficMonitoringDestAddressInfo");
    for (const std::string_view stTricky : kTricky) {
        if (stTricky.find_first_of("[;") != std::string_view::npos) {
            continue;
        }
        Caller stCaller(stNative);
        const std::string sName(stTricky);
        AnswerRegistry(stCaller.stWorld, 2, 2,
                       sName + "[\"10.0.0.1\"];com.example.shield[\"192.0.2.7\"]" + '\0');
        const Answer stListed =
            TextAnswerOf("{\"Result\":0,\"List\":[{\"BundleName\":\"" + sName +
                         "\",\"DestAddressList\":[\"10.0.0.1\"]},{\"BundleName\":"
                         "\"com.example.shield\",\"DestAddressList\":[\"192.0.2.7\"]}]}");
        EXPECT_EQ(stCaller.Call({}),
                  stPassed.contains(stTricky) ? stListed : TextAnswerOf("{\"Result\":-1}"))
            << sName;
    }
}

}  // namespace

}  // namespace wap::test
