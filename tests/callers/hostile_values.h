// The values that no honest bundle passes.
#ifndef WAP_TESTS_CALLERS_HOSTILE_VALUES_H
#define WAP_TESTS_CALLERS_HOSTILE_VALUES_H

#include <cstddef>
#include <vector>

#include "callers/natives.h"

namespace wap::test {

/// Values for a parameter of a native, its good one not among them.
std::vector<Argument> HostileValues(const Native &stNative, size_t uiParameter);

/// A text of a million bytes and more.
const std::u16string &MegaText();

}  // namespace wap::test

#endif
