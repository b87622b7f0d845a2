// MAC addresses as the gateway's records hold them: cut where their field ends.
#ifndef WAP_ACCESS_MAC_TEXT_H
#define WAP_ACCESS_MAC_TEXT_H

#include <stddef.h>
#include <stdint.h>

#include "common/fields.h"

namespace wap {

/// A MAC address of Java's, cut as the records hold it. Whoever looks for an address in a record or
/// in the filter's list looks for this: what was cut when it was sent is found again.
template <size_t kSize = 32>
struct MacText {
    char acMac[kSize] = {};

    /// @param pcMac the whole text; null is empty
    explicit MacText(const char *pcMac) { PutField(acMac, pcMac); }
};

/// Whether the address in a field and a whole one are of the same host. A null text is nobody's.
template <size_t kSize>
bool SameMac(const char (&acField)[kSize], const char *pcMac) {
    return pcMac != nullptr && VT_OS_StrCaseCmp(acField, MacText<kSize>(pcMac).acMac) == 0;
}

}  // namespace wap

#endif
