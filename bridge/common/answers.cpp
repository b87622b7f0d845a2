#include "common/answers.h"

namespace wap {

jstring FaultAnswer(JNIEnv *pstEnv, SourceSpot stSpot, OnFailure eOnFailure, uint32_t uiResult) {
    RecordFault(stSpot, uiResult);
    return OSGI_JNI_FaultStrBuild(
        pstEnv, eOnFailure == OnFailure::kMinusOne ? -1 : static_cast<int32_t>(uiResult));
}

jint NumberAnswer(SourceSpot stSpot, uint32_t uiNumber) {
    if (uiNumber == kErrFailed) {
        RecordFault(stSpot, uiNumber);
    }
    return static_cast<jint>(uiNumber);
}

}  // namespace wap
