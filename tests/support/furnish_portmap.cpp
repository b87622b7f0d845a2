#include "support/furnish_portmap.h"

#include "support/wire_bytes.h"

namespace wap::test {

std::string WanBytes(const WanFacts &stWan) {
    // The word before the kind says nothing to the bridge.
    return Field(stWan.sName, 256) + Word(stWan.uiDev) + Word(stWan.uiConnDev) +
           Word(stWan.uiConn) + Word(0x5A5A5A5A) + Word(stWan.uiKind) + Word(stWan.uiGate) +
           Word(stWan.uiMode);
}

std::string MappingBytes(const MappingFacts &stMapping) {
    return Word(stMapping.uiEnable) + std::string(20, '\0') + Word(stMapping.uiExternalPort) +
           Word(stMapping.uiExternalPort) + Word(stMapping.uiInternalPort) +
           Field(stMapping.sProtocol, 16) + Field(stMapping.sClient, 16) + std::string(257, '\0') +
           Word(stMapping.uiInternalPort) + std::string(47, '\0');
}

std::string RowBytes(uint32_t uiWanIndex, uint32_t uiInstId, const MappingFacts &stMapping) {
    return Word(uiWanIndex) + Word(uiInstId) + std::string(32, '\x5A') + MappingBytes(stMapping);
}

void FurnishMappingTable(World &stWorld, const std::string &sTable) {
    stWorld.stPlatform.mapReplies[0x47309029] = {0, sTable, true};
}

void FurnishPortMapping(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[0x47301049] = {0, WanBytes()};
    stPlatform.mapReplies[0x47309010] = {0, MappingBytes()};
    stPlatform.mapReplies[0x47309014] = {0, MappingBytes()};
    stPlatform.mapReplies[0x4730902A] = {0, Word(2)};
    for (const uint32_t uiChange : {0x4720909Au, 0x4720909Bu, 0x4720909Cu}) {
        stPlatform.mapReplies[uiChange] = {0, Word(0)};
    }
    FurnishMappingTable(stWorld, RowBytes(0x10101003, 1) +
                                     RowBytes(0x10101003, 2, {0, 2222, 22, "TCP", "192.168.1.21"}));
}

}  // namespace wap::test
