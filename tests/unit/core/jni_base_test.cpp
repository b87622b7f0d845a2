// Java texts to native ones and back: the JNI calls in their order, the UTF-8 bytes, and what
// every failing step leaves behind.

#include "common/jni_base.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/entries.h"

namespace wap::test {
namespace {

using Texts = std::vector<std::string>;

const Texts kToNative = {"FindClass java/lang/String",
                         "NewStringUTF utf-8",
                         "GetMethodID getBytes(Ljava/lang/String;)[B",
                         "CallObjectMethod",
                         "GetArrayLength",
                         "GetByteArrayElements",
                         "ReleaseByteArrayElements"};

class JniBase : public BridgeTest {
  protected:
    /// Takes over a native text and releases it as the callers do.
    std::optional<std::string> Take(char *pcText) {
        if (pcText == nullptr) {
            return std::nullopt;
        }
        std::string sText = pcText;
        VT_OS_MemFreeD(pcText, __FILE_NAME__, __LINE__);
        return sText;
    }
    /// Fails each JNI call of a conversion in turn, with and without an exception.
    template <class Call>
    void FailEveryStep(uint32_t uiSteps, Call fnCall) {
        for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
            stEnv.eFailure = eFailure;
            for (uint32_t i = 1; i <= uiSteps; ++i) {
                SCOPED_TRACE("step " + std::to_string(i));
                stEnv.asCalls.clear();
                stWorld.Plan({Op::kJni, i, false});
                fnCall(i);
                EXPECT_FALSE(stEnv.bPending);
                EXPECT_EQ(stEnv.uiPins, 0u);
                EXPECT_EQ(stWorld.Count(Op::kJni), i) << "nothing is called after the failure";
                EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
                stEnv.EndCall();
            }
        }
        stWorld.Plan({});
    }
};

TEST_F(JniBase, ToNativeCallsInOrder) {
    EXPECT_EQ(Take(jstring2char(&stEnv, stEnv.JavaText(u"abc"))), "abc");
    EXPECT_EQ(stEnv.asCalls, kToNative);
    stEnv.asCalls.clear();
    EXPECT_EQ(Take(jstringtochar(&stEnv, stEnv.JavaText(u"abc"))), "abc");
    EXPECT_EQ(stEnv.asCalls, kToNative);
    EXPECT_EQ(stEnv.uiLocals, 6u) << "the references stay until the Java call returns";
}

TEST_F(JniBase, ToNativeTakesExactlyOneByteMore) {
    char *pcText = jstring2char(&stEnv, stEnv.JavaText(u"h\u00E9"));
    ASSERT_NE(pcText, nullptr);
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 4u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].eOrigin, Origin::kMalloc);
    std::free(pcText);
}

TEST_F(JniBase, NullTextIsNullAtOnce) {
    EXPECT_EQ(jstring2char(&stEnv, nullptr), nullptr);
    EXPECT_EQ(jstringtochar(&stEnv, nullptr), nullptr);
    EXPECT_TRUE(stEnv.asCalls.empty());
}

TEST_F(JniBase, EmptyTextIsMissingOrCounts) {
    EXPECT_EQ(jstring2char(&stEnv, stEnv.JavaText(u"")), nullptr);
    EXPECT_EQ(stEnv.asCalls, kToNative);
    EXPECT_TRUE(stWorld.stAllocs.astLog.empty());
    stEnv.asCalls.clear();
    EXPECT_EQ(Take(jstringtochar(&stEnv, stEnv.JavaText(u""))), "");
    EXPECT_EQ(stEnv.asCalls, kToNative);
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 1u);
}

TEST_F(JniBase, Utf8OfEveryLength) {
    const std::u16string sJava = u"a\u00FC\u4E2D\U0001F600z";
    const std::string sNative = "a\xC3\xBC\xE4\xB8\xAD\xF0\x9F\x98\x80z";
    EXPECT_EQ(Take(jstring2char(&stEnv, stEnv.JavaText(sJava))), sNative);
    EXPECT_EQ(Take(jstringtochar(&stEnv, stEnv.JavaText(sJava))), sNative);
    EXPECT_EQ(stEnv.TextOf(char2jstring(&stEnv, sNative.c_str())), sJava);
}

