// Workers that describe what the applications run on: the Java runtime and the OSGi framework.
#ifndef WAP_SYSTEM_JNI_RUNTIME_INFO_H
#define WAP_SYSTEM_JNI_RUNTIME_INFO_H

#include <stdint.h>

#include "common/jni_common.h"
#include "common/wap_export.h"

/**
 * Has the Java runtime tell its version, and opens what it said.
 * @param pcPath where its output goes, a word that the shell takes as it is; what was there is
 *               overwritten, and the file stays
 * @return the open file, for VT_OS_Fclose; null when it can't be opened or pcPath is null. An
 *         older file is opened when the command fails, which is recorded
 */
WAP_EXPORT void *VT_JNI_GetPipeFileHandle(const char *pcPath);

/**
 * Fills the names of the Java runtime from its own words. What they don't tell stays empty.
 * @param pstNames zeroed first, whatever the result
 * @return 0; 1, recorded, when there is no output or pstNames is null
 */
WAP_EXPORT uint32_t VT_JNI_GetJvmDataByCmd(wap::RuntimeNames *pstNames);

/**
 * The description of the Java runtime, or of the OSGi framework, as a JSON object. Without the
 * Java runtime's output it has the result 1 and empty texts.
 * @param pcBuf receives the text and its zero; success only
 * @param uiCap size of pcBuf in bytes, the zero included
 * @return 0; 1 for a null buffer or when there is no text; 0xF7700005 when it does not fit;
 *         0xF7100000 or -1 (as unsigned) when there is no object. Failures are recorded
 */
WAP_EXPORT uint32_t VT_JNI_GetJVMInfo(char *pcBuf, uint32_t uiCap);
WAP_EXPORT uint32_t VT_JNI_GetOSGiInfo(char *pcBuf, uint32_t uiCap);

#endif
