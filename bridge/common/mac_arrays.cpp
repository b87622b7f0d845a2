#include "common/mac_arrays.h"

#include "common/jni_base.h"
#include "common/jni_common.h"

namespace wap {

bool ConvertMacs(JNIEnv *pstEnv, SourceSpot stSpot, jobjectArray jMacs,
                 const MacArrayRules &stRules, MacTable &stTable) {
    const jsize iLength = jMacs == nullptr ? 0 : pstEnv->GetArrayLength(jMacs);
    const auto uiLength = static_cast<uint32_t>(iLength);
    if (uiLength > stRules.uiMax || uiLength > kMacArrayMax) {
        VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "%s", stRules.pcTooLong);
        RecordFault(stSpot, 1, uiLength);
        return false;
    }
    // One more for the answer: making a Java text leaves as many references as converting one.
    if (uiLength != 0 && !EnsureElementRefs(pstEnv, iLength + 1)) {
        RecordFault(stSpot, 1, uiLength);
        return false;
    }
    const bool bLossCounts = stRules.eNone == NoMacs::kIsEveryone;
    uint32_t uiLost = 0;
    for (uint32_t i = 0; i < uiLength; ++i) {
        bool bLost = false;
        char *pcMac = ConvertElement(pstEnv, jMacs, static_cast<jsize>(i), stRules.eEmpty,
                                     bLossCounts ? &bLost : nullptr);
        uiLost += bLost ? 1 : 0;
        if (pcMac == nullptr && stRules.eBad == BadMac::kLeftOut) {
            continue;
        }
        if (pcMac == nullptr && stRules.eBad == BadMac::kRefuses) {
            VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                               "\r\n apcMacAddr[%u] memory allocate is failed \r\n", i);
            RecordFault(stSpot, 1, i);
            return false;
        }
        if (pcMac != nullptr && stRules.bTraceEach) {
            VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                               "\r\n jMacAddrArray[%u]=%s \r\n", i, pcMac);
        }
        // There is room: the length was checked.
        (void)stTable.Adopt(pcMac);
    }
    if (uiLost != 0 && VT_JNI_MacfltNullCheck(stTable.Lend(), stTable.Count()) != 0) {
        RecordFault(stSpot, 1, uiLost, uiLength);
        return false;
    }
    return true;
}

jint CallMacWorker(JNIEnv *pstEnv, SourceSpot stSpot, jobjectArray jMacs,
                   const MacArrayRules &stRules, MacWorker pfnWorker) {
    MacTable stTable;
    if (!ConvertMacs(pstEnv, stSpot, jMacs, stRules, stTable)) {
        return -1;
    }
    if (stTable.Count() == 0 && stRules.eNone == NoMacs::kIsDone) {
        return 0;
    }
    const uint32_t uiResult = pfnWorker(stTable.Lend(), stTable.Count());
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult);
        return -1;
    }
    return 0;
}

}  // namespace wap
