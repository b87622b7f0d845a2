// A process of the gateway on the host platform that has its answers ready.
#ifndef WAP_BENCH_PEERS_GATEWAY_H
#define WAP_BENCH_PEERS_GATEWAY_H

#include <sys/types.h>

#include <vector>

#include "common/children.h"

namespace wap::bench {

/// Starts those processes that the measured methods ask; gives their ids.
std::vector<pid_t> StartGateway(Children &stChildren);

}  // namespace wap::bench

#endif
