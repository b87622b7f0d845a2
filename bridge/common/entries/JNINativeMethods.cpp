#include "com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods.h"

#include "system/wap_msg_jni.h"

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread(JNIEnv *, jobject) {
    return wap::StartMessageThread();
}
