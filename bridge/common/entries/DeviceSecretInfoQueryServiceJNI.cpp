#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI.h"

#include "common/answers.h"
#include "system/jni_device_info.h"

using namespace wap;

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDevicePassword(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return SecretAnswer<64>(pstEnv, WAP_SPOT, VT_KAVO_JNI_GetDevicePassword);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDeviceManufacturerOUI(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<7>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceManufacturerOUI);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDeviceSerialNumber(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<128>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceSerialNumber);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDeviceDefaultWebPassword(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return SecretAnswer<128>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceDefaultWebPassword);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDeviceDefaultSSID1Name(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return TextAnswer<32>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceDefaultSSID1Name);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_getDeviceDefaultSSID1Password(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    return SecretAnswer<32>(pstEnv, WAP_SPOT, VT_JNI_GetDeviceDefaultSSID1Password);
}
