// Right information comes as a text in a System V segment: the asking side makes it, another
// process fills it.
#ifndef WAP_SYSTEM_RIGHT_SEGMENT_H
#define WAP_SYSTEM_RIGHT_SEGMENT_H

#include <pthread.h>
#include <stdint.h>

#include "common/owners.h"

namespace wap {

/// How the segments of the services differ.
struct SegmentKind {
    int32_t iKey;
    uint32_t uiBytesPerAccount;
    uint32_t (*pfnFill)(uint32_t uiSize);  ///< has it filled; 0 or a code
    pthread_mutex_t *pstLock;              ///< held from its making to its removal
};

/**
 * Makes a segment, has it filled, takes the text out and removes it again, whatever happens.
 * @param uiCount how many accounts it shall have room for; not trusted
 * @param stText  receives the text, cut at the segment's end where no zero lies in it; success
 * only. Whoever fills it may put the accounts' passwords into it
 * @return 0; -1 (as unsigned), recorded, with the system's error number, the count and the size
 */
uint32_t ReadRightSegment(const SegmentKind &stKind, uint32_t uiCount, SecretBlock &stText);

}  // namespace wap

#endif
