// The filter's mode: reading it, setting it, and Java's one number for mode and status.
#include "unit/macfilter/filter_gateway.h"

namespace wap::test {
namespace {

class ModeTest : public MacFltTest {
  protected:
    uint32_t Get() { return VT_API_getMacFltMode(&uiMode, &uiStatus); }
    void ExpectUntouched() const {
        EXPECT_EQ(uiMode, 77u);
        EXPECT_EQ(uiStatus, 78u);
    }

    uint32_t uiMode = 77;
    uint32_t uiStatus = 78;
};

TEST_F(ModeTest, IsReadFromBothCopies) {
    stGateway.uiMode = 1;
    stGateway.uiStatus = 0;
    EXPECT_EQ(Get(), 0u);
    EXPECT_EQ(uiMode, 1u);
    EXPECT_EQ(uiStatus, 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode"}));
    EXPECT_EQ(Traced("VT_API_getMacFltMode MacFltMode:1  MacFltStatus:0\r\n"), 1u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ModeTest, CopiesThatDifferAreAFailure) {
    const std::string sGood = ModeBytes(1, 1);
    for (const size_t uiAt : {0u, 4u, 68u, 72u}) {
        SCOPED_TRACE(uiAt);
        std::string sReply = sGood;
        sReply[uiAt] = '\x02';
        stGateway.mapBytes["mode"] = sReply;
        stPlatform.ClearRecords();
        EXPECT_EQ(Get(), 1u);
        ExpectUntouched();
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        const FaultRecord &stFault = stPlatform.astFaults[0];
        EXPECT_EQ(stFault.sFile, "jni_macflter.cpp");
        EXPECT_EQ(stFault.uiCode, 1u);
        EXPECT_EQ(stFault.auiArgs, (Args{uiAt == 0 ? 2u : 1u, uiAt == 68 ? 2u : 1u,
                                         uiAt == 4 ? 2u : 1u, uiAt == 72 ? 2u : 1u}));
        EXPECT_EQ(Traced("VT_API_getMacFltMode MacFltMode:1  MacFltStatus:1\r\n"), 0u);
    }
}

TEST_F(ModeTest, WhatElseIsInTheReplyDoesNotMatter) {
    std::string sReply(128, '\xFF');
    sReply.replace(0, 8, Word(0) + Word(1));
    sReply.replace(68, 8, Word(0) + Word(1));
    stGateway.mapBytes["mode"] = sReply;
    EXPECT_EQ(Get(), 0u);
    EXPECT_EQ(uiMode, 0u);
    EXPECT_EQ(uiStatus, 1u);
}

TEST_F(ModeTest, ShortReplyIsOneWhoseCopiesDiffer) {
    stGateway.mapBytes["mode"] = Word(1) + Word(1);
    EXPECT_EQ(Get(), 1u);
    ExpectUntouched();
}

TEST_F(ModeTest, RefusalIsPassedUpAndItsBytesAreNot) {
    stGateway.mapRefused["mode"] = kSomeCode;
    EXPECT_EQ(Get(), kSomeCode);
    ExpectUntouched();
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(ModeTest, NeedsBothPlacesForItsAnswer) {
    EXPECT_EQ(VT_API_getMacFltMode(nullptr, &uiStatus), kNullArgument);
    EXPECT_EQ(VT_API_getMacFltMode(&uiMode, nullptr), kNullArgument);
    ExpectUntouched();
    EXPECT_TRUE(TakeAsked().empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument}));
}

TEST_F(ModeTest, IsWrittenAsTwoWords) {
    EXPECT_EQ(VT_API_setMacFltMode(0x01020304, 1), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(stPlatform.astRpcs[0].uiRpcId, 0x47209091u);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, std::string("\x04\x03\x02\x01\x01\0\0\0", 8));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ModeTest, RefusedWriteIsPassedUpWithBothWords) {
    stGateway.mapRefused["set mode 1 0"] = kSomeCode;
    EXPECT_EQ(VT_API_setMacFltMode(1, 0), kSomeCode);
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "jni_macflter.cpp");
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kSomeCode);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs, (Args{1, 0, 0, 0}));
}

