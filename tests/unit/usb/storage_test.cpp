// The list of storage volumes: what is asked, measured and answered.
#include <sys/vfs.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "faults/fault_sweep.h"
#include "support/secret_watch.h"
#include "support/wire_bytes.h"
#include "system/jni_storage_info.h"
#include "unit/usb/usb_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kStorageFile = "jni_storage_info.cpp";
constexpr uint32_t kNoObject = 0xF7100008;
constexpr uint64_t kMost = INT64_MAX;

class StorageTest : public UsbTest {
  protected:
    std::string Ask() {
        stPlatform.ClearRecords();
        const auto sAnswer = stEnv.Utf8Of(WAP_USB(getStorageInfo)(&stEnv, stEnv.JavaObject()));
        stEnv.EndCall();
        return sAnswer.value_or("(null)");
    }
    void AnswerDiscs(const std::vector<std::string> &asPaths) {
        stPlatform.mapReplies[kAskDiscs] = {0, DiscBytes(asPaths)};
    }
    /// The worker's code, with a buffer of that size; what it wrote is in sText.
    uint32_t Fill(uint32_t uiSize) {
        stPlatform.ClearRecords();
        std::string sBuffer(uiSize, '!');
        const uint32_t uiResult = VT_KAVO_JNI_GetStorageInfo(sBuffer.data(), uiSize);
        sText = sBuffer;
        return uiResult;
    }

    std::string sText;
};

