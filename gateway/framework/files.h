// Files of the gateway: read whole, and written so that a crash leaves the old or the new content.
#ifndef WAP_GATEWAY_FRAMEWORK_FILES_H
#define WAP_GATEWAY_FRAMEWORK_FILES_H

#include <optional>
#include <string>
#include <string_view>

namespace wap::gateway {

/// Owns a file descriptor.
class FileDescriptor {
  public:
    explicit FileDescriptor(int iFd = -1) : m_iFd(iFd) {}
    FileDescriptor(FileDescriptor &&stOther) noexcept : m_iFd(stOther.m_iFd) { stOther.m_iFd = -1; }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor();

    int Get() const { return m_iFd; }
    /// Closes now; false when the file system reports a failed write only at this point.
    bool Close();
    /// Gives the descriptor away: it stays open.
    int Release() {
        const int iFd = m_iFd;
        m_iFd = -1;
        return iFd;
    }

  private:
    int m_iFd;
};

/// The content of a file, or nothing when there is no such file. Throws GatewayError when it can't
/// be read or is longer than 16 MiB.
std::optional<std::string> ReadTextFile(const std::string &acPath);

/// Replaces a file's content: temporary file and rename, so that whoever reads it, and whoever
/// comes after a process that was killed, finds the old content or the new one. The file is
/// readable by its owner alone, as homes hold passwords. Throws GatewayError; the old content is
/// then still there.
void WriteTextFile(const std::string &acPath, std::string_view pcText);

/// Removes the temporary files that WriteTextFile has left where its process was killed. Nobody may
/// be writing the file meanwhile.
void RemoveHalfWritten(const std::string &acPath);

/// Makes a directory (mode 0700) unless it is there. Throws GatewayError.
void MakeDirectory(const std::string &acPath);

/// Text of an errno value, without a shared buffer.
std::string ErrnoText(int iErrno);

}  // namespace wap::gateway

#endif