TEST_F(ModeTest, JavasNumberIsModeAndStatusInOne) {
    const struct {
        uint32_t uiMode, uiStatus, uiNumber;
        const char *pcTrace;
    } astCases[] = {
        {0, 0, 0, "VT_JNI_getMacFilterMode Called iResult :0 \r\n"},
        {1, 0, 0, "VT_JNI_getMacFilterMode Called iResult :0 \r\n"},
        {0, 1, 1, "VT_JNI_getMacFilterMode Called iResult :1 \r\n"},
        {1, 1, 2, "VT_JNI_getMacFilterMode Called iResult :2 \r\n"},
        {1, 7, 2, "VT_JNI_getMacFilterMode Called iResult :2 \r\n"},
        {6, 1, 7, "VT_JNI_getMacFilterMode Called iResult :7 \r\n"},
    };
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(stCase.pcTrace);
        stGateway.uiMode = stCase.uiMode;
        stGateway.uiStatus = stCase.uiStatus;
        stPlatform.ClearRecords();
        EXPECT_EQ(VT_JNI_getMacFilterMode(), stCase.uiNumber);
        EXPECT_EQ(TakeAsked(), (Asked{"mode"}));
        EXPECT_EQ(Traced(stCase.pcTrace), 1u);
    }
}

TEST_F(ModeTest, JavasNumberIsMinusOneWhenTheModeCannotBeRead) {
    stGateway.mapRefused["mode"] = kSomeCode;
    EXPECT_EQ(VT_JNI_getMacFilterMode(), kMinusOne);
    EXPECT_EQ(Traced("VT_JNI_getMacFilterMode Called iResult :-1 \r\n"), 1u);
    stGateway.mapRefused.clear();
    stGateway.mapBytes["mode"] = ModeBytes(0, 1).replace(68, 1, "\x01");
    EXPECT_EQ(VT_JNI_getMacFilterMode(), kMinusOne);
}

TEST_F(ModeTest, IsSetOnlyWhenSomethingWouldChange) {
    const struct {
        uint32_t uiPara, uiMode, uiStatus;
        Asked asAsked;
    } astCases[] = {
        {0, 0, 0, {"mode"}},
        {0, 1, 0, {"mode"}},
        {0, 0, 1, {"mode", "set mode 0 0"}},
        {0, 1, 1, {"mode", "set mode 1 0"}},
        {1, 0, 1, {"mode"}},
        {1, 0, 0, {"mode", "set mode 0 1"}},
        {1, 1, 1, {"mode", "set mode 0 1"}},
        {2, 1, 1, {"mode"}},
        {2, 1, 0, {"mode", "set mode 1 1"}},
        {2, 0, 1, {"mode", "set mode 1 1"}},
        // Nobody checks the number.
        {3, 1, 1, {"mode", "set mode 2 1"}},
        {3, 2, 1, {"mode"}},
        {kMinusOne, 0, 1, {"mode", "set mode 4294967294 1"}},
        // The mode after the last one is not "off".
        {0, kMinusOne, 1, {"mode", "set mode 4294967295 0"}},
    };
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(std::to_string(stCase.uiPara) + " from " + std::to_string(stCase.uiMode) +
                     " " + std::to_string(stCase.uiStatus));
        stGateway.uiMode = stCase.uiMode;
        stGateway.uiStatus = stCase.uiStatus;
        EXPECT_EQ(VT_JNI_setMacFilterMode(stCase.uiPara), 0u);
        EXPECT_EQ(TakeAsked(), stCase.asAsked);
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ModeTest, IsSetEvenIfItCannotBeRead) {
    stGateway.uiMode = 1;
    stGateway.mapRefused["mode"] = kSomeCode;
    EXPECT_EQ(VT_JNI_setMacFilterMode(0), 0u);
    EXPECT_EQ(VT_JNI_setMacFilterMode(1), 0u);
    EXPECT_EQ(VT_JNI_setMacFilterMode(2), 0u);
    EXPECT_EQ(TakeAsked(),
              (Asked{"mode", "set mode 0 0", "mode", "set mode 0 1", "mode", "set mode 1 1"}));
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

TEST_F(ModeTest, ModeWhoseCopiesDifferIsNotKept) {
    stGateway.mapBytes["mode"] = ModeBytes(1, 1).replace(72, 1, std::string(1, '\0'));
    EXPECT_EQ(VT_JNI_setMacFilterMode(0), 0u);
    EXPECT_EQ(TakeAsked(), (Asked{"mode", "set mode 0 0"}));
}

TEST_F(ModeTest, RefusedChangeIsMinusOne) {
    stGateway.mapRefused["set mode 1 1"] = kSomeCode;
    EXPECT_EQ(VT_JNI_setMacFilterMode(2), kMinusOne);
    EXPECT_TRUE(Recorded("jni_macflter.cpp", kSomeCode));
}

}  // namespace
}  // namespace wap::test