TEST_F(StorageTest, AsksMeasuresAndAnswers) {
    const std::string sWanted = std::string("{ \"Result\": 0, \"List\": [ ") + kMeasuredVolume +
                                ", " + kUnknownVolume + " ] }";
    EXPECT_EQ(Ask(), sWanted);
    // Five characters, and no zero behind them.
    ExpectOnlyRpc(stPlatform, {"usb_mngt", 0, kAskDiscs, "input", 7172, 30000});
    EXPECT_EQ(stPlatform.asCalls, (Calls{"statfs /mnt/usb1", "statfs /mnt/gone"}));
    EXPECT_EQ(LaterTraces(),
              (Calls{"ulTotal:4294967296 ulUsed:2147483648 ulFree:2147483648\r\n",
                     "ulTotal:0 ulUsed:0 ulFree:0\r\n", "pcJsonStr:" + sWanted + "\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(StorageTest, NoVolumesAreAnEmptyList) {
    AnswerDiscs({});
    EXPECT_EQ(Ask(), "{ \"Result\": 0, \"List\": [ ] }");
    // A reply that says nothing is one of none.
    stPlatform.mapReplies[kAskDiscs] = {0, ""};
    EXPECT_EQ(Ask(), "{ \"Result\": 0, \"List\": [ ] }");
}

TEST_F(StorageTest, VolumesComeInTheirOrder) {
    AnswerDiscs({"/c", "/a", "/c", "/b"});
    Ask();
    EXPECT_EQ(stPlatform.asCalls, (Calls{"statfs /c", "statfs /a", "statfs /c", "statfs /b"}));
}

TEST_F(StorageTest, SizesBeyond32BitsAreExact) {
    AnswerDiscs({"/big"});
    // 20 TB and a bit.
    stScript.mapVolumes["/big"] = {4882812501, 3, 1, 4096};
    EXPECT_EQ(Ask(),
              "{ \"Result\": 0, \"List\": [ { \"storagePath\": \"\\/big\", "
              "\"totalStorage\": 20000000004096, \"validStorage\": 12288 } ] }");
    EXPECT_EQ(LaterTraces().at(0), "ulTotal:20000000004096 ulUsed:19999999991808 ulFree:12288\r\n");
}

// A count is a claim: the reply has room for 32.
TEST_F(StorageTest, StopsAt32Volumes) {
    const std::vector<std::string> asPaths(32, "/m");
    for (const uint32_t uiCount : {32u, 33u, 0x80000000u, 0xFFFFFFFFu}) {
        stPlatform.mapReplies[kAskDiscs] = {0, DiscBytes(asPaths, uiCount)};
        Ask();
        EXPECT_EQ(stPlatform.CountCalls("statfs /m"), 32u) << uiCount;
        EXPECT_EQ(stPlatform.CountCalls("statfs"), 32u) << uiCount;
    }
}

TEST_F(StorageTest, PathEndsWithItsField) {
    const std::string sPath = "/" + std::string(127, 'p');
    AnswerDiscs({sPath, "/next"});
    EXPECT_EQ(Ask(), "{ \"Result\": 0, \"List\": [ { \"storagePath\": \"\\/" +
                         std::string(127, 'p') +
                         "\", \"totalStorage\": 0, \"validStorage\": 0 }, { \"storagePath\": "
                         "\"\\/next\", \"totalStorage\": 0, \"validStorage\": 0 } ] }");
    EXPECT_EQ(stPlatform.asCalls.at(0), "statfs " + sPath);
    // The last entry's, too: nothing is behind it.
    stPlatform.mapReplies[kAskDiscs] = {
        0, DiscBytes(std::vector<std::string>(32, std::string(128, 'q')))};
    Ask();
    EXPECT_EQ(stPlatform.CountCalls("statfs " + std::string(128, 'q')), 32u);
}

TEST_F(StorageTest, RefusalIsAFaultOfOne) {
    stPlatform.mapReplies[kAskDiscs].uiStatus = kRefused;
    EXPECT_EQ(Ask(), "{ \"Result\": 1 }");
    EXPECT_TRUE(stPlatform.asCalls.empty());
    // By the call, the two workers and the entry.
    EXPECT_EQ(FaultCodes(stPlatform), Codes(4, kRefused));
    EXPECT_EQ(TimesRecorded(kStorageFile, kRefused), 2u);
    EXPECT_EQ(TimesRecorded(kEntryFile, kRefused), 1u);
    // Unchanged.
    EXPECT_EQ(Fill(512), kRefused);
    EXPECT_EQ(sText, std::string(512, '!'));
}

// ---- the buffer ----

/// The answer about one volume that has no size, whose path has so many characters.
std::string AnswerOf(size_t uiPath) {
    return "{ \"Result\": 0, \"List\": [ { \"storagePath\": \"" + std::string(uiPath, 'p') +
           "\", \"totalStorage\": 0, \"validStorage\": 0 } ] }";
}

TEST_F(StorageTest, AnswerOf511CharactersFitsAndOneMoreDoesNot) {
    // Four volumes, the last of which decides.
    const auto Paths = [](size_t uiLast) {
        return std::vector<std::string>{std::string(50, 'a'), std::string(50, 'b'),
                                        std::string(50, 'c'), std::string(uiLast, 'd')};
    };
    AnswerDiscs(Paths(1));
    const size_t uiRest = 511 - Ask().size();
    ASSERT_LT(uiRest, 127u);
    AnswerDiscs(Paths(1 + uiRest));
    EXPECT_EQ(Ask().size(), 511u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    AnswerDiscs(Paths(2 + uiRest));
    EXPECT_EQ(Ask(), "{ \"Result\": 1 }");
    EXPECT_EQ(TimesRecorded(kStorageFile, 0xF7700005, {512, 512, 0, 0}), 1u);
    EXPECT_EQ(TimesRecorded(kEntryFile, 0xF7700005), 1u);
}

TEST_F(StorageTest, WorkerWritesWholeAnswersOnly) {
    AnswerDiscs({"p"});
    const std::string sWanted = AnswerOf(1);
    EXPECT_EQ(Fill(static_cast<uint32_t>(sWanted.size()) + 1), 0u);
    EXPECT_EQ(sText, sWanted + '\0');
    EXPECT_EQ(Fill(600), 0u);
    EXPECT_EQ(sText.c_str(), sWanted);
    for (const uint32_t uiSize : {static_cast<uint32_t>(sWanted.size()), 17u, 1u, 0u}) {
        EXPECT_EQ(Fill(uiSize), 0xF7700005u);
        EXPECT_EQ(sText, std::string(uiSize, '!'));
        ExpectOnlyFault(kStorageFile, 0xF7700005,
                        {static_cast<uint32_t>(sWanted.size()), uiSize, 0, 0});
    }
}

TEST_F(StorageTest, WorkersWithoutAPlaceForTheResultFail) {
    EXPECT_EQ(VT_KAVO_JNI_GetStorageInfo(nullptr, 512), kNoObject);
    ExpectOnlyFault(kStorageFile, kNoObject, {});
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_KAVO_JNI_GetDiscInfo(nullptr), 1u);
    ExpectOnlyFault(kStorageFile, 0xF7702001, {});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_KAVO_JNI_BuildJsonItem("/p", 1, 2, nullptr), 0xF7702001u);
    ExpectOnlyFault(kStorageFile, 0xF7702001, {});
    VT_KAVO_JNI_GetStorage("/mnt/usb1", nullptr, nullptr, nullptr);
}

TEST_F(StorageTest, DiscInfoIsTheReplyAsItCame) {
    DiscInfoReply stReply = {};
    EXPECT_EQ(VT_KAVO_JNI_GetDiscInfo(&stReply), 0u);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&stReply), sizeof(stReply)),
              DiscBytes({"/mnt/usb1", "/mnt/gone"}));
}

// ---- measuring ----

