#include "support/furnish_flows.h"

#include "support/wire_bytes.h"

namespace wap::test {

std::string FlowMemberBytes(const std::string &sAddress, const std::string &sPort,
                            const std::string &sFlow) {
    return Field(sAddress, 256) + Field(sPort, 12) + Field(sFlow, 4);
}

Reply FlowTableReply(uint32_t uiCount, const std::string &sTable) {
    Reply stReply = {0, sTable, true};
    stReply.sBeforeBulk = Word(uiCount);
    return stReply;
}

Reply FlowTableReply(const std::vector<std::string> &asMembers) {
    std::string sTable;
    for (const std::string &sMember : asMembers) {
        sTable += sMember;
    }
    return FlowTableReply(static_cast<uint32_t>(asMembers.size()), sTable);
}

void FurnishFlows(World &stWorld) {
    auto &mapReplies = stWorld.stPlatform.mapReplies;
    for (const uint32_t uiChange :
         {0x4830419Bu, 0x4830419Cu, 0x4830419Du, 0x483041A2u, 0x483041A4u}) {
        mapReplies[uiChange] = {0, Word(0)};
    }
    mapReplies[0x4830419E] = FlowTableReply(
        {FlowMemberBytes("198.51.100.7", "443", "1"), FlowMemberBytes("", "53", "1")});
    mapReplies[0x4830419F] = {0, Word(5) + Word(1) + Word(0xFFFFFFFF) + Word(0xFFFFFFFF)};
    mapReplies[0x483041A0] = {0, Word(512) + Word(20480)};
    mapReplies[0x483041A1] = {0, Word(1024) + Word(40960)};
    mapReplies[0x483041A3] = {0, Word(46)};
}

}  // namespace wap::test
