#include "wan/traffic_rules.h"

#include <string.h>

#include "common/bulk_text.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/json_text.h"
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
    char acBytes[kRuleRecordMax];
};

void ReadTexts(const RuleKind &stKind, const char *pcRecord, RowTexts &stTexts) {
    uint32_t uiAt = 0;
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        const RuleColumn &stColumn = stKind.pstColumns[i];
        char *pcText = stTexts.acBytes + uiAt;
        const size_t uiLength = strnlen(pcRecord + stColumn.usAt, stColumn.usSize);
        memcpy(pcText, pcRecord + stColumn.usAt, uiLength);
        pcText[uiLength] = '\0';
        stTexts.apcTexts[i] = pcText;
        uiAt += stColumn.usSize + 1u;
    }
}

/// The walk through the rows of a table.
class RuleWalk {
  public:
    RuleWalk(const RuleKind &stKind, JsonText &stOut) : m_stKind(stKind), m_stOut(stOut) {}

    void Put(uint32_t uiPosition, const char *pcRow) {
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
        m_stKind.pfnTrace(uiNumber, stTexts.apcTexts, m_uiInteger);
        m_stOut.Put(uiPosition == 0 ? "{ " : ", { ");
        for (uint32_t i = 0; i < m_stKind.uiColumns; ++i) {
            PutKey(m_stKind.pstColumns[i].pcKey, i == 0);
            PutValue(m_stKind.pstColumns[i].eType, stTexts.apcTexts[i]);
        }
        if (bNumbered) {
            PutKey("RuleInst", false);
            m_stOut.PutInt(static_cast<int32_t>(uiNumber));
        }
        m_stOut.Put(" }");
    }

  private:
    void ReadInteger(const RowTexts &stTexts) {
        for (uint32_t i = 0; i < m_stKind.uiColumns; ++i) {
            if (m_stKind.pstColumns[i].eType == RuleColumnType::kNumber) {
                (void)VT_OS_StrToUInt32(stTexts.apcTexts[i], &m_uiInteger);
            }
        }
    }

    void PutKey(const char *pcKey, bool bFirst) {
        m_stOut.Put(bFirst ? "\"" : ", \"");
        m_stOut.Put(pcKey);
        m_stOut.Put("\": ");
    }

    void PutValue(RuleColumnType eType, const char *pcText) {
        if (eType == RuleColumnType::kNumber) {
            m_stOut.PutInt(static_cast<int32_t>(m_uiInteger));
        } else if (eType == RuleColumnType::kTextInList) {
            m_stOut.Put("[ ");
            m_stOut.PutText(pcText);
            m_stOut.Put(" ]");
        } else {
            m_stOut.PutText(pcText);
        }
    }

    const RuleKind &m_stKind;
    JsonText &m_stOut;
    /// Kept from row to row, deliberately: a text that tells no number is listed with the number of
    /// the row before it, which is what bundles have always been told.
    uint32_t m_uiInteger = 0;
};

/// Lists the rows of a fetched table. Results as ListRules.
uint32_t ListRows(const RuleKind &stKind, const BulkBlock &stTable, uint32_t uiCount,
                  char **ppcText) {
    // The number is the service's word; the rows end with the block. One that says more is cut to
    // them, deliberately without a fault.
    const uint32_t uiFull = stTable.Length() / RowSize(stKind);
    const uint32_t uiRows = uiCount < uiFull ? uiCount : uiFull;
    const uint64_t ulSize = (uint64_t{uiRows} + 1) * stKind.uiTextPerRow;
    const auto uiSize = static_cast<uint32_t>(ulSize);
    // For the longest tables it would be 22 to 36 MiB in one piece, much more than they have
    // themselves. The room ends at the length of the longest block, as for monitored addresses.
    PlatformBlock stText;
    if (ulSize > kBlockMax || !stText.MakeUnfilled(uiSize, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrFailed, uiSize);
    }
    JsonText stOut(static_cast<char *>(stText.Lend()), uiSize);
    stOut.Put("{ \"Result\": 0, \"List\": [ ");
    const char *pcRow = static_cast<const char *>(stTable.Lend());
    RuleWalk stWalk(stKind, stOut);
    for (uint32_t i = 0; i < uiRows; ++i, pcRow += RowSize(stKind)) {
        stWalk.Put(i, pcRow);
    }
    stOut.Put(uiRows == 0 ? "] }" : " ] }");
    if (!stOut.Finish()) {
        return Recorded(WAP_SPOT, 1, uiSize, static_cast<uint32_t>(stOut.Length()));
    }
    *ppcText = static_cast<char *>(stText.Release());
    return 0;
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
