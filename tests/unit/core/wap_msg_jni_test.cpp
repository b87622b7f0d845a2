// Start-up: what is printed, what is asked of the platform and in which order, and what a failure
// at each step leaves behind.

#include "system/wap_msg_jni.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods.h>
#include <dlfcn.h>
#include <setjmp.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "support/entries.h"

namespace wap::test {
namespace {

using Texts = std::vector<std::string>;

constexpr char kCalled[] = "\r\n [wap_msg_jni.cpp:181] startThread called \r\n";
constexpr char kAlready[] = "\r\n [wap_msg_jni.cpp:185] uiInitFlag=TRUE, return \r\n";
constexpr char kInit[] = "start JNIWapMsgInit \n";
constexpr char kRegister[] = "start JNIWapRegMsgProc \n";
constexpr char kCreate[] = "start JNICreadmsgthread \n";
constexpr char kRegisterFail[] = "JNI VT_MSG_RegisterMID fail\r\n";
constexpr char kCreateFail[] = "jnicreadmsgthread fail\r\n";

class StartThread : public BridgeTest {
  protected:
    void TearDown() override {
        ResetBridge();
        BridgeTest::TearDown();
    }
    jint Start() {
        return Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread(
            &stEnv, stEnv.JavaObject());
    }
    /// A start that must fail and print these texts after the first.
    void ExpectFailure(const Texts &asTexts) {
        EXPECT_EQ(Start(), 1);
        Texts asAll = {kCalled};
        asAll.insert(asAll.end(), asTexts.begin(), asTexts.end());
        EXPECT_EQ(stPlatform.asConsole, asAll);
        EXPECT_EQ(uiInitFlag, 0u);
        EXPECT_TRUE(stPlatform.astThreads.empty());
    }
    /// A start after all obstacles are gone.
    void ExpectRetrySucceeds() {
        stPlatform.setMissingSymbols.clear();
        stPlatform.mapStatus.clear();
        stPlatform.ClearRecords();
        EXPECT_EQ(Start(), 0);
        EXPECT_EQ(stPlatform.asConsole, (Texts{kCalled, kInit, kRegister, kCreate}));
        EXPECT_EQ(uiInitFlag, 1u);
        EXPECT_EQ(stPlatform.CountCalls("dlopen"), 0u) << "the handle was kept";
        EXPECT_EQ(stPlatform.CountCalls("VT_MSG_Init"), 1u) << "nothing done before is skipped";
    }
};

TEST_F(StartThread, TakesEveryStepInOrder) {
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(uiInitFlag, 1u);
    EXPECT_EQ(g_pvSspBasicHandle, Platform::LibraryHandle());
    EXPECT_EQ(stPlatform.asConsole, (Texts{kCalled, kInit, kRegister, kCreate}));
    const std::string sOpen = "dlopen libvt_ssp_basic.so " + std::to_string(RTLD_NOW | RTLD_GLOBAL);
    EXPECT_EQ(stPlatform.asCalls, (Texts{sOpen, "dlsym VT_MSG_Init", "VT_MSG_Init jamvm",
                                         "dlsym VT_MSG_RegisterMID", "VT_MSG_RegisterMID 0 1",
                                         "dlsym VT_OS_PthreadCreate", "VT_OS_PthreadCreate"}));
    ASSERT_EQ(stPlatform.astInits.size(), 1u);
    EXPECT_EQ(stPlatform.astInits[0].sProcName, "jamvm");
    EXPECT_EQ(stPlatform.astInits[0].auiArgs, (std::array<uint32_t, 3>{1024, 1024, 0}));
    ASSERT_EQ(stPlatform.astRegistered.size(), 1u);
    EXPECT_EQ(stPlatform.astRegistered[0].uiMid, 0u);
    EXPECT_EQ(stPlatform.astRegistered[0].pfnProc, &JNImsgProc);
    EXPECT_EQ(stPlatform.astRegistered[0].uiArg, 1u);
    ASSERT_EQ(stPlatform.astThreads.size(), 1u);
    EXPECT_EQ(stPlatform.astThreads[0].pvAttr, nullptr);
    EXPECT_EQ(stPlatform.astThreads[0].pfnEntry, &JNIWapMsgThread);
    EXPECT_EQ(stPlatform.astThreads[0].pvArg, nullptr);
    EXPECT_TRUE(stPlatform.astTraces.empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stEnv.asCalls.empty()) << "nothing is asked of Java";
}

TEST_F(StartThread, LoaderFlagsAreThoseOfTheGateway) {
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(stPlatform.asCalls.front(), "dlopen libvt_ssp_basic.so 258");
}

TEST_F(StartThread, SecondCallLeavesThePlatformAlone) {
    ASSERT_EQ(Start(), 0);
    stPlatform.ClearRecords();
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(stPlatform.asConsole, (Texts{kCalled, kAlready}));
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(uiInitFlag, 1u);
}

TEST_F(StartThread, AnyOtherFlagThanOneMeansNotStarted) {
    uiInitFlag = 2;
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(stPlatform.asConsole, (Texts{kCalled, kInit, kRegister, kCreate}));
    EXPECT_EQ(uiInitFlag, 1u);
}

TEST_F(StartThread, AHandleThatIsThereIsUsed) {
    g_pvSspBasicHandle = Platform::LibraryHandle();
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(stPlatform.CountCalls("dlopen"), 0u);
    EXPECT_EQ(uiInitFlag, 1u);
}

TEST_F(StartThread, MissingLibraryLooksLikeSuccessAndIsTriedAgain) {
    stPlatform.bNoLibrary = true;
    for (int i = 0; i < 2; ++i) {
        stPlatform.ClearRecords();
        EXPECT_EQ(Start(), 0);
        EXPECT_EQ(stPlatform.asConsole, Texts{kCalled});
        EXPECT_EQ(stPlatform.asCalls, Texts{"dlopen libvt_ssp_basic.so 258"});
        EXPECT_EQ(uiInitFlag, 0u);
        EXPECT_EQ(g_pvSspBasicHandle, nullptr);
    }
    stPlatform.bNoLibrary = false;
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(uiInitFlag, 1u);
}

TEST_F(StartThread, WithoutTheInitSymbol) {
    stPlatform.setMissingSymbols = {"VT_MSG_Init"};
    ExpectFailure({kInit, "\r\n dlsym VT_MSG_Init error\r\n", kRegisterFail});
    EXPECT_EQ(stPlatform.CountCalls("dlsym VT_MSG_RegisterMID"), 0u);
    EXPECT_EQ(g_pvSspBasicHandle, Platform::LibraryHandle());
    ExpectRetrySucceeds();
}

TEST_F(StartThread, InitFails) {
    stPlatform.mapStatus["VT_MSG_Init"] = 0x1234;
    ExpectFailure({kInit, "JNIWapMsgInit fail\r\n", kRegisterFail});
    EXPECT_TRUE(stPlatform.astRegistered.empty());
    ExpectRetrySucceeds();
}

TEST_F(StartThread, WithoutTheRegisterSymbol) {
    stPlatform.setMissingSymbols = {"VT_MSG_RegisterMID"};
    ExpectFailure({kInit, kRegister, "\r\n dlsym VT_MSG_RegisterMID error\r\n", kRegisterFail});
    EXPECT_EQ(stPlatform.CountCalls("dlsym VT_OS_PthreadCreate"), 0u);
    ExpectRetrySucceeds();
}

TEST_F(StartThread, RegisterFailsAndSaysSoTwice) {
    stPlatform.mapStatus["VT_MSG_RegisterMID"] = 0xFFFFFFFF;
    ExpectFailure({kInit, kRegister, kRegisterFail, kRegisterFail});
    EXPECT_EQ(stPlatform.CountCalls("dlsym VT_OS_PthreadCreate"), 0u);
    ExpectRetrySucceeds();
}

TEST_F(StartThread, WithoutTheThreadSymbol) {
    stPlatform.setMissingSymbols = {"VT_OS_PthreadCreate"};
    ExpectFailure(
        {kInit, kRegister, kCreate, "\r\n dlsym VT_OS_PthreadCreate error\r\n", kCreateFail});
    ExpectRetrySucceeds();
}

TEST_F(StartThread, ThreadCreationFails) {
    stPlatform.mapStatus["VT_OS_PthreadCreate"] = 11;
    ExpectFailure({kInit, kRegister, kCreate, "JNI VT_OS_PthreadCreate error \r\n", kCreateFail});
    ExpectRetrySucceeds();
}

TEST_F(StartThread, ManyCallersStartOnce) {
    constexpr size_t kThreads = 8;
    std::array<World, kThreads> astWorlds;
    World::SetCurrent(&stWorld);
    std::array<jint, kThreads> aiResults;
    aiResults.fill(-7);
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (size_t i = 0; i < kThreads; ++i) {
        astThreads.emplace_back([&, i] {
            World::SetCurrent(&astWorlds[i]);
            FakeJni stOwnEnv;
            aiResults[i] =
                Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread(
                    &stOwnEnv, nullptr);
            World::SetCurrent(nullptr);
        });
    }
    size_t uiInits = 0;
    size_t uiCreated = 0;
    for (size_t i = 0; i < kThreads; ++i) {
        astThreads[i].join();
        EXPECT_EQ(aiResults[i], 0);
        uiInits += astWorlds[i].stPlatform.astInits.size();
        uiCreated += astWorlds[i].stPlatform.astThreads.size();
        astWorlds[i].ExpectClean();
    }
    EXPECT_EQ(uiInits, 1u);
    EXPECT_EQ(uiCreated, 1u);
    EXPECT_EQ(uiInitFlag, 1u);
}

TEST_F(StartThread, TheStepsByThemselves) {
    void *pvHandle = Platform::LibraryHandle();
    EXPECT_EQ(JNIWapMsgInit(pvHandle), 0u);
    EXPECT_EQ(JNIWapRegMsgProc(pvHandle), 0u);
    EXPECT_EQ(JNICreadmsgthread(pvHandle), 0u);
    EXPECT_EQ(stPlatform.asConsole, (Texts{kInit, kRegister, kCreate}));
    EXPECT_EQ(uiInitFlag, 0u) << "only startThread sets it";

    stPlatform.mapStatus = {
        {"VT_MSG_Init", 9}, {"VT_MSG_RegisterMID", 9}, {"VT_OS_PthreadCreate", 9}};
    EXPECT_EQ(JNIWapMsgInit(pvHandle), 1u);
    EXPECT_EQ(JNIWapRegMsgProc(pvHandle), 1u);
    EXPECT_EQ(static_cast<int32_t>(JNICreadmsgthread(pvHandle)), -1);

    stPlatform.setMissingSymbols = {"VT_MSG_Init", "VT_MSG_RegisterMID", "VT_OS_PthreadCreate"};
    EXPECT_EQ(JNIWapMsgInit(pvHandle), 1u);
    EXPECT_EQ(JNIWapRegMsgProc(pvHandle), 1u);
    EXPECT_EQ(static_cast<int32_t>(JNICreadmsgthread(pvHandle)), -1);
}

// ---- the message thread ----

class MessageThread : public StartThread {
  protected:
    /// Runs the body until its uiPasses-th dispatch, which jumps out of the endless loop: the
    /// bridge is built without tables for unwinding, so that no exception gets through it.
    void RunBody(uint32_t uiPasses) {
        s_uiLeft = uiPasses;
        stPlatform.fnDispatch = [] {
            if (--s_uiLeft == 0) {
                longjmp(s_stOut, 1);  // NOLINT(cert-err52-cpp)
            }
        };
        if (setjmp(s_stOut) == 0) {  // NOLINT(cert-err52-cpp)
            JNIWapMsgThread(nullptr);
            ADD_FAILURE() << "the thread body ended";
        }
    }