TEST_F(JniBase, LongTextComesThrough) {
    std::u16string sJava(100000, u'x');
    sJava.back() = u'\u00DF';
    const std::string sNative = std::string(99999, 'x') + "\xC3\x9F";
    EXPECT_EQ(Take(jstring2char(&stEnv, stEnv.JavaText(sJava))), sNative);
    EXPECT_EQ(stEnv.TextOf(char2jstring(&stEnv, sNative.c_str())), sJava);
}

TEST_F(JniBase, ZeroCharacterEndsTheText) {
    char *pcText = jstring2char(&stEnv, stEnv.JavaText(std::u16string(u"ab\0cd", 5)));
    ASSERT_NE(pcText, nullptr);
    // It is one zero byte, not the two bytes of the modified form; the rest is there behind it.
    EXPECT_EQ(std::memcmp(pcText, "ab\0cd", 6), 0);
    EXPECT_EQ(Take(pcText), "ab");
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 6u);
}

TEST_F(JniBase, OnlyAZeroCharacterIsNotMissing) {
    EXPECT_EQ(Take(jstring2char(&stEnv, stEnv.JavaText(std::u16string(1, u'\0')))), "");
}

TEST_F(JniBase, ToNativeSurvivesEveryFailingStep) {
    // FindClass, NewStringUTF, GetMethodID, CallObjectMethod and GetByteArrayElements can fail.
    for (auto *pfnConvert : {&jstring2char, &jstringtochar}) {
        FailEveryStep(
            5, [&](uint32_t) { EXPECT_EQ(pfnConvert(&stEnv, stEnv.JavaText(u"text")), nullptr); });
    }
}

TEST_F(JniBase, ToNativeWithoutMemoryReleasesTheElements) {
    for (auto *pfnConvert : {&jstring2char, &jstringtochar}) {
        stEnv.asCalls.clear();
        stWorld.Plan({Op::kAlloc, 1, false});
        EXPECT_EQ(pfnConvert(&stEnv, stEnv.JavaText(u"text")), nullptr);
        EXPECT_EQ(stWorld.Count(Op::kAlloc), 1u);
        EXPECT_EQ(stEnv.asCalls, kToNative);
        EXPECT_EQ(stEnv.uiPins, 0u);
        EXPECT_FALSE(stEnv.bPending);
    }
    EXPECT_TRUE(stPlatform.astFaults.empty()) << "conversions write no trace";
}

TEST_F(JniBase, ToJavaCallsInOrder) {
    EXPECT_EQ(stEnv.TextOf(char2jstring(&stEnv, "{\"Result\":-1}")), u"{\"Result\":-1}");
    EXPECT_EQ(stEnv.asCalls, (Texts{"FindClass java/lang/String", "NewStringUTF utf-8",
                                    "GetMethodID <init>([BLjava/lang/String;)V", "NewByteArray 13",
                                    "SetByteArrayRegion 0 13", "NewObject"}));
}

TEST_F(JniBase, NullIsNoJavaText) {
    EXPECT_EQ(char2jstring(&stEnv, nullptr), nullptr);
    EXPECT_TRUE(stEnv.asCalls.empty());
}

TEST_F(JniBase, EmptyIsNoJavaTextEither) {
    EXPECT_EQ(char2jstring(&stEnv, ""), nullptr);
    EXPECT_EQ(stEnv.asCalls, (Texts{"FindClass java/lang/String", "NewStringUTF utf-8",
                                    "GetMethodID <init>([BLjava/lang/String;)V"}));
}

TEST_F(JniBase, ToJavaSurvivesEveryFailingStep) {
    FailEveryStep(6, [&](uint32_t) { EXPECT_EQ(char2jstring(&stEnv, "text"), nullptr); });
}

