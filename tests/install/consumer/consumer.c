/* A program of someone else's: built and linked against the installed tree alone. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <vt_ssp_basic.h>

/* The part of the bridge's C interface that it uses. */
extern void *JSON_Parse(const char *pcText, uint32_t uiStrict);
extern uint32_t JNI_JSON_ObjGetValueInt(void *pvObject, const char *pcKey, int32_t *piValue);
extern void JNI_JSON_ObjPut(void *pvObject);
extern uint32_t VT_JNI_GetAPIVersion(char *pcBuffer, uint32_t uiCapacity);
extern uint32_t uiInitFlag;

static int Complain(const char *pcWhat) {
    fprintf(stderr, "consumer: %s\n", pcWhat);
    return 1;
}

int main(void) {
    int32_t iValue = 0;
    void *pvObject = JSON_Parse("{\"Answer\": 42}", 1);
    if (pvObject == NULL || JNI_JSON_ObjGetValueInt(pvObject, "Answer", &iValue) != 0 ||
        iValue != 42) {
        return Complain("the JSON layer reads no 42");
    }
    JNI_JSON_ObjPut(pvObject);

    char acVersion[128] = "";
    if (VT_JNI_GetAPIVersion(acVersion, sizeof acVersion) != 0 || strcmp(acVersion, "1.0") != 0) {
        return Complain("the API version is not 1.0");
    }
    char acNumber[16] = "";
    if (VT_OS_Int32ToStr_S(-17, acNumber, sizeof acNumber) != 0 || strcmp(acNumber, "-17") != 0) {
        return Complain("the platform prints no -17");
    }
    if (uiInitFlag != 0) {
        return Complain("the message service counts as started, but nobody started it");
    }

    /* The same library once more, as a virtual machine finds it. */
    void *pvLibrary = dlopen("libvt_wap_jni.so", RTLD_NOW);
    if (pvLibrary == NULL) {
        return Complain(dlerror());
    }
    if (dlsym(pvLibrary,
              "Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods"
              "_startThread") == NULL) {
        return Complain("startThread is not exported");
    }
    return 0;
}
