#include <json-c/json.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>

#include "fuzz/dns_servers.h"
#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "unit/wan/setting_places.h"
#include "wan/jni_wan_config.h"

namespace wap::test {

namespace {

constexpr uint32_t kIpWan = 0x10101001;
constexpr uint32_t kPppWan = 0x20102003;
constexpr uint32_t kSet = 0x47209078;
constexpr uint32_t kSetIpv6Dns = 0x4730105A;
constexpr size_t kRecordSize = 1080;
constexpr uint32_t kFailed = 0xFFFFFFFF;
/// What secrets begin with that are followed: the fuzzer finds out what the traces say, and makes
/// passwords of it.
constexpr const char *kSecretMark = "a-secret-like-";

using Texts = std::map<std::string, std::string>;

/// The members of an object that are texts with something in them; nothing for what is no JSON.
std::optional<Texts> TextsOf(const std::string &sJson) {
    json_object *pstRoot = StrictJson(sJson);
    if (pstRoot == nullptr) {
        return std::nullopt;
    }
    Texts mapTexts;
    if (json_object_is_type(pstRoot, json_type_object) != 0) {
        json_object_object_foreach(pstRoot, pcKey, pstValue) {
            if (json_object_is_type(pstValue, json_type_string) != 0) {
                mapTexts[pcKey] =
                    std::string(json_object_get_string(pstValue),
                                static_cast<size_t>(json_object_get_string_len(pstValue)));
            }
        }
    }
    json_object_put(pstRoot);
    return mapTexts;
}

/// Follows the PPP users and passwords in a text that may be no JSON, where they stand only once in
/// all that comes from outside.
void WatchSecrets(World &stWorld, const std::string &sJson, const std::string &sDnsServers) {
    // json-c lets a member's name be quoted like this, and then anything may be part of the name.
    if (sJson.find_first_of("\\'") != std::string::npos) {
        return;
    }
    for (const char *pcKey : {"\"Username\":\"", "\"Password\":\""}) {
        const std::string sStart = std::string(pcKey) + kSecretMark;
        for (size_t uiAt = sJson.find(sStart); uiAt != std::string::npos;
             uiAt = sJson.find(sStart, uiAt + 1)) {
            const size_t uiBegin = uiAt + std::strlen(pcKey);
            const size_t uiEnd = sJson.find('"', uiBegin);
            const std::string sSecret = sJson.substr(uiBegin, uiEnd - uiBegin);
            if (uiEnd != std::string::npos && CountOf(sJson + sDnsServers, sSecret) == 1) {
                stWorld.stSecrets.Watch(sSecret);
            }
        }
    }
}

void FurnishWans(World &stWorld, const std::string &sDnsServers) {
    std::string sList = Word(2) + Word(kIpWan) + Field("1_TR069_R_VID_46", 260) + Word(kPppWan) +
                        Field("2_INTERNET_R_VID_100", 260);
    sList.resize(2116, '#');
    const std::string sServers = Field(sDnsServers.substr(0, 64), 64);
    auto &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[0x47302025] = {0, sList};
    mapReplies[0x4730100B] = {0, std::string(524, '#') + sServers + std::string(12276, '#')};
    mapReplies[0x4730100F] = {0, std::string(704, '#') + sServers + std::string(11236, '#')};
    mapReplies[0x4930000F] = {0, std::string(912, '#') + sServers + std::string(413, '#')};
    mapReplies[kSetIpv6Dns] = {0, ""};
    mapReplies[kSet] = {0, ""};
}

/// What a request about settings holds by key, worked out in another way.
struct Wanted {
    Texts mapFields;
    Texts mapSet;  ///< those of them whose flags are 1

