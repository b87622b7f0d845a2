// A gateway with traffic in its flows.
#ifndef WAP_TESTS_SUPPORT_FURNISH_FLOWS_H
#define WAP_TESTS_SUPPORT_FURNISH_FLOWS_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/world.h"

namespace wap::test {

/// A member of a flow: 272 bytes.
std::string FlowMemberBytes(const std::string &sAddress, const std::string &sPort,
                            const std::string &sFlow);

/// What the gateway answers about the members: their number, and a block that holds the table.
Reply FlowTableReply(uint32_t uiCount, const std::string &sTable);
Reply FlowTableReply(const std::vector<std::string> &asMembers);

/// Two members, counters beyond 32 bits, speeds, limits and a mark.
void FurnishFlows(World &stWorld);

}  // namespace wap::test

#endif
