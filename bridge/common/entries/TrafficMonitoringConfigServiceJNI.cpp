#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI.h"

#include "common/answers.h"
#include "wan/jni_traffic_monitor.h"

using namespace wap;

namespace {

/// What an address may take up in the list, with the comma behind it.
constexpr uint32_t kAddressRoom = 256;

/// What the list of an empty registry looks like; deliberately not as the built one does.
constexpr char kNoAddresses[] = "{\"Result\":0, \"List\":[]}";

using ChangeWorker = uint32_t (*)(const char *pcList, uint32_t uiListLen, const char *pcBundle,
                                  uint32_t uiBundleLen);

/// Writes an array's element, null and empty ones too, and moves behind it. False when it is too
/// long or does not convert.
bool PutAddress(JNIEnv *pstEnv, jobjectArray jAddresses, jsize iIndex, char *&pcEnd) {
    auto jAddress = static_cast<jstring>(pstEnv->GetObjectArrayElement(jAddresses, iIndex));
    if (ClearException(pstEnv)) {
        return false;
    }
    if (jAddress == nullptr) {
        return true;
    }
    const JavaText stAddress = JavaText::Make(pstEnv, jAddress, EmptyText::kCounts);
    if (!stAddress) {
        return false;
    }
    const uint32_t uiLength = VT_OS_StrLen(stAddress.Lend());
    if (VT_OS_StrNCpy_S(pcEnd, kAddressRoom, stAddress.Lend(), uiLength) != 0) {
        return false;
    }
    pcEnd += uiLength;
    return true;
}

/// Joins an array of uiCount texts, at least one, with commas.
bool JoinAddresses(JNIEnv *pstEnv, jobjectArray jAddresses, uint32_t uiCount,
                   PlatformBlock &stList) {
    const uint64_t ulSize = (uint64_t{uiCount} + 1) * kAddressRoom;
    // One more is for the bundle's name.
    if (ulSize > kBlockMax || !EnsureElementRefs(pstEnv, static_cast<jsize>(uiCount) + 1) ||
        !stList.Make(static_cast<uint32_t>(ulSize), WAP_SPOT)) {
        return false;
    }
    auto *pcEnd = static_cast<char *>(stList.Lend());
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (!PutAddress(pstEnv, jAddresses, static_cast<jsize>(i), pcEnd)) {
            return false;
        }
        // Shows what is behind the address, deliberately: that the list ends here.
        WAP_TRACE(kTraceEntries, "\r\n pcTemp=%s \r\n", pcEnd);
        *pcEnd++ = ',';
    }
    pcEnd[-1] = '\0';
    return true;
}

jint ChangeAddresses(JNIEnv *pstEnv, jobjectArray jAddresses, jstring jBundle, const char *pcMethod,
                     ChangeWorker pfnWorker) {
    const JavaText stBundle = JavaText::Make(pstEnv, jBundle);
    if (!stBundle) {
        RecordFault(WAP_SPOT, kErrFailed);
        return -1;
    }
    const jsize iCount = jAddresses == nullptr ? 0 : pstEnv->GetArrayLength(jAddresses);
    const auto uiCount = static_cast<uint32_t>(iCount);
    WAP_TRACE(kTraceEntries, "\r\n %s uiAddrCnt:%u \r\n", pcMethod, uiCount);
    PlatformBlock stList;
    if (uiCount == 0 || !JoinAddresses(pstEnv, jAddresses, uiCount, stList)) {
        RecordFault(WAP_SPOT, kErrFailed, uiCount);
        return -1;
    }
    const auto *pcList = static_cast<const char *>(stList.Lend());
    const uint32_t uiResult =
        pfnWorker(pcList, VT_OS_StrLen(pcList), stBundle.Lend(), VT_OS_StrLen(stBundle.Lend()));
    return static_cast<jint>(ZeroOrFailed(WAP_SPOT, uiResult));
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI_addTrafficMonitoringDestAddress(
    JNIEnv *pstEnv, jobject, jobjectArray jAddresses, jstring jBundle) {
    WAP_TRACE_ENTRY();
    return ChangeAddresses(pstEnv, jAddresses, jBundle, "addTrafficMonitoringDestAddress",
                           VT_JNI_addTrafficMonitoringDestAddress);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI_deleteTrafficMonitoringDestAddress(
    JNIEnv *pstEnv, jobject, jobjectArray jAddresses, jstring jBundle) {
    WAP_TRACE_ENTRY();
    return ChangeAddresses(pstEnv, jAddresses, jBundle, "deleteTrafficMonitoringDestAddress",
                           VT_JNI_deleteTrafficMonitoringDestAddress);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI_getTrafficMonitoringDestAddressInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    WAP_TRACE(kTraceEntries, "\r\n getTrafficMonitoringDestAddressInfo\r\n");
    char *pcText = nullptr;
    const uint32_t uiResult = VT_JNI_getTrafficMonitoringDestAddressInfo(&pcText);
    if (uiResult == 0 && pcText == nullptr) {
        return char2jstring(pstEnv, kNoAddresses);
    }
    return HeapTextAnswer(pstEnv, WAP_SPOT, uiResult, pcText);
}
