#include <json-c/json.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_http_capture.h"
#include "wan/jni_traffic_forward.h"
#include "wan/jni_traffic_mirror.h"

namespace wap::test {

namespace {

/// A text of a row: how wide its field is, and what a list calls it.
struct Text {
    const char *pcKey;
    size_t uiSize;
    enum Shape { kAsItIs, kNumber, kAlone } eShape = kAsItIs;
};

struct Kind {
    uint32_t (*pfnList)(char **ppcText);
    uint32_t uiRpcId;
    size_t uiRowSize;
    size_t uiHead;  ///< bytes before the first text
    size_t uiTextPerRow;
    Text astTexts[7];
};

const Kind kKinds[] = {
    {ListMirrorRules,
     0x48304193,
     347,
     0,
     768,
     {{"RemoteAddress", 256},
      {"RemotePort", 12},
      {"Direction", 5},
      {"Protocol", 4},
      {"HostMAC", 18},
      {"MirrorToIP", 40},
      {"MirrorToPort", 12, Text::kNumber}}},
    {ListForwardRules,
     0x48304197,
     342,
     0,
     512,
     {{"RemoteAddress", 256},
      {"RemotePort", 12},
      {"Protocol", 4},
      {"HostMAC", 18},
      {"ForwardToIP", 40},
      {"ForwardToPort", 12, Text::kNumber},
      {nullptr, 0}}},
    {ListHttpRules,
     0x4830419A,
     923,
     4,
     1280,
     {{"RemoteAddress", 256},
      {"RemotePort", 12},
      {"Direction", 5},
      {"HostMAC", 18},
      {"MethodList", 64, Text::kAlone},
      {"StatuscodeList", 256, Text::kAlone},
      {"HeaderList", 256, Text::kAlone}}},
};

/// The member of a list's row.
json_object *Member(json_object *pstRow, const char *pcKey) {
    json_object *pstValue = nullptr;
    Require(json_object_object_get_ex(pstRow, pcKey, &pstValue) != 0, "a rule has all members");
    return pstValue;
}

/// The number that a text tells as a whole; the one before it stays otherwise.
void ReadNumber(const std::string &sText, uint32_t &uiNumber) {
    uiNumber = sText.empty() ? uiNumber : DecimalIn(sText).value_or(uiNumber);
}

void CheckRow(const Kind &stKind, json_object *pstRow, const std::string &sRow,
              uint32_t &uiNumber) {
    size_t uiAt = stKind.uiHead;
    for (const Text &stText : stKind.astTexts) {
        if (stText.pcKey == nullptr) {
            continue;
        }
        const std::string sField = sRow.substr(uiAt, stText.uiSize);
        const std::string sText = sField.substr(0, strnlen(sField.data(), stText.uiSize));
        uiAt += stText.uiSize;
        json_object *pstValue = Member(pstRow, stText.pcKey);
        if (stText.eShape == Text::kNumber) {
            ReadNumber(sText, uiNumber);
            Require(json_object_get_int(pstValue) == static_cast<int32_t>(uiNumber),
                    "a port is its text's number, or the one before it");
            continue;
        }
        if (stText.eShape == Text::kAlone) {
            Require(json_object_is_type(pstValue, json_type_array) != 0 &&
                        json_object_array_length(pstValue) == 1,
                    "a list has one element");
            pstValue = json_object_array_get_idx(pstValue, 0);
        }
        Require(json_object_is_type(pstValue, json_type_string) != 0 &&
                    sText == json_object_get_string(pstValue),
                "a text is that of its field");
    }
    if (stKind.uiHead != 0) {
        Require(json_object_get_int(Member(pstRow, "RuleInst")) ==
                    static_cast<int32_t>(WordAt(sRow, 0)),
                "a rule has its number");
    }
}

/// How many rows are counted and there.
size_t RowsOf(const Kind &stKind, uint32_t uiCount, const std::string &sTable) {
    return std::min<size_t>(uiCount, sTable.size() / stKind.uiRowSize);
}

/// What a text takes up in JSON.
size_t EscapedSize(const std::string &sText) {
    json_object *pstText = json_object_new_string_len(sText.data(), static_cast<int>(sText.size()));
    const size_t uiSize = std::strlen(json_object_to_json_string(pstText));
    json_object_put(pstText);
    return uiSize;
}

/// Whether a list of the rows is longer than its room, counted by hand: what stands around the
/// texts and numbers, and those.
bool ExceedsRoom(const Kind &stKind, uint32_t uiCount, const std::string &sTable) {
    const size_t uiRows = RowsOf(stKind, uiCount, sTable);
    size_t uiSize = std::strlen("{ \"Result\": 0, \"List\": [ ] }") + uiRows;
    uint32_t uiNumber = 0;
    for (size_t i = 0; i < uiRows; ++i) {
        uiSize += std::strlen("{ }") + (i == 0 ? 0 : std::strlen(","));
        size_t uiAt = i * stKind.uiRowSize + stKind.uiHead;
        for (const Text &stText : stKind.astTexts) {
            if (stText.pcKey == nullptr) {
                continue;
            }
            const std::string sField = sTable.substr(uiAt, stText.uiSize);
            const std::string sText = sField.substr(0, strnlen(sField.data(), stText.uiSize));
            uiAt += stText.uiSize;
            uiSize += std::strlen(" \"\": ") + std::strlen(stText.pcKey);
            uiSize += stText.pcKey == stKind.astTexts[0].pcKey ? 0 : std::strlen(",");
            if (stText.eShape == Text::kNumber) {
                ReadNumber(sText, uiNumber);
                uiSize += std::to_string(static_cast<int32_t>(uiNumber)).size();
            } else {
                uiSize +=
                    EscapedSize(sText) + (stText.eShape == Text::kAlone ? std::strlen("[  ]") : 0);
            }
        }
        if (stKind.uiHead != 0) {
            const uint32_t uiInst = WordAt(sTable, i * stKind.uiRowSize);
            uiSize += std::strlen(", \"RuleInst\": ") +
                      std::to_string(static_cast<int32_t>(uiInst)).size();
        }
    }
    return uiSize >= (uiRows + 1) * stKind.uiTextPerRow;
}

void CheckList(const Kind &stKind, const std::string &sText, uint32_t uiCount,
               const std::string &sTable) {
    // Not strictly: the rows' texts need not be UTF-8.
    json_object *pstRoot = json_tokener_parse(sText.c_str());
    Require(pstRoot != nullptr, "the answer is JSON");
    Require(sText == json_object_to_json_string(pstRoot), "it has the blanks that json-c writes");
    json_object *pstList = Member(pstRoot, "List");
    const size_t uiRows = RowsOf(stKind, uiCount, sTable);
    Require(json_object_array_length(pstList) == uiRows,
            "as many rules are listed as are counted and there");
    uint32_t uiNumber = 0;
    for (size_t i = 0; i < uiRows; ++i) {
        CheckRow(stKind, json_object_array_get_idx(pstList, i),
                 sTable.substr(i * stKind.uiRowSize, stKind.uiRowSize), uiNumber);
    }
    Require(
        sText.size() < (uiRows + 1) * stKind.uiTextPerRow && !ExceedsRoom(stKind, uiCount, sTable),
        "the answer keeps to its room");
    json_object_put(pstRoot);
}

}  // namespace

void FuzzRuleTables(const uint8_t *pucData, size_t uiSize) {
    const std::string sBytes(reinterpret_cast<const char *>(pucData), uiSize);
    if (uiSize < 5) {
        return;
    }
    const Kind &stKind = kKinds[pucData[0] % 3];
    const uint32_t uiCount = WordAt(sBytes, 1);
    const std::string sTable = sBytes.substr(5);
    if (!FitsBlock(sTable)) {
        return;
    }
    World stWorld;
    Platform &stPlatform = stWorld.stPlatform;
    const std::string sDesc = sTable.empty() ? std::string(12, '\0') : stPlatform.AddBulk(sTable);
    stPlatform.mapReplies[stKind.uiRpcId] = {0, Word(uiCount) + sDesc};
    char *pcText = nullptr;
    const uint32_t uiResult = stKind.pfnList(&pcText);
    Require((uiResult == 0) == (pcText != nullptr), "a success has a text, and nothing else");
    if (pcText != nullptr) {
        const std::string sText = pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        if (uiCount == 0) {
            Require(sText == "{\"Result\":0,\"List\":[]}", "no rules have their fixed answer");
        } else {
            CheckList(stKind, sText, uiCount, sTable);
        }
    } else {
        // 1: texts whose escapes don't fit; else there was nothing to read.
        Require(uiResult == 1 ? ExceedsRoom(stKind, uiCount, sTable) : sTable.empty(),
                "a table that is there is read, and listed unless there is no room");
    }
    Require(stPlatform.mapBlocks.empty(), "the block is freed");
    RequireClean(stWorld);
}

}  // namespace wap::test
