#include "wan/traffic_rules.h"

#include <string.h>

#include "common/bulk_text.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"

namespace wap {

namespace {

/// What a listing without rules answers. No blanks, unlike in all its other answers, deliberately:
/// bundles compare it as it is.
constexpr std::string_view kNoRules = "{\"Result\":0,\"List\":[]}";

uint32_t RowSize(const RuleKind &stKind) {
    return stKind.uiRecordSize +
           (stKind.eNumber == RuleNumber::kBeforeIt ? static_cast<uint32_t>(sizeof(uint32_t)) : 0);
}

/// The texts of a row, each with a zero behind it that the row need not have.
struct RowTexts {
    const char *apcTexts[kRuleColumnsMax] = {};
    char acBytes[kRuleRecordMax] = {};
};

void ReadTexts(const RuleKind &stKind, const char *pcRecord, RowTexts &stTexts) {
    uint32_t uiAt = 0;
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        const RuleColumn &stColumn = stKind.pstColumns[i];
        char *pcText = stTexts.acBytes + uiAt;
        memcpy(pcText, pcRecord + stColumn.usAt, stColumn.usSize);
        stTexts.apcTexts[i] = pcText;
        uiAt += stColumn.usSize + 1u;
    }
}

/// A list with one text. A text that the list refuses is recorded, and the list stays empty; null
/// when memory runs out.
json_object *MakeListOfOne(const char *pcText, uint32_t uiPosition) {
    JsonValue stText(JNI_JSON_ObjNewString(pcText));
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stText || !stList) {
        return nullptr;
    }
    if (Recorded(WAP_SPOT, JNI_JSON_ObjArrayAdd(stList.Lend(), stText.Lend()), uiPosition) == 0) {
        (void)stText.Release();
    }
    return stList.Release();
}

/// The walk through the rows of a table.
class RuleWalk {
  public:
    explicit RuleWalk(const RuleKind &stKind) : m_stKind(stKind) {}

    /// Appends a row. 0, or kErrFailed, recorded, when memory runs out.
    uint32_t Append(const JsonValue &stRules, uint32_t uiPosition, const char *pcRow) {
        const bool bNumbered = m_stKind.eNumber == RuleNumber::kBeforeIt;
        uint32_t uiNumber = uiPosition;
        if (bNumbered) {
            // Not on a word boundary.
            memcpy(&uiNumber, pcRow, sizeof(uiNumber));
            pcRow += sizeof(uiNumber);
        }
        RowTexts stTexts;
        ReadTexts(m_stKind, pcRow, stTexts);
        ReadInteger(stTexts);
        JsonValue astLists[kRuleColumnsMax];
        if (!MakeLists(stTexts, uiPosition, astLists)) {
            return Recorded(WAP_SPOT, kErrFailed, uiPosition);
        }
        m_stKind.pfnTrace(uiNumber, stTexts.apcTexts, m_uiInteger);
        JsonItem astItems[kRuleColumnsMax + 1];
        uint32_t uiItems = 0;
        for (; uiItems < m_stKind.uiColumns; ++uiItems) {
            astItems[uiItems] = ItemOf(uiItems, stTexts, astLists[uiItems]);
        }
        if (bNumbered) {
            astItems[uiItems++] = {"RuleInst", uiNumber, kItemInt, kEmptyAsText};
        }
        return AppendObject(WAP_SPOT, stRules, astItems, uiItems)
                   ? 0
                   : Recorded(WAP_SPOT, kErrFailed, uiPosition);
    }

  private:
    void ReadInteger(const RowTexts &stTexts) {
        for (uint32_t i = 0; i < m_stKind.uiColumns; ++i) {
            if (m_stKind.pstColumns[i].eType == RuleColumnType::kNumber) {
                (void)VT_OS_StrToUInt32(stTexts.apcTexts[i], &m_uiInteger);
            }
        }
    }

    bool MakeLists(const RowTexts &stTexts, uint32_t uiPosition,
                   JsonValue (&astLists)[kRuleColumnsMax]) const {
        for (uint32_t i = 0; i < m_stKind.uiColumns; ++i) {
            if (m_stKind.pstColumns[i].eType == RuleColumnType::kTextInList) {
                astLists[i].Adopt(MakeListOfOne(stTexts.apcTexts[i], uiPosition));
                if (!astLists[i]) {
                    return false;
                }
            }
        }
        return true;
    }

    JsonItem ItemOf(uint32_t uiColumn, const RowTexts &stTexts, JsonValue &stList) const {
        const RuleColumn &stColumn = m_stKind.pstColumns[uiColumn];
        switch (stColumn.eType) {
            case RuleColumnType::kNumber:
                return {stColumn.pcKey, m_uiInteger, kItemInt, kEmptyAsText};
            case RuleColumnType::kTextInList:
                return {stColumn.pcKey, reinterpret_cast<uintptr_t>(stList.Release()), kItemObject,
                        kEmptyAsText};
            default:
                return {stColumn.pcKey, reinterpret_cast<uintptr_t>(stTexts.apcTexts[uiColumn]),
                        kItemText, kEmptyAsText};
        }
    }

