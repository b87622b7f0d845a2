// What the tests of the JSON layer share.
#ifndef WAP_TESTS_UNIT_CORE_JSON_FIXTURE_H
#define WAP_TESTS_UNIT_CORE_JSON_FIXTURE_H

#include <string>
#include <vector>

#include "common/jni_json_wrap.h"
#include "support/entries.h"

namespace wap::test {

inline constexpr uint32_t kObject = 0xF7100000;
inline constexpr uint32_t kValue = 0xF7100001;
inline constexpr uint32_t kType = 0xF7100007;
inline constexpr uint32_t kNull = 0xF7100008;
inline constexpr uint32_t kNullValue = 0xF7100009;
inline constexpr uint32_t kNoKey = 0xF710000C;
inline constexpr uint32_t kTooLong = 0xF710E009;

class Json : public BridgeTest {
  protected:
    void TearDown() override {
        for (json_object *pstRoot : apstRoots) {
            JNI_JSON_ObjPut(pstRoot);
        }
        BridgeTest::TearDown();
    }
    /// A tree that is released at the end.
    json_object *Keep(json_object *pstRoot) {
        EXPECT_NE(pstRoot, nullptr);
        if (pstRoot != nullptr) {
            apstRoots.push_back(pstRoot);
        }
        return pstRoot;
    }
    json_object *Tree(const char *pcText) { return Keep(JSON_Parse(pcText, 1)); }
    json_object *At(json_object *pstObj, const char *pcKey) {
        json_object *pstValue = nullptr;
        EXPECT_EQ(JNI_JSON_ObjGetValueObj(pstObj, pcKey, &pstValue), 0u);
        return pstValue;
    }
    std::string Print(json_object *pstValue) {
        const char *pcText = JNI_JSON_ObjToJsonString(pstValue);
        return pcText == nullptr ? "(null)" : pcText;
    }
    /// The result must be uiCode, and the records of this call carry that code and a place.
    void Expect(uint32_t uiCode, uint32_t uiResult) {
        EXPECT_EQ(uiResult, uiCode) << std::hex << uiResult;
        ExpectRecorded(uiCode);
    }
    /// Checks and drops the fault records; code 0 stands for none.
    void ExpectRecorded(uint32_t uiCode) {
        EXPECT_EQ(stPlatform.astFaults.empty(), uiCode == 0);
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            EXPECT_EQ(stFault.uiCode, uiCode);
            EXPECT_EQ(stFault.sFile, "jni_json_wrap.cpp");
            EXPECT_GT(stFault.uiLine, 0u);
        }
        stPlatform.astFaults.clear();
    }

    std::vector<json_object *> apstRoots;
};

inline constexpr char kAllTypes[] =
    "{\"n\":null,\"b\":true,\"d\":2.5,\"i\":-7,\"o\":{},\"a\":[1,2,3],\"s\":\"abc\"}";

}  // namespace wap::test

#endif