// ---- releasing tables of texts ----

TEST_F(JniBase, FreeArrayStopsAtTheCount) {
    char *apcTexts[4] = {};
    for (const int i : {0, 2, 3}) {
        apcTexts[i] = jstringtochar(&stEnv, stEnv.JavaText(u"t"));
        ASSERT_NE(apcTexts[i], nullptr);
    }
    JNI_BASE_FreeArray2MaxIndex(apcTexts, 3);
    EXPECT_EQ(apcTexts[0], nullptr);
    EXPECT_EQ(apcTexts[1], nullptr);
    EXPECT_EQ(apcTexts[2], nullptr);
    ASSERT_NE(apcTexts[3], nullptr);
    EXPECT_EQ(stWorld.stAllocs.Live(), 1u);
    JNI_BASE_FreeArray2MaxIndex(apcTexts, 0);
    EXPECT_EQ(stWorld.stAllocs.Live(), 1u);
    JNI_BASE_FreeArray2MaxIndex(apcTexts, 4);
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    // A table that is empty already can be released again.
    JNI_BASE_FreeArray2MaxIndex(apcTexts, 4);
}

TEST_F(JniBase, FreeArrayTakesNoTable) {
    JNI_BASE_FreeArray2MaxIndex(nullptr, 0);
    JNI_BASE_FreeArray2MaxIndex(nullptr, 5);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// ---- joining ----

using JavaArray = std::vector<std::optional<std::u16string>>;

class Join : public JniBase {
  protected:
    struct Result {
        uint32_t uiStatus;
        std::string sText;
        bool operator==(const Result &) const = default;
    };
    friend void PrintTo(const Result &stResult, std::ostream *pstOut) {
        *pstOut << stResult.uiStatus << " \"" << stResult.sText << '"';
    }
    /// Joins into a buffer of uiSize bytes, with the bytes behind it watched.
    Result Joined(const JavaArray &asTexts, const char *pcSeparator, uint32_t uiSize,
                  const std::string &sBefore = "") {
        // A block of its own, so that a sanitizer sees a write past it.
        std::vector<char> acOut(uiSize, '\0');
        std::memcpy(acOut.data(), sBefore.data(), sBefore.size());
        const uint32_t uiStatus = JNI_COMMON_GetStrFromObjArray(&stEnv, stEnv.JavaTexts(asTexts),
                                                                pcSeparator, acOut.data(), uiSize);
        EXPECT_EQ(acOut.back(), '\0');
        return {uiStatus, std::string(acOut.data())};
    }
};

TEST_F(Join, LeavesOutTheEmptyAndTheNull) {
    EXPECT_EQ(Joined({u"a", u"", u"b"}, ",", 64), (Result{0, "a,b"}));
    EXPECT_EQ(Joined({u"a", std::nullopt, u"b"}, ",", 64), (Result{0, "a,b"}));
    EXPECT_EQ(Joined({std::nullopt, u"", u"b", u""}, ",", 64), (Result{0, "b"}));
    EXPECT_EQ(Joined({std::nullopt, u""}, ",", 64), (Result{0, ""}));
}

TEST_F(Join, EmptyArrayLeavesTheBuffer) {
    EXPECT_EQ(Joined({}, ",", 64), (Result{0, ""}));
}

TEST_F(Join, NullArrayCountsAsEmpty) {
    char acOut[8] = "ab";
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, nullptr, ",", acOut, sizeof(acOut)), 0u);
    EXPECT_STREQ(acOut, "ab");
}

TEST_F(Join, AppendsToWhatIsThere) {
    EXPECT_EQ(Joined({u"a", u"b"}, ",", 64, "x="), (Result{0, "x=a,b"}));
}

TEST_F(Join, OneElementHasNoSeparator) {
    EXPECT_EQ(Joined({u"http://a.b"}, ",", 64), (Result{0, "http://a.b"}));
}

