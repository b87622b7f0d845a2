/**
 * @file vt_ssp_host.h
 * What the host platform library offers beyond the gateway's own one: serving remote procedure
 * calls. The simulated gateway's processes use it; the bridge never does.
 *
 * Everything that processes share lies in the directory that the environment variable
 * VT_RUNTIME_DIR names (mode 0700, made by the first VT_MSG_Init, a path of 70 bytes at most):
 *   NAME.sock, NAME.lock  a process's socket, and the lock that keeps its name unique
 *   vdata/                the blocks of bulk data
 *   log/PROCESS.fault     the fault log: time, thread, file:line, code, numbers; always on
 *   log/PROCESS.trace     the trace; when VT_TRACE=1 or VT_HOST_SetTrace says so
 *   log/PROCESS.console   what VT_OS_Printf prints
 *   features              the numbers of the features that VT_Feature_IsSupport grants
 *   var/osgi/             the gateway's writable folder, /var/osgi/, made when it is first needed
 * A path that begins with /var/osgi/ leads into that folder for VT_OS_Open and VT_OS_Fopen, and so
 * does one in a command of VT_OS_ExecShellCmdEx, where a word begins or behind one of = : , < > and
 * the like, quoted or not. A substitution within double quotes, "$(cat /var/osgi/f)" or one with
 * backticks, is not understood: its path comes out wrong. Other paths, such as /var/osgi_app/, are
 * themselves, and so are all when VT_RUNTIME_DIR is not set.
 * Logs are bounded: a full one is kept as NAME.1. A process without a name in the message
 * service logs under its program's name; without VT_RUNTIME_DIR, logs go to stderr.
 */
#ifndef VT_SSP_HOST_H
#define VT_SSP_HOST_H

#include <stdint.h>

#include "vt_ssp_basic.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Result codes of the host platform. 0 is success everywhere. */
/** A null pointer, a bad length, a name that does not fit. */
#define VT_HOST_ERR_ARGUMENT 0xF7000001u
/** The message service is not initialised, or is already. */
#define VT_HOST_ERR_STATE 0xF7000002u
/** No process of that name is listening. */
#define VT_HOST_ERR_NO_RECEIVER 0xF7000003u
/** The receiver did not answer in time. */
#define VT_HOST_ERR_TIMEOUT 0xF7000004u
/** The connection broke before the answer came. */
#define VT_HOST_ERR_BROKEN 0xF7000005u
/** A system call failed; errno tells why. */
#define VT_HOST_ERR_SYSTEM 0xF7000006u
/** Out of memory. */
#define VT_HOST_ERR_MEMORY 0xF7000007u
/** A message, block or text longer than its limit. */
#define VT_HOST_ERR_TOO_LONG 0xF7000008u
/** No bulk block has that id. */
#define VT_HOST_ERR_NO_BLOCK 0xF7000009u
/** Compressed data is damaged, or data does not shrink. */
#define VT_HOST_ERR_DATA 0xF700000Au
/** The receiver has no handler for the RPC id. */
#define VT_HOST_ERR_UNKNOWN_RPC 0xF700000Bu
/** A queue or a table has no room left. */
#define VT_HOST_ERR_FULL 0xF700000Cu
/** No procedure is registered for the module. */
#define VT_HOST_ERR_NO_PROCEDURE 0xF700000Du
/** A live process holds the name already. */
#define VT_HOST_ERR_IN_USE 0xF700000Eu

/** The longest request or reply of one RPC and the longest asynchronous message, in bytes. */
#define VT_HOST_MAX_PAYLOAD 131072u

/** How long VT_MSG_AsyncSendData waits at most, in milliseconds, for the receiver to take the
 *  message into its queue. That is at once, unless the receiver is stopped. */
#define VT_HOST_ASYNC_TIMEOUT_MS 5000u

/** A reply's length that means: send no reply at all; the caller runs into its time-out. No status
 *  means that, because each of them may be some process's answer. */
#define VT_HOST_NO_REPLY 0xFFFFFFFFu

/** One incoming RPC. All pointers are valid during the handler's call only. */
typedef struct VtHostCall {
    const RpcMsgHead *pstHead; /**< the caller's header; its texts are zero-terminated */
    uint32_t uiRpcId;
    uint32_t uiDstMid;
    const void *pvReq; /**< uiReqLen bytes, never null */
    uint32_t uiReqLen;
    void *pvRsp;       /**< room for uiRspCap bytes, zeroed */
    uint32_t uiRspCap; /**< the caller's reply capacity, at most VT_HOST_MAX_PAYLOAD */
    /** The process that calls, as the system tells it, whatever the header says; 0 for one that has
     *  no id here. */
    int32_t iCallerPid;
} VtHostCall;

/**
 * Serves one RPC. Called on several threads at once, one per caller's connection.
 * @param pvContext the context given to VT_HOST_Serve
 * @param pstCall   the request and the room for the reply
 * @param puiRspLen in: 0; out: bytes of pvRsp that go back, at most uiRspCap; or VT_HOST_NO_REPLY
 * @return the status that the caller's VT_MSG_RpcCall returns
 */
typedef uint32_t (*VtHostHandler)(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen);

/**
 * Starts serving RPCs sent to this process. VT_MSG_Init must have been called with the process
 * name; a call that comes in between the two is answered with VT_HOST_ERR_UNKNOWN_RPC. Returns at
 * once; calls are served on threads of the library until VT_HOST_Stop.
 * @param pfnHandler answers every call
 * @param pvContext  handed to it
 * @return 0; VT_HOST_ERR_STATE when the service is not initialised or serves already, or when
 *         called by a handler
 */
uint32_t VT_HOST_Serve(VtHostHandler pfnHandler, void *pvContext);

/**
 * Hears that the reply of the handler's last call on this thread reached nobody.
 * @param pvContext the context given to VT_HOST_Serve
 */
typedef void (*VtHostLostReply)(void *pvContext);

/**
 * Says who hears of replies that cannot be sent, because the caller has given up waiting or has
 * ended. What such a reply hands over, such as a bulk block, is then the sender's again. Of a reply
 * that was sent and that the caller did not come to read, nobody hears.
 * A reply that is lost just now may still be told to who heard of them before, also when this has
 * returned; VT_HOST_Stop waits for that.
 * @param pfnLost called on the thread of the call; null for nobody, as it is at first and after
 *                VT_HOST_Stop
 * @return 0; VT_HOST_ERR_STATE when VT_HOST_Serve was not called, or when called by a handler
 */
uint32_t VT_HOST_OnLostReply(VtHostLostReply pfnLost);

/**
 * Stops listening, lets running handlers end, and joins their threads. Messages still queued are
 * dropped and VT_MSG_GetAndDispatch returns. VT_MSG_Init may follow, also with another name.
 * @return 0; VT_HOST_ERR_STATE when the service is not initialised, or when called by a handler
 */
uint32_t VT_HOST_Stop(void);

/** Switches the trace on (not 0) or off, whatever VT_TRACE said at the program's start. */
void VT_HOST_SetTrace(uint32_t uiOn);

/** Removes the bulk blocks left behind in the runtime directory's name space. Called by the
 *  gateway's start, before any process of it runs. Returns the number of blocks removed. */
uint32_t VT_HOST_RemoveStaleBlocks(void);

/** What a procedure registered with VT_MSG_RegisterMID receives: this, with uiLen bytes and one
 *  zero byte behind. */
typedef struct VtHostMsg {
    RpcMsgHead stHead;
    uint32_t uiMsgType;
    uint32_t uiLen;
} VtHostMsg;

#ifdef __cplusplus
}
#endif
#endif
