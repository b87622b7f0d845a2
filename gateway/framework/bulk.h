// Answers that are too long for a reply, sent and received.
#ifndef WAP_GATEWAY_FRAMEWORK_BULK_H
#define WAP_GATEWAY_FRAMEWORK_BULK_H

#include <stdint.h>

#include <string>
#include <string_view>

#include "vt_ssp_basic.h"

namespace wap::gateway {

/// Puts bytes into a new bulk block, compressed when they are more than 2048, as everyone on the
/// gateway does. Whoever receives the descriptor frees the block. Throws GatewayError when the
/// block can't be made, for no bytes at all, and for long ones that do not shrink.
VDataDesc PublishBlock(std::string_view pcBytes);

/// A text with its zero, as readers of texts expect it.
VDataDesc PublishText(std::string_view pcText);

/// Forgets which blocks this thread has published: they are their readers' now.
void ForgetPublished();

/// Frees the blocks that this thread has published since then: nobody will read them.
void FreePublished();

/// Reads the bytes of a block that somebody published, which stays. What the descriptor and the
/// block say is not trusted.
/// @param uiMax how many bytes there may be
/// Throws GatewayError when the lengths are impossible, and when the block can't be read.
std::string ReadBlock(const VDataDesc &stDesc, uint32_t uiMax);

/// The same, and frees the block, also when it can't be read.
std::string FetchBlock(const VDataDesc &stDesc, uint32_t uiMax);

/// The same for a text, up to its zero.
std::string FetchText(const VDataDesc &stDesc, uint32_t uiMax);

}  // namespace wap::gateway

#endif
