#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_port_mapping.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI_addPortMapping(
    JNIEnv *pstEnv, jobject, jint iWanIndex, jint iExternalPort, jint iInternalPort,
    jstring jProtocol, jstring jInternalClient) {
    WAP_TRACE_ENTRY();
    const JavaText stProtocol = JavaText::Make(pstEnv, jProtocol);
    const JavaText stClient = JavaText::Make(pstEnv, jInternalClient);
    if (!stProtocol || !stClient) {
        RecordFault(WAP_SPOT, kErrFailed, static_cast<uint32_t>(iWanIndex));
        return -1;
    }
    // The spelling of the last word belongs to the text.
    WAP_TRACE(kTraceEntries,
              "wanIndex:%d    externalPort:%d    internalPort:%d    protocol:%s    "
              "internetClinet:%s",
              iWanIndex, iExternalPort, iInternalPort, stProtocol.Lend(), stClient.Lend());
    return NumberAnswer(WAP_SPOT, VT_JNI_addPortMapping(static_cast<uint32_t>(iWanIndex),
                                                        static_cast<uint32_t>(iExternalPort),
                                                        static_cast<uint32_t>(iInternalPort),
                                                        stProtocol.Lend(), stClient.Lend()));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI_deletePortMapping(
    JNIEnv *, jobject, jint iWanIndex, jint iInstId) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_deletePortMapping(static_cast<uint32_t>(iWanIndex),
                                                           static_cast<uint32_t>(iInstId)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI_setPortMappingSwitch(
    JNIEnv *, jobject, jint iWanIndex, jint iInstId, jboolean bEnable) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_setPortMappingSwitch(static_cast<uint32_t>(iWanIndex),
                                                              static_cast<uint32_t>(iInstId),
                                                              bEnable != JNI_FALSE ? 1 : 0));
}
