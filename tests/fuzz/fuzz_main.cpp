// The fuzzer's entry to one target, which the build names.
#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pucData, size_t uiSize) {
    wap::test::WAP_FUZZ_FUNCTION(pucData, uiSize);
    return 0;
}
