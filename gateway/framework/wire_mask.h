// Writes over what is secret in requests, replies and blocks, for what is kept of them.
#ifndef WAP_GATEWAY_FRAMEWORK_WIRE_MASK_H
#define WAP_GATEWAY_FRAMEWORK_WIRE_MASK_H

#include <span>

#include "framework/wire_table.h"

namespace wap::gateway {

/**
 * Writes kSecretShown, or the start of it, over each secret that is not all zero, and zeros over
 * the rest of its field, so that neither it nor its length can be seen. Of a content that has
 * secrets, what is behind its end counts as one. Where it may be either of two, what is secret in
 * any of them is written over.
 * @param acBytes as many as there are of it
 * @return whether anything was written over
 */
bool MaskContent(const WireContent &stContent, std::span<char> acBytes);

}  // namespace wap::gateway

#endif
