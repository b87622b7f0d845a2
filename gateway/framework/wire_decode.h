// Requests and replies as JSON, for people: what passes between the library and the processes.
#ifndef WAP_GATEWAY_FRAMEWORK_WIRE_DECODE_H
#define WAP_GATEWAY_FRAMEWORK_WIRE_DECODE_H

#include <stdint.h>

#include <string>
#include <string_view>

#include "framework/json_value.h"
#include "framework/wire_table.h"

namespace wap::gateway {

/// What a secret looks like, unless it is empty.
inline constexpr char kSecretShown[] = "(secret)";
/// Rows that are decoded; of more the number is told.
inline constexpr uint32_t kWireRowsShown = 128;
/// Bytes of a field without a meaning that are shown; "..." stands for the others.
inline constexpr uint32_t kWireBytesShown = 64;

/**
 * Reads a record: an object with a member for each field, by its name. The bytes are anybody's, as
 * many as there are:
 *  - a number that is not all there is left out, and of a text what is there is shown; the member
 *    "bytesMissing" counts what the record has and the bytes have not;
 *  - what is behind the record is counted in "bytesExtra";
 *  - zero elements at the end of an array are left out, and so are bytes without a meaning (as
 *    hexadecimal digits) that are all zero;
 *  - in texts each byte that is no UTF-8 becomes "\x" and two digits;
 *  - a secret is kSecretShown, or empty when it is.
 */
JsonValue DecodeRecord(const WireRecord &stRecord, std::string_view sBytes);

/**
 * Reads a request, a reply or what a bulk block holds, an object in every case: of a record as
 * above, of a word with a member that has its name or "word", of a text with "text", of rows with
 * "rows" and, where there are more, their number in "rowsMore".
 */
JsonValue DecodeContent(const WireContent &stContent, std::string_view sBytes);

/**
 * Reads what a bulk block holds, as DecodeContent does. Where it may hold rows of two kinds, and
 * its length is right for both, how many there are tells which they are.
 * @param sOwner the request or the reply that names the block, which counts them
 */
JsonValue DecodeBlock(const WireRpc &stRpc, std::string_view sOwner, std::string_view sBlock);

/// A text as it can be shown: up to its first zero, and as above.
std::string ReadableText(std::string_view sBytes);

}  // namespace wap::gateway

#endif
