#include "framework/bulk.h"

#include <string>

#include "framework/error.h"

namespace wap::gateway {

namespace {

constexpr size_t kPlainMax = 2048;

}  // namespace

VDataDesc PublishBlock(std::string_view pcBytes) {
    const auto uiLength = static_cast<uint32_t>(pcBytes.size());
    VDataDesc stDesc = {0, uiLength, uiLength};
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
    return stDesc;
}

VDataDesc PublishText(std::string_view pcText) {
    return PublishBlock(std::string(pcText) + '\0');
}

}  // namespace wap::gateway
