#include "framework/bulk.h"

#include <string.h>

#include <utility>
#include <vector>

#include "framework/error.h"

namespace wap::gateway {

namespace {

constexpr size_t kPlainMax = 2048;

/// What the thread's present call has published.
thread_local std::vector<uint32_t> g_auiPublished;

/// Frees a block when it goes.
struct BlockRelease {
    uint32_t uiDataID;
    ~BlockRelease() { (void)VT_VDATA_FreeShm(uiDataID); }
};

}  // namespace

VDataDesc PublishBlock(std::string_view pcBytes) {
    const auto uiLength = static_cast<uint32_t>(pcBytes.size());
    VDataDesc stDesc = {0, uiLength, uiLength};
    // cppcheck-suppress variableScope ; pcContent shows it below
    std::string acCompressed;
    std::string_view pcContent = pcBytes;
    if (pcBytes.size() > kPlainMax) {
        acCompressed.resize(pcBytes.size());
        if (VT_OS_Compress(pcBytes.data(), uiLength, acCompressed.data(),
                           &stDesc.uiCompressedLen) != 0) {
            throw GatewayError("a block of " + std::to_string(uiLength) + " bytes does not shrink");
        }
        pcContent = std::string_view(acCompressed).substr(0, stDesc.uiCompressedLen);
    }
    if (VT_VDATA_CreShm(stDesc.uiCompressedLen, &stDesc) != 0) {
        throw GatewayError("cannot make a bulk block of " + std::to_string(stDesc.uiCompressedLen) +
                           " bytes");
    }
    if (VT_VDATA_UpdateData(stDesc.uiDataID, stDesc.uiCompressedLen, pcContent.data()) != 0) {
        (void)VT_VDATA_FreeShm(stDesc.uiDataID);
        throw GatewayError("cannot fill a bulk block of " + std::to_string(stDesc.uiCompressedLen) +
                           " bytes");
    }
    g_auiPublished.push_back(stDesc.uiDataID);
    return stDesc;
}

void ForgetPublished() {
    g_auiPublished.clear();
}

void FreePublished() {
    for (const uint32_t uiDataID : g_auiPublished) {
        (void)VT_VDATA_FreeShm(uiDataID);
    }
    ForgetPublished();
}

VDataDesc PublishText(std::string_view pcText) {
    return PublishBlock(std::string(pcText) + '\0');
}

std::string ReadBlock(const VDataDesc &stDesc, uint32_t uiMax) {
    const bool bPlain = stDesc.uiOriginalLen <= kPlainMax;
    // What does not shrink is never sent compressed.
    if (stDesc.uiOriginalLen == 0 || stDesc.uiOriginalLen > uiMax || stDesc.uiCompressedLen == 0 ||
        (bPlain ? stDesc.uiCompressedLen != stDesc.uiOriginalLen
                : stDesc.uiCompressedLen >= stDesc.uiOriginalLen)) {
        throw GatewayError("a bulk block of " + std::to_string(stDesc.uiOriginalLen) +
                           " bytes stored as " + std::to_string(stDesc.uiCompressedLen) +
                           " can't be a text");
    }
    // As long as the text, because decompressing may read that far.
    std::string acStored(stDesc.uiOriginalLen, '\0');
    if (VT_VDATA_ReadData(stDesc.uiDataID, stDesc.uiCompressedLen, acStored.data()) != 0) {
        throw GatewayError("cannot read a bulk block of " + std::to_string(stDesc.uiCompressedLen) +
                           " bytes");
    }
    if (bPlain) {
        return acStored;
    }
    std::string acBytes(stDesc.uiOriginalLen, '\0');
    if (VT_OS_Decompress(acStored.data(), acBytes.data(), stDesc.uiOriginalLen) != 0) {
        throw GatewayError("a bulk block of " + std::to_string(stDesc.uiCompressedLen) +
                           " bytes is damaged");
    }
    return acBytes;
}

std::string FetchBlock(const VDataDesc &stDesc, uint32_t uiMax) {
    const BlockRelease stRelease = {stDesc.uiDataID};
    return ReadBlock(stDesc, uiMax);
}

std::string FetchText(const VDataDesc &stDesc, uint32_t uiMax) {
    std::string acText = FetchBlock(stDesc, uiMax);
    acText.resize(strnlen(acText.data(), acText.size()));
    return acText;
}

}  // namespace wap::gateway
