#include "callers/figures.h"

#include <gtest/gtest.h>

#include <iostream>
#include <map>

namespace wap::test {

namespace {

std::map<std::string, uint64_t> &Figures() {
    static std::map<std::string, uint64_t> s_mapFigures;
    return s_mapFigures;
}

class FigurePrinter : public ::testing::Environment {
  public:
    void TearDown() override {
        for (const auto &[sName, uiNumber] : Figures()) {
            std::cout << "figure " << sName << ' ' << uiNumber << '\n';
        }
    }
};

// gtest owns it.
[[maybe_unused]] const ::testing::Environment *const kPrinter =
    ::testing::AddGlobalTestEnvironment(new FigurePrinter);

}  // namespace

void AddToFigure(const std::string &sName, uint64_t uiMore) {
    Figures()[sName] += uiMore;
}

}  // namespace wap::test
