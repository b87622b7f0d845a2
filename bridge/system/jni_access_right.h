// Workers of the rights to log in: the FTP and Samba accounts and rights, and the web service's
// right and password. All of them record every failure.
#ifndef WAP_SYSTEM_JNI_ACCESS_RIGHT_H
#define WAP_SYSTEM_JNI_ACCESS_RIGHT_H

#include <stdint.h>

#include "common/owners.h"
#include "common/wap_export.h"
#include "records/access_right.h"

/**
 * Splits a right into its two access flags: 0 none, 1 the first, 2 the second, 3 both.
 * @return 0; 0xF7702001 for a null argument; -1 (as unsigned) for any other right. The flags are
 *         written on 0 only
 */
WAP_EXPORT uint32_t VT_OSGI_Handle_EnabletoACL(uint8_t ucRight, uint32_t *puiFirst,
                                               uint32_t *puiSecond);

/// Counts the accounts of a service. 0; 0xF7702001 for null; -1 (as unsigned) when the request
/// fails. Written on 0 only.
WAP_EXPORT uint32_t VT_JNI_GetFtpAccountCount(uint32_t *puiCount);
WAP_EXPORT uint32_t VT_JNI_GetSambaAccountCount(uint32_t *puiCount);

/**
 * Has the right information written into the service's segment, which must exist.
 * @param uiSize the segment's size in bytes
 * @return 0; -1 (as unsigned) when the request fails
 */
WAP_EXPORT uint32_t VT_JNI_GetFTPRightInfo(uint32_t uiSize);
WAP_EXPORT uint32_t VT_JNI_GetSambaRightInfo(uint32_t uiSize);

/**
 * Sets a service's access right.
 * @param uiRight the right, see VT_OSGI_Handle_EnabletoACL; its low byte counts
 * @param uiValue passed on as it is
 * @return 0; -1 (as unsigned) for a right above 3, when nobody was asked, and when the request
 *         fails
 */
WAP_EXPORT uint32_t VT_JNI_SetFTPRight(uint32_t uiRight, uint32_t uiValue);
WAP_EXPORT uint32_t VT_JNI_SetSambaRight(uint32_t uiRight, uint32_t uiValue);

// "Acount" in the names below is deliberate: what links against this library has it so.

/**
 * Adds an account. The record that carried the password is wiped.
 * @param pcUser     cut to 256 bytes
 * @param pcPassword cut to 256 bytes (FTP) or 64 (Samba)
 * @return 0; 0xF7702001 for a null argument; -1 (as unsigned) when the request fails
 */
WAP_EXPORT uint32_t VT_JNI_AddFTPAcount(const char *pcUser, const char *pcPassword);
WAP_EXPORT uint32_t VT_JNI_AddSambaAcount(const char *pcUser, const char *pcPassword);

/// Deletes an account, whose name is cut to 256 bytes. Results as for adding one.
WAP_EXPORT uint32_t VT_JNI_DeleteFTPAcount(const char *pcUser);
WAP_EXPORT uint32_t VT_JNI_DeleteSambaAcount(const char *pcUser);

/// Deletes all accounts of a service. 0; -1 (as unsigned) when the request fails.
WAP_EXPORT uint32_t VT_JNI_DeleteAllFTPAcount(void);
WAP_EXPORT uint32_t VT_JNI_DeleteAllSambaAcount(void);

/**
 * Tells the web service's right information, the text that "osgi_proxy" writes.
 * @param pcBuf receives the text and its zero; success only
 * @param uiCap size of pcBuf in bytes; 256 are enough for any that ends with a zero
 * @return 0; 0xF7702001 for no buffer; -1 (as unsigned) when the request fails; 0xF7700005 when the
 *         text does not fit
 */
WAP_EXPORT uint32_t VT_JNI_GetHTTPRightInfo(char *pcBuf, uint32_t uiCap);

/// Sets the web service's right, of which the low byte counts. Results as VT_JNI_SetFTPRight.
WAP_EXPORT uint32_t VT_JNI_SetHttpRight(uint32_t uiRight);

/**
 * Sets the password of the web service's user. The record that carried it is wiped.
 * @param pcPassword cut to 127 bytes
 * @return 0; 0xF7702001 for null; -1 (as unsigned) when the request fails
 */
WAP_EXPORT uint32_t VT_JNI_SetHttpUserPassword(const char *pcPassword);

namespace wap {

/// The services that share the gateway's storage.
enum class Share : uint32_t { kFtp, kSamba };

/**
 * Reads a service's right information through a segment made for it, which is gone afterwards. One
 * thread at a time does so for a service; others wait.
 * @param stText receives the text; success only
 * @return 0; -1 (as unsigned)
 */
uint32_t FetchRightText(Share eShare, SecretBlock &stText);

}  // namespace wap

#endif