TEST_F(Join, NonAsciiElements) {
    EXPECT_EQ(Joined({u"\u00E9", u"\U0001F600"}, ",", 64),
              (Result{0, "\xC3\xA9,\xF0\x9F\x98\x80"}));
}

TEST_F(Join, SeparatorOfSeveralCharacters) {
    EXPECT_EQ(Joined({u"a", u"b", u"c"}, "--", 64), (Result{0, "a--b--c"}));
    EXPECT_EQ(Joined({u"a"}, "; ; ", 64), (Result{0, "a"}));
}

TEST_F(Join, SeparatorInsideTheLastElementStays) {
    EXPECT_EQ(Joined({u"a", u"b,c"}, ",", 64), (Result{0, "a,b,c"}));
    EXPECT_EQ(Joined({u"a", u"b,"}, ",", 64), (Result{0, "a,b,"}));
    EXPECT_EQ(Joined({u"-"}, "--", 64), (Result{0, "-"}));
}

TEST_F(Join, ElementThatIsTheSeparator) {
    EXPECT_EQ(Joined({u","}, ",", 64), (Result{0, ","}));
}

// The text "ab,cd," needs 6 bytes and its zero within one byte less than the buffer has.
TEST_F(Join, FitsExactly) {
    EXPECT_EQ(Joined({u"ab", u"cd"}, ",", 8), (Result{0, "ab,cd"}));
}

TEST_F(Join, LastSeparatorDoesNotFit) {
    EXPECT_EQ(Joined({u"ab", u"cd"}, ",", 7), (Result{1, "ab,cd"}));
}

TEST_F(Join, LastElementDoesNotFit) {
    EXPECT_EQ(Joined({u"ab", u"cd"}, ",", 6), (Result{1, "ab,"}));
    EXPECT_EQ(Joined({u"ab", u"cd"}, ",", 5), (Result{1, "ab,"}));
}

TEST_F(Join, FirstSeparatorDoesNotFit) {
    EXPECT_EQ(Joined({u"ab", u"cd"}, ",", 4), (Result{1, "ab"}));
}

TEST_F(Join, NothingFits) {
    for (const uint32_t uiSize : {3u, 2u, 1u}) {
        EXPECT_EQ(Joined({u"ab", u"cd"}, ",", uiSize), (Result{1, ""})) << uiSize;
    }
}

TEST_F(Join, LongSeparatorDoesNotFitPartly) {
    // "a" fits, "a----" needs 5 bytes and a zero in one byte less than the size.
    EXPECT_EQ(Joined({u"a"}, "----", 7), (Result{0, "a"}));
    EXPECT_EQ(Joined({u"a"}, "----", 6), (Result{1, "a"}));
}

TEST_F(Join, StopsAtTheFirstThatDoesNotFit) {
    stEnv.asCalls.clear();
    EXPECT_EQ(Joined({u"a", u"long", u"b"}, ",", 6), (Result{1, "a,"}));
    EXPECT_EQ(std::count(stEnv.asCalls.begin(), stEnv.asCalls.end(), "GetObjectArrayElement 2"), 0);
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Join, ReadsTheLengthOnEveryPass) {
    const jobjectArray jTexts = stEnv.JavaTexts({u"a", u"b", u"c"});
    char acOut[32] = {};
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, ",", acOut, sizeof(acOut)), 0u);
    // Each conversion asks for the length of its bytes; the array is asked once before the loop
    // and once for each pass, the last one included.
    EXPECT_EQ(std::count(stEnv.asCalls.begin(), stEnv.asCalls.end(), "GetArrayLength"), 3 + 5);
}

/// The element function as it is, and one that adds an element to the array on its first call.
const JNINativeInterface_ *g_pstPlainTable = nullptr;

jobject TakeAndGrow(JNIEnv *pstEnv, jobjectArray jArray, jsize iIndex) {
    if (iIndex == 0) {
        auto &apstElements = static_cast<FakeJni *>(pstEnv)->Shared(jArray)->apstElements;
        apstElements.push_back(apstElements.front());
    }
    return g_pstPlainTable->GetObjectArrayElement(pstEnv, jArray, iIndex);
}

