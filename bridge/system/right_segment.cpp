#include "system/right_segment.h"

#include <errno.h>
#include <string.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <vt_ssp_basic.h>

#include "common/jni_common.h"
#include "common/report.h"
#include "records/access_right.h"

namespace wap {

namespace {

/// Open to all, deliberately: the process that fills it may be another user's.
constexpr int32_t kMakeFlags = IPC_CREAT | 0777;

/// Holds a lock as long as it lives.
class Locked {
  public:
    explicit Locked(pthread_mutex_t *pstLock) : m_pstLock(pstLock) {
        (void)pthread_mutex_lock(m_pstLock);
    }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked() { (void)pthread_mutex_unlock(m_pstLock); }

  private:
    pthread_mutex_t *m_pstLock;
};

/// What a fault record says of a segment.
struct SegmentSize {
    uint32_t uiCount;
    uint32_t uiBytes;
};

uint32_t Fail(SourceSpot stSpot, uint32_t uiCode, int iSystemError, const SegmentSize &stSize) {
    RecordFault(stSpot, uiCode, static_cast<uint32_t>(iSystemError), stSize.uiCount,
                stSize.uiBytes);
    return kErrFailed;
}

/// Copies the text that begins at pcFrom and ends before pcFrom + uiMax. The other process may be
/// writing still: what is measured here may change while it is copied, but not its bounds.
uint32_t CopyText(const char *pcFrom, const SegmentSize &stSize, SecretBlock &stText) {
    const auto uiLength = static_cast<uint32_t>(strnlen(pcFrom, stSize.uiBytes));
    if (!stText.Make(uiLength + 1, WAP_SPOT)) {
        return Fail(WAP_SPOT, kErrNoMemory, 0, stSize);
    }
    memcpy(stText.Lend(), pcFrom, uiLength);
    return 0;
}

/// Attaches the segment for as long as the copying takes.
uint32_t ReadFilled(int32_t iShmId, const SegmentSize &stSize, SecretBlock &stText) {
    void *pvAt = VT_OS_ShmAt(iShmId, nullptr, 0);
    if (pvAt == nullptr || reinterpret_cast<intptr_t>(pvAt) == -1) {
        return Fail(WAP_SPOT, kErrFailed, errno, stSize);
    }
    const uint32_t uiResult = CopyText(static_cast<const char *>(pvAt), stSize, stText);
    if (VT_OS_ShmDt(pvAt) != 0) {
        return Fail(WAP_SPOT, kErrFailed, errno, stSize);
    }
    return uiResult;
}

uint32_t FillAndRead(const SegmentKind &stKind, int32_t iShmId, const SegmentSize &stSize,
                     SecretBlock &stText) {
    const uint32_t uiResult = stKind.pfnFill(stSize.uiBytes);
    return uiResult == 0 ? ReadFilled(iShmId, stSize, stText) : Fail(WAP_SPOT, uiResult, 0, stSize);
}

/// Makes the segment, or finds one that a killed virtual machine has left. Such a one may have
/// become too small since, and would be in the way until the gateway's next start: it is removed,
/// which nobody minds as long as the lock is held.
int32_t MakeSegment(int32_t iKey, uint32_t uiBytes) {
    const int32_t iShmId = VT_OS_ShmGet(iKey, uiBytes, kMakeFlags);
    const int iError = errno;
    if (iShmId < 0 && iError == EINVAL) {
        const int32_t iLeft = VT_OS_ShmGet(iKey, 0, 0);
        if (iLeft >= 0 && VT_OS_ShmCtl(iLeft, IPC_RMID, nullptr) == 0) {
            return VT_OS_ShmGet(iKey, uiBytes, kMakeFlags);
        }
        errno = iError;
    }
    return iShmId;
}

}  // namespace

uint32_t ReadRightSegment(const SegmentKind &stKind, uint32_t uiCount, SecretBlock &stText) {
    const uint64_t ulBytes = uint64_t{uiCount} * stKind.uiBytesPerAccount + kRightSegmentSpare;
    if (ulBytes >= UINT32_MAX) {
        return Fail(WAP_SPOT, kErrFailed, 0, {uiCount, 0});
    }
    const SegmentSize stSize = {uiCount, static_cast<uint32_t>(ulBytes)};
    // The key is fixed: without the lock two readers would share one segment, and the first to end
    // would remove it under the other.
    const Locked stLocked(stKind.pstLock);
    const int32_t iShmId = MakeSegment(stKind.iKey, stSize.uiBytes);
    if (iShmId < 0) {
        return Fail(WAP_SPOT, kErrFailed, errno, stSize);
    }
    uint32_t uiResult = FillAndRead(stKind, iShmId, stSize, stText);
    if (VT_OS_ShmCtl(iShmId, IPC_RMID, nullptr) != 0) {
        uiResult = Fail(WAP_SPOT, kErrFailed, errno, stSize);
    }
    if (uiResult != 0) {
        stText.Drop();
    }
    return uiResult;
}

}  // namespace wap
