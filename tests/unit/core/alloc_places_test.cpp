// What the platform's memory accounting is told: the source's base name and the line, for each
// block that is taken and for each that is given back. The doubles complain of a wrong place in
// every test; here is which file each function names, and that the complaint comes.

#include <string>
#include <vector>

#include "common/jni_vdata.h"
#include "common/owners.h"
#include "support/entries.h"

namespace wap::test {
namespace {

using Files = std::vector<std::string>;

class AllocPlaces : public BridgeTest {
  protected:
    /// The files that took blocks from the platform, and those that gave blocks back.
    void ExpectFiles(const Files &asTaken, const Files &asGivenBack) {
        Files asFiles;
        for (const AllocRecord &stRecord : stWorld.stAllocs.astLog) {
            if (stRecord.eOrigin == Origin::kPlatform) {
                asFiles.push_back(stRecord.stPlace.sFile);
                EXPECT_GT(stRecord.stPlace.uiLine, 0u);
            } else {
                EXPECT_EQ(stRecord.stPlace.sFile, "") << "the C library is told no place";
            }
        }
        EXPECT_EQ(asFiles, asTaken);
        asFiles.clear();
        for (const AllocPlace &stPlace : stWorld.stAllocs.astReleases) {
            asFiles.push_back(stPlace.sFile);
            EXPECT_GT(stPlace.uiLine, 0u);
        }
        EXPECT_EQ(asFiles, asGivenBack);
        stWorld.ClearRecords();
    }

    VDataDesc Block(const std::string &sBytes, uint32_t uiOriginalLen) {
        return {stPlatform.AddBlock(sBytes), uiOriginalLen, static_cast<uint32_t>(sBytes.size())};
    }
};

TEST_F(AllocPlaces, AWrongPlaceIsSeen) {
    EXPECT_EQ(PlaceFault("jni_vdata.cpp", 1), "");
    EXPECT_EQ(PlaceFault("owners.h", 4000), "");
    EXPECT_EQ(PlaceFault(nullptr, 1), "no file name");
    EXPECT_EQ(PlaceFault("", 1), "no source's name: \"\"");
    EXPECT_EQ(PlaceFault("jni_vdata", 1), "no source's name: \"jni_vdata\"");
    EXPECT_EQ(PlaceFault(".cpp", 1), "no source's name: \".cpp\"");
    EXPECT_EQ(PlaceFault("jni_vdata.cpp", 0), "no line in jni_vdata.cpp");
    EXPECT_EQ(PlaceFault("bridge/common/jni_vdata.cpp", 1),
              "a path instead of a base name: bridge/common/jni_vdata.cpp");
}

TEST_F(AllocPlaces, AWrongPlaceFailsTheTestThatMeetsIt) {
    VT_OS_MemFreeD(VT_OS_MemMallocD(1, "/build/x.cpp", 1), "x.cpp", 0);
    VT_OS_MemFreeD(VT_OS_MemMallocSet(1, "x.cpp", 0), nullptr, 1);
    VT_OS_MemFreeD(nullptr, "x", 1);
    EXPECT_EQ(
        stWorld.TakeComplaints(),
        (Files{"the platform's allocator was told a path instead of a base name: /build/x.cpp",
               "the platform's release was told no line in x.cpp",
               "the platform's allocator was told no line in x.cpp",
               "the platform's release was told no file name",
               "the platform's release was told no source's name: \"x\""}));
}

TEST_F(AllocPlaces, ReadingABlockNamesTheReader) {
    for (const uint32_t uiLen : {17u, 3000u}) {
        const std::string sData(uiLen, 'q');
        const VDataDesc stDesc = Block(uiLen > 2048 ? Packed(sData) : sData, uiLen);
        void *pvData = nullptr;
        ASSERT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), 0u);
        ExpectFiles({"jni_vdata.cpp", "jni_vdata.cpp"}, {"owners.h"});
        VT_OS_MemFreeD(pvData, __FILE_NAME__, __LINE__);
        stWorld.ClearRecords();
    }
}