struct Sizes {
    uint64_t ullTotal = 1;
    uint64_t ullUsed = 1;
    uint64_t ullFree = 1;
};

Sizes Measure(const char *pcPath) {
    Sizes stSizes;
    VT_KAVO_JNI_GetStorage(pcPath, &stSizes.ullTotal, &stSizes.ullUsed, &stSizes.ullFree);
    return stSizes;
}

TEST_F(StorageTest, FreeCountsAlsoWhatIsKeptForTheSuperuser) {
    stScript.mapVolumes["/v"] = {1000, 300, 200, 512};
    const Sizes stSizes = Measure("/v");
    EXPECT_EQ(stSizes.ullTotal, 512000u);
    EXPECT_EQ(stSizes.ullUsed, 358400u);
    EXPECT_EQ(stSizes.ullFree, 153600u);
}

TEST_F(StorageTest, WhatCanNotBeMeasuredHasNoBytes) {
    for (const char *pcPath : {"/mnt/gone", "", static_cast<const char *>(nullptr)}) {
        const Sizes stSizes = Measure(pcPath);
        EXPECT_EQ(stSizes.ullTotal, 0u);
        EXPECT_EQ(stSizes.ullUsed, 0u);
        EXPECT_EQ(stSizes.ullFree, 0u);
    }
}

TEST_F(StorageTest, FiguresThatMakeNoSenseStayWithinANumber) {
    stScript.mapVolumes["/v"] = {UINT64_MAX, UINT64_MAX - 2, 0, 4096};
    Sizes stSizes = Measure("/v");
    EXPECT_EQ(stSizes.ullTotal, kMost);
    EXPECT_EQ(stSizes.ullUsed, 8192u);
    EXPECT_EQ(stSizes.ullFree, kMost);
    // Just beyond, and just within.
    stScript.mapVolumes["/v"] = {uint64_t{1} << 51, (uint64_t{1} << 51) - 1, 0, 4096};
    stSizes = Measure("/v");
    EXPECT_EQ(stSizes.ullTotal, kMost);
    EXPECT_EQ(stSizes.ullFree, (uint64_t{1} << 63) - 4096);
    // Products that need a 65th bit, and without it would be small.
    constexpr uint64_t kWrapping = uint64_t{1} << 52;
    stScript.mapVolumes["/v"] = {kWrapping + 1, kWrapping, 0, 4096};
    stSizes = Measure("/v");
    EXPECT_EQ(stSizes.ullTotal, kMost);
    EXPECT_EQ(stSizes.ullUsed, 4096u);
    EXPECT_EQ(stSizes.ullFree, kMost);
    // More free than there is.
    stScript.mapVolumes["/v"] = {10, 11, 0, 4096};
    EXPECT_EQ(Measure("/v").ullUsed, 0u);
}

TEST_F(StorageTest, RealFileSystem) {
    stScript.bReal = true;
    const Sizes stSizes = Measure("/");
    EXPECT_GT(stSizes.ullTotal, 0u);
    EXPECT_LE(stSizes.ullFree, stSizes.ullTotal);
    EXPECT_EQ(stSizes.ullUsed, stSizes.ullTotal - stSizes.ullFree);
    EXPECT_EQ(Measure("/no such folder").ullTotal, 0u);
}

// ---- one volume's object ----

TEST_F(StorageTest, ItemHasThreeMembersInTheirOrder) {
    json_object *pstItem = nullptr;
    ASSERT_EQ(VT_KAVO_JNI_BuildJsonItem("/a \"b\"", 4294967297, kMost, &pstItem), 0u);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstItem),
                 "{ \"storagePath\": \"\\/a \\\"b\\\"\", \"totalStorage\": 4294967297, "
                 "\"validStorage\": 9223372036854775807 }");
    JNI_JSON_ObjPut(pstItem);
    ASSERT_EQ(VT_KAVO_JNI_BuildJsonItem("", UINT64_MAX, 0, &pstItem), 0u);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstItem),
                 "{ \"storagePath\": \"\", \"totalStorage\": 9223372036854775807, "
                 "\"validStorage\": 0 }");
    JNI_JSON_ObjPut(pstItem);
}

TEST_F(StorageTest, ItemWithoutAPathFails) {
    json_object *pstItem = nullptr;
    EXPECT_EQ(VT_KAVO_JNI_BuildJsonItem(nullptr, 1, 2, &pstItem), kMinusOne);
    EXPECT_EQ(pstItem, nullptr);
    // With how many members could not be made.
    EXPECT_EQ(TimesRecorded(kStorageFile, kMinusOne, {1, 0, 0, 0}), 1u);
}

