#include <json-c/json.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_wan_info.h"

namespace wap::test {

namespace {

constexpr uint32_t kAskList = 0x47302025;
constexpr size_t kWans = 8;
constexpr size_t kNameSize = 260;
constexpr size_t kEntrySize = 4 + kNameSize;
constexpr size_t kListSize = 4 + kWans * kEntrySize;
constexpr uint32_t kUntouched = 0xA5A5A5A5;

struct Wan {
    uint32_t uiIndex;
    std::string sName;
};

/// The connections of a reply, of which what was not sent is zero.
std::vector<Wan> WansOf(std::string sReply) {
    sReply.resize(kListSize, '\0');
    std::vector<Wan> astWans;
    for (size_t i = 0; i < std::min<size_t>(WordAt(sReply, 0), kWans); ++i) {
        const std::string sEntry = sReply.substr(4 + i * kEntrySize, kEntrySize);
        astWans.push_back({WordAt(sEntry, 0), UpToZero(sEntry.substr(4))});
    }
    return astWans;
}

/// Where a word begins, whatever the case of its letters.
size_t FindWord(const std::string &sText, std::string_view sWord) {
    const auto it =
        std::search(sText.begin(), sText.end(), sWord.begin(), sWord.end(), [](char cA, char cB) {
            return std::tolower(static_cast<uint8_t>(cA)) == std::tolower(static_cast<uint8_t>(cB));
        });
    return it == sText.end() ? std::string::npos : static_cast<size_t>(it - sText.begin());
}

/// The number that a text begins with, without a sign and without zeros before it, as a text.
std::optional<std::string> DigitsOf(const std::string &sText) {
    const std::string sDigits = sText.substr(0, sText.find_first_not_of("0123456789"));
    if (sDigits.empty()) {
        return std::nullopt;
    }
    const size_t uiFirst = std::min(sDigits.find_first_not_of('0'), sDigits.size() - 1);
    return sDigits.substr(uiFirst);
}

/// Whether a VLAN is in use, as far as the first connection without one.
bool HasVlan(const std::vector<Wan> &astWans, uint32_t uiVlan) {
    for (const Wan &stWan : astWans) {
        const size_t uiAt = FindWord(stWan.sName, "_vid_");
        if (uiAt == std::string::npos) {
            return false;
        }
        if (DigitsOf(stWan.sName.substr(uiAt + 5)) == std::to_string(uiVlan)) {
            return true;
        }
    }
    return false;
}

void CheckVlan(const std::vector<Wan> &astWans, uint32_t uiVlan) {
    uint32_t uiFound = kUntouched;
    Require(VT_API_IsVlanExsit(uiVlan, &uiFound) == 0, "a list that came is searched");
    Require(uiFound == (HasVlan(astWans, uiVlan) ? 1 : kUntouched), "the VLANs in use are found");
}

/// Lists the connections, which is JSON with what was sent.
void CheckList(const std::string &sReply, const std::vector<Wan> &astWans) {
    std::vector<WanIfListEntry> astEntries(kWans);
    const std::string sEntries =
        Field(sReply.substr(std::min<size_t>(4, sReply.size())), kWans * sizeof(WanIfListEntry));
    std::memcpy(astEntries.data(), sEntries.data(), sEntries.size());
    std::vector<char> acOut(16384);
    const auto uiCount = static_cast<uint32_t>(astWans.size());
    Require(VT_API_ConvertWanListToJson(astEntries.data(), uiCount, acOut.data(),
                                        static_cast<uint32_t>(acOut.size())) == 0,
            "a list of connections is told");
    json_object *pstRoot = json_tokener_parse(acOut.data());
    json_object *pstList = nullptr;
    Require(json_object_object_get_ex(pstRoot, "List", &pstList) != 0 &&
                json_object_array_length(pstList) == astWans.size(),
            "the list has all connections");
    for (size_t i = 0; i < astWans.size(); ++i) {
        json_object *pstWan = json_object_array_get_idx(pstList, i);
        json_object *pstIndex = nullptr;
        json_object *pstName = nullptr;
        Require(json_object_object_get_ex(pstWan, "Index", &pstIndex) != 0 &&
                    json_object_get_int(pstIndex) == static_cast<int32_t>(astWans[i].uiIndex),
                "a connection has its index");
        Require(json_object_object_get_ex(pstWan, "Name", &pstName) != 0 &&
                    astWans[i].sName == json_object_get_string(pstName),
                "a connection has its name");
    }
    json_object_put(pstRoot);
}

}  // namespace

void FuzzWanName(const uint8_t *pucData, size_t uiSize) {
    const std::string sBytes(uiSize == 0 ? "" : reinterpret_cast<const char *>(pucData), uiSize);
    if (uiSize < 4) {
        return;
    }
    const std::string sReply = sBytes.substr(4);
    const std::vector<Wan> astWans = WansOf(sReply);
    World stWorld;
    stWorld.stPlatform.mapReplies[kAskList] = {0, sReply};
    CheckVlan(astWans, WordAt(sBytes, 0));
    CheckVlan(astWans, WordAt(sBytes, 0) & 0xFFF);
    CheckVlan(astWans, 46);
    const auto itManaged = std::find_if(astWans.begin(), astWans.end(), [](const Wan &stWan) {
        return FindWord(stWan.sName, "TR069") != std::string::npos;
    });
    uint32_t uiFound = kUntouched;
    uint32_t uiIndex = kUntouched;
    Require(VT_API_IsTR069Exsit(&uiFound, &uiIndex) == 0, "a list that came is searched");
    Require(uiFound == (itManaged != astWans.end() ? 1 : kUntouched) &&
                uiIndex == (itManaged != astWans.end() ? itManaged->uiIndex : kUntouched),
            "the connection for management is found");
    CheckList(sReply, astWans);
    RequireClean(stWorld);
}

}  // namespace wap::test
