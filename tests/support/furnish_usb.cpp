#include "support/furnish_usb.h"

#include "support/wire_bytes.h"

namespace wap::test {

std::string OpenBytes(const std::string &sPath, uint32_t uiResult) {
    return Word(uiResult) + Field(sPath, 96);
}

std::string DiscBytes(const std::vector<std::string> &asPaths, uint32_t uiCount) {
    std::string sBytes = Word(uiCount);
    for (const std::string &sPath : asPaths) {
        sBytes += std::string(96, 'q') + Field(sPath, 128);
    }
    sBytes.resize(7172, 'z');
    return sBytes;
}

std::string DiscBytes(const std::vector<std::string> &asPaths) {
    return DiscBytes(asPaths, static_cast<uint32_t>(asPaths.size()));
}

void FurnishUsb(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    for (const uint32_t uiRpcId : {0x47103041u, 0x47103042u, 0x47103043u, 0x47103044u}) {
        stPlatform.mapReplies[uiRpcId] = {0, std::string(68, 'q')};
    }
    stPlatform.mapReplies[0x4710303F] = {0, OpenBytes("/dev/ttyUSB0")};
    stPlatform.mapReplies[0x47103067] = {0, DiscBytes({"/mnt/usb1", "/mnt/gone"})};
    stPlatform.stDescriptors.mapVolumes = {{"/mnt/usb1", {1048576, 524288, 400000, 4096}}};
}

}  // namespace wap::test