  private:
    static inline jmp_buf s_stOut;
    static inline uint32_t s_uiLeft = 0;
};

TEST_F(MessageThread, NamesItselfAndDispatchesForEver) {
    ASSERT_EQ(Start(), 0);
    stPlatform.ClearRecords();
    RunBody(3);
    EXPECT_EQ(stPlatform.asCalls,
              (Texts{"VT_OS_ModifyThreadName WAP_JNI_msgthread", "dlsym VT_MSG_GetAndDispatch",
                     "VT_MSG_GetAndDispatch 0 0", "VT_MSG_GetAndDispatch 0 0",
                     "VT_MSG_GetAndDispatch 0 0"}));
    EXPECT_TRUE(stPlatform.asConsole.empty());
}

TEST_F(MessageThread, GoesOnWhenDispatchOrNamingFails) {
    ASSERT_EQ(Start(), 0);
    stPlatform.ClearRecords();
    stPlatform.mapStatus = {{"VT_MSG_GetAndDispatch", 5}, {"VT_OS_ModifyThreadName", 5}};
    RunBody(50);
    EXPECT_EQ(stPlatform.CountCalls("VT_MSG_GetAndDispatch 0 0"), 50u);
}

TEST_F(MessageThread, OpensTheLibraryWhenNobodyHas) {
    RunBody(1);
    EXPECT_EQ(stPlatform.asCalls,
              (Texts{"VT_OS_ModifyThreadName WAP_JNI_msgthread", "dlopen libvt_ssp_basic.so 258",
                     "dlsym VT_MSG_GetAndDispatch", "VT_MSG_GetAndDispatch 0 0"}));
    EXPECT_EQ(g_pvSspBasicHandle, Platform::LibraryHandle());
}

TEST_F(MessageThread, EndsWithoutTheLibrary) {
    stPlatform.bNoLibrary = true;
    EXPECT_EQ(JNIWapMsgThread(nullptr), nullptr);
    EXPECT_EQ(stPlatform.asCalls,
              (Texts{"VT_OS_ModifyThreadName WAP_JNI_msgthread", "dlopen libvt_ssp_basic.so 258"}));
    EXPECT_TRUE(stPlatform.asConsole.empty());
    EXPECT_EQ(g_pvSspBasicHandle, nullptr);
}

TEST_F(MessageThread, EndsWithoutTheDispatchSymbol) {
    stPlatform.setMissingSymbols = {"VT_MSG_GetAndDispatch"};
    EXPECT_EQ(JNIWapMsgThread(nullptr), nullptr);
    EXPECT_EQ(stPlatform.asConsole, Texts{"\r\n dlsym VT_MSG_GetAndDispatch error\r\n"});
}

// ---- the message procedure ----

using MessageProcedure = BridgeTest;

TEST_F(MessageProcedure, RefusesNoMessage) {
    EXPECT_EQ(JNImsgProc(nullptr), -1);
    EXPECT_TRUE(stPlatform.asConsole.empty());
}

TEST_F(MessageProcedure, TellsTheModulesApartByTheWordAt36) {
    // All other bytes differ from the word that counts.
    std::vector<char> acMessage(84, '\x5A');
    std::memset(acMessage.data() + 36, 0, 4);
    EXPECT_EQ(JNImsgProc(acMessage.data()), 0);
    EXPECT_EQ(stPlatform.asConsole, (Texts{"Come in JNImsgProc\r\n", "VT_MID_TARN_OS \r\n"}));

    for (size_t uiByte = 36; uiByte < 40; ++uiByte) {
        std::vector<char> acOther(84, '\0');
        acOther[uiByte] = 1;
        stPlatform.ClearRecords();
        EXPECT_EQ(JNImsgProc(acOther.data()), 0);
        EXPECT_EQ(stPlatform.asConsole, (Texts{"Come in JNImsgProc\r\n", "default \r\n"}))
            << "byte " << uiByte;
    }
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

}  // namespace
}  // namespace wap::test
