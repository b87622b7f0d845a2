// Java arrays of MAC addresses, by their rules.
#include "common/mac_arrays.h"

#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

using Macs = std::vector<std::optional<std::u16string>>;
/// What a table holds; nullopt for an empty slot.
using Slots = std::vector<std::optional<std::string>>;

constexpr MacArrayRules kPlain = {
    8,    EmptyText::kCounts, BadMac::kLeftOut, NoMacs::kIsWork, "\r\n too many for this test \r\n",
    false};

MacArrayRules With(EmptyText eEmpty, BadMac eBad) {
    MacArrayRules stRules = kPlain;
    stRules.eEmpty = eEmpty;
    stRules.eBad = eBad;
    return stRules;
}

class MacArrays : public BridgeTest {
  protected:
    /// What the conversion makes of an array; nothing when it fails. The table is gone afterwards.
    std::optional<Slots> Converted(jobjectArray jMacs, const MacArrayRules &stRules) {
        std::optional<Slots> asSlots;
        {
            MacTable stTable;
            if (ConvertMacs(&stEnv, WAP_SPOT, jMacs, stRules, stTable)) {
                asSlots.emplace();
                for (uint32_t i = 0; i < stTable.Count(); ++i) {
                    const char *pcMac = stTable.Lend(i);
                    asSlots->push_back(pcMac == nullptr ? std::nullopt
                                                        : std::optional<std::string>(pcMac));
                }
            }
        }
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
        EXPECT_FALSE(stEnv.bPending);
        stEnv.EndCall();
        return asSlots;
    }
    std::optional<Slots> Converted(const Macs &asMacs, const MacArrayRules &stRules) {
        return Converted(stEnv.JavaTexts(asMacs), stRules);
    }

    void ExpectRecorded(uint32_t uiArg) {
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.astFaults[0].sFile, "mac_arrays_test.cpp");
        EXPECT_EQ(stPlatform.astFaults[0].uiCode, 1u);
        EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{uiArg, 0, 0, 0}));
        stPlatform.astFaults.clear();
    }

    Calls Traces() {
        Calls asTexts;
        for (const TraceRecord &stTrace : stPlatform.astTraces) {
            EXPECT_EQ(stTrace.uiMid, 249u);
            EXPECT_EQ(stTrace.sFile, "mac_arrays_test.cpp");
            asTexts.push_back(stTrace.sText);
        }
        return asTexts;
    }
};

