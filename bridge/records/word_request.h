// The request of whatever needs none, as it travels.
#ifndef WAP_RECORDS_WORD_REQUEST_H
#define WAP_RECORDS_WORD_REQUEST_H

#include <stdint.h>

namespace wap {

#pragma pack(push, 1)

/// One word holding 0.
struct WordRequest {
    uint32_t uiZero;
};
static_assert(sizeof(WordRequest) == 4);

#pragma pack(pop)

}  // namespace wap

#endif
