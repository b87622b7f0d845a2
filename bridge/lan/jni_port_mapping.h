// Workers of the port mapping services: rules that lead a port of a WAN connection to a port of a
// host of the LAN. A WAN connection is named by its WAN index. All of them record every failure.
#ifndef WAP_LAN_JNI_PORT_MAPPING_H
#define WAP_LAN_JNI_PORT_MAPPING_H

#include <stdint.h>

#include "common/wap_export.h"

namespace wap {

struct PortMappingEntry;
struct PortMappingRow;
struct WanRecord;

/// "Refused by the service" of an addition, "there is no such mapping" of a switch.
inline constexpr uint32_t kErrNotPossible = 0xFFFFFFFE;

}  // namespace wap

/**
 * Adds a mapping, which is on at once.
 * @param uiExternalPort   the WAN connection's port; the service checks it, and the other one
 * @param uiInternalPort   the host's port
 * @param pcProtocol       in the service's words, cut to 15 bytes; null leaves it empty
 * @param pcInternalClient the host's address, cut to 15 bytes; null leaves it empty
 * @return 0; -2 (as unsigned) when the service refuses the mapping; -1 for every other failure,
 *         among them a WAN connection that may have none
 */
WAP_EXPORT uint32_t VT_JNI_addPortMapping(uint32_t uiWanIndex, uint32_t uiExternalPort,
                                          uint32_t uiInternalPort, const char *pcProtocol,
                                          const char *pcInternalClient);

/// Deletes a mapping. 0, or -1 (as unsigned).
WAP_EXPORT uint32_t VT_JNI_deletePortMapping(uint32_t uiWanIndex, uint32_t uiInstId);

/**
 * Turns a mapping on or off. One that is so already is left alone.
 * @param uiEnable 0 off, anything else on
 * @return 0; -2 (as unsigned) when the mapping can't be fetched; -1 for every other failure
 */
WAP_EXPORT uint32_t VT_JNI_setPortMappingSwitch(uint32_t uiWanIndex, uint32_t uiInstId,
                                                uint32_t uiEnable);

/**
 * Lists the mappings of all WAN connections as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request or read; 1 when the
 *         text can't be made
 */
WAP_EXPORT uint32_t VT_JNI_getPortMappingInfo(char **ppcText);

/**
 * Makes the JSON text of a table of mappings, with one group for each run of rows of the same WAN
 * connection. Asks for the record of each run's connection.
 * @param pstRows the table: uiCount rows, or fewer with a last one of WAN index 0
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request; 1 when the text can't be
 *         made
 */
WAP_EXPORT uint32_t VT_API_getPortMappingJsonStr(const wap::PortMappingRow *pstRows,
                                                 uint32_t uiCount, char **ppcText);

/**
 * Fetches a mapping.
 * @param pstEntry written on success only
 * @return 0; 0xF7702001 for a null argument; 0xF7307006 when the WAN connection may have no
 *         mappings; 1 when it is of an unknown kind; the code of a failed request
 */
WAP_EXPORT uint32_t VT_API_getPortMapping(uint32_t uiWanIndex, uint32_t uiInstId,
                                          wap::PortMappingEntry *pstEntry);

/// Tells how many mappings there are, on all WAN connections. 0, 0xF7702001 or the platform's code.
WAP_EXPORT uint32_t VT_API_getPortMappingNum(uint32_t *puiNum);

/**
 * Asks for the record of a WAN connection.
 * @param pstRecord written on success only; its name need not be terminated
 * @return 0, 0xF7702001 for a null argument, or the platform's code
 */
WAP_EXPORT uint32_t VT_API_getOsgiWanInfoByWanIndex(uint32_t uiWanIndex, wap::WanRecord *pstRecord);

#endif
