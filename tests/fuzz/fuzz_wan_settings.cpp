#include <json-c/json.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "unit/wan/setting_places.h"
#include "wan/jni_wan_config.h"

namespace wap::test {

namespace {

constexpr uint32_t kIpWan = 0x10101001;
constexpr uint32_t kPppWan = 0x20102003;
constexpr uint32_t kSet = 0x47209078;
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
    mapReplies[0x4730105A] = {0, ""};
    mapReplies[kSet] = {0, ""};
}

/// A setting in a record that was sent.
void CheckSetting(const std::string &sRecord, const SettingPlace &stPlace, const Texts &mapTexts) {
    const std::string sField = sRecord.substr(stPlace.uiAt, stPlace.uiSize);
    const char cFlag = sRecord[stPlace.uiFlagAt];
    Require(cFlag == 0 || cFlag == 1, "a flag is 0 or 1");
    Require(sField.back() == '\0', "a field ends with a zero");
    const std::string sText = sField.c_str();
    Require(cFlag == 0 || !sText.empty(), "what is set is not empty");
    const auto it = mapTexts.find(stPlace.pcKey);
    if (it == mapTexts.end()) {
        Require(cFlag == 0 && sText.empty(), "what is not given is not set");
    } else if (std::strlen(it->second.c_str()) >= stPlace.uiSize) {
        Require(cFlag == 0 && sText.empty(), "what does not fit is not set");
    } else if (it->second.size() < stPlace.uiSize && std::string(stPlace.pcKey) != "DNSServers") {
        // Up to a zero, which a text of JSON may hold.
        Require(sText == it->second.c_str(), "a field holds what is given");
    }
}

}  // namespace

void FuzzWanSettings(const uint8_t *pucData, size_t uiSize) {
    const std::string sJson = TextIn(pucData, uiSize);
    const size_t uiRest = std::min(uiSize, sJson.size() + 1);
    const std::string sDnsServers(reinterpret_cast<const char *>(pucData) + uiRest,
                                  uiSize - uiRest);
    const std::optional<Texts> mapTexts = TextsOf(sJson);
    for (const uint32_t uiWanIndex : {kIpWan, kPppWan, 0u}) {
        World stWorld;
        FurnishWans(stWorld, sDnsServers);
        WatchSecrets(stWorld, sJson, sDnsServers);
        const uint32_t uiResult = VT_JNI_SetWANIf(uiWanIndex, sJson.c_str());
        Require(uiResult == 0 || uiResult == kFailed, "settings are sent or not");
        const auto &astRpcs = stWorld.stPlatform.astRpcs;
        const auto itSet = std::find_if(astRpcs.begin(), astRpcs.end(), [](const RpcRecord &stRpc) {
            return stRpc.uiRpcId == kSet;
        });
        Require(uiResult != 0 || itSet != astRpcs.end(), "a success has sent the settings");
        Require(mapTexts || astRpcs.empty(), "nobody is asked about what is no JSON");
        Require(mapTexts || uiResult == kFailed, "what is no JSON fails");
        if (itSet != astRpcs.end()) {
            Require(itSet->sRequest.size() == kRecordSize, "a record is 1080 bytes");
            Require(WordAt(itSet->sRequest, 0) == uiWanIndex >> 28, "a record has its WAN's kind");
            for (const SettingPlace &stPlace : kSettingPlaces) {
                CheckSetting(itSet->sRequest, stPlace, *mapTexts);
            }
        }
        // The recorded requests are the test's own copies.
        RequireClean(stWorld);
    }
}

}  // namespace wap::test
