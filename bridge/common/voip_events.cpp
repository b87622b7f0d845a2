#include "common/voip_events.h"

#include <string.h>

#include "common/jni_base.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"

using namespace wap;

namespace {

constexpr uint32_t kEventsMax = 8;

/// Bundles are written against the second name as it is spelt here.
constexpr const char *kEventNames[] = {"NOTIFY_VOICE_CALL_INFO", "NOTIFY_VOICE_RESTRAT_FINISH"};

bool IsEvent(const char *pcName) {
    for (const char *pcEvent : kEventNames) {
        if (strcmp(pcName, pcEvent) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

uint32_t CheckVoIPEventSubscribePara(JNIEnv *pstEnv, jobjectArray jEvents, jstring) {
    if (pstEnv == nullptr) {
        return kErrFailed;
    }
    const jsize iCount = jEvents == nullptr ? 0 : pstEnv->GetArrayLength(jEvents);
    const auto uiCount = static_cast<uint32_t>(iCount);
    WAP_TRACE(kTraceEntries, "\r\n CheckVoIPEventSubscribePara called, uiEvtCount[%u] \r\n",
              uiCount);
    if (uiCount > kEventsMax) {
        WAP_TRACE(kTraceEntries, "\r\n uiEvtCount is too long called \r\n");
        return kErrFailed;
    }
    // One more for the bundle's name, which is converted after them.
    if (uiCount != 0 && !EnsureElementRefs(pstEnv, iCount + 1)) {
        RecordFault(WAP_SPOT, kErrFailed, uiCount);
        return kErrFailed;
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        PlatformBlock stName;
        stName.Adopt(ConvertElement(pstEnv, jEvents, static_cast<jsize>(i), EmptyText::kIsMissing));
        if (!stName) {
            RecordFault(WAP_SPOT, 1, i, uiCount);
            continue;
        }
        const char *pcName = static_cast<const char *>(stName.Lend());
        WAP_TRACE(kTraceEntries, "\r\n jEventArray=%s \r\n", pcName);
        if (!IsEvent(pcName)) {
            stName.Adopt(nullptr);
            WAP_TRACE(kTraceEntries, "\r\n jEventArray is not surpport. \r\n");
            return kErrFailed;
        }
    }
    return 0;
}

jint wap::CallVoiceWorker(JNIEnv *pstEnv, jstring jBundleName, jobjectArray jEvents,
                          const VoiceMethod &stMethod) {
    if (CheckVoIPEventSubscribePara(pstEnv, jEvents, jBundleName) != 0) {
        return -1;
    }
    const JavaText stName = JavaText::Make(pstEnv, jBundleName);
    if (!stName) {
        RecordFault(WAP_SPOT, kErrFailed);
        return -1;
    }
    WAP_TRACE(kTraceEntries, "\r\n %s called, pcBundleName[%s] \r\n", stMethod.pcTraceName,
              stName.Lend());
    return static_cast<jint>(Recorded(WAP_SPOT, stMethod.pfnWorker(stName.Lend())));
}
