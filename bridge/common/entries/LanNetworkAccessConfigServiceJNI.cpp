#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h"

#include "access/jni_attach_control.h"
#include "access/jni_macflter.h"
#include "common/answers.h"
#include "common/mac_arrays.h"

using namespace wap;

namespace {

// The limits are as uneven as they look: bundles count on each of them.
constexpr MacArrayRules kAddedMacs = {8,
                                      EmptyText::kIsMissing,
                                      BadMac::kLeftOut,
                                      NoMacs::kIsDone,
                                      "\r\n uiArrayLength  is too long called \r\n",
                                      true};

constexpr MacArrayRules DeletedMacs(uint32_t uiMax, NoMacs eNone) {
    return {uiMax,
            EmptyText::kIsMissing,
            BadMac::kLeftOut,
            eNone,
            "\r\n uiMacAddrCount  is too long called \r\n",
            true};
}

// Here empty texts count, and a missing one keeps its place: the worker says which it skipped.
constexpr MacArrayRules StorageMacs(uint32_t uiMax, NoMacs eNone) {
    return {uiMax,
            EmptyText::kCounts,
            BadMac::kStaysEmpty,
            eNone,
            "\r\n uiMacAddrCount  is too long called \r\n",
            true};
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_setMacFilterMode(
    JNIEnv *, jobject, jint iMacFltPara) {
    WAP_TRACE_ENTRY();
    return NumberAnswer(WAP_SPOT, VT_JNI_setMacFilterMode(static_cast<uint32_t>(iMacFltPara)));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_addLANHostToBlackList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, kAddedMacs, VT_JNI_addLANHostToBlackList);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_deleteLANHostFromBlackList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, DeletedMacs(128, NoMacs::kIsEveryone),
                         VT_JNI_delLANHostFromBlackList);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_addLANHostToTrustList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, kAddedMacs, VT_JNI_addLANHostToTrustList);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_deleteLANHostFromTrustList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, DeletedMacs(8, NoMacs::kIsWork),
                         VT_JNI_delLANHostFromTrustList);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_addLANHostToStorageBlackList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, StorageMacs(128, NoMacs::kIsWork),
                         VT_JNI_addLANHostToStorageBlackList);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_deleteLANHostFromStorageBlackList(
    JNIEnv *pstEnv, jobject, jobjectArray jMacs) {
    WAP_TRACE_ENTRY();
    return CallMacWorker(pstEnv, WAP_SPOT, jMacs, StorageMacs(8, NoMacs::kIsEveryone),
                         VT_JNI_delLANHostFromStorageBlackList);
}