TEST_F(AllocPlaces, AFailedReadGivesBothBuffersBackWithAPlace) {
    const VDataDesc stDesc = Block("data", 4);
    stPlatform.mapStatus["VT_VDATA_ReadData"] = 5;
    void *pvData = nullptr;
    EXPECT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), 5u);
    ExpectFiles({"jni_vdata.cpp", "jni_vdata.cpp"}, {"owners.h", "owners.h"});
}

TEST_F(AllocPlaces, AFetchedBlockGoesBackWithAPlace) {
    {
        BulkBlock stBlock;
        ASSERT_EQ(stBlock.Make(Block("data", 4)), 0u);
        ExpectFiles({"jni_vdata.cpp", "jni_vdata.cpp"}, {"owners.h"});
    }
    ExpectFiles({}, {"owners.h"});
}

TEST_F(AllocPlaces, WritingABlockNamesTheWriter) {
    const std::string sData(2049, 'p');
    VDataDesc stDesc = {};
    ASSERT_EQ(VT_JNI_COMMON_WriteVData(&stDesc, sData.data(), 2049), 0u);
    stPlatform.setKeptBlocks.insert(stDesc.uiDataID);
    ExpectFiles({"jni_vdata.cpp"}, {"owners.h"});
}

TEST_F(AllocPlaces, ABlockThatIsMadeNamesItsMaker) {
    PlatformBlock stBlock;
    const uint32_t uiLine = __LINE__ + 1;
    ASSERT_TRUE(stBlock.Make(8, WAP_SPOT));
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].stPlace.uiLine, uiLine);
    ExpectFiles({"alloc_places_test.cpp"}, {});
    stBlock.Adopt(nullptr);
    ExpectFiles({}, {"owners.h"});
}

TEST_F(AllocPlaces, ConvertedTextsGoBackThroughTheirOwners) {
    {
        const JavaText stText = JavaText::Make(&stEnv, stEnv.JavaText(u"plain"));
        const SecretText stSecret = SecretText::Make(&stEnv, stEnv.JavaText(u"secret"));
        ASSERT_TRUE(stText && stSecret);
        ExpectFiles({}, {});
    }
    ExpectFiles({}, {"owners.h", "owners.h"});
}

TEST_F(AllocPlaces, TablesOfTextsNameTheirRelease) {
    {
        TextTable<1> stTable;
        ASSERT_TRUE(stTable.Adopt(jstring2char(&stEnv, stEnv.JavaText(u"one"))));
        ASSERT_FALSE(stTable.Adopt(jstring2char(&stEnv, stEnv.JavaText(u"too many"))));
        ExpectFiles({}, {"jni_base.cpp"});
    }
    ExpectFiles({}, {"jni_base.cpp"});
    char *apcTexts[] = {jstringtochar(&stEnv, stEnv.JavaText(u"")), nullptr,
                        jstring2char(&stEnv, stEnv.JavaText(u"b"))};
    JNI_BASE_FreeArray2MaxIndex(apcTexts, 3);
    ExpectFiles({}, {"jni_base.cpp", "jni_base.cpp"});
}

TEST_F(AllocPlaces, JoiningAnArrayNamesItsRelease) {
    char acOut[16] = "";
    const jobjectArray jArray = stEnv.JavaTexts({u"a", u"", u"b"});
    ASSERT_EQ(JNI_COMMON_GetStrFromObjArray(&stEnv, jArray, ",", acOut, sizeof(acOut)), 0u);
    EXPECT_STREQ(acOut, "a,b");
    ExpectFiles({}, {"jni_base.cpp", "jni_base.cpp"});
}

// The entries of today answer from buffers on the stack; one that takes blocks must say where.
TEST_F(AllocPlaces, NoEntryLeavesAPlaceOut) {
    FurnishHome(stWorld);
    for (const Entry &stEntry : BasicEntries()) {
        SCOPED_TRACE(stEntry.sMethod);
        EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
        stEnv.EndCall();
        for (const AllocRecord &stRecord : stWorld.stAllocs.astLog) {
            if (stRecord.eOrigin == Origin::kPlatform) {
                EXPECT_EQ(PlaceFault(stRecord.stPlace.sFile.c_str(), stRecord.stPlace.uiLine), "");
            }
        }
        stWorld.ExpectClean();
        stWorld.ClearRecords();
    }
}

}  // namespace
}  // namespace wap::test
