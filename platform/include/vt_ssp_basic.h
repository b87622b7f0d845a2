/**
 * @file vt_ssp_basic.h
 * The C interface of the gateway's basic platform library, libvt_ssp_basic.so: messages between
 * processes, threads and locks, bulk data in shared memory, bounded memory and text functions,
 * files, figures of the machine, and the trace and fault log.
 *
 * Two libraries implement it: the one in the gateway's firmware, and the one for a Linux PC in
 * platform/host. Programs link against either by soname, so names, argument order and widths
 * never change.
 *
 * Rules that hold for every function unless its own comment says otherwise:
 *  - a uint32_t result is a status, 0 for success; the other values are the library's own;
 *  - out-parameters are written on success only;
 *  - a null pointer where data is needed makes the call fail, it does not crash;
 *  - texts are zero-terminated, lengths and sizes are in bytes;
 *  - any number of threads may call at once.
 */
#ifndef VT_SSP_BASIC_H
#define VT_SSP_BASIC_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __GNUC__
#define VT_SSP_PRINTF(iFmt, iFirst) __attribute__((format(printf, iFmt, iFirst)))
#define VT_SSP_SCANF(iFmt, iFirst) __attribute__((format(scanf, iFmt, iFirst)))
#else
#define VT_SSP_PRINTF(iFmt, iFirst)
#define VT_SSP_SCANF(iFmt, iFirst)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------ */
/* Message service                                                                            */
/* ------------------------------------------------------------------------------------------ */

/** Size of a process name field, its terminating zero included. */
#define VT_MSG_NAME_SIZE 32u

/** The header that accompanies every message. All numbers are little-endian. */
typedef struct RpcMsgHead {
    uint32_t uiReserved0;            /**< 0 */
    char acSndApp[VT_MSG_NAME_SIZE]; /**< name of the sending process */
    uint32_t uiDstMid;               /**< module of the receiver that the message is meant for */
    char acRcvApp[VT_MSG_NAME_SIZE]; /**< name of the receiving process */
    uint32_t uiSndMid;               /**< module of the sender that speaks */
    uint8_t aucReserved1[8];         /**< 0 */
} RpcMsgHead;

static_assert(sizeof(RpcMsgHead) == 84, "the header is 84 bytes on the wire");
static_assert(offsetof(RpcMsgHead, acSndApp) == 4, "sender name");
static_assert(offsetof(RpcMsgHead, uiDstMid) == 36, "destination module");
static_assert(offsetof(RpcMsgHead, acRcvApp) == 40, "receiver name");
static_assert(offsetof(RpcMsgHead, uiSndMid) == 72, "sender module");
static_assert(offsetof(RpcMsgHead, aucReserved1) == 76, "reserved tail");

/**
 * Attaches the calling process to the message service under a name of its own.
 * Doing so again with the same name is harmless, so an interrupted start-up can be repeated.
 * @param pcProcName the process's name, 1 to 31 bytes; copied
 * @param uiArg1     capacity of the queue of incoming messages; 0 chooses a default
 * @param uiArg2     a capacity of the gateway's own library; the host library ignores it
 * @param uiArg3     0
 * @return 0; non-zero when the name does not fit, another live process holds it, the process has
 *         another name already, or the service cannot be reached (the console text says why)
 */
uint32_t VT_MSG_Init(const char *pcProcName, uint32_t uiArg1, uint32_t uiArg2, uint32_t uiArg3);

/**
 * Installs the procedure that receives the messages for one module of this process. Installing
 * another one for the same module replaces the first.
 * @param uiMid   the module id
 * @param pfnProc called by VT_MSG_GetAndDispatch on that call's thread; its argument starts with
 *                the message's RpcMsgHead and is valid during the call only
 * @param uiArg   1
 * @return 0, or non-zero for a null procedure or a full table
 */
uint32_t VT_MSG_RegisterMID(uint32_t uiMid, int32_t (*pfnProc)(void *pvMsg), uint32_t uiArg);

/**
 * Waits, without limit, for the next message to this process and hands it to the procedure of its
 * destination module. A message for a module without a procedure is dropped.
 * @param uiArg1 0
 * @param uiArg2 0
 * @return 0 once a message was handed over; non-zero when the process is not attached, the
 *         service was stopped, or the message had no procedure
 */
