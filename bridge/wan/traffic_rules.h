// What the rules about traffic have in common. A kind of rule is a table of its columns: the texts
// that an addition fills its record with, and that a listing reads out of the rows.
#ifndef WAP_WAN_TRAFFIC_RULES_H
#define WAP_WAN_TRAFFIC_RULES_H

#include <stddef.h>
#include <stdint.h>

#include "common/requests.h"
#include "records/traffic_rules.h"

namespace wap {

/// How a listing shows the text of a column.
enum class RuleColumnType : uint8_t {
    kText,        ///< as it is
    kNumber,      ///< as the integer that it tells
    kTextInList,  ///< as the only element of a list, whatever commas are in it
};

enum class RuleTextNeed : uint8_t { kMayBeMissing, kRequired };

struct RuleColumn {
    const char *pcKey;
    uint16_t usAt;    ///< in the record
    uint16_t usSize;  ///< of its field, with the zero
    RuleColumnType eType;
    RuleTextNeed eNeed;  ///< of an addition
};

/// The place of a column's field.
#define WAP_RULE_FIELD(Record, field) offsetof(Record, field), sizeof(Record::field)

/// Traces a row of a listing: the row's number, its texts in the order of the columns, and the
/// integer of the column that is one.
using RuleTrace = void (*)(uint32_t uiNumber, const char *const *ppcTexts, uint32_t uiInteger);

inline constexpr uint32_t kRuleColumnsMax = 7;
/// The longest record, and all texts of a row with their zeros.
inline constexpr uint32_t kRuleRecordMax = sizeof(HttpProcessRuleRec);

/// Where a row of the table tells the number of its rule.
enum class RuleNumber : uint8_t {
    kNowhere,   ///< the rows are records
    kBeforeIt,  ///< a word before the record, listed last, as "RuleInst"
};

struct RuleKind {
    GeneralRoute stAdd;
    GeneralRoute stDelete;
    GeneralRoute stList;
    const RuleColumn *pstColumns;
    uint32_t uiColumns;     ///< at most kRuleColumnsMax
    uint32_t uiRecordSize;  ///< at most kRuleRecordMax
    RuleNumber eNumber;
    uint32_t uiTextPerRow;  ///< what a row may take up in the listing's text
    RuleTrace pfnTrace;
};

/// Whether a kind keeps the bounds above, each field lies in the record, and at most one column is
/// a number: for its static_assert.
constexpr bool IsSound(const RuleKind &stKind) {
    uint32_t uiTexts = 0;
    uint32_t uiNumbers = 0;
    uint32_t uiEnd = 0;
    for (uint32_t i = 0; i < stKind.uiColumns; ++i) {
        const RuleColumn &stColumn = stKind.pstColumns[i];
        uiTexts += stColumn.usSize + 1u;
        uiNumbers += stColumn.eType == RuleColumnType::kNumber ? 1 : 0;
        const uint32_t uiColumnEnd = uint32_t{stColumn.usAt} + stColumn.usSize;
        uiEnd = uiColumnEnd > uiEnd ? uiColumnEnd : uiEnd;
    }
    return stKind.uiColumns <= kRuleColumnsMax && stKind.uiRecordSize <= kRuleRecordMax &&
           uiTexts <= kRuleRecordMax && uiNumbers <= 1 && uiEnd <= stKind.uiRecordSize;
}

/// The port of a collector as a decimal text of at most five characters; a number that has more is
/// no port, and gives an empty text, which no addition accepts.
class CollectorPort {
  public:
    explicit CollectorPort(int32_t iPort) {
        (void)VT_OS_Int32ToStr_S(iPort, m_acText, sizeof(m_acText));
    }
    const char *Lend() const { return m_acText; }

  private:
    char m_acText[6] = {};
};

/**
 * Tells whether the texts of an addition are there, where they are required, and fit their fields
 * with a zero.
 * @param ppcTexts in the order of the columns; null and empty ones are missing
 * @return 0, or kErrFailed, recorded: with the column of a missing text, or the length of a text
 *         that is too long
 */
uint32_t CheckRuleTexts(const RuleKind &stKind, const char *const *ppcTexts);

/// Adds a rule of these texts, which are checked. The rule's number; kErrFailed, recorded, when
/// they don't pass or the request fails.
uint32_t AddRule(const RuleKind &stKind, const char *const *ppcTexts);

/// Deletes a rule, or all of a kind with kAllRules. The reply's word; kErrFailed, recorded with the
/// rule's number, when the request fails.
uint32_t DeleteRule(const RuleKind &stKind, uint32_t uiRuleInst);

/**
 * Lists the rules of a kind.
 * @param ppcText receives the answer, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; recorded: the code of a table that can't be read; 1 when the answer does not fit its
 *         room; kErrFailed for everything else
 */
uint32_t ListRules(const RuleKind &stKind, char **ppcText);

}  // namespace wap

#endif
