#include "common/jni_vdata.h"

#include "common/jni_json_wrap.h"
#include "common/owners.h"
#include "common/report.h"

using namespace wap;

namespace {

/// Records with the descriptor's numbers and passes the code on.
uint32_t Fail(SourceSpot stSpot, uint32_t uiCode, const VDataDesc &stDesc) {
    RecordFault(stSpot, uiCode, stDesc.uiDataID, stDesc.uiOriginalLen, stDesc.uiCompressedLen);
    return uiCode;
}

/// Frees the block of a read that failed already; the first failure is the one that counts.
uint32_t FailAndFree(SourceSpot stSpot, uint32_t uiCode, const VDataDesc &stDesc) {
    (void)VT_VDATA_FreeShm(stDesc.uiDataID);
    return Fail(stSpot, uiCode, stDesc);
}

bool IsPlain(const VDataDesc &stDesc) {
    return stDesc.uiOriginalLen <= kPlainBlockMax;
}

bool LengthsMakeSense(const VDataDesc &stDesc) {
    return stDesc.uiOriginalLen != 0 && stDesc.uiOriginalLen <= kBlockMax &&
           stDesc.uiCompressedLen != 0 && stDesc.uiCompressedLen <= kBlockMax;
}

/// The staging buffer's size: what the block holds, but no less than what decompressing may read.
/// The platform's call knows no source length; it reads at most as many bytes as it may write.
uint32_t StagingSize(const VDataDesc &stDesc) {
    return !IsPlain(stDesc) && stDesc.uiOriginalLen > stDesc.uiCompressedLen
               ? stDesc.uiOriginalLen
               : stDesc.uiCompressedLen;
}

}  // namespace

uint32_t VT_JNI_COMMON_ReadVData(const VDataDesc *pstDesc, void **ppvData) {
    if (ppvData != nullptr) {
        *ppvData = nullptr;
    }
    if (ppvData == nullptr || pstDesc == nullptr) {
        return Recorded(WAP_SPOT, 1, AsNumber(pstDesc), AsNumber(ppvData));
    }
    const VDataDesc stDesc = *pstDesc;
    PlatformBlock stStaging;
    PlatformBlock stData;
    if (!LengthsMakeSense(stDesc) || !stStaging.Make(StagingSize(stDesc), WAP_SPOT) ||
        !stData.Make(stDesc.uiOriginalLen, WAP_SPOT)) {
        return FailAndFree(WAP_SPOT, kErrNoMemory, stDesc);
    }
    uint32_t uiResult =
        VT_VDATA_ReadData(stDesc.uiDataID, stDesc.uiCompressedLen, stStaging.Lend());
    if (uiResult != 0) {
        return FailAndFree(WAP_SPOT, uiResult, stDesc);
    }
    uiResult = VT_VDATA_FreeShm(stDesc.uiDataID);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult, stDesc);
    }
    // The original length alone decides. A plain block longer than it says fails in the copy.
    uiResult = IsPlain(stDesc)
                   ? VT_OS_MemCpy_S(stData.Lend(), stDesc.uiOriginalLen, stStaging.Lend(),
                                    stDesc.uiCompressedLen)
                   : VT_OS_Decompress(stStaging.Lend(), stData.Lend(), stDesc.uiOriginalLen);
    if (uiResult != 0) {
        return Fail(WAP_SPOT, uiResult, stDesc);
    }
    *ppvData = stData.Release();
    return 0;
}

uint32_t VT_JNI_COMMON_WriteVData(VDataDesc *pstDesc, const void *pvData, uint32_t uiLen) {
    if (pstDesc == nullptr || pvData == nullptr) {
        return Recorded(WAP_SPOT, 1, AsNumber(pstDesc), AsNumber(pvData), uiLen);
    }
    // No id yet, so that freeing after a failed creation hits nobody's block.
    *pstDesc = {0, uiLen, uiLen};
    if (uiLen == 0 || uiLen > kBlockMax) {
        return Fail(WAP_SPOT, kErrNoMemory, *pstDesc);
    }
    const void *pvContent = pvData;
    PlatformBlock stCompressed;
    if (!IsPlain(*pstDesc)) {
        if (!stCompressed.Make(uiLen, WAP_SPOT)) {
            return Fail(WAP_SPOT, kErrNoMemory, *pstDesc);
        }
        const uint32_t uiResult =
            VT_OS_Compress(pvData, uiLen, stCompressed.Lend(), &pstDesc->uiCompressedLen);
        if (uiResult != 0) {
            return Fail(WAP_SPOT, uiResult, *pstDesc);
        }
        pvContent = stCompressed.Lend();
    }
    // Written even after a failed creation; either failure is enough.
    uint32_t uiResult = VT_VDATA_CreShm(pstDesc->uiCompressedLen, pstDesc);
    uiResult |= VT_VDATA_UpdateData(pstDesc->uiDataID, pstDesc->uiCompressedLen, pvContent);
    if (uiResult != 0) {
        (void)FailAndFree(WAP_SPOT, uiResult, *pstDesc);
        pstDesc->uiDataID = 0;
    }
    return uiResult;
}
