// Bulk data: one file per block in $VT_RUNTIME_DIR/vdata, named by the block's id. Files are
// reached with pread and pwrite and never mapped: a full disk is then an error, not a signal.
#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "host_util.h"

using wap::host::Fd;
using wap::host::MakeDirectory;
using wap::host::RuntimePath;

namespace {

constexpr uint32_t kMaxBlock = 16u << 20;
constexpr const char *kFolder = "vdata";

std::string BlockPath(uint32_t uiDataID) {
    char acName[24];
    snprintf(acName, sizeof acName, "%s/%08" PRIx32, kFolder, uiDataID);
    return RuntimePath(acName);
}

/** Opens the block and checks that it holds uiLen bytes. @return a status */
uint32_t OpenBlock(uint32_t uiDataID, uint32_t uiLen, int iFlags, Fd &stFile) {
    std::string strPath = BlockPath(uiDataID);
    if (strPath.empty()) {
        return VT_HOST_ERR_STATE;
    }
    stFile.Reset(open(strPath.c_str(), iFlags | O_CLOEXEC | O_NOFOLLOW));
    if (!stFile.Ok()) {
        return errno == ENOENT ? VT_HOST_ERR_NO_BLOCK : VT_HOST_ERR_SYSTEM;
    }
    struct stat stInfo {};
    if (fstat(stFile.Get(), &stInfo) != 0 || !S_ISREG(stInfo.st_mode)) {
        return VT_HOST_ERR_SYSTEM;
    }
    return stInfo.st_size < static_cast<off_t>(uiLen) ? VT_HOST_ERR_TOO_LONG : 0u;
}

/** Moves uiLen bytes with pread or pwrite, whose buffers differ in const only. */
template <typename Transfer, typename Byte>
uint32_t MoveAll(Transfer pfnTransfer, int iFd, Byte *pucAt, uint32_t uiLen) {
    off_t iOffset = 0;
    while (uiLen > 0) {
        ssize_t iDone = pfnTransfer(iFd, pucAt, uiLen, iOffset);
        if (iDone < 0 && errno == EINTR) {
            continue;
        }
        if (iDone <= 0) {
            return VT_HOST_ERR_SYSTEM;
        }
        pucAt += iDone;
        iOffset += iDone;
        uiLen -= static_cast<uint32_t>(iDone);
    }
    return 0;
}

/** Makes the block's file under an id that no block has. */
uint32_t CreateBlock(uint32_t uiSize, uint32_t &uiDataID) {
    std::string strFolder = RuntimePath(kFolder);
    if (strFolder.empty()) {
        return VT_HOST_ERR_STATE;
    }
    for (int iTry = 0; iTry < 100; iTry++) {
        // By chance, not by counting: a freed id must not soon name someone else's block.
        if (getrandom(&uiDataID, sizeof uiDataID, 0) != sizeof uiDataID || uiDataID == 0) {
            continue;
        }
        std::string strPath = BlockPath(uiDataID);
        Fd stFile(open(strPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (stFile.Ok()) {
            if (ftruncate(stFile.Get(), static_cast<off_t>(uiSize)) == 0) {
                return 0;
            }
            unlink(strPath.c_str());
            return VT_HOST_ERR_SYSTEM;
        }
        if (errno != EEXIST && (errno != ENOENT || !MakeDirectory(strFolder))) {
            return VT_HOST_ERR_SYSTEM;
        }
    }
    return VT_HOST_ERR_SYSTEM;
}

}  // namespace

uint32_t VT_VDATA_CreShm(uint32_t uiSize, VDataDesc *pstDesc) {
    if (pstDesc == nullptr || uiSize == 0) {
        return VT_HOST_ERR_ARGUMENT;
    }
    if (uiSize > kMaxBlock) {
        return VT_HOST_ERR_TOO_LONG;
    }
    uint32_t uiDataID = 0;
    uint32_t uiStatus = CreateBlock(uiSize, uiDataID);
    if (uiStatus == 0) {
        pstDesc->uiDataID = uiDataID;
    }
    return uiStatus;
}

uint32_t VT_VDATA_UpdateData(uint32_t uiDataID, uint32_t uiLen, const void *pvData) {
    if (pvData == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    Fd stFile;
    uint32_t uiStatus = OpenBlock(uiDataID, uiLen, O_WRONLY, stFile);
    if (uiStatus != 0) {
        return uiStatus;
    }
    return MoveAll(pwrite, stFile.Get(), static_cast<const uint8_t *>(pvData), uiLen);
}

uint32_t VT_VDATA_ReadData(uint32_t uiDataID, uint32_t uiLen, void *pvBuf) {
    if (pvBuf == nullptr) {
        return VT_HOST_ERR_ARGUMENT;
    }
    Fd stFile;
    uint32_t uiStatus = OpenBlock(uiDataID, uiLen, O_RDONLY, stFile);
    if (uiStatus != 0) {
        return uiStatus;
    }
    return MoveAll(pread, stFile.Get(), static_cast<uint8_t *>(pvBuf), uiLen);
}

uint32_t VT_VDATA_FreeShm(uint32_t uiDataID) {
    std::string strPath = BlockPath(uiDataID);
    if (strPath.empty()) {
        return VT_HOST_ERR_STATE;
    }
    if (unlink(strPath.c_str()) == 0) {
        return 0;
    }
    return errno == ENOENT ? VT_HOST_ERR_NO_BLOCK : VT_HOST_ERR_SYSTEM;
}

uint32_t VT_HOST_RemoveStaleBlocks(void) {
    std::string strFolder = RuntimePath(kFolder);
    DIR *pstFolder = strFolder.empty() ? nullptr : opendir(strFolder.c_str());
    if (pstFolder == nullptr) {
        return 0;
    }
    uint32_t uiRemoved = 0;
    while (const dirent *pstEntry = readdir(pstFolder)) {
        const char *pcName = pstEntry->d_name;
        if (strlen(pcName) == 8 && strspn(pcName, "0123456789abcdef") == 8 &&
            unlinkat(dirfd(pstFolder), pcName, 0) == 0) {
            uiRemoved++;
        }
    }
    closedir(pstFolder);
    return uiRemoved;
}