    bool IsSet(const char *pcKey) const { return mapSet.contains(pcKey); }
    bool IsSetTo(const char *pcKey, const char *pcText) const {
        return IsSet(pcKey) && mapSet.at(pcKey) == pcText;
    }
};

/// The settings that fit into their fields, up to a zero, which a text of JSON may hold. Those that
/// say something are set.
Wanted ReadSettings(const Texts &mapTexts) {
    Wanted stWanted;
    for (const SettingPlace &stPlace : kSettingPlaces) {
        const auto it = mapTexts.find(stPlace.pcKey);
        if (it != mapTexts.end() && it->second.size() < stPlace.uiSize) {
            stWanted.mapFields[stPlace.pcKey] = UpToZero(it->second);
        }
    }
    stWanted.mapSet = stWanted.mapFields;
    std::erase_if(stWanted.mapSet, [](const auto &stSetting) { return stSetting.second.empty(); });
    return stWanted;
}

/// Takes out what an IP mode has no use for.
void HeedIpMode(Wanted &stWanted) {
    if (stWanted.IsSetTo("IPMode", "1")) {
        std::erase_if(stWanted.mapSet,
                      [](const auto &stSetting) { return stSetting.first.rfind("IPv6", 0) == 0; });
    } else if (stWanted.IsSetTo("IPMode", "2")) {
        for (const char *pcKey : {"AddressingType", "ExternalIPAddress", "SubnetMask",
                                  "DefaultGateway", "DNSServers"}) {
            stWanted.mapSet.erase(pcKey);
        }
    }
}

bool SaysAnyOf(const std::string &sText, std::initializer_list<const char *> apcWords) {
    return std::any_of(apcWords.begin(), apcWords.end(), [&sText](const char *pcWord) {
        return strcasestr(sText.c_str(), pcWord) != nullptr;
    });
}

/// Whether what is set may be: numbers within their bounds, words that are known.
bool IsSound(const Texts &mapSet, uint32_t uiWanIndex) {
    return std::all_of(mapSet.begin(), mapSet.end(), [&](const auto &stSetting) {
        const auto &[sKey, sText] = stSetting;
        const uint32_t uiNumber = DecimalIn(sText).value_or(0);
        if (sKey == "IPMode") {
            return uiNumber >= 1 && uiNumber <= 3;
        }
        if (sKey == "VLANMode") {
            return uiNumber <= 2;
        }
        if (sKey == "LanInterface") {
            return SaysAnyOf(sText, {"LAN", "SSID"});
        }
        if (sKey == "ServiceList") {
            // The list has a connection for the management protocol, and one is enough.
            return uiWanIndex == kIpWan || !SaysAnyOf(sText, {"TR069"});
        }
        const bool bSwitch = sKey == "DNSEnabled" || sKey == "LanInterface-DHCPEnable" ||
                             sKey == "NATEnabled" || sKey == "IPv6DsliteEnable" ||
                             sKey == "IPv6PrefixDelegationEnabled";
        return !bSwitch || sText == "TRUE" || sText == "FALSE";
    });
}

/// What is sent of settings; nothing for those that are refused.
std::optional<Wanted> Expect(const Texts &mapTexts, uint32_t uiWanIndex,
                             const std::string &sPresentServers) {
    Wanted stWanted = ReadSettings(mapTexts);
    HeedIpMode(stWanted);
    if (!IsSound(stWanted.mapSet, uiWanIndex)) {
        return std::nullopt;
    }
    if (stWanted.IsSet("DNSServers")) {
        const std::string sMerged =
            MergedIpv4Servers(sPresentServers, stWanted.mapSet.at("DNSServers"));
        if (sMerged.empty()) {
            return std::nullopt;
        }
        stWanted.mapSet["DNSServers"] = stWanted.mapFields["DNSServers"] = sMerged;
    }
    return stWanted;
}

/// The whole record, byte by byte.
void CheckRecord(const std::string &sRecord, uint32_t uiWanIndex, const Wanted &stWanted) {
    Require(sRecord.size() == kRecordSize, "a record is 1080 bytes");
    Require(sRecord.substr(0, 16) == Word(uiWanIndex >> 28) + Word(uiWanIndex >> 20 & 0xFF) +
                                         Word(uiWanIndex >> 12 & 0xFF) + Word(uiWanIndex & 0xFFF),
            "a record has its WAN's place");
    for (const SettingPlace &stPlace : kSettingPlaces) {
        const auto it = stWanted.mapFields.find(stPlace.pcKey);
        const std::string sText = it == stWanted.mapFields.end() ? "" : it->second;
        Require(sRecord.substr(stPlace.uiAt, stPlace.uiSize) == Field(sText, stPlace.uiSize),
                "a field holds what is given and fits, and zeros");
        Require(sRecord[stPlace.uiFlagAt] == (stWanted.IsSet(stPlace.pcKey) ? 1 : 0),
                "a flag is 1 for what is given and counts, and 0 for all else");
    }
}

/// The request with an id that was sent, which is sent once at most.
std::optional<std::string> SentOnce(const World &stWorld, uint32_t uiRpcId) {
    std::optional<std::string> sRequest;
    for (const RpcRecord &stRpc : stWorld.stPlatform.astRpcs) {
        if (stRpc.uiRpcId == uiRpcId) {
            Require(!sRequest, "a change is sent once");
            sRequest = stRpc.sRequest;
        }
    }
    return sRequest;
}

void CheckWan(uint32_t uiWanIndex, const std::string &sJson, const std::optional<Texts> &mapTexts,
              const std::string &sDnsServers) {
    World stWorld;
    FurnishWans(stWorld, sDnsServers);
    WatchSecrets(stWorld, sJson, sDnsServers);
    const uint32_t uiResult = VT_JNI_SetWANIf(uiWanIndex, sJson.c_str());
    Require(mapTexts || stWorld.stPlatform.astRpcs.empty(),
            "nobody is asked about what is no JSON");
    // As a process tells them: up to a zero, or a full field.
    const std::string sPresent = UpToZero(sDnsServers.substr(0, 64));
    const std::optional<Wanted> stWanted =
        mapTexts ? Expect(*mapTexts, uiWanIndex, sPresent) : std::nullopt;
    const std::optional<std::string> sRecord = SentOnce(stWorld, kSet);
    Require(sRecord.has_value() == stWanted.has_value(), "sound settings are sent, and no others");
    if (stWanted) {
        CheckRecord(*sRecord, uiWanIndex, *stWanted);
    }
    // An index that is of no connection is found out here.
    const bool bIpv6Dns = stWanted && stWanted->IsSet("IPv6DNSServers");
    const std::optional<std::string> sIpv6Dns = SentOnce(stWorld, kSetIpv6Dns);
    Require(sIpv6Dns.has_value() == (bIpv6Dns && uiWanIndex != 0),
            "IPv6 DNS servers that count are set apart, and no others");
    if (sIpv6Dns) {
        Require(
            *sIpv6Dns == Word(uiWanIndex) +
                             MergedIpv6Servers(sPresent, stWanted->mapSet.at("IPv6DNSServers")) +
                             std::string(1, '\0'),
            "the IPv6 DNS servers are completed");
    }
    Require(uiResult == (stWanted && (!bIpv6Dns || uiWanIndex != 0) ? 0 : kFailed),
            "what is sent is a success, and nothing else");
    // The recorded requests are the test's own copies.
    RequireClean(stWorld);
}

}  // namespace

void FuzzWanSettings(const uint8_t *pucData, size_t uiSize) {
    const std::string sJson = TextIn(pucData, uiSize);
    const size_t uiRest = std::min(uiSize, sJson.size() + 1);
    const std::string sDnsServers(reinterpret_cast<const char *>(pucData) + uiRest,
                                  uiSize - uiRest);
    const std::optional<Texts> mapTexts = TextsOf(sJson);
    for (const uint32_t uiWanIndex : {kIpWan, kPppWan, 0u}) {
        CheckWan(uiWanIndex, sJson, mapTexts, sDnsServers);
    }
}

}  // namespace wap::test
