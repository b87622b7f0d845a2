#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI.h"

#include "common/answers.h"
#include "lan/jni_lan_address.h"

using namespace wap;

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI_setLANHostIP(
    JNIEnv *pstEnv, jobject, jstring jAddress, jstring jMask) {
    WAP_TRACE_ENTRY();
    const JavaText stAddress = JavaText::Make(pstEnv, jAddress);
    const JavaText stMask = JavaText::Make(pstEnv, jMask);
    if (!stAddress || !stMask) {
        RecordFault(WAP_SPOT, 1);
        return -1;
    }
    return NumberAnswer(WAP_SPOT, VT_JNI_setLANHostIP(stAddress.Lend(), stMask.Lend()));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANIPConfigServiceJNI_setLANDHCPInfo(
    JNIEnv *pstEnv, jobject, jstring jStatus, jstring jStart, jstring jEnd, jint iDuration) {
    WAP_TRACE_ENTRY();
    const JavaText stStatus = JavaText::Make(pstEnv, jStatus);
    const JavaText stStart = JavaText::Make(pstEnv, jStart);
    const JavaText stEnd = JavaText::Make(pstEnv, jEnd);
    if (!stStatus || !stStart || !stEnd) {
        RecordFault(WAP_SPOT, 1);
        return -1;
    }
    return NumberAnswer(WAP_SPOT,
                        VT_JNI_setLANDHCPInfo(stStatus.Lend(), stStart.Lend(), stEnd.Lend(),
                                              static_cast<uint32_t>(iDuration)));
}
