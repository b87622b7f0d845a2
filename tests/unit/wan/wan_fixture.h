// What the tests of the WAN model share.
#ifndef WAP_TESTS_UNIT_WAN_FIXTURE_H
#define WAP_TESTS_UNIT_WAN_FIXTURE_H

#include <string>
#include <utility>
#include <vector>

#include "records/wan_info.h"
#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {

inline constexpr uint32_t kIpWan = 0x10101001;
inline constexpr uint32_t kPppWan = 0x20102003;

inline constexpr uint32_t kAskList = 0x47302025;
inline constexpr uint32_t kAskIpDns = 0x4730100B;
inline constexpr uint32_t kAskPppDns = 0x4730100F;
inline constexpr uint32_t kAskIpv6Dns = 0x4930000F;
inline constexpr uint32_t kSetIpv6Dns = 0x4730105A;

inline const char *const kListFile = "jni_wan_info.cpp";
inline const char *const kSettingsFile = "jni_wan_settings.cpp";
inline const char *const kDnsFile = "jni_wan_dns.cpp";

/// A WAN connection of the list: index and name.
using Wan = std::pair<uint32_t, std::string>;

/// The list's 2116 bytes, with a count that may lie.
inline std::string ListBytes(const std::vector<Wan> &astWans, uint32_t uiCount) {
    std::string sList = Word(uiCount);
    for (const Wan &stWan : astWans) {
        sList += Word(stWan.first) + Field(stWan.second, 260);
    }
    sList.resize(2116, '\0');
    return sList;
}
inline std::string ListBytes(const std::vector<Wan> &astWans) {
    return ListBytes(astWans, static_cast<uint32_t>(astWans.size()));
}

/// A reply of so many bytes that holds one text of 64 bytes and dirt everywhere else.
inline std::string DnsBytes(size_t uiSize, size_t uiAt, const std::string &sServers) {
    std::string sReply(uiSize, '#');
    PutText(sReply, uiAt, Field(sServers, 64));
    return sReply;
}

/// The request for the list.
inline WantedRpc ListQuery() {
    return {"gulm", 48, kAskList, Word(0), 2116};
}

/// A gateway whose WAN connections the test chooses.
class WanTest : public BridgeTest {
  protected:
    void AnswerList(const std::string &sBytes) { stPlatform.mapReplies[kAskList] = {0, sBytes}; }
    void AnswerIpDns(const std::string &sServers) {
        stPlatform.mapReplies[kAskIpDns] = {0, DnsBytes(12864, 524, sServers)};
    }
    void AnswerPppDns(const std::string &sServers) {
        stPlatform.mapReplies[kAskPppDns] = {0, DnsBytes(12004, 704, sServers)};
    }
    void AnswerIpv6Dns(const std::string &sServers) {
        stPlatform.mapReplies[kAskIpv6Dns] = {0, DnsBytes(1389, 912, sServers)};
        stPlatform.mapReplies[kSetIpv6Dns] = {0, ""};
    }
    void Refuse(uint32_t uiRpcId, uint32_t uiStatus = kRefused) {
        stPlatform.mapReplies[uiRpcId].uiStatus = uiStatus;
    }

    void ExpectRpcs(const std::vector<WantedRpc> &astWanted) const {
        ASSERT_EQ(stPlatform.astRpcs.size(), astWanted.size());
        for (size_t i = 0; i < astWanted.size(); ++i) {
            SCOPED_TRACE(i);
            ExpectRpc(stPlatform.astRpcs[i], astWanted[i]);
        }
    }

    /// What a file has recorded with numbers: code and numbers, in order.
    std::vector<Args> Recorded(const std::string &sFile, uint32_t uiCode) const {
        std::vector<Args> astFound;
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            if (stFault.sFile == sFile && stFault.uiCode == uiCode && !stFault.bCodeOnly) {
                astFound.push_back(stFault.auiArgs);
            }
        }
        return astFound;
    }

    /// Whether a file has recorded a code alone.
    bool RecordedAlone(const std::string &sFile, uint32_t uiCode) const {
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            if (stFault.sFile == sFile && stFault.uiCode == uiCode && stFault.bCodeOnly) {
                return true;
            }
        }
        return false;
    }
};

using Records = std::vector<Args>;

template <class Record>
std::string BytesOf(const Record &stRecord) {
    return {reinterpret_cast<const char *>(&stRecord), sizeof(stRecord)};
}

}  // namespace wap::test

#endif
