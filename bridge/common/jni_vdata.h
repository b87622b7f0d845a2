// Bulk data: blocks in shared memory, named by a descriptor that travels in a request or reply.
// Up to 2048 bytes are stored as they are, more is stored compressed. The reader frees the block.
#ifndef WAP_COMMON_JNI_VDATA_H
#define WAP_COMMON_JNI_VDATA_H

#include <stdint.h>
#include <vt_ssp_basic.h>

#include "common/wap_export.h"

namespace wap {

/// The longest block stored without compression, in bytes.
inline constexpr uint32_t kPlainBlockMax = 2048;
/// The longest block that a descriptor may claim, in bytes: a damaged one must not be able to
/// exhaust the memory of the virtual machine's process.
inline constexpr uint32_t kBlockMax = 16u * 1024 * 1024;

}  // namespace wap

/**
 * Reads a block and frees it, whether reading succeeds or not.
 * @param pstDesc the descriptor as received; not trusted
 * @param ppvData receives a new buffer of OriginalLen bytes, released with VT_OS_MemFreeD; null on
 *                failure. Nothing says that a text in it is terminated.
 * @return 0; 1 for a null argument (nothing is freed then); 0xF7108001 when a buffer can't be had,
 *         which includes lengths of 0 and above kBlockMax; the platform's code
 */
WAP_EXPORT uint32_t VT_JNI_COMMON_ReadVData(const VDataDesc *pstDesc, void **ppvData);

/**
 * Writes data into a new block, which the receiver of the descriptor frees.
 * @param pstDesc receives the descriptor
 * @param uiLen   length of pvData in bytes, from 1 to kBlockMax
 * @return 0; 1 for a null argument; 0xF7108001 when a buffer can't be had or uiLen is out of
 *         bounds; the platform's code. No block is left on failure, and no id names one.
 */
WAP_EXPORT uint32_t VT_JNI_COMMON_WriteVData(VDataDesc *pstDesc, const void *pvData,
                                             uint32_t uiLen);

#endif