uint32_t VT_MSG_GetAndDispatch(uint32_t uiArg1, uint32_t uiArg2);

/** @return the name given to VT_MSG_Init, "" before; valid as long as the process lives. */
const char *VT_MSG_GetCurProcName(void);

/**
 * Sends a request to another process and waits for its reply, on the calling thread. Works in a
 * process that never called VT_MSG_Init too.
 * @param pstHead     names the receiver (acRcvApp) and the sender; not changed
 * @param uiRpcId     the operation asked for
 * @param uiDstMid    the receiving module
 * @param pvReq       request, uiReqLen bytes; may be null when uiReqLen is 0
 * @param uiReqLen    its length; the host library takes up to 128 KiB
 * @param pvRsp       room for the reply; may be null when uiRspCap is 0
 * @param uiRspCap    its size. A longer reply is cut; bytes behind a shorter one stay untouched
 * @param uiTimeoutMs longest wait in milliseconds
 * @return 0, a status of the receiver's (the reply is then copied as well), or a code of the
 *         message service: no such receiver, time-out, broken connection, bad argument. With a
 *         code of the service pvRsp holds nothing to use. A request is never executed twice.
 */
uint32_t VT_MSG_RpcCall(const RpcMsgHead *pstHead, uint32_t uiRpcId, uint32_t uiDstMid,
                        const void *pvReq, uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap,
                        uint32_t uiTimeoutMs);

/**
 * Queues a message at another process and returns without waiting for it to be handled. The
 * message goes to the receiver's module 0.
 * @param pcRcvApp  the receiving process, 1 to 31 bytes
 * @param uiMsgType what the message says, agreed between the two processes
 * @param pvData    content, uiLen bytes; may be null when uiLen is 0
 * @param uiLen     its length; the host library takes up to 128 KiB
 * @return 0 once the receiver holds the message; non-zero when there is no such receiver or its
 *         queue is full
 */
uint32_t VT_MSG_AsyncSendData(const char *pcRcvApp, uint32_t uiMsgType, const void *pvData,
                              uint32_t uiLen);

/* ------------------------------------------------------------------------------------------ */
/* Threads and locks                                                                          */
/* ------------------------------------------------------------------------------------------ */

/**
 * Starts a thread. Without attributes it is detached: nobody joins it.
 * @param pulThreadId receives the thread's pthread id; may be null
 * @param pvAttr      a pthread_attr_t, or null
 * @param pfnEntry    the thread's body
 * @param pvArg       its argument
 * @return 0, or non-zero when the thread could not be made
 */
uint32_t VT_OS_PthreadCreate(unsigned long *pulThreadId, const void *pvAttr,
                             void *(*pfnEntry)(void *), void *pvArg);

/**
 * Names the calling thread for debuggers and /proc.
 * @param pcName the name; what lies beyond the kernel's 15 bytes is cut off
 */
uint32_t VT_OS_ModifyThreadName(const char *pcName);

/** Size of a mutex. Its storage is the caller's, aligned to 8 bytes, and needs no release. */
#define VT_OS_MUTEX_SIZE 24u

/**
 * Makes an unlocked mutex of VT_OS_MUTEX_SIZE bytes, whatever they held. It belongs to one
 * process; it is not recursive.
 */
uint32_t VT_OS_MutexInit(void *pvMutex);

/** Waits until the mutex is free and takes it. Non-zero for memory that holds no mutex. */
uint32_t VT_OS_MutexLock(void *pvMutex);

/** Releases the mutex. Non-zero for memory that holds no mutex or one that is not locked. */
uint32_t VT_OS_MutexUnLock(void *pvMutex);

/* ------------------------------------------------------------------------------------------ */
/* Bulk data in shared memory                                                                 */
/* ------------------------------------------------------------------------------------------ */

/** Names a block of bulk data inside a request or a reply. */
typedef struct VDataDesc {
    uint32_t uiDataID;        /**< the block's id; 0 for no block, where a reply counts nothing */
    uint32_t uiOriginalLen;   /**< length of the data before compression */
    uint32_t uiCompressedLen; /**< length of what the block holds */
} VDataDesc;

static_assert(sizeof(VDataDesc) == 12, "the descriptor is 12 bytes on the wire");
static_assert(offsetof(VDataDesc, uiOriginalLen) == 4, "original length");
static_assert(offsetof(VDataDesc, uiCompressedLen) == 8, "compressed length");