    const RuleKind &m_stKind;
    /// Kept from row to row, deliberately: a text that tells no number is listed with the number of
    /// the row before it, which is what bundles have always been told.
    uint32_t m_uiInteger = 0;
};

/// Lists the rows of a fetched table. Results as ListRules.
uint32_t ListRows(const RuleKind &stKind, const BulkBlock &stTable, uint32_t uiCount,
                  char **ppcText) {
    JsonValue stRules(JNI_JSON_ObjNewArray());
    if (!stRules) {
        return Recorded(WAP_SPOT, kErrFailed);
    }
    // The number is the service's word; the rows end with the block.
    const uint32_t uiFull = stTable.Length() / RowSize(stKind);
    const uint32_t uiRows = uiCount < uiFull ? uiCount : uiFull;
    const char *pcRow = static_cast<const char *>(stTable.Lend());
    RuleWalk stWalk(stKind);
    for (uint32_t i = 0; i < uiRows; ++i, pcRow += RowSize(stKind)) {
        const uint32_t uiResult = stWalk.Append(stRules, i, pcRow);
        if (uiResult != 0) {
            return uiResult;
        }
    }
    const uint64_t ulSize = (uint64_t{uiRows} + 1) * stKind.uiTextPerRow;
    PlatformBlock stText;
    if (ulSize > kBlockMax || !stText.Make(static_cast<uint32_t>(ulSize), WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrFailed, static_cast<uint32_t>(ulSize));
    }
    const uint32_t uiResult = ComposeListInto(WAP_SPOT, stRules, static_cast<char *>(stText.Lend()),
                                              static_cast<uint32_t>(ulSize));
    if (uiResult == 0) {
        *ppcText = static_cast<char *>(stText.Release());
    }
    return uiResult;
}

}  // namespace

uint32_t CheckRuleTexts(const RuleKind &stKind, const char *const *ppcTexts) {
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        if (stKind.pstColumns[i].eNeed == RuleTextNeed::kRequired && HasNoText(ppcTexts[i])) {
            return Recorded(WAP_SPOT, kErrFailed, i);
        }
    }
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        const uint32_t uiLength = HasNoText(ppcTexts[i]) ? 0 : VT_OS_StrLen(ppcTexts[i]);
        if (uiLength >= stKind.pstColumns[i].usSize) {
            return Recorded(WAP_SPOT, kErrFailed, uiLength);
        }
    }
    return 0;
}

uint32_t AddRule(const RuleKind &stKind, const char *const *ppcTexts) {
    if (CheckRuleTexts(stKind, ppcTexts) != 0) {
        return kErrFailed;
    }
    char acRecord[kRuleRecordMax] = {};
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        if (!HasNoText(ppcTexts[i])) {
            const RuleColumn &stColumn = stKind.pstColumns[i];
            (void)VT_OS_StrNCpy_S(acRecord + stColumn.usAt, stColumn.usSize, ppcTexts[i],
                                  stColumn.usSize - 1u);
        }
    }
    // A reply without the number is no success.
    RuleWordReply stReply = {kErrFailed};
    const uint32_t uiResult = AskBytes(stKind.stAdd, acRecord, stKind.uiRecordSize, stReply);
    return Recorded(WAP_SPOT, uiResult) == 0 ? stReply.uiWord : kErrFailed;
}

uint32_t DeleteRule(const RuleKind &stKind, uint32_t uiRuleInst) {
    RuleWordReply stReply = {};
    const uint32_t uiResult = Ask(stKind.stDelete, DelRuleRequest{uiRuleInst}, stReply);
    return Recorded(WAP_SPOT, uiResult, uiRuleInst) == 0 ? stReply.uiWord : kErrFailed;
}

uint32_t ListRules(const RuleKind &stKind, char **ppcText) {
    WAP_TRACE(kTraceEntries, "[%u]\r\n", RowSize(stKind));
    RuleTableReply stReply = {};
    // Whatever the code is, this failure is answered with -1.
    if (Recorded(WAP_SPOT, AskBytes(stKind.stList, nullptr, 0, stReply)) != 0) {
        return kErrFailed;
    }
    const VDataDesc stDesc = stReply.stDesc;
    if (stReply.uiCount == 0) {
        FreeUnread(stDesc.uiDataID);
        return GiveFixed(WAP_SPOT, kNoRules, kErrFailed, ppcText);
    }
    TraceDesc(WAP_SPOT, stDesc);
    BulkBlock stTable;
    const uint32_t uiResult = stTable.Make(stDesc);
    if (Recorded(WAP_SPOT, uiResult, stDesc.uiDataID, stReply.uiCount) != 0) {
        return uiResult;
    }
    return ListRows(stKind, stTable, stReply.uiCount, ppcText);
}

}  // namespace wap
