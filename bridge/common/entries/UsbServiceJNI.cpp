#include "com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI.h"

#include "common/answers.h"
#include "system/jni_storage_info.h"
#include "system/jni_usb_serial.h"

using namespace wap;

namespace {

/// Converts and traces a plug-in's id; false, recorded, when there is none.
bool TakePlugId(JNIEnv *pstEnv, jstring jPlugId, PlatformBlock &stPlugId) {
    char *pcPlugId = jstring2char(pstEnv, jPlugId);
    stPlugId.Adopt(pcPlugId);
    if (pcPlugId == nullptr) {
        RecordFault(WAP_SPOT, kErrFailed);
        return false;
    }
    WAP_TRACE(kTraceEntries, "\r\n pcPlugId = %s \r\n", pcPlugId);
    return true;
}

void TraceDevice(SourceSpot stSpot, jint iDevId) {
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "\r\n iDevId = %u  \r\n",
                       static_cast<uint32_t>(iDevId));
}

/// An argument as the trace shows it: a negative one is a large one there.
void TraceNumber(SourceSpot stSpot, const char *pcName, jint iValue) {
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "\r\n %s = %u \r\n", pcName,
                       static_cast<uint32_t>(iValue));
}

/// Whether there is an array with such a range; recorded when not.
bool HasRange(JNIEnv *pstEnv, jbyteArray jBytes, jint iOffset, jint iCount) {
    if (jBytes == nullptr || !UsbRangeFits(iOffset, iCount, pstEnv->GetArrayLength(jBytes))) {
        RecordFault(WAP_SPOT, kErrFailed, static_cast<uint32_t>(iOffset),
                    static_cast<uint32_t>(iCount));
        return false;
    }
    return true;
}

