// What the methods that take voice events share.
#ifndef WAP_COMMON_VOIP_EVENTS_H
#define WAP_COMMON_VOIP_EVENTS_H

#include <jni.h>
#include <stdint.h>

#include "common/wap_export.h"

/**
 * Tells whether a bundle may subscribe to these events. They are looked at only here: whoever
 * subscribes is told of all.
 * @param jEvents     the events' names; null or an empty array will do, and so will elements that
 *                    are null or empty
 * @param jBundleName not looked at
 * @return 0; -1 (as unsigned) for more than 8 elements or a name that there is no event of
 */
WAP_EXPORT uint32_t CheckVoIPEventSubscribePara(JNIEnv *pstEnv, jobjectArray jEvents,
                                                jstring jBundleName);

namespace wap {

/// How the two methods differ.
struct VoiceMethod {
    const char *pcTraceName;  ///< what the line that shows the bundle's name calls it
    uint32_t (*pfnWorker)(const char *pcBundleName);
};

/// The whole of such a method behind its trace: 0, -1 when the arguments are refused, or the
/// worker's code.
jint CallVoiceWorker(JNIEnv *pstEnv, jstring jBundleName, jobjectArray jEvents,
                     const VoiceMethod &stMethod);

}  // namespace wap

#endif