/**
 * Makes a zero-filled block that every process of the gateway can reach by its id. It lives
 * until it is freed, beyond the end of the process that made it.
 * @param uiSize  its size, at least 1; the host library takes up to 16 MiB
 * @param pstDesc receives the id in uiDataID, never 0; the two lengths stay as they are
 */
uint32_t VT_VDATA_CreShm(uint32_t uiSize, VDataDesc *pstDesc);

/**
 * Writes the start of a block.
 * @param uiDataID the block
 * @param uiLen    how many bytes; more than the block's size fails and writes nothing
 * @param pvData   the bytes
 */
uint32_t VT_VDATA_UpdateData(uint32_t uiDataID, uint32_t uiLen, const void *pvData);

/**
 * Reads the start of a block.
 * @param uiDataID the block
 * @param uiLen    how many bytes; more than the block's size fails
 * @param pvBuf    room for them
 */
uint32_t VT_VDATA_ReadData(uint32_t uiDataID, uint32_t uiLen, void *pvBuf);

/** Frees a block, for every process. Non-zero when there is none of that id. */
uint32_t VT_VDATA_FreeShm(uint32_t uiDataID);

/**
 * Compresses data. The result, lengths and marks of its own included, is shorter than the
 * data: what does not shrink is refused.
 * @param pvSrc     the data
 * @param uiSrcLen  its length, at least 1
 * @param pvDst     room for the result; must not overlap the data
 * @param puiDstLen in: size of pvDst; out: length of the result, less than uiSrcLen
 * @return 0; non-zero when the data does not shrink or the result does not fit. The contents of
 *         pvDst are then undefined and *puiDstLen is unchanged
 */
uint32_t VT_OS_Compress(const void *pvSrc, uint32_t uiSrcLen, void *pvDst, uint32_t *puiDstLen);

/**
 * Undoes VT_OS_Compress. The length of the source is not an argument: the compressed form
 * carries it, and a compressed form that claims more than uiDstCap bytes is refused. So the call
 * reads at most uiDstCap bytes of the source, and a caller who does not trust the data provides
 * that many readable bytes.
 * @param pvSrc    the compressed form
 * @param pvDst    room for the data
 * @param uiDstCap its size: the data's original length or more
 * @return 0; non-zero for a damaged source or one whose data does not fit. The contents of pvDst
 *         are then undefined
 */
uint32_t VT_OS_Decompress(const void *pvSrc, void *pvDst, uint32_t uiDstCap);

/**
 * System V shared memory, as shmget: a segment's id, or -1 with errno. The host library gives every
 * runtime directory keys of its own, so that gateways on one machine do not share segments: ipcs
 * shows other keys than those that are asked for.
 */
int32_t VT_OS_ShmGet(int32_t iKey, uint32_t uiSize, int32_t iFlags);

/** As shmat: the address of the attached segment, or (void *)-1 with errno. */
void *VT_OS_ShmAt(int32_t iShmId, const void *pvAddr, int32_t iFlags);

/** As shmdt: 0, or -1 with errno. */
int32_t VT_OS_ShmDt(const void *pvAddr);

/**
 * As shmctl: 0, or -1 with errno.
 * @param iShmId the segment
 * @param iCmd   IPC_RMID, IPC_STAT or IPC_SET
 * @param pvBuf  a struct shmid_ds for the last two, else null
 */
int32_t VT_OS_ShmCtl(int32_t iShmId, int32_t iCmd, void *pvBuf);

/* ------------------------------------------------------------------------------------------ */
/* Memory                                                                                     */
/* ------------------------------------------------------------------------------------------ */

/**
 * Allocates memory, not initialised.
 * @param uiSize bytes wanted; 0 gives null
 * @param pcFile source file of the caller, for accounting; may be null
 * @param uiLine line of the caller
 * @return the block, for the caller to release with VT_OS_MemFreeD; null when there is no memory
 */
void *VT_OS_MemMallocD(uint32_t uiSize, const char *pcFile, uint32_t uiLine);

/** As VT_OS_MemMallocD, with the block filled with zeros. */
void *VT_OS_MemMallocSet(uint32_t uiSize, const char *pcFile, uint32_t uiLine);

/**
 * Releases a block.
 * @param pvBlock from VT_OS_MemMallocD, VT_OS_MemMallocSet or malloc; null does nothing
 * @param pcFile  source file of the caller, for accounting; may be null
 * @param uiLine  line of the caller
 */
