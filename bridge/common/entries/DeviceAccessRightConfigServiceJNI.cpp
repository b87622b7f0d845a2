#include "com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI.h"

#include "common/answers.h"
#include "system/jni_access_right.h"

using namespace wap;

namespace {

/// How the services that share the storage differ.
struct ShareWorkers {
    uint32_t (*pfnCount)(uint32_t *puiCount);
    uint32_t (*pfnSetRight)(uint32_t uiRight, uint32_t uiValue);
    uint32_t (*pfnAdd)(const char *pcUser, const char *pcPassword);
    uint32_t (*pfnDelete)(const char *pcUser);
    uint32_t (*pfnDeleteAll)();
    uint32_t uiPasswordMax;  ///< in bytes
};
constexpr ShareWorkers kFtp = {VT_JNI_GetFtpAccountCount, VT_JNI_SetFTPRight,
                               VT_JNI_AddFTPAcount,       VT_JNI_DeleteFTPAcount,
                               VT_JNI_DeleteAllFTPAcount, kFtpPasswordMax};
constexpr ShareWorkers kSamba = {VT_JNI_GetSambaAccountCount, VT_JNI_SetSambaRight,
                                 VT_JNI_AddSambaAcount,       VT_JNI_DeleteSambaAcount,
                                 VT_JNI_DeleteAllSambaAcount, kSambaPasswordMax};

/// The bytes of a text up to a U+0000; 0 where there is no text.
uint32_t LengthOf(const JavaText &stText) {
    return stText ? VT_OS_StrLen(stText.Lend()) : 0;
}

bool IsWithin(uint32_t uiLength, uint32_t uiMax) {
    return uiLength >= 1 && uiLength <= uiMax;
}

jint SetRight(SourceSpot stSpot, const ShareWorkers &stShare, jint iRight, jint iValue) {
    const auto uiRight = static_cast<uint32_t>(iRight);
    const auto uiValue = static_cast<uint32_t>(iValue);
    const uint32_t uiResult = stShare.pfnSetRight(uiRight, uiValue);
    return static_cast<jint>(ZeroOrFailed(stSpot, uiResult, uiRight, uiValue));
}

jint AddAccount(JNIEnv *pstEnv, SourceSpot stSpot, const ShareWorkers &stShare, jstring jUser,
                jstring jPassword) {
    const JavaText stUser = JavaText::Make(pstEnv, jUser);
    const SecretText stPassword = SecretText::Make(pstEnv, jPassword);
    const uint32_t uiUser = LengthOf(stUser);
    const uint32_t uiPassword = LengthOf(stPassword);
    if (!IsWithin(uiUser, kAccountUserMax) || !IsWithin(uiPassword, stShare.uiPasswordMax)) {
        RecordFault(stSpot, kErrFailed, uiUser, uiPassword, kAccountUserMax, stShare.uiPasswordMax);
        return -1;
    }
    return static_cast<jint>(
        ZeroOrFailed(stSpot, stShare.pfnAdd(stUser.Lend(), stPassword.Lend())));
}

jint DeleteAccount(JNIEnv *pstEnv, SourceSpot stSpot, const ShareWorkers &stShare, jstring jUser) {
    uint32_t uiCount = 0;
    const uint32_t uiAsked = stShare.pfnCount(&uiCount);
    if (uiAsked != 0 || uiCount == 0) {
        RecordFault(stSpot, kErrFailed, uiCount);
        return -1;
    }
    const JavaText stUser = JavaText::Make(pstEnv, jUser);
    const uint32_t uiUser = LengthOf(stUser);
    if (!IsWithin(uiUser, kAccountUserMax)) {
        RecordFault(stSpot, kErrFailed, uiUser, kAccountUserMax);
        return -1;
    }
    return static_cast<jint>(ZeroOrFailed(stSpot, stShare.pfnDelete(stUser.Lend())));
}

jint DeleteAllAccounts(SourceSpot stSpot, const ShareWorkers &stShare) {
    uint32_t uiCount = 0;
    if (Recorded(stSpot, stShare.pfnCount(&uiCount)) != 0) {
        return -1;
    }
    if (uiCount == 0) {
        // A success, deliberately unlike the deletion of one account; the record is no fault.
        RecordFault(stSpot, 1);
        return 0;
    }
    return static_cast<jint>(ZeroOrFailed(stSpot, stShare.pfnDeleteAll(), uiCount));
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_setFTPRight(
    JNIEnv *, jobject, jint iRight, jint iValue) {
    WAP_TRACE_ENTRY();
    return SetRight(WAP_SPOT, kFtp, iRight, iValue);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_setSambaRight(
    JNIEnv *, jobject, jint iRight, jint iValue) {
    WAP_TRACE_ENTRY();
    return SetRight(WAP_SPOT, kSamba, iRight, iValue);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_addFTPAccount(
    JNIEnv *pstEnv, jobject, jstring jUser, jstring jPassword) {
    WAP_TRACE_ENTRY();
    return AddAccount(pstEnv, WAP_SPOT, kFtp, jUser, jPassword);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_addSambaAccount(
    JNIEnv *pstEnv, jobject, jstring jUser, jstring jPassword) {
    WAP_TRACE_ENTRY();
    return AddAccount(pstEnv, WAP_SPOT, kSamba, jUser, jPassword);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_deleteFTPAccount(
    JNIEnv *pstEnv, jobject, jstring jUser) {
    WAP_TRACE_ENTRY();
    return DeleteAccount(pstEnv, WAP_SPOT, kFtp, jUser);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_deleteSambaAccount(
    JNIEnv *pstEnv, jobject, jstring jUser) {
    WAP_TRACE_ENTRY();
    return DeleteAccount(pstEnv, WAP_SPOT, kSamba, jUser);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_deleteAllFTPAccount(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return DeleteAllAccounts(WAP_SPOT, kFtp);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_deleteAllSambaAccount(
    JNIEnv *, jobject) {
    WAP_TRACE_ENTRY();
    return DeleteAllAccounts(WAP_SPOT, kSamba);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_setHTTPRight(
    JNIEnv *, jobject, jint iRight) {
    WAP_TRACE_ENTRY();
    const auto uiRight = static_cast<uint32_t>(iRight);
    return static_cast<jint>(ZeroOrFailed(WAP_SPOT, VT_JNI_SetHttpRight(uiRight), uiRight));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI_setHTTPUserPassword(
    JNIEnv *pstEnv, jobject, jstring jPassword) {
    WAP_TRACE_ENTRY();
    const SecretText stPassword = SecretText::Make(pstEnv, jPassword);
    const uint32_t uiLength = LengthOf(stPassword);
    if (!IsWithin(uiLength, kHttpPasswordMax)) {
        RecordFault(WAP_SPOT, kErrFailed, uiLength, kHttpPasswordMax);
        return -1;
    }
    return static_cast<jint>(ZeroOrFailed(WAP_SPOT, VT_JNI_SetHttpUserPassword(stPassword.Lend())));
}
