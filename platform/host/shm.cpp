// System V shared memory. Its keys are the machine's, but on a PC several gateways may run side by
// side, each of them with the same keys: a gateway's segments have keys of their own here.
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>

#include <cerrno>

#include "host_util.h"
#include "vt_ssp_basic.h"

using namespace wap::host;

namespace {

/// Spreads every bit of a number over all of them.
uint64_t Spread(uint64_t uiNumber) {
    uiNumber ^= uiNumber >> 33;
    uiNumber *= 0xFF51AFD7ED558CCD;
    uiNumber ^= uiNumber >> 33;
    uiNumber *= 0xC4CEB9FE1A85EC53;
    return uiNumber ^ (uiNumber >> 33);
}

/// The machine's key for a key of the gateway that has this runtime directory. The key as it is
/// without such a directory.
key_t MachineKey(int32_t iKey) {
    struct stat stDir = {};
    const std::string strDir = RuntimeDir();
    if (iKey == IPC_PRIVATE || strDir.empty() || stat(strDir.c_str(), &stDir) != 0) {
        return iKey;
    }
    const uint64_t uiPlace = Spread(static_cast<uint64_t>(stDir.st_dev)) ^ stDir.st_ino;
    const auto iMachineKey =
        static_cast<key_t>(Spread(Spread(uiPlace) ^ static_cast<uint32_t>(iKey)));
    return iMachineKey == IPC_PRIVATE ? iKey : iMachineKey;
}

}  // namespace

int32_t VT_OS_ShmGet(int32_t iKey, uint32_t uiSize, int32_t iFlags) {
    return shmget(MachineKey(iKey), uiSize, iFlags);
}

void *VT_OS_ShmAt(int32_t iShmId, const void *pvAddr, int32_t iFlags) {
    return shmat(iShmId, pvAddr, iFlags);
}

int32_t VT_OS_ShmDt(const void *pvAddr) {
    if (pvAddr == nullptr) {
        errno = EINVAL;
        return -1;
    }
    return shmdt(pvAddr);
}

int32_t VT_OS_ShmCtl(int32_t iShmId, int32_t iCmd, void *pvBuf) {
    if (pvBuf == nullptr && iCmd != IPC_RMID) {
        errno = EINVAL;
        return -1;
    }
    return shmctl(iShmId, iCmd, static_cast<shmid_ds *>(pvBuf));
}
