#include "com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoQueryServiceJNI.h"

#include "common/jni_common.h"
#include "common/owners.h"
#include "system/jni_voip.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoQueryServiceJNI_getPOTSInfo(
    JNIEnv *pstEnv, jobject) {
    // Readers of traces know this call by this line, in the place of the usual one.
    WAP_TRACE(kTraceEntries, "\r\n GetPOTSInfo called \r\n");
    char *pcText = nullptr;
    const uint32_t uiResult = FetchPotsInfo(&pcText);
    PlatformBlock stText;
    stText.Adopt(pcText);
    // Null for a failure, deliberately: no text in its place.
    return Recorded(WAP_SPOT, uiResult) == 0 ? char2jstring(pstEnv, pcText) : nullptr;
}
