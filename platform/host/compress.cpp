// Compression by LZ4, as a call with a long answer is mostly spent on its decompressing. A header
// of ours stands in front of the block, so that the reader knows where it ends and notices damage
// before it unpacks anything.
#include <lz4.h>
#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "vt_ssp_host.h"

namespace {

constexpr uint32_t kMagic = 0x345A5456u;  // "VTZ4"

/** Little-endian words, as all records that processes exchange. */
struct PackHead {
    uint32_t uiMagic;
    uint32_t uiCheck;  // xxHash32 of the block, begun with the original length
    uint32_t uiOriginalLen;
    uint32_t uiBlockLen;  // bytes behind the head
};
static_assert(sizeof(PackHead) == 16);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

uint32_t Check(const PackHead &stHead, const void *pvBlock) {
    return XXH32(pvBlock, stHead.uiBlockLen, stHead.uiOriginalLen);
}

struct Free {
    void operator()(void *pvBlock) const { free(pvBlock); }
};

}  // namespace

uint32_t VT_OS_Compress(const void *pvSrc, uint32_t uiSrcLen, void *pvDst, uint32_t *puiDstLen) {
    if (pvSrc == nullptr || pvDst == nullptr || puiDstLen == nullptr || uiSrcLen == 0 ||
        uiSrcLen > LZ4_MAX_INPUT_SIZE) {
        return VT_HOST_ERR_ARGUMENT;
    }
    // LZ4 wants more room than the block takes in the end.
    const int iBound = LZ4_compressBound(static_cast<int>(uiSrcLen));
    const std::unique_ptr<char, Free> pcBlock(
        static_cast<char *>(malloc(static_cast<size_t>(iBound))));
    if (!pcBlock) {
        return VT_HOST_ERR_MEMORY;
    }
    const int iLength = LZ4_compress_default(static_cast<const char *>(pvSrc), pcBlock.get(),
                                             static_cast<int>(uiSrcLen), iBound);
    if (iLength <= 0) {
        return VT_HOST_ERR_MEMORY;
    }
    PackHead stHead{kMagic, 0, uiSrcLen, static_cast<uint32_t>(iLength)};
    const uint64_t ulLength = sizeof(stHead) + uint64_t{stHead.uiBlockLen};
    // The reader trusts the form to be shorter than the data, so nothing else is made.
    if (ulLength >= uiSrcLen) {
        return *puiDstLen >= uiSrcLen - 1 ? VT_HOST_ERR_DATA : VT_HOST_ERR_TOO_LONG;
    }
    if (ulLength > *puiDstLen) {
        return VT_HOST_ERR_TOO_LONG;
    }
    stHead.uiCheck = Check(stHead, pcBlock.get());
    memcpy(pvDst, &stHead, sizeof stHead);
    memcpy(static_cast<char *>(pvDst) + sizeof stHead, pcBlock.get(), stHead.uiBlockLen);
    *puiDstLen = static_cast<uint32_t>(ulLength);
    return 0;
}

uint32_t VT_OS_Decompress(const void *pvSrc, void *pvDst, uint32_t uiDstCap) {
    if (pvSrc == nullptr || pvDst == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    if (uiDstCap < sizeof(PackHead)) {
        return VT_HOST_ERR_DATA;
    }
    PackHead stHead{};
    memcpy(&stHead, pvSrc, sizeof stHead);
    const char *pcBlock = static_cast<const char *>(pvSrc) + sizeof stHead;
    if (stHead.uiMagic != kMagic || stHead.uiBlockLen > uiDstCap - sizeof stHead ||
        stHead.uiOriginalLen > uiDstCap || stHead.uiOriginalLen > LZ4_MAX_INPUT_SIZE ||
        stHead.uiCheck != Check(stHead, pcBlock)) {
        return VT_HOST_ERR_DATA;
    }
    const int iLength = LZ4_decompress_safe(pcBlock, static_cast<char *>(pvDst),
                                            static_cast<int>(stHead.uiBlockLen),
                                            static_cast<int>(stHead.uiOriginalLen));
    return iLength == static_cast<int>(stHead.uiOriginalLen) ? 0u : VT_HOST_ERR_DATA;
}
