// Small things that the whole host library shares: descriptors, deadlines, the runtime directory.
#ifndef WAP_HOST_UTIL_H
#define WAP_HOST_UTIL_H

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "vt_ssp_host.h"

namespace wap::host {

/** Keeps errno as it was: logging must not disturb the caller's. */
class ErrnoKeeper {
  public:
    ErrnoKeeper() : iSaved(errno) {}
    ~ErrnoKeeper() { errno = iSaved; }
    ErrnoKeeper(const ErrnoKeeper &) = delete;
    ErrnoKeeper &operator=(const ErrnoKeeper &) = delete;

  private:
    int iSaved;
};

/** Owns a descriptor. */
class Fd {
  public:
    Fd() = default;
    explicit Fd(int iFd) : iValue(iFd) {}
    Fd(Fd &&stOther) noexcept : iValue(stOther.Release()) {}
    Fd &operator=(Fd &&stOther) noexcept {
        if (this != &stOther) {
            Reset(stOther.Release());
        }
        return *this;
    }
    ~Fd() { Reset(); }

    int Get() const { return iValue; }
    bool Ok() const { return iValue >= 0; }
    int Release() {
        int iOld = iValue;
        iValue = -1;
        return iOld;
    }
    void Reset(int iNew = -1) {
        if (iValue >= 0) {
            ErrnoKeeper stKeep;
            close(iValue);
        }
        iValue = iNew;
    }

  private:
    int iValue = -1;
};

/** A point in time on the monotonic clock, that waiting never goes past. */
class Deadline {
  public:
    explicit Deadline(uint32_t uiMilliseconds);

    /** Waits until the descriptor has one of the events. @return false when the time is over */
    bool WaitFor(int iFd, short sEvents) const;

    /** What is left, in nanoseconds; 0 when nothing is. */
    int64_t Left() const;

  private:
    int64_t iEnd; /**< nanoseconds */
};

/** @return $VT_RUNTIME_DIR, or an empty text. */
std::string RuntimeDir();

/** @return $VT_RUNTIME_DIR/pcName, or an empty text when the variable is not set. */
std::string RuntimePath(const std::string &strName);

/** Makes a directory of mode 0700 unless it is there. @return false with errno */
bool MakeDirectory(const std::string &strPath);

/** @return whether the text is a process name: 1 to 31 of A-Z a-z 0-9 _ - and, inside, dots. */
bool IsProcessName(const char *pcName);

/** Says on stderr what went wrong; for what a user must see even when logs are elsewhere. */
void Complain(const char *pcFmt, ...) VT_SSP_PRINTF(1, 2);

/** write, until all is written or it fails. */
bool WriteAll(int iFd, const void *pvData, size_t uiLen);

/** Reads a whole small file, such as those of /proc. @return false when it cannot be read */
bool ReadWhole(const char *pcPath, std::string &strText);

}  // namespace wap::host
#endif
