#include "support/entries.h"

namespace wap::test {

void PutText(std::string &sRecord, size_t uiAt, const std::string &sText) {
    sRecord.replace(uiAt, sText.size(), sText);
}

std::string DeviceInfoRecord() {
    std::string sRecord(336, '\0');
    PutText(sRecord, 0, std::string("\x00\x02\x00\x00", 4));  // RAM 512
    PutText(sRecord, 4, std::string("\x00\x01\x00\x00", 4));  // flash 256
    PutText(sRecord, 8, "1");
    PutText(sRecord, 10, "HG-7");
    PutText(sRecord, 75, "Example Works");
    PutText(sRecord, 140, "A1.2");
    PutText(sRecord, 205, "V3.0.1");
    PutText(sRecord, 270, "AX-9");
    return sRecord;
}

std::string DefaultsRecord() {
    std::string sRecord(192, '\0');
    PutText(sRecord, 0, "Home-2G");
    PutText(sRecord, 32, kSsidPassword);
    PutText(sRecord, 64, kWebPassword);
    return sRecord;
}

std::string IdentityRecord() {
    std::string sRecord(265, '\0');
    PutText(sRecord, 0, "not used");
    PutText(sRecord, 65, "02A1B2");
    PutText(sRecord, 137, "EX0123456789AB");
    return sRecord;
}

void FurnishHome(World &stWorld) {
    std::string sPassword(64, '\0');
    PutText(sPassword, 0, kDevicePassword);
    stWorld.stPlatform.mapReplies = {
        {0x47209032, {0, std::string("02:A1:B2:00:00:01\0", 18)}},
        {0x47209035, {0, DeviceInfoRecord()}},
        {0x47209036, {0, std::string("\x80\x51\x01\x00", 4)}},  // 86400
        {0x47209037, {0, DefaultsRecord()}},
        {0x47209050, {0, sPassword}},
        {0x4720136A, {0, IdentityRecord()}},
    };
    for (const char *pcSecret : {kDevicePassword, kSsidPassword, kWebPassword}) {
        stWorld.stSecrets.Watch(pcSecret);
    }
}

uint32_t BridgeTest::ExpectNothingWithoutJava(const Entry &stEntry, void (*pfnFurnish)(World &)) {
    stWorld.Plan({});
    (void)stEntry.fnCall(stEnv);
    const uint32_t uiCalls = stWorld.Count(Op::kJni);
    const Answer stWithoutJava = stEntry.stGood.sText ? NullAnswer() : NumberAnswerOf(-1);
    for (const bool bForever : {false, true}) {
        for (uint32_t uiAt = 1; uiAt <= uiCalls; ++uiAt) {
            SCOPED_TRACE(uiAt);
            pfnFurnish(stWorld);
            stWorld.Plan({Op::kJni, uiAt, bForever});
            const Answer stAnswer = stEntry.fnCall(stEnv);
            stWorld.Plan({});
            EXPECT_EQ(stAnswer, stWithoutJava);
            EXPECT_FALSE(stEnv.bPending);
            stEnv.EndCall();
            stWorld.ExpectClean();
        }
    }
    return uiCalls;
}

}  // namespace wap::test
