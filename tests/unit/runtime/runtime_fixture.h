// What the tests of the runtime descriptions, the reset, the lights and the voice lines share.
#ifndef WAP_TESTS_UNIT_RUNTIME_FIXTURE_H
#define WAP_TESTS_UNIT_RUNTIME_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_runtime.h"

namespace wap::test {

inline constexpr const char *kFile = "jni_runtime_info.cpp";
inline constexpr uint32_t kReset = 0x47209051;
inline constexpr uint32_t kLeds = 0x471030D3;
inline constexpr uint32_t kPots = 0x47209061;
inline constexpr uint32_t kSubscribe = 0x47209062;
inline constexpr uint32_t kUnsubscribe = 0x47209063;

class RuntimeTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishRuntime(stWorld);
    }

    /// How often a file has recorded this code with these numbers.
    size_t TimesRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs = {}) {
        return test::TimesRecorded(stPlatform, sFile, uiCode, auiArgs);
    }
};

}  // namespace wap::test

#endif
