// What the tests of a program have done, counted while they do it. The program's last lines tell
// it: "figure NAME NUMBER".
#ifndef WAP_TESTS_CALLERS_FIGURES_H
#define WAP_TESTS_CALLERS_FIGURES_H

#include <cstdint>
#include <string>

namespace wap::test {

/// Adds to a figure; its name in lower case, with dots.
void AddToFigure(const std::string &sName, uint64_t uiMore = 1);

}  // namespace wap::test

#endif
