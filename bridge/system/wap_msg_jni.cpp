#include "system/wap_msg_jni.h"

#include <dlfcn.h>
#include <pthread.h>
#include <vt_ssp_basic.h>

#include <atomic>

#include "common/report.h"

using namespace wap;

void *g_pvSspBasicHandle = nullptr;
uint32_t uiInitFlag = 0;

namespace {

constexpr char kProcessName[] = "jamvm";
constexpr char kPlatformLibrary[] = "libvt_ssp_basic.so";
/// Capacities of the platform's own, passed as they are.
constexpr uint32_t kQueueCapacity = 1024;
constexpr uint32_t kBufferCapacity = 1024;

/// The lines that the start-up texts print. They are part of the texts, deliberately, and do not
/// follow this file.
constexpr uint32_t kLineCalled = 181;
constexpr uint32_t kLineAlreadyStarted = 185;

pthread_mutex_t g_stStartLock = PTHREAD_MUTEX_INITIALIZER;

/// The platform library's handle, opened on first use; null when it can't be opened.
void *PlatformHandle() {
    std::atomic_ref<void *> pvHandle(g_pvSspBasicHandle);
    void *pvFound = pvHandle.load(std::memory_order_acquire);
    if (pvFound == nullptr) {
        // Two threads may both get here: the loader gives both the same handle.
        pvFound = dlopen(kPlatformLibrary, RTLD_NOW | RTLD_GLOBAL);
        if (pvFound != nullptr) {
            pvHandle.store(pvFound, std::memory_order_release);
        }
    }
    return pvFound;
}

template <class Function>
Function LookUp(void *pvHandle, const char *pcName) {
    return reinterpret_cast<Function>(dlsym(pvHandle, pcName));
}

/// The start itself, by one thread at a time.
int32_t StartLocked() {
    std::atomic_ref<uint32_t> uiStarted(uiInitFlag);
    VT_OS_Printf("\r\n [%s:%u] startThread called \r\n", __FILE_NAME__, kLineCalled);
    if (uiStarted.load(std::memory_order_acquire) == 1) {
        VT_OS_Printf("\r\n [%s:%u] uiInitFlag=TRUE, return \r\n", __FILE_NAME__,
                     kLineAlreadyStarted);
        return 0;
    }
    void *pvHandle = PlatformHandle();
    if (pvHandle == nullptr) {
        // Success for Java, deliberately: without a platform there is nothing to start, and a
        // later call tries again.
        return 0;
    }
    if (JNIWapMsgInit(pvHandle) != 0 || JNIWapRegMsgProc(pvHandle) != 0) {
        // One text for both steps, as designed.
        VT_OS_Printf("JNI VT_MSG_RegisterMID fail\r\n");
        return 1;
    }
    if (JNICreadmsgthread(pvHandle) != 0) {
        VT_OS_Printf("jnicreadmsgthread fail\r\n");
        return 1;
    }
    uiStarted.store(1, std::memory_order_release);
    return 0;
}

}  // namespace

uint32_t JNIWapMsgInit(void *pvHandle) {
    VT_OS_Printf("start JNIWapMsgInit \n");
    auto pfnInit = LookUp<decltype(&VT_MSG_Init)>(pvHandle, "VT_MSG_Init");
    if (pfnInit == nullptr) {
        VT_OS_Printf("\r\n dlsym VT_MSG_Init error\r\n");
        return 1;
    }
    if (pfnInit(kProcessName, kQueueCapacity, kBufferCapacity, 0) != 0) {
        VT_OS_Printf("JNIWapMsgInit fail\r\n");
        return 1;
    }
    return 0;
}

uint32_t JNIWapRegMsgProc(void *pvHandle) {
    VT_OS_Printf("start JNIWapRegMsgProc \n");
    auto pfnRegister = LookUp<decltype(&VT_MSG_RegisterMID)>(pvHandle, "VT_MSG_RegisterMID");
    if (pfnRegister == nullptr) {
        VT_OS_Printf("\r\n dlsym VT_MSG_RegisterMID error\r\n");
        return 1;
    }
    if (pfnRegister(0, JNImsgProc, 1) != 0) {
        VT_OS_Printf("JNI VT_MSG_RegisterMID fail\r\n");
        return 1;
    }
    return 0;
}

uint32_t JNICreadmsgthread(void *pvHandle) {
    constexpr uint32_t kFailed = 0xFFFFFFFF;
    VT_OS_Printf("start JNICreadmsgthread \n");
    auto pfnCreate = LookUp<decltype(&VT_OS_PthreadCreate)>(pvHandle, "VT_OS_PthreadCreate");
    if (pfnCreate == nullptr) {
        VT_OS_Printf("\r\n dlsym VT_OS_PthreadCreate error\r\n");
        return kFailed;
    }
    unsigned long ulThreadId = 0;
    if (pfnCreate(&ulThreadId, nullptr, JNIWapMsgThread, nullptr) != 0) {
        VT_OS_Printf("JNI VT_OS_PthreadCreate error \r\n");
        return kFailed;
    }
    return 0;
}

void *JNIWapMsgThread(void *) {
    (void)VT_OS_ModifyThreadName("WAP_JNI_msgthread");
    void *pvHandle = PlatformHandle();
    if (pvHandle == nullptr) {
        return nullptr;
    }
    auto pfnDispatch = LookUp<decltype(&VT_MSG_GetAndDispatch)>(pvHandle, "VT_MSG_GetAndDispatch");
    if (pfnDispatch == nullptr) {
        VT_OS_Printf("\r\n dlsym VT_MSG_GetAndDispatch error\r\n");
        return nullptr;
    }
    // For the life of the process: there is no stop.
    for (;;) {
        (void)pfnDispatch(0, 0);
    }
}

int32_t JNImsgProc(void *pvMsg) {
    if (pvMsg == nullptr) {
        return -1;
    }
    VT_OS_Printf("Come in JNImsgProc\r\n");
    const auto *pstHead = static_cast<const RpcMsgHead *>(pvMsg);
    VT_OS_Printf(pstHead->uiDstMid == 0 ? "VT_MID_TARN_OS \r\n" : "default \r\n");
    return 0;
}

int32_t wap::StartMessageThread() {
    (void)pthread_mutex_lock(&g_stStartLock);
    const int32_t iResult = StartLocked();
    (void)pthread_mutex_unlock(&g_stStartLock);
    return iResult;
}
