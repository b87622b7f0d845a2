// The word for the state of the IPTV service.
#include <string>

#include "access/jni_iptv_info.h"
#include "unit/vlanbind/vlanbind_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kIptvFile = "jni_iptv_info.cpp";

const WantedRpc kIptvQuery = {"gulm", 321, kAskIptv, Word(0), 20};
const WantedRpc kUsersQuery = {"igmp", 54, kAskUsers, Word(0), 4};
WantedRpc StatusQuery(uint32_t uiWanIndex) {
    return {"gulm", 321, kAskIptvStatus, Word(uiWanIndex), 4};
}

class IptvTest : public VlanBindTest {
  protected:
    /// The word, or "untouched".
    std::string Status(uint32_t uiWanted = 0) {
        char acBuf[32] = "untouched";
        EXPECT_EQ(VT_JNI_GetIPTVStatus(acBuf, sizeof(acBuf)), uiWanted);
        return acBuf;
    }

    std::string StatusOf(const IptvFacts &stIptv) {
        stPlatform.ClearRecords();
        stPlatform.mapReplies[kAskIptv] = {0, IptvBytes(stIptv)};
        return Status();
    }
};

TEST_F(IptvTest, WorksWithUsers) {
    EXPECT_EQ(Status(), "IPTV_BUSSINESS_OK");
    ExpectRpcs({kIptvQuery, kUsersQuery});
    EXPECT_EQ(stPlatform.asConsole,
              (Calls{"=========== VT_JNI_GetIPTVStatus !! WanIndex: 0x10102003, ServiceType: 8, "
                     "Status: 2, IPv4Enable: 1, IPv4MVlan: 45, IPv6MVlan: 4095\r\n",
                     "=========== VT_JNI_GetIPTVStatus !! uiUserCount: 3\r\n"}));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(IptvTest, NobodyJoined) {
    stPlatform.mapReplies[kAskUsers] = {0, Word(0)};
    EXPECT_EQ(Status(), "IPTV_BUSSINESS_NOK");
    EXPECT_EQ(stPlatform.asConsole.at(1), "=========== VT_JNI_GetIPTVStatus !! uiUserCount: 0\r\n");
    stPlatform.mapReplies[kAskUsers] = {0, Word(0xFFFFFFFF)};
    EXPECT_EQ(Status(), "IPTV_BUSSINESS_OK");
}

TEST_F(IptvTest, ServiceTypesThatCarryIptv) {
    for (uint32_t uiType = 0; uiType < 300; ++uiType) {
        const bool bIptv = uiType >= 7 && uiType <= 16 && uiType != 12;
        EXPECT_EQ(StatusOf({.uiServiceType = uiType}),
                  bIptv ? "IPTV_BUSSINESS_OK" : "NO_IPTV_CONNECTION")
            << uiType;
        EXPECT_EQ(stPlatform.astRpcs.size(), bIptv ? 2u : 1u) << uiType;
    }
    for (const uint32_t uiType : {0xFFFFFFFFu, 0x80000007u, 0x00010008u}) {
        EXPECT_EQ(StatusOf({.uiServiceType = uiType}), "NO_IPTV_CONNECTION") << uiType;
    }
}

// A connection of another kind is none, whatever its status.
TEST_F(IptvTest, ServiceTypeComesBeforeTheStatus) {
    EXPECT_EQ(StatusOf({.uiStatus = 3, .uiServiceType = 12, .uiIpv4 = 0, .usMvlan4 = 4095}),
              "NO_IPTV_CONNECTION");
    ExpectRpcs({kIptvQuery});
    EXPECT_EQ(stPlatform.asConsole.size(), 1u);
}

TEST_F(IptvTest, Status3IsDisconnected) {
    EXPECT_EQ(StatusOf({.uiStatus = 3}), "IPTV_DISCONNECT");
    ExpectRpcs({kIptvQuery});
    // Also without any valid VLAN.
    EXPECT_EQ(StatusOf({.uiStatus = 3, .usMvlan4 = 4095}), "IPTV_DISCONNECT");
    for (const uint32_t uiStatus : {0u, 1u, 4u, 5u, 0xFFFFFFFFu}) {
        EXPECT_EQ(StatusOf({.uiStatus = uiStatus}), "IPTV_BUSSINESS_OK") << uiStatus;
    }
}

TEST_F(IptvTest, WithoutIpv4TheStatusIsAskedForAgain) {
    stPlatform.mapReplies[kAskIptvStatus] = {0, Word(3)};
    EXPECT_EQ(StatusOf({.uiWanIndex = 0x20304005, .uiStatus = 2, .uiIpv4 = 0}), "IPTV_DISCONNECT");
    ExpectRpcs({kIptvQuery, StatusQuery(0x20304005)});
    stPlatform.mapReplies[kAskIptvStatus] = {0, Word(2)};
    EXPECT_EQ(StatusOf({.uiStatus = 3, .uiIpv4 = 0}), "IPTV_BUSSINESS_OK");
    ExpectRpcs({kIptvQuery, StatusQuery(0x10102003), kUsersQuery});
}

TEST_F(IptvTest, WithIpv4TheFirstStatusCounts) {
    stPlatform.mapReplies[kAskIptvStatus] = {0, Word(2)};
    for (const uint32_t uiIpv4 : {1u, 2u, 0x80000000u}) {
        EXPECT_EQ(StatusOf({.uiStatus = 3, .uiIpv4 = uiIpv4}), "IPTV_DISCONNECT") << uiIpv4;
        ExpectRpcs({kIptvQuery});
    }
}

TEST_F(IptvTest, OneValidMulticastVlanIsEnough) {
    const struct {
        uint16_t usMvlan4;
        uint16_t usMvlan6;
        bool bValid;
    } astCases[] = {{4095, 4095, false},  {4095, 0, true},      {0, 4095, true},
                    {4094, 4095, true},   {4095, 4094, true},   {0, 0, true},
                    {4096, 65535, false}, {65535, 4095, false}, {65535, 1, true}};
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(std::to_string(stCase.usMvlan4) + " " + std::to_string(stCase.usMvlan6));
        EXPECT_EQ(StatusOf({.usMvlan4 = stCase.usMvlan4, .usMvlan6 = stCase.usMvlan6}),
                  stCase.bValid ? "IPTV_BUSSINESS_OK" : "INVALID_MULTIVLAN");
        EXPECT_EQ(stPlatform.astRpcs.size(), stCase.bValid ? 2u : 1u);
        EXPECT_EQ(stPlatform.asConsole.size(), stCase.bValid ? 2u : 1u);
    }
}

