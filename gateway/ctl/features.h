// The features of the simulated firmware: numbers in a file that the platform library reads.
#ifndef WAP_GATEWAY_CTL_FEATURES_H
#define WAP_GATEWAY_CTL_FEATURES_H

#include <stdint.h>

#include <set>

#include "framework/json_value.h"
#include "framework/runtime_dir.h"

namespace wap::gateway {

/// The features that are on. What the file says otherwise is passed over.
std::set<uint32_t> ReadFeatures(const RuntimeDir &stDir);

/// Takes over those that a home is shipped with, its list "features", unless there is a file.
void ShipFeatures(const RuntimeDir &stDir, json_object *pstHome);

/// Writes the file. Throws GatewayError.
void WriteFeatures(const RuntimeDir &stDir, const std::set<uint32_t> &setFeatures);

}  // namespace wap::gateway

#endif
