/* The least that has to be done in a native method, by plain C: the prescribed conversion of a text
 * for Java, one request through the platform, and reading a bulk block. */
#ifndef WAP_BENCH_PEERS_PLAIN_JNI_H
#define WAP_BENCH_PEERS_PLAIN_JNI_H

#include <jni.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <vt_ssp_basic.h>

#include "plain_ask.h"

/* A new Java text of these bytes in UTF-8; null with an exception of the virtual machine's. */
static inline jstring PlainToJava(JNIEnv *pstEnv, const char *pcText, size_t uiLength) {
    jclass jClass = (*pstEnv)->FindClass(pstEnv, "java/lang/String");
    if (jClass == NULL) {
        return NULL;
    }
    jstring jCharset = (*pstEnv)->NewStringUTF(pstEnv, "utf-8");
    if (jCharset == NULL) {
        return NULL;
    }
    jmethodID jMethod = (*pstEnv)->GetMethodID(pstEnv, jClass, "<init>", "([BLjava/lang/String;)V");
    if (jMethod == NULL) {
        return NULL;
    }
    jbyteArray jBytes = (*pstEnv)->NewByteArray(pstEnv, (jsize)uiLength);
    if (jBytes == NULL) {
        return NULL;
    }
    (*pstEnv)->SetByteArrayRegion(pstEnv, jBytes, 0, (jsize)uiLength, (const jbyte *)pcText);
    return (*pstEnv)->NewObject(pstEnv, jClass, jMethod, jBytes, jCharset);
}

/* What a bulk block holds, which is compressed; from malloc. Null when it can't be read. */
static inline char *PlainFetch(const VDataDesc *pstDesc) {
    const uint32_t uiLength = pstDesc->uiOriginalLen;
    char *pcText = NULL;
    char *pcStored = (char *)malloc(uiLength);
    if (pcStored != NULL &&
        VT_VDATA_ReadData(pstDesc->uiDataID, pstDesc->uiCompressedLen, pcStored) == 0) {
        (void)VT_VDATA_FreeShm(pstDesc->uiDataID);
        pcText = (char *)malloc(uiLength);
        if (pcText != NULL && VT_OS_Decompress(pcStored, pcText, uiLength) != 0) {
            free(pcText);
            pcText = NULL;
        }
    }
    free(pcStored);
    return pcText;
}

#endif