TEST_F(IptvTest, FailedRequestsLeaveTheBuffer) {
    for (const uint32_t uiRpcId : {kAskIptv, kAskIptvStatus, kAskUsers}) {
        SCOPED_TRACE(uiRpcId);
        FurnishVlanBind(stWorld);
        stPlatform.ClearRecords();
        stPlatform.mapReplies[kAskIptv] = {0, IptvBytes({.uiIpv4 = 0})};
        Refuse(uiRpcId);
        EXPECT_EQ(Status(kRefused), "untouched");
        EXPECT_EQ(stPlatform.astRpcs.back().uiRpcId, uiRpcId);
        const Args auiArgs = {uiRpcId == kAskIptvStatus ? 0x10102003u : 0u, 0, 0, 0};
        EXPECT_EQ(TimesRecorded(kIptvFile, kRefused, auiArgs), 1u);
    }
}

TEST_F(IptvTest, ShortRepliesAreFilledWithZeros) {
    stPlatform.mapReplies[kAskIptv] = {0, ""};
    EXPECT_EQ(Status(), "NO_IPTV_CONNECTION");
    // No second VLAN and no status: a valid VLAN 0, and not disconnected.
    stPlatform.mapReplies[kAskIptv] = {
        0, IptvBytes({.uiStatus = 3, .uiIpv4 = 0, .usMvlan4 = 4095}).substr(0, 18)};
    stPlatform.mapReplies[kAskIptvStatus] = {0, ""};
    stPlatform.mapReplies[kAskUsers] = {0, ""};
    EXPECT_EQ(Status(), "IPTV_BUSSINESS_NOK");
}

TEST_F(IptvTest, WordIsCutToTheBuffer) {
    char acBuf[8];
    std::fill_n(acBuf, 8, 'z');
    EXPECT_EQ(VT_JNI_GetIPTVStatus(acBuf, 5), 0u);
    EXPECT_EQ(std::string(acBuf, 8), std::string("IPTV\0zzz", 8));
    EXPECT_EQ(VT_JNI_GetIPTVStatus(acBuf, 1), 0u);
    EXPECT_EQ(std::string(acBuf, 5), std::string("\0PTV\0", 5));
}

TEST_F(IptvTest, NoBufferIsRefusedWithoutAsking) {
    char cByte = 'z';
    EXPECT_EQ(VT_JNI_GetIPTVStatus(nullptr, 32), 1u);
    EXPECT_EQ(TimesRecorded(kIptvFile, 1, {32, 0, 0, 0}), 1u);
    EXPECT_EQ(VT_JNI_GetIPTVStatus(&cByte, 0), 1u);
    EXPECT_EQ(cByte, 'z');
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

}  // namespace
}  // namespace wap::test
