// A process of the gateway on the host platform that has its answers ready.
#ifndef WAP_BENCH_PEERS_GATEWAY_H
#define WAP_BENCH_PEERS_GATEWAY_H

#include <sys/types.h>
#include <vt_ssp_basic.h>

#include <string>
#include <vector>

#include "common/children.h"

namespace wap::bench {

/// The host list as it lies in a bulk block. Compressed once, as nobody at the other ends of the
/// peers has to make an answer for each call either.
struct StoredHosts {
    std::string acBytes;
    uint32_t uiOriginalLen;
};

StoredHosts StoreHosts();

/// Makes a block of it, as for each call; gives the platform's status.
uint32_t MakeBlock(const StoredHosts &stHosts, VDataDesc &stDesc);

/// Starts those processes that the measured methods ask; gives their ids.
std::vector<pid_t> StartGateway(Children &stChildren);

}  // namespace wap::bench

#endif
