#include "framework/files.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <system_error>

#include "framework/error.h"

namespace wap::gateway {

namespace {

constexpr size_t kMaxFileSize = 16u << 20;
constexpr std::string_view kTemporaryEnd = ".tmp";

[[noreturn]] void Fail(const std::string &acWhat, const std::string &acPath) {
    const int iErrno = errno;
    throw GatewayError("cannot " + acWhat + " " + acPath + ": " + ErrnoText(iErrno));
}

void WriteAll(int iFd, std::string_view pcText, const std::string &acPath) {
    while (!pcText.empty()) {
        const ssize_t iDone = write(iFd, pcText.data(), pcText.size());
        if (iDone < 0 && errno == EINTR) {
            continue;
        }
        if (iDone <= 0) {
            Fail("write", acPath);
        }
        pcText.remove_prefix(static_cast<size_t>(iDone));
    }
}

/// The folder of a file, with its slash at the end; "." for a name alone.
std::string FolderOf(const std::string &acPath) {
    const std::string acFolder = acPath.substr(0, acPath.rfind('/') + 1);
    return acFolder.empty() ? "." : acFolder;
}

/// Removes a temporary file unless it found its final place.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string acPath) : m_acPath(std::move(acPath)) {}
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile() {
        if (!m_bKept) {
            unlink(m_acPath.c_str());
        }
    }
    void Keep() { m_bKept = true; }

  private:
    std::string m_acPath;
    bool m_bKept = false;
};

}  // namespace

FileDescriptor::~FileDescriptor() {
    Close();
}

bool FileDescriptor::Close() {
    const int iFd = m_iFd;
    m_iFd = -1;
    return iFd < 0 || close(iFd) == 0;
}

std::optional<std::string> ReadTextFile(const std::string &acPath) {
    FileDescriptor stFile(open(acPath.c_str(), O_RDONLY | O_CLOEXEC));
    if (stFile.Get() < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        Fail("open", acPath);
    }
    std::string acText;
    char acPiece[4096];
    for (;;) {
        const ssize_t iCount = read(stFile.Get(), acPiece, sizeof(acPiece));
        if (iCount < 0 && errno == EINTR) {
            continue;
        }
        if (iCount < 0) {
            Fail("read", acPath);
        }
        if (iCount == 0) {
            return acText;
        }
        if (acText.size() + static_cast<size_t>(iCount) > kMaxFileSize) {
            throw GatewayError(acPath + " is longer than 16 MiB");
        }
        acText.append(acPiece, static_cast<size_t>(iCount));
    }
}

void WriteTextFile(const std::string &acPath, std::string_view pcText) {
    const std::string acTemp = acPath + "." + std::to_string(getpid()) + std::string(kTemporaryEnd);
    FileDescriptor stFile(open(acTemp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (stFile.Get() < 0) {
        Fail("make", acTemp);
    }
    TemporaryFile stTemp(acTemp);
    WriteAll(stFile.Get(), pcText, acTemp);
    // Not flushed: what a process keeps is to outlive the process, not the PC, and a busy disk
    // would let a change take longer than its caller waits.
    if (!stFile.Close()) {
        Fail("write", acTemp);
    }
    if (rename(acTemp.c_str(), acPath.c_str()) != 0) {
        Fail("replace", acPath);
    }
    stTemp.Keep();
}

void RemoveHalfWritten(const std::string &acPath) {
    const std::string acFolder = FolderOf(acPath);
    const std::string acBegin = acPath.substr(acPath.rfind('/') + 1) + ".";
    const std::unique_ptr<DIR, int (*)(DIR *)> pstFolder(opendir(acFolder.c_str()), closedir);
    while (const dirent *pstEntry = pstFolder ? readdir(pstFolder.get()) : nullptr) {
        const std::string_view pcName = pstEntry->d_name;
        if (!pcName.starts_with(acBegin) || !pcName.ends_with(kTemporaryEnd) ||
            pcName.size() <= acBegin.size() + kTemporaryEnd.size()) {
            continue;
        }
        const std::string_view pcPid =
            pcName.substr(acBegin.size(), pcName.size() - acBegin.size() - kTemporaryEnd.size());
        if (pcPid.find_first_not_of("0123456789") == std::string_view::npos) {
            (void)unlinkat(dirfd(pstFolder.get()), pstEntry->d_name, 0);
        }
    }
}

void MakeDirectory(const std::string &acPath) {
    if (mkdir(acPath.c_str(), 0700) != 0 && errno != EEXIST) {
        Fail("make directory", acPath);
    }
}

std::string ErrnoText(int iErrno) {
    return std::generic_category().message(iErrno);
}

}  // namespace wap::gateway
