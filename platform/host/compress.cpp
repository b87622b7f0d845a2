// Compression by zlib. A header of ours stands in front of the stream, so that the reader knows
// where it ends and notices damage before it unpacks anything.
#include <zlib.h>

#include <cstring>

#include "vt_ssp_host.h"

namespace {

constexpr uint32_t kMagic = 0x315A5456u;  // "VTZ1"

/** Little-endian words, as all records that processes exchange. */
struct PackHead {
    uint32_t uiMagic;
    uint32_t uiCheck;  // CRC-32 of all that follows it
    uint32_t uiOriginalLen;
    uint32_t uiStreamLen;  // bytes behind the head
};
static_assert(sizeof(PackHead) == 16);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

uint32_t Check(const PackHead &stHead, const uint8_t *pucStream) {
    uint8_t aucLens[8];
    memcpy(aucLens, &stHead.uiOriginalLen, sizeof aucLens);
    uLong uiCheck = crc32(0, aucLens, sizeof aucLens);
    return static_cast<uint32_t>(crc32(uiCheck, pucStream, stHead.uiStreamLen));
}

}  // namespace

uint32_t VT_OS_Compress(const void *pvSrc, uint32_t uiSrcLen, void *pvDst, uint32_t *puiDstLen) {
    if (pvSrc == nullptr || pvDst == nullptr || puiDstLen == nullptr || uiSrcLen == 0) {
        return VT_HOST_ERR_ARGUMENT;
    }
    // The reader trusts the form to be shorter than the data, so nothing else is made.
    bool bRoomForAll = *puiDstLen >= uiSrcLen - 1;
    uint32_t uiRoom = bRoomForAll ? uiSrcLen - 1 : *puiDstLen;
    uint32_t uiTooLong = bRoomForAll ? VT_HOST_ERR_DATA : VT_HOST_ERR_TOO_LONG;
    if (uiRoom <= sizeof(PackHead)) {
        return uiTooLong;
    }
    uint8_t *pucStream = static_cast<uint8_t *>(pvDst) + sizeof(PackHead);
    uLongf ulLen = static_cast<uLongf>(uiRoom - sizeof(PackHead));
    int iResult = compress2(pucStream, &ulLen, static_cast<const Bytef *>(pvSrc), uiSrcLen,
                            Z_DEFAULT_COMPRESSION);
    if (iResult != Z_OK) {
        return iResult == Z_BUF_ERROR ? uiTooLong : VT_HOST_ERR_MEMORY;
    }
    PackHead stHead{kMagic, 0, uiSrcLen, static_cast<uint32_t>(ulLen)};
    stHead.uiCheck = Check(stHead, pucStream);
    memcpy(pvDst, &stHead, sizeof stHead);
    *puiDstLen = static_cast<uint32_t>(sizeof stHead + ulLen);
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
    const uint8_t *pucStream = static_cast<const uint8_t *>(pvSrc) + sizeof stHead;
    if (stHead.uiMagic != kMagic || stHead.uiStreamLen > uiDstCap - sizeof stHead ||
        stHead.uiOriginalLen > uiDstCap || stHead.uiCheck != Check(stHead, pucStream)) {
        return VT_HOST_ERR_DATA;
    }
    uLongf ulLen = stHead.uiOriginalLen;
    uLong ulUsed = stHead.uiStreamLen;
    int iResult = uncompress2(static_cast<Bytef *>(pvDst), &ulLen, pucStream, &ulUsed);
    if (iResult == Z_MEM_ERROR) {
        return VT_HOST_ERR_MEMORY;
    }
    bool bWhole = ulLen == stHead.uiOriginalLen && ulUsed == stHead.uiStreamLen;
    return iResult == Z_OK && bWhole ? 0u : VT_HOST_ERR_DATA;
}
