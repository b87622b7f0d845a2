#include "support/scripted_shm.h"

#include <sys/ipc.h>
#include <vt_ssp_basic.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "support/world.h"

namespace wap::test {

bool ScriptedShm::Fill(int32_t iKey, const std::string &sBytes) {
    for (auto &[iId, stSegment] : mapSegments) {
        if (stSegment.iKey == iKey) {
            const size_t uiSize = std::min(sBytes.size(), stSegment.sBytes.size());
            stSegment.sBytes.replace(0, uiSize, sBytes, 0, uiSize);
            return true;
        }
    }
    return false;
}

std::vector<std::string> ScriptedShm::TakeLeft() {
    std::vector<std::string> asLeft;
    for (const auto &[iId, stSegment] : mapSegments) {
        asLeft.push_back("segment " + std::to_string(iId) + " was not removed" +
                         (stSegment.pcAttached ? " nor detached" : ""));
    }
    mapSegments.clear();
    return asLeft;
}

namespace {

/// The largest segment that there is memory for here.
constexpr uint32_t kSegmentMax = 1 << 26;

/// Notes a call. True when it shall fail: the status that was planned is the error number.
bool Fails(const char *pcName, const std::string &sArgs) {
    const uint32_t uiStatus = Scripted(Op::kBulk, pcName, sArgs);
    if (uiStatus != 0) {
        errno = static_cast<int>(uiStatus);
    }
    return uiStatus != 0;
}

int32_t FailWith(int iError) {
    errno = iError;
    return -1;
}

ScriptedShm &Shm() {
    return World::Get().stPlatform.stShm;
}

}  // namespace

}  // namespace wap::test

using wap::test::Fails;
using wap::test::FailWith;
using wap::test::kSegmentMax;
using wap::test::ScriptedShm;
using wap::test::Shm;
using wap::test::World;

extern "C" {

int32_t VT_OS_ShmGet(int32_t iKey, uint32_t uiSize, int32_t iFlags) {
    if (Fails("VT_OS_ShmGet",
              std::to_string(iKey) + " " + std::to_string(uiSize) + " " + std::to_string(iFlags))) {
        return -1;
    }
    ScriptedShm &stShm = Shm();
    for (const auto &[iId, stSegment] : stShm.mapSegments) {
        if (stSegment.iKey == iKey) {
            return stSegment.sBytes.size() < uiSize ? FailWith(EINVAL) : iId;
        }
    }
    if ((iFlags & IPC_CREAT) == 0) {
        return FailWith(ENOENT);
    }
    if (uiSize > kSegmentMax) {
        return FailWith(ENOMEM);
    }
    const int32_t iId = stShm.iNextId++;
    stShm.mapSegments[iId] = {iKey, std::string(uiSize, '\0'), nullptr};
    return iId;
}

void *VT_OS_ShmAt(int32_t iShmId, const void *pvAddr, int32_t iFlags) {
    // shmat's own sign of failure.
    void *pvFailed = reinterpret_cast<void *>(-1);  // NOLINT(performance-no-int-to-ptr)
    if (Fails("VT_OS_ShmAt", std::to_string(iShmId) + (pvAddr == nullptr ? " null " : " at ") +
                                 std::to_string(iFlags))) {
        return pvFailed;
    }
    const auto it = Shm().mapSegments.find(iShmId);
    if (it == Shm().mapSegments.end() || it->second.pcAttached) {
        World::Get().Violation("no segment to attach: " + std::to_string(iShmId));
        return pvFailed;
    }
    const std::string &sBytes = it->second.sBytes;
    it->second.pcAttached = std::make_unique<char[]>(sBytes.size());
    std::memcpy(it->second.pcAttached.get(), sBytes.data(), sBytes.size());
    return it->second.pcAttached.get();
}

int32_t VT_OS_ShmDt(const void *pvAddr) {
    // A failure is told after the fact: the segment's end is the same.
    const bool bFails = Fails("VT_OS_ShmDt", "");
    for (auto &[iId, stSegment] : Shm().mapSegments) {
        if (pvAddr != nullptr && stSegment.pcAttached.get() == pvAddr) {
            stSegment.pcAttached.reset();
            if (Shm().fnDetached) {
                Shm().fnDetached();
            }
            return bFails ? -1 : 0;
        }
    }
    World::Get().Violation("nothing is attached where it was to be detached");
    return FailWith(EINVAL);
}

int32_t VT_OS_ShmCtl(int32_t iShmId, int32_t iCmd, void *pvBuf) {
    const bool bFails = Fails("VT_OS_ShmCtl", std::to_string(iShmId) + " " + std::to_string(iCmd) +
                                                  (pvBuf == nullptr ? " null" : " buffer"));
    const auto it = Shm().mapSegments.find(iShmId);
    if (iCmd != IPC_RMID || it == Shm().mapSegments.end()) {
        World::Get().Violation("no segment to remove: " + std::to_string(iShmId));
        return FailWith(EINVAL);
    }
    if (it->second.pcAttached) {
        World::Get().Violation("a segment was removed that was attached");
    }
    Shm().mapSegments.erase(it);
    return bFails ? -1 : 0;
}
}
