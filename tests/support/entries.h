// What the tests of the Java entries on the scripted platform share.
#ifndef WAP_TESTS_SUPPORT_ENTRIES_H
#define WAP_TESTS_SUPPORT_ENTRIES_H

#include <gtest/gtest.h>

#include <string>

#include "support/entry_table.h"
#include "support/fake_jni.h"
#include "support/world.h"

namespace wap::test {

/// Puts a text at an offset of a record.
void PutText(std::string &sRecord, size_t uiAt, const std::string &sText);
/// The replies of a gateway that works, by hand.
std::string DeviceInfoRecord();
std::string DefaultsRecord();
std::string IdentityRecord();
/// Makes the platform answer every request, and watches the secrets in the answers.
void FurnishHome(World &stWorld);

/// A fresh bridge, a World and a Java environment, and the rules of both checked at the end.
class BridgeTest : public ::testing::Test {
  protected:
    void SetUp() override { ResetBridge(); }
    void TearDown() override {
        stEnv.EndCall();
        stWorld.ExpectClean();
    }

    /// Calls an entry with each of its calls of Java failing, alone and with all that follow: -1
    /// for texts that do not arrive, null for an answer that does not.
    /// @return how many calls of Java there are
    uint32_t ExpectNothingWithoutJava(const Entry &stEntry, void (*pfnFurnish)(World &));

    World stWorld;
    FakeJni stEnv;
    Platform &stPlatform = stWorld.stPlatform;
};

}  // namespace wap::test

#endif
