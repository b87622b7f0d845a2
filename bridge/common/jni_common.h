// Requests to the gateway's processes, and results as JSON.
#ifndef WAP_COMMON_JNI_COMMON_H
#define WAP_COMMON_JNI_COMMON_H

#include <jni.h>
#include <stddef.h>
#include <stdint.h>
#include <vt_ssp_basic.h>

#include "common/jni_json_wrap.h"
#include "common/report.h"
#include "common/wap_export.h"

namespace wap {

/// Time-outs of the wrappers, in milliseconds.
inline constexpr uint32_t kGeneralTimeoutMs = 5000;
inline constexpr uint32_t kProxyTimeoutMs = 30000;

/// A worker was given a null argument.
inline constexpr uint32_t kErrNullArgument = 0xF7702001;
/// An answer is longer than the caller's buffer.
inline constexpr uint32_t kErrTooLong = 0xF7700005;
/// "It failed", with the reason already in the fault log.
inline constexpr uint32_t kErrFailed = 0xFFFFFFFF;

/// Records a code unless it is 0, with up to four numbers, and makes any failure the one that
/// Java's side knows: 0 or kErrFailed.
template <class... Numbers>
inline uint32_t ZeroOrFailed(SourceSpot stSpot, uint32_t uiCode, Numbers... uiNumbers) {
    return Recorded(stSpot, uiCode, uiNumbers...) == 0 ? 0 : kErrFailed;
}

/// What the text queries answer when they fail, where they do not say more.
inline constexpr char kFailureAnswer[] = "{\"Result\":-1}";

/// Puts an answer in the place of all that a buffer of uiCap bytes, at least one, holds; one that
/// is too long is cut.
void PutFailureAnswer(char *pcBuf, uint32_t uiCap, const char *pcAnswer = kFailureAnswer);

/// Trace modules: the Java entries, and the general RPC wrapper.
inline constexpr uint32_t kTraceEntries = 249;
inline constexpr uint32_t kTraceRpc = 281;

/// The state behind the rotating sender ids of the bundle manager's calls.
struct OsgiMidState {
    uint32_t uiCounter;     ///< calls so far, wrapping
    uint32_t uiMutexReady;  ///< 1 once the mutex can be locked
    alignas(8) uint8_t aucMutex[24];
};
static_assert(sizeof(OsgiMidState) == 32);
static_assert(offsetof(OsgiMidState, uiMutexReady) == 4);
static_assert(offsetof(OsgiMidState, aucMutex) == 8);

/// How an item's value word is read.
enum JsonItemType : uint32_t {
    kItemInt = 0,      ///< a signed 32-bit integer
    kItemBool = 1,     ///< 0 or 1
    kItemText = 2,     ///< pointer to a text
    kItemTextRef = 3,  ///< pointer to a text pointer; a null text counts as ""
    kItemObject = 4,   ///< a JSON value, which the parent takes over
    kItemIntText = 6,  ///< pointer to a signed 32-bit integer, added as decimal text
};

/// What becomes of an empty text.
enum JsonEmptyPolicy : uint32_t {
    kEmptyAsText = 0,
    kEmptyLeftOut = 1,
    kEmptyAsNull = 2,
};

/// One row of a table-driven answer. Four 32-bit words on the target.
struct JsonItem {
    const char *pcKey;
    uintptr_t ulValue;
    uint32_t uiType;    ///< a JsonItemType; others are skipped
    uint32_t uiPolicy;  ///< a JsonEmptyPolicy
};
static_assert(sizeof(JsonItem) == 2 * sizeof(void *) + 8);
static_assert(offsetof(JsonItem, ulValue) == sizeof(void *));
static_assert(offsetof(JsonItem, uiType) == 2 * sizeof(void *));
static_assert(offsetof(JsonItem, uiPolicy) == 2 * sizeof(void *) + 4);

/// The text of a JSON value, and what became of it.
struct PrintedText {
    const char *pcText;  ///< the value's own, for as long as it lives; null when there is none
    uint32_t uiLength;
    bool bCopied;
};

/// Prints a value into a buffer: all of its text and a zero, or nothing.
PrintedText PrintInto(json_object *pstValue, char *pcOut, uint32_t uiOutCap);

/// The pointer that an item carries in its value word.
template <class Pointer>
Pointer PointerIn(uintptr_t ulValue) {
    // The word is part of the item's layout.
    return reinterpret_cast<Pointer>(ulValue);  // NOLINT(performance-no-int-to-ptr)
}

/// Name, version and vendor of a runtime; texts need not be terminated.
struct RuntimeNames {
    char acName[32];
    char acVersion[32];
    char acVendor[32];
};
static_assert(sizeof(RuntimeNames) == 96);

/// Whether an answer may lack what could not be added to it.
enum class Completeness { kAsFarAsItGoes, kWhole };

/// What VT_JNI_COMMON_Json_Obj_AddItems does. Returns how many items could not be added.
uint32_t AddItems(json_object *pstObj, const JsonItem *pstItems, uint32_t uiCount);

/// What JNI_COMMON_ComposeResult2JString does; a whole answer is one that holds every item, and
/// anything less is answered with 1: a success must not lack what memory ran out for.
uint32_t Compose(const JsonItem *pstItems, uint32_t uiCount, char *pcOut, uint32_t uiOutCap,
                 int32_t iResult, Completeness eCompleteness);

/// The same for a table of rows.
template <size_t kItems>
inline uint32_t Compose(const JsonItem (&astItems)[kItems], char *pcOut, uint32_t uiOutCap,
                        int32_t iResult, Completeness eCompleteness) {
    return Compose(astItems, static_cast<uint32_t>(kItems), pcOut, uiOutCap, iResult,
                   eCompleteness);
}

}  // namespace wap