void VT_OS_MemFreeD(void *pvBlock, const char *pcFile, uint32_t uiLine);

/* ------------------------------------------------------------------------------------------ */
/* Bounded memory and text. A form in _S that fails has written nothing.                      */
/* ------------------------------------------------------------------------------------------ */

/** Sets uiCount bytes to iByte. Fails when uiCount exceeds uiDstSize. A count of 0 succeeds. */
uint32_t VT_OS_MemSet_S(void *pvDst, uint32_t uiDstSize, int32_t iByte, uint32_t uiCount);

/**
 * Copies uiCount bytes. Fails when uiCount exceeds uiDstSize or the two ranges overlap. A count
 * of 0 succeeds.
 */
uint32_t VT_OS_MemCpy_S(void *pvDst, uint32_t uiDstSize, const void *pvSrc, uint32_t uiCount);

/**
 * Copies a text, at most uiCount bytes of it, and a terminating zero.
 * @param pcDst     where to; must not overlap what is read of pcSrc
 * @param uiDstSize its size; the copied bytes and the zero must fit
 * @param pcSrc     zero-terminated, or at least uiCount bytes long
 * @param uiCount   the most to copy
 */
uint32_t VT_OS_StrNCpy_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount);

/**
 * Appends a text, at most uiCount bytes of it, and a terminating zero.
 * @param pcDst     holds a text whose terminating zero lies within uiDstSize, else the call fails
 * @param uiDstSize its size; the whole result and its zero must fit
 * @param pcSrc     zero-terminated, or at least uiCount bytes long; must not overlap pcDst
 * @param uiCount   the most to append
 */
uint32_t VT_OS_StrNCat_S(char *pcDst, uint32_t uiDstSize, const char *pcSrc, uint32_t uiCount);

/**
 * Prints into a buffer.
 * @param pcDst     where to
 * @param uiDstSize its size
 * @param uiCount   the most characters to print, the zero not counted
 * @param pcFmt     as printf
 * @return the number of characters printed; -1 when the text was cut to uiCount characters (they
 *         are there, with a zero), or when the text, cut or not, does not fit uiDstSize with its
 *         zero, or the arguments are bad (nothing is written then)
 */
int32_t VT_OS_Snprintf_S(char *pcDst, uint32_t uiDstSize, uint32_t uiCount, const char *pcFmt, ...)
    VT_SSP_PRINTF(4, 5);

/** @return the text's length in bytes, 0 for null. */
uint32_t VT_OS_StrLen(const char *pcStr);

/**
 * Compares two texts without regard to the case of ASCII letters.
 * @return 0 when equal, else negative or positive by order; a null text is equal to a null text
 *         only and comes before all others
 */
int32_t VT_OS_StrCaseCmp(const char *pcA, const char *pcB);

/** @return the first place of pcNeedle in pcHay, or null when absent or an argument is null. */
char *VT_OS_StrStr(const char *pcHay, const char *pcNeedle);

/** As VT_OS_StrStr, without regard to the case of ASCII letters. */
char *VT_OS_StrCaseStr(const char *pcHay, const char *pcNeedle);

/**
 * Cuts a text into tokens, in place.
 * @param pcStr   the text at the first call, null at the following ones
 * @param pcDelim the separating characters; several in a row separate once
 * @param ppcSave the caller's place in the text, kept between the calls
 * @return the next token, or null after the last
 */
char *VT_OS_StrtokR(char *pcStr, const char *pcDelim, char **ppcSave);

/** The same as VT_OS_StrtokR. */
char *VT_OS_Strtok_S(char *pcStr, const char *pcDelim, char **ppcSave);

/**
 * Reads an unsigned number.
 * @param pcStr    decimal digits and nothing else: no sign, no blank, not empty
 * @param puiValue receives the number; untouched on failure
 * @return 0; non-zero for any other text and for numbers above 4294967295
 */
uint32_t VT_OS_StrToUInt32(const char *pcStr, uint32_t *puiValue);

/** Writes a number as decimal text, which must fit with its zero (12 bytes always do). */
uint32_t VT_OS_Int32ToStr_S(int32_t iValue, char *pcDst, uint32_t uiDstSize);