TEST_F(Join, SeesElementsAddedOnTheWay) {
    g_pstPlainTable = stEnv.functions;
    JNINativeInterface_ stTable = *g_pstPlainTable;
    stTable.GetObjectArrayElement = TakeAndGrow;
    stEnv.functions = &stTable;
    EXPECT_EQ(Joined({u"a", u"b"}, ",", 64), (Result{0, "a,b,a"}));
    stEnv.functions = g_pstPlainTable;
}

TEST_F(Join, AsksForRoomForItsReferences) {
    JavaArray asTexts(500, u"e");
    stEnv.asCalls.clear();
    EXPECT_EQ(Joined(asTexts, ",", 2000).uiStatus, 0u);
    EXPECT_EQ(std::count(stEnv.asCalls.begin(), stEnv.asCalls.end(), "EnsureLocalCapacity 2000"),
              1);
    EXPECT_EQ(stEnv.uiLocals, 2000u);
}

TEST_F(Join, RefusedRoomIsAFailure) {
    stEnv.uiCapacityMax = 7;
    EXPECT_EQ(Joined({u"a", u"b"}, ",", 64), (Result{1, ""}));
    EXPECT_FALSE(stEnv.bPending);
}

TEST_F(Join, AnElementThatCannotBeHadIsSkipped) {
    for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
        stEnv.eFailure = eFailure;
        // The room is asked for first, then the first element.
        stWorld.Plan({Op::kJni, 2, false});
        EXPECT_EQ(Joined({u"a", u"b"}, ",", 64), (Result{0, "b"}));
        stEnv.EndCall();
        // The sixth call after it is the first element's GetByteArrayElements.
        stWorld.Plan({Op::kJni, 7, false});
        EXPECT_EQ(Joined({u"a", u"b"}, ",", 64), (Result{0, "b"}));
        stEnv.EndCall();
    }
    stWorld.Plan({Op::kAlloc, 2, false});
    EXPECT_EQ(Joined({u"a", u"b", u"c"}, ",", 64), (Result{0, "a,c"}));
}

TEST_F(Join, RefusesWhatItCannotWorkWith) {
    char acOut[8] = {};
    const jobjectArray jTexts = stEnv.JavaTexts({u"a"});
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, nullptr, acOut, sizeof(acOut)), 1u);
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, "", acOut, sizeof(acOut)), 1u);
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, ",", nullptr, 8), 1u);
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, ",", acOut, 0), 1u);
    EXPECT_EQ(JNI_COMMON_GetStrFromObjArray(nullptr, jTexts, ",", acOut, sizeof(acOut)), 1u);
    EXPECT_STREQ(acOut, "");
}

TEST_F(JniBase, NothingIsConvertedWithoutAnEnvironment) {
    const jstring jText = stEnv.JavaText(u"abc");
    EXPECT_EQ(jstring2char(nullptr, jText), nullptr);
    EXPECT_EQ(jstringtochar(nullptr, jText), nullptr);
    EXPECT_EQ(char2jstring(nullptr, "abc"), nullptr);
    EXPECT_TRUE(stEnv.asCalls.empty());
}

// Four references an element: more of them than a number tells are not asked for, and a number that
// wrapped would be granted.
TEST_F(JniBase, MoreReferencesThanANumberTellsAreRefused) {
    stEnv.uiCapacityMax = INT_MAX;
    EXPECT_TRUE(EnsureElementRefs(&stEnv, INT_MAX / 4));
    stEnv.asCalls.clear();
    EXPECT_FALSE(EnsureElementRefs(&stEnv, INT_MAX / 4 + 1));
    EXPECT_FALSE(EnsureElementRefs(&stEnv, INT_MAX));
    EXPECT_TRUE(stEnv.asCalls.empty());
}

}  // namespace
}  // namespace wap::test