/// What each lack of memory makes of a worker's call: its code, in order of the allocations. The
/// worker must have recorded each failure itself, with these numbers where it is -1.
Codes CodesWithoutMemory(World &stWorld, const Args &auiArgs,
                         const std::function<uint32_t()> &fnCall) {
    Codes auiCodes;
    for (uint32_t uiAt = 1;; ++uiAt) {
        stWorld.stPlatform.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, false});
        const uint32_t uiCode = fnCall();
        const bool bHit = stWorld.Count(Op::kAlloc) >= uiAt;
        stWorld.Plan({});
        stWorld.ExpectClean(std::to_string(uiAt));
        if (!bHit) {
            EXPECT_EQ(uiCode, 0u);
            return auiCodes;
        }
        EXPECT_EQ(TimesRecorded(stWorld.stPlatform, kStorageFile, uiCode,
                                uiCode == kMinusOne ? auiArgs : Args{}),
                  uiCode == 0 ? 0u : 1u)
            << uiAt << ": " << uiCode;
        auiCodes.push_back(uiCode);
    }
}

TEST_F(StorageTest, ItemWithoutMemoryFails) {
    const Codes auiCodes = CodesWithoutMemory(stWorld, {1, 0, 0, 0}, [&] {
        json_object *pstItem = nullptr;
        const uint32_t uiCode = VT_KAVO_JNI_BuildJsonItem("/p", 1, 2, &pstItem);
        EXPECT_EQ(pstItem != nullptr, uiCode == 0);
        if (pstItem != nullptr) {
            JNI_JSON_ObjPut(pstItem);
        }
        return uiCode;
    });
    const std::set<uint32_t> auiSet(auiCodes.begin(), auiCodes.end());
    EXPECT_EQ(auiCodes.front(), 0xF7100000u);
    EXPECT_EQ(auiSet, (std::set<uint32_t>{0xF7100000, kMinusOne}));
}

TEST_F(StorageTest, ListWithoutMemoryFailsOrLacksAVolume) {
    bool bLacked = false;
    const std::set<std::string> asAllowed = WithSomeLeftOut(
        "{ \"Result\": 0, \"List\": [ ", {kMeasuredVolume, kUnknownVolume}, ", ", " ] }", 1);
    const Codes auiCodes = CodesWithoutMemory(stWorld, {}, [&] {
        const uint32_t uiCode = Fill(512);
        if (uiCode == 0) {
            const std::string sList = UpToZero(sText);
            EXPECT_TRUE(asAllowed.contains(sList)) << sList;
            bLacked = bLacked || sList.size() < 150;
            // What is left out is in the fault log, with its place.
            EXPECT_EQ(sList.size() < 150, !stPlatform.astFaults.empty());
        }
        return uiCode;
    });
    EXPECT_TRUE(bLacked);
    EXPECT_EQ(auiCodes.front(), 0xF7108001u);
    const std::set<uint32_t> auiSet(auiCodes.begin(), auiCodes.end());
    EXPECT_EQ(auiSet, (std::set<uint32_t>{0, 0xF7108001, kNoObject, kMinusOne}));
}

// The list has to grow for the last of 32.
TEST_F(StorageTest, VolumeThatTheListHasNoPlaceForIsReleasedAndRecorded) {
    AnswerDiscs(std::vector<std::string>(32, "/m"));
    size_t uiRefused = 0;
    const Codes auiCodes = CodesWithoutMemory(stWorld, {}, [&] {
        const uint32_t uiCode = Fill(4096);
        const size_t uiListed = CountOf(sText, "storagePath");
        const FaultRecord *pstFirst =
            stPlatform.astFaults.empty() ? nullptr : stPlatform.astFaults.data();
        if (uiCode == 0 && pstFirst != nullptr && pstFirst->sFile == "jni_json_wrap.cpp" &&
            TimesRecorded(kStorageFile, 0xF7100000, {31, 0, 0, 0}) != 0) {
            ++uiRefused;
            EXPECT_EQ(uiListed, 31u);
        }
        return uiCode;
    });
    EXPECT_EQ(uiRefused, 1u);
    EXPECT_GT(auiCodes.size(), 100u);
}

TEST_F(StorageTest, VolumeLeftOutIsRecordedWithItsPlace) {
    size_t uiRecorded = 0;
    for (uint32_t uiAt = 1; uiAt < 60; ++uiAt) {
        stWorld.Plan({Op::kAlloc, uiAt, false});
        (void)Fill(512);
        stWorld.Plan({});
        uiRecorded += TimesRecorded(kStorageFile, kMinusOne, {1, 0, 0, 0}) +
                      TimesRecorded(kStorageFile, 0xF7100000, {1, 0, 0, 0});
    }
    EXPECT_GT(uiRecorded, 2u);
}

}  // namespace
}  // namespace wap::test