/**
 * As sscanf: the number of items read, negative when the text ended before the first. The bounds
 * of texts are the format's: write %31s for a buffer of 32 bytes.
 */
int32_t VT_OS_Sscanf_S(const char *pcStr, const char *pcFmt, ...) VT_SSP_SCANF(2, 3);

/* ------------------------------------------------------------------------------------------ */
/* Files, processes, figures, features                                                        */
/* ------------------------------------------------------------------------------------------ */

/** As open. The descriptor is closed on exec. @return the descriptor, or -1 with errno. */
int32_t VT_OS_Open(const char *pcPath, int32_t iFlags, uint32_t uiMode);

/** As read, begun again when a signal interrupts it. @return bytes read, 0 at the end, or -1. */
int32_t VT_OS_Read(int32_t iFd, void *pvBuf, uint32_t uiCount);

/** As write, begun again when a signal interrupts it. @return bytes written, or -1. */
int32_t VT_OS_Write(int32_t iFd, const void *pvBuf, uint32_t uiCount);

/** As close. @return 0, or -1 with errno. */
int32_t VT_OS_Close(int32_t iFd);

/**
 * As select; a signal can interrupt it.
 * @param iNfds     the highest descriptor plus 1
 * @param pvRead    a bit set or null; likewise pvWrite and pvExcept. It has the shape of an fd_set
 *                  and at least iNfds places, and may be larger than an fd_set is
 * @param pvTimeval the longest wait, a struct timeval, or null for no limit
 * @return the number of ready descriptors, 0 after the time, or -1 with errno
 */
int32_t VT_OS_Select(int32_t iNfds, void *pvRead, void *pvWrite, void *pvExcept, void *pvTimeval);

/**
 * Runs a command line with /bin/sh and waits for its end.
 * @return 0 when it ended with exit status 0, else non-zero
 */
uint32_t VT_OS_ExecShellCmdEx(const char *pcCmd);

/** As fopen. @return the file, for VT_OS_Fclose, or null with errno. */
void *VT_OS_Fopen(const char *pcPath, const char *pcMode);

/** As fgets: a line of at most uiSize-1 bytes with its newline, or null at the end. */
char *VT_OS_Fgets(char *pcBuf, uint32_t uiSize, void *pvFile);

/** As fclose. @return 0, or -1 with errno. */
int32_t VT_OS_Fclose(void *pvFile);

/**
 * Measures how busy the processors are. Takes as long as the sample.
 * @param uiSample length of the sample; the host library takes it as milliseconds, 1 to 10000
 * @param puiRate  receives 0 to 100 (percent)
 */
uint32_t VT_OS_GetCPUBusyRateByTime(uint32_t uiSample, uint32_t *puiRate);

/** Tells how much of the memory is in use, 0 to 100 (percent). */
uint32_t VT_OS_GetMemUseRate(uint32_t *puiRate);

/** @return 1 when the firmware has the feature of that number, else 0. */
uint32_t VT_Feature_IsSupport(uint32_t uiFeature);

/* ------------------------------------------------------------------------------------------ */
/* Console, trace and fault log. None of them changes errno.                                  */
/* ------------------------------------------------------------------------------------------ */

/** Prints console text, as printf. @return the number of characters, or negative. */
int32_t VT_OS_Printf(const char *pcFmt, ...) VT_SSP_PRINTF(1, 2);

/**
 * Writes a line to the trace, if it is on.
 * @param uiMid  the module that speaks
 * @param pcFile source file; only the base name is kept
 * @param uiLine its line
 * @param uiZero 0
 * @param pcFmt  as printf
 */
void VT_PROC_DBG_TraceS(uint32_t uiMid, const char *pcFile, uint32_t uiLine, uint32_t uiZero,
                        const char *pcFmt, ...) VT_SSP_PRINTF(5, 6);

/**
 * Records a fault: where it was seen, its code and four numbers that explain it.
 * @param pcFile source file; only the base name is kept
 */
void VT_PROC_DBG_LastWord(const char *pcFile, uint32_t uiLine, uint32_t uiCode, uint32_t uiArg1,
                          uint32_t uiArg2, uint32_t uiArg3, uint32_t uiArg4);

/** Records a fault that its code alone explains. */
void VT_PROC_DBG_LastWord_1(const char *pcFile, uint32_t uiLine, uint32_t uiCode);

#ifdef __cplusplus
}
#endif
#endif