TEST_F(MacArrays, TextsKeepTheirOrder) {
    EXPECT_EQ(Converted(Macs{u"a", u"b", u"c"}, kPlain), (Slots{"a", "b", "c"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

TEST_F(MacArrays, NullArrayIsAnEmptyOne) {
    EXPECT_EQ(Converted(static_cast<jobjectArray>(nullptr), kPlain), Slots{});
    EXPECT_EQ(Converted(Macs{}, kPlain), Slots{});
    for (const std::string &sCall : stEnv.asCalls) {
        EXPECT_EQ(sCall.find("EnsureLocalCapacity"), std::string::npos);
    }
}

TEST_F(MacArrays, EmptyTextCountsOrIsBad) {
    const Macs asMacs = {u"a", u"", u"c"};
    EXPECT_EQ(Converted(asMacs, With(EmptyText::kCounts, BadMac::kLeftOut)), (Slots{"a", "", "c"}));
    EXPECT_EQ(Converted(asMacs, With(EmptyText::kCounts, BadMac::kRefuses)), (Slots{"a", "", "c"}));
    EXPECT_EQ(Converted(asMacs, With(EmptyText::kIsMissing, BadMac::kLeftOut)), (Slots{"a", "c"}));
    EXPECT_EQ(Converted(asMacs, With(EmptyText::kIsMissing, BadMac::kStaysEmpty)),
              (Slots{"a", std::nullopt, "c"}));
    EXPECT_EQ(Converted(asMacs, With(EmptyText::kIsMissing, BadMac::kRefuses)), std::nullopt);
}

TEST_F(MacArrays, BadElementIsLeftOutStaysEmptyOrRefusesAll) {
    for (const EmptyText eEmpty : {EmptyText::kCounts, EmptyText::kIsMissing}) {
        const Macs asMacs = {u"a", u"b", std::nullopt, u"d", std::nullopt};
        EXPECT_EQ(Converted(asMacs, With(eEmpty, BadMac::kLeftOut)), (Slots{"a", "b", "d"}));
        EXPECT_EQ(Converted(asMacs, With(eEmpty, BadMac::kStaysEmpty)),
                  (Slots{"a", "b", std::nullopt, "d", std::nullopt}));
        EXPECT_TRUE(stPlatform.astFaults.empty());
        EXPECT_TRUE(stPlatform.astTraces.empty());
        EXPECT_EQ(Converted(asMacs, With(eEmpty, BadMac::kRefuses)), std::nullopt);
        ExpectRecorded(2);
        EXPECT_EQ(Traces(), (Calls{"\r\n apcMacAddr[2] memory allocate is failed \r\n"}));
        stPlatform.astTraces.clear();
    }
}

TEST_F(MacArrays, ElementWithoutMemoryIsABadOne) {
    const Macs asMacs = {u"a", u"b", u"c"};
    const struct {
        BadMac eBad;
        std::optional<Slots> asWanted;
    } astCases[] = {
        {BadMac::kLeftOut, Slots{"a", "c"}},
        {BadMac::kStaysEmpty, Slots{"a", std::nullopt, "c"}},
        {BadMac::kRefuses, std::nullopt},
    };
    for (const auto &stCase : astCases) {
        stWorld.Plan({Op::kAlloc, 2, false});
        EXPECT_EQ(Converted(asMacs, With(EmptyText::kCounts, stCase.eBad)), stCase.asWanted);
        stWorld.Plan({});
    }
}

/// Rules of a method whose worker takes a table without any text for everyone.
MacArrayRules OfEveryone(EmptyText eEmpty, BadMac eBad) {
    MacArrayRules stRules = With(eEmpty, eBad);
    stRules.eNone = NoMacs::kIsEveryone;
    return stRules;
}

TEST_F(MacArrays, NobodyIsEveryone) {
    for (const BadMac eBad : {BadMac::kLeftOut, BadMac::kStaysEmpty}) {
        const MacArrayRules stRules = OfEveryone(EmptyText::kIsMissing, eBad);
        const bool bKept = eBad == BadMac::kStaysEmpty;
        EXPECT_EQ(Converted(static_cast<jobjectArray>(nullptr), stRules), Slots{});
        EXPECT_EQ(Converted(Macs{}, stRules), Slots{});
        EXPECT_EQ(Converted(Macs{std::nullopt}, stRules), Slots(bKept ? 1 : 0, std::nullopt));
        EXPECT_EQ(Converted(Macs{u"", std::nullopt}, stRules), Slots(bKept ? 2 : 0, std::nullopt));
        EXPECT_EQ(Converted(Macs{u""}, OfEveryone(EmptyText::kCounts, eBad)), Slots{""});
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// One that is lost must not make everyone of somebody.
TEST_F(MacArrays, LostElementsAreNotEveryone) {
    const Macs asArrays[] = {{u"a"}, {u"a", std::nullopt}, {std::nullopt, u"a"}, {u"", u"a"}};
    for (const EmptyText eEmpty : {EmptyText::kCounts, EmptyText::kIsMissing}) {
        for (const BadMac eBad : {BadMac::kLeftOut, BadMac::kStaysEmpty}) {
            for (const Macs &asMacs : asArrays) {
                // The text of "a" is the last that takes memory.
                stWorld.Plan({Op::kAlloc, asMacs[0] == u"" ? 2u : 1u, false});
                EXPECT_EQ(Converted(asMacs, OfEveryone(eEmpty, eBad)), std::nullopt);
                stWorld.Plan({});
                ASSERT_EQ(stPlatform.astFaults.size(), 1u);
                EXPECT_EQ(stPlatform.astFaults[0].auiArgs,
                          (Args{1, static_cast<uint32_t>(asMacs.size()), 0, 0}));
                stPlatform.astFaults.clear();
            }
        }
    }
}

TEST_F(MacArrays, AnyCallOfJavaCanLoseAnElement) {
    for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
        stEnv.eFailure = eFailure;
        for (const char *pcCall : {"GetObjectArrayElement", "FindClass", "NewStringUTF",
                                   "GetMethodID", "CallObjectMethod", "GetByteArrayElements"}) {
            stWorld.Plan({Op::kJni, 1, false, pcCall});
            // That there is no element can't be told from a null one, without an exception.
            const bool bNull = eFailure == JniFailure::kNullAlone &&
                               std::string_view(pcCall) == "GetObjectArrayElement";
            EXPECT_EQ(Converted(Macs{u"a"}, OfEveryone(EmptyText::kIsMissing, BadMac::kLeftOut)),
                      bNull ? std::optional(Slots{}) : std::nullopt)
                << pcCall;
            stWorld.Plan({});
            EXPECT_EQ(stPlatform.astFaults.size(), bNull ? 0u : 1u);
            stPlatform.astFaults.clear();
        }
    }
}

// Somebody is named still, and the others are left alone.
TEST_F(MacArrays, LostElementsAmongOthersAreBadOnes) {
    stWorld.Plan({Op::kAlloc, 2, false});
    EXPECT_EQ(Converted(Macs{u"a", u"b"}, OfEveryone(EmptyText::kIsMissing, BadMac::kStaysEmpty)),
              (Slots{"a", std::nullopt}));
    stWorld.Plan({});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(MacArrays, LimitIsTheMethodsOwn) {
    EXPECT_EQ(Converted(Macs(8, u"m"), kPlain), Slots(8, "m"));
    EXPECT_EQ(Converted(Macs(9, u"m"), kPlain), std::nullopt);
    ExpectRecorded(9);
    EXPECT_EQ(Traces(), (Calls{"\r\n too many for this test \r\n"}));
    // Elements that would be left out count as well.
    EXPECT_EQ(Converted(Macs(9, std::nullopt), kPlain), std::nullopt);
}

TEST_F(MacArrays, NoLimitPassesTheTablesSize) {
    MacArrayRules stRules = kPlain;
    stRules.uiMax = 100000;
    EXPECT_EQ(Converted(Macs(128, u"m"), stRules), Slots(128, "m"));
    EXPECT_EQ(Converted(Macs(129, u"m"), stRules), std::nullopt);
    ExpectRecorded(129);
}

TEST_F(MacArrays, EachTextCanBeTraced) {
    MacArrayRules stRules = With(EmptyText::kCounts, BadMac::kStaysEmpty);
    stRules.bTraceEach = true;
    EXPECT_EQ(Converted(Macs{u"a", std::nullopt, u"", u"%s"}, stRules),
              (Slots{"a", std::nullopt, "", "%s"}));
    EXPECT_EQ(Traces(), (Calls{"\r\n jMacAddrArray[0]=a \r\n", "\r\n jMacAddrArray[2]= \r\n",
                               "\r\n jMacAddrArray[3]=%s \r\n"}));
}

// Four references for each element, and four for the text that the method answers with.
TEST_F(MacArrays, RoomForReferencesIsAskedForAndEnough) {
    MacArrayRules stRules = kPlain;
    stRules.uiMax = 128;
    MacTable stTable;
    ASSERT_TRUE(ConvertMacs(&stEnv, WAP_SPOT, stEnv.JavaTexts(Macs(128, u"m")), stRules, stTable));
    EXPECT_EQ(stEnv.uiLocals, 512u);
    EXPECT_NE(char2jstring(&stEnv, "an answer"), nullptr);
    EXPECT_EQ(stEnv.uiLocals, 516u);
    EXPECT_LE(stEnv.uiLocals, stEnv.uiCapacity);
}

TEST_F(MacArrays, RefusedRoomIsAFailure) {
    for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
        stEnv.eFailure = eFailure;
        stWorld.Plan({Op::kJni, 1, false});
        EXPECT_EQ(Converted(Macs{u"a", u"b"}, kPlain), std::nullopt);
        stWorld.Plan({});
        ExpectRecorded(2);
    }
    for (const std::string &sCall : stEnv.asCalls) {
        EXPECT_EQ(sCall.find("GetObjectArrayElement"), std::string::npos);
    }
}

// ---- the call of a worker ----

/// What the worker of these tests was called with, and what it answers.
struct WorkerScript {
    std::vector<Slots> astCalls;
    uint32_t uiResult = 0;
};
WorkerScript g_stWorker;

uint32_t Worker(const char *const *ppcMacs, uint32_t uiCount) {
    Slots asSlots;
    for (uint32_t i = 0; i < uiCount; ++i) {
        asSlots.push_back(ppcMacs[i] == nullptr ? std::nullopt
                                                : std::optional<std::string>(ppcMacs[i]));
    }
    g_stWorker.astCalls.push_back(asSlots);
    return g_stWorker.uiResult;
}

class MacWorkers : public MacArrays {
  protected:
    void SetUp() override {
        MacArrays::SetUp();
        g_stWorker = {};
    }
    jint Call(jobjectArray jMacs, const MacArrayRules &stRules) {
        const jint iResult = CallMacWorker(&stEnv, WAP_SPOT, jMacs, stRules, Worker);
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
        stEnv.EndCall();
        return iResult;
    }
    jint Call(const Macs &asMacs, const MacArrayRules &stRules) {
        return Call(stEnv.JavaTexts(asMacs), stRules);
    }
};

TEST_F(MacWorkers, WorkerGetsTheTable) {
    EXPECT_EQ(Call(Macs{u"a", std::nullopt, u"c"}, With(EmptyText::kCounts, BadMac::kStaysEmpty)),
              0);
    EXPECT_EQ(g_stWorker.astCalls, (std::vector<Slots>{{"a", std::nullopt, "c"}}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(MacWorkers, FailedWorkerIsMinusOneAndRecorded) {
    for (const uint32_t uiResult : {1u, kRefused, kMinusOne}) {
        g_stWorker.uiResult = uiResult;
        EXPECT_EQ(Call(Macs{u"a"}, kPlain), -1);
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.astFaults[0].uiCode, uiResult);
        EXPECT_EQ(stPlatform.astFaults[0].sFile, "mac_arrays_test.cpp");
        stPlatform.astFaults.clear();
    }
}

TEST_F(MacWorkers, NoWorkerWithoutATable) {
    EXPECT_EQ(Call(Macs(9, u"m"), kPlain), -1);
    EXPECT_EQ(Call(Macs{std::nullopt}, With(EmptyText::kCounts, BadMac::kRefuses)), -1);
    EXPECT_TRUE(g_stWorker.astCalls.empty());
}

TEST_F(MacWorkers, NoElementsAreWorkOrDoneAtOnce) {
    MacArrayRules stRules = kPlain;
    EXPECT_EQ(Call(static_cast<jobjectArray>(nullptr), stRules), 0);
    EXPECT_EQ(Call(Macs{}, stRules), 0);
    EXPECT_EQ(Call(Macs{std::nullopt}, stRules), 0);
    EXPECT_EQ(g_stWorker.astCalls, (std::vector<Slots>{{}, {}, {}}));
    g_stWorker = {{}, kRefused};
    stRules.eNone = NoMacs::kIsDone;
    EXPECT_EQ(Call(static_cast<jobjectArray>(nullptr), stRules), 0);
    EXPECT_EQ(Call(Macs{}, stRules), 0);
    EXPECT_TRUE(g_stWorker.astCalls.empty());
    // An empty text, and an empty slot, are elements.
    stRules.eBad = BadMac::kStaysEmpty;
    EXPECT_EQ(Call(Macs{std::nullopt}, stRules), -1);
    EXPECT_EQ(Call(Macs{u""}, stRules), -1);
    EXPECT_EQ(g_stWorker.astCalls, (std::vector<Slots>{{std::nullopt}, {""}}));
}

}  // namespace
}  // namespace wap::test
