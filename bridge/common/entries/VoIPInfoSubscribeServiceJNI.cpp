#include "com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI.h"

#include "common/jni_common.h"
#include "common/report.h"
#include "common/voip_events.h"
#include "system/jni_voip.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI_getSubscribeVoIPEvent(
    JNIEnv *pstEnv, jobject, jstring jBundleName, jobjectArray jEvents) {
    WAP_TRACE_ENTRY();
    return CallVoiceWorker(pstEnv, jBundleName, jEvents, {"subscribeVoIPEvent", SubscribeVoice});
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI_getUnSubscribeVoIPEvent(
    JNIEnv *pstEnv, jobject, jstring jBundleName, jobjectArray jEvents) {
    WAP_TRACE_ENTRY();
    return CallVoiceWorker(pstEnv, jBundleName, jEvents,
                           {"unSubscribeVoIPEvent", UnsubscribeVoice});
}
