// Answers that come as a bulk block holding one text.
#ifndef WAP_COMMON_BULK_TEXT_H
#define WAP_COMMON_BULK_TEXT_H

#include <stdint.h>

#include "common/jni_base.h"
#include "common/report.h"
#include "common/requests.h"

namespace wap {

/// How the trace of a received descriptor prints its numbers. Deliberately not the same for all:
/// those who read traces know both.
enum class DescTrace { kUnsigned, kSigned };

/// Traces a received descriptor under a call site.
void TraceDesc(SourceSpot stSpot, const VDataDesc &stDesc, DescTrace eTrace = DescTrace::kUnsigned);

/**
 * Traces a received descriptor and fetches the text that it names.
 * @param eEmpty  whether an empty text is one
 * @param ppcText receives the text as the process wrote it, released with VT_OS_MemFreeD by the
 *                caller; success only
 * @return 0; the code of the read, recorded; kErrFailed, recorded, for a block that holds no text
 *         or in which none ends
 */
uint32_t ReadBulkText(SourceSpot stSpot, const VDataDesc &stDesc, EmptyText eEmpty, char **ppcText,
                      DescTrace eTrace = DescTrace::kUnsigned);

/**
 * Asks for a descriptor, traces it, and fetches the text that it names.
 * @param ppcText receives the text as the process wrote it, released with VT_OS_MemFreeD by the
 *                caller; null on failure
 * @return 0; the code of the request or of the read, recorded; kErrFailed, recorded, for a block in
 *         which no text ends
 */
uint32_t FetchBulkText(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                       uint32_t uiReqLen, char **ppcText, DescTrace eTrace = DescTrace::kUnsigned);

}  // namespace wap

#endif