extern "C" {
extern WAP_VISIBLE wap::OsgiMidState g_stJNIOsgiMid;
/// Shown for others; the library itself neither reads nor writes it.
extern WAP_VISIBLE uint32_t ROUTE_MODE;
}

/**
 * Asks a process of the gateway, with a time-out of 5000 ms.
 * @param pcRcvApp   the process's name, shorter than 32 bytes
 * @param uiSndMid   the calling feature's number
 * @param pvReq      the request; null sends a word of 0
 * @param uiReqLen   its length in bytes
 * @param pvRsp      room for the reply; null drops it
 * @param uiRspCap   size of pvRsp in bytes
 * @return 0, or the platform's code, recorded
 */
WAP_EXPORT uint32_t JNI_MSG_RpcCall(const char *pcRcvApp, uint32_t uiSndMid, uint32_t uiRpcId,
                                    const void *pvReq, uint32_t uiReqLen, void *pvRsp,
                                    uint32_t uiRspCap);

/**
 * Asks the bundle manager's proxy, with a time-out of 30000 ms and the next of six sender ids.
 * Buffers as for JNI_MSG_RpcCall.
 * @param uiDstMid the destination module, mostly 0
 * @return 0, or the platform's code, not recorded
 */
WAP_EXPORT uint32_t OSGI_JNI_BundleMng_RpcCall(uint32_t uiDstMid, uint32_t uiRpcId,
                                               const void *pvReq, uint32_t uiReqLen, void *pvRsp,
                                               uint32_t uiRspCap);

/**
 * Asks the USB manager, with a time-out of 30000 ms.
 * @param pvReq the request, not null
 * @return 0, or the platform's code, recorded
 */
WAP_EXPORT uint32_t VT_KAVO_USB_JNI_RpcCall(uint32_t uiRpcId, const void *pvReq, uint32_t uiReqLen,
                                            void *pvRsp, uint32_t uiRspCap);

/// Adds a text under a key, an empty one by the policy. 0 or a code of the JSON layer.
WAP_EXPORT uint32_t VT_JNI_COMMON_Json_Obj_AddStr(json_object *pstObj, const char *pcKey,
                                                  uintptr_t ulText, uint32_t uiPolicy);
/// Adds the text that a pointer points to; a null text adds "" whatever the policy.
WAP_EXPORT uint32_t VT_JNI_COMMON_Json_Obj_AddStrAddRef(json_object *pstObj, const char *pcKey,
                                                        uintptr_t ulTextRef, uint32_t uiPolicy);
/// Adds the integer that a pointer points to, as decimal text.
WAP_EXPORT uint32_t VT_JNI_COMMON_Json_Obj_AddIntString(json_object *pstObj, const char *pcKey,
                                                        uintptr_t ulIntRef, uint32_t uiPolicy);
/// Adds uiCount items in order. An item that fails or has an unknown type does not stop the others.
/// Objects among the items are taken over, also one that can't be attached: it is released then.
WAP_EXPORT void VT_JNI_COMMON_Json_Obj_AddItems(json_object *pstObj, const wap::JsonItem *pstItems,
                                                uint32_t uiCount);

/**
 * Writes a result object: "Result", and the items when the result is 0.
 * @param pstItems may be null when uiCount is 0
 * @param pcOut    receives the text and its zero
 * @param uiOutCap size of pcOut in bytes
 * @param iResult  the result; the items are looked at, and objects among them taken over, only
 *                 when it is 0
 * @return 0; 1 no text or it does not fit; -1 (as unsigned) no object, and nothing taken over.
 *         pcOut is written on 0 only.
 */
WAP_EXPORT uint32_t JNI_COMMON_ComposeResult2JString(const wap::JsonItem *pstItems,
                                                     uint32_t uiCount, char *pcOut,
                                                     uint32_t uiOutCap, int32_t iResult);

/// Makes the Java text of an object with the one key "Result"; null when that fails.
WAP_EXPORT jstring OSGI_JNI_FaultStrBuild(JNIEnv *pstEnv, int32_t iResult);

/**
 * Makes an object of "Result", "Name", "Version" and "Vendor".
 * @param ppstOut receives the object, released by the caller with JNI_JSON_ObjPut; success only
 * @return 0; 0xF7100000 no object; -1 (as unsigned) a value could not be made
 */
WAP_EXPORT uint32_t VT_OSGI_JNI_BuildJsonObj(const wap::RuntimeNames *pstNames,
                                             json_object **ppstOut, int32_t iResult);

/// 1 when no entry of a table of texts has any text, 0 when one has.
WAP_EXPORT uint32_t VT_JNI_MacfltNullCheck(const char *const *ppcTexts, uint32_t uiCount);

#endif
