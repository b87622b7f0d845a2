// Start-up: attaches the Java process to the message service and keeps its queue moving.
#ifndef WAP_SYSTEM_WAP_MSG_JNI_H
#define WAP_SYSTEM_WAP_MSG_JNI_H

#include <stdint.h>

#include "common/wap_export.h"

extern "C" {
/// The platform library's handle; null until it was first opened, never closed.
extern WAP_VISIBLE void *g_pvSspBasicHandle;
/// 1 once start-up has completed.
extern WAP_VISIBLE uint32_t uiInitFlag;
}

/// Attaches the process to the message service as "jamvm". 0, or 1 on failure.
WAP_EXPORT uint32_t JNIWapMsgInit(void *pvHandle);
/// Registers JNImsgProc for module 0. 0, or 1 on failure.
WAP_EXPORT uint32_t JNIWapRegMsgProc(void *pvHandle);
/// Starts JNIWapMsgThread. 0, or -1 (as unsigned) on failure.
WAP_EXPORT uint32_t JNICreadmsgthread(void *pvHandle);
/// The message thread's body; returns (null) only when the platform library is not usable.
WAP_EXPORT void *JNIWapMsgThread(void *pvArg);
/// Sees every message for module 0, and only tells of it. 0, or -1 for a null message.
WAP_EXPORT int32_t JNImsgProc(void *pvMsg);

namespace wap {

/**
 * Does everything that startThread promises. Any number of threads may call; one does the work.
 * @return 0 started, already started, or no platform library; 1 failed, and may be tried again
 */
int32_t StartMessageThread();

}  // namespace wap

#endif
