// Texts that would mean something to a format, a path, JSON, a shell, a list or a terminal. Each is
// as long as the harmless one, so that what is done with them can be compared byte for byte.
#ifndef WAP_TESTS_CALLERS_TRICKY_TEXTS_H
#define WAP_TESTS_CALLERS_TRICKY_TEXTS_H

#include <string>
#include <string_view>

namespace wap::test {

/// Stands nowhere else in what is sent, traced and answered.
inline constexpr std::string_view kHarmless = "QZJXQZJX";

inline constexpr std::string_view kTricky[] = {
    "%n%s%5$x",    "%999999d",  "../../x/",          "\",\"x\":\"z", "\\u0022\\\"",
    "'; boot'",    "$(boot) ",  "`boot`\n#",         "[ ] , |;",     "];q[\"z\"]",
    "\r\nA: b\tx", "],[{}],\"", "x\x01\x1B[2J\x7Fy",
};

constexpr bool AreAsLong() {
    for (const std::string_view stTricky : kTricky) {
        if (stTricky.size() != kHarmless.size()) {
            return false;
        }
    }
    return true;
}
static_assert(AreAsLong());

/// A text with the harmless part replaced.
std::string WithTricky(std::string sText, std::string_view sTricky);

}  // namespace wap::test

#endif