/// Reads into memory of the bridge's own first: the array stays as it is unless that goes well.
jint ReadIntoArray(JNIEnv *pstEnv, jint iHandle, jbyteArray jBuffer, jint iOffset, jint iCount,
                   jint iTimeOut) {
    const jsize iSize = iOffset + iCount;
    PlatformBlock stBlock;
    if (!stBlock.Make(iSize > 0 ? static_cast<uint32_t>(iSize) : 1, WAP_SPOT)) {
        RecordFault(WAP_SPOT, kErrNoMemory, static_cast<uint32_t>(iSize));
        return kUsbFailed;
    }
    const int32_t iRead = VT_KAVO_JNI_UsbRead(iHandle, stBlock.Lend(), iOffset, iCount, iTimeOut);
    if (iRead < 0) {
        return iRead;
    }
    // From the array's start and to the end of the range, deliberately: plug-ins find zeros in
    // front of and behind what was read.
    pstEnv->SetByteArrayRegion(jBuffer, 0, iSize, static_cast<const jbyte *>(stBlock.Lend()));
    if (ClearException(pstEnv)) {
        RecordFault(WAP_SPOT, kErrFailed);
        return kUsbFailed;
    }
    return iRead;
}

}  // namespace

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbRegister(JNIEnv *pstEnv,
                                                                                   jobject,
                                                                                   jstring jPlugId,
                                                                                   jint iType) {
    WAP_TRACE_ENTRY();
    PlatformBlock stPlugId;
    if (!TakePlugId(pstEnv, jPlugId, stPlugId)) {
        return kUsbFailed;
    }
    TraceNumber(WAP_SPOT, "iType", iType);
    return UsbRegister(stPlugId, static_cast<uint32_t>(iType));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbUnregister(
    JNIEnv *pstEnv, jobject, jstring jPlugId) {
    WAP_TRACE_ENTRY();
    PlatformBlock stPlugId;
    return TakePlugId(pstEnv, jPlugId, stPlugId) ? UsbUnregister(stPlugId) : kUsbFailed;
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbLock(JNIEnv *, jobject,
                                                                               jint iDevId) {
    WAP_TRACE_ENTRY();
    TraceDevice(WAP_SPOT, iDevId);
    return UsbLock(static_cast<uint32_t>(iDevId));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbUnlock(JNIEnv *, jobject,
                                                                                 jint iDevId) {
    WAP_TRACE_ENTRY();
    TraceDevice(WAP_SPOT, iDevId);
    return UsbUnlock(static_cast<uint32_t>(iDevId));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbOpen(JNIEnv *, jobject,
                                                                               jint iDevId) {
    WAP_TRACE_ENTRY();
    return UsbOpen(static_cast<uint32_t>(iDevId));
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbDataAvailable(
    JNIEnv *, jobject, jint iHandle) {
    WAP_TRACE_ENTRY();
    return UsbDataAvailable(iHandle);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbRead(
    JNIEnv *pstEnv, jobject, jint iHandle, jbyteArray jBuffer, jint iOffset, jint iCount,
    jint iTimeOut) {
    WAP_TRACE_ENTRY();
    TraceNumber(WAP_SPOT, "iHandle", iHandle);
    TraceNumber(WAP_SPOT, "iOffset", iOffset);
    TraceNumber(WAP_SPOT, "iCount", iCount);
    TraceNumber(WAP_SPOT, "iTimeOut", iTimeOut);
    if (!HasRange(pstEnv, jBuffer, iOffset, iCount)) {
        return kUsbFailed;
    }
    return ReadIntoArray(pstEnv, iHandle, jBuffer, iOffset, iCount, iTimeOut);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbWrite(
    JNIEnv *pstEnv, jobject, jint iHandle, jbyteArray jData, jint iOffset, jint iCount) {
    WAP_TRACE_ENTRY();
    if (!HasRange(pstEnv, jData, iOffset, iCount)) {
        return kUsbFailed;
    }
    jbyte *pbyData = pstEnv->GetByteArrayElements(jData, nullptr);
    if (ClearException(pstEnv) || pbyData == nullptr) {
        RecordFault(WAP_SPOT, kErrFailed);
        return kUsbFailed;
    }
    const int32_t iWritten = VT_KAVO_JNI_UsbWrite(iHandle, pbyData, iOffset, iCount);
    pstEnv->ReleaseByteArrayElements(jData, pbyData, 0);
    return iWritten;
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbSetSerial(
    JNIEnv *, jobject, jint iHandle, jint iBaudRate, jint iParity, jint iDataBits, jint iStopBits,
    jboolean bHardware, jboolean bSoftware) {
    WAP_TRACE_ENTRY();
    // The names of two of them are spelt as readers of traces know them.
    TraceNumber(WAP_SPOT, "iHandle", iHandle);
    TraceNumber(WAP_SPOT, "iBandRate", iBaudRate);
    TraceNumber(WAP_SPOT, "iParity", iParity);
    TraceNumber(WAP_SPOT, "iDataBit", iDataBits);
    TraceNumber(WAP_SPOT, "iStopBit", iStopBits);
    TraceNumber(WAP_SPOT, "bHardwareFlowControl", bHardware);
    TraceNumber(WAP_SPOT, "bSoftwareFlowControl", bSoftware);
    return VT_KAVO_JNI_UsbSetSerial(iHandle, iBaudRate, iParity, iDataBits, iStopBits, bHardware,
                                    bSoftware);
}

JNIEXPORT jint JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_usbClose(JNIEnv *, jobject,
                                                                                jint iHandle) {
    WAP_TRACE_ENTRY();
    return VT_KAVO_JNI_UsbClose(iHandle);
}

JNIEXPORT jstring JNICALL
Java_com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI_getStorageInfo(
    JNIEnv *pstEnv, jobject) {
    WAP_TRACE_ENTRY();
    AnswerBuffer<512> stBuffer = {};
    const uint32_t uiResult = VT_KAVO_JNI_GetStorageInfo(stBuffer.acText, 512);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        // 1 and not -1, deliberately: Java programs look for it.
        return OSGI_JNI_FaultStrBuild(pstEnv, 1);
    }
    return char2jstring(pstEnv, stBuffer.acText);
}
