// The end of a program that writes while others work, and what it writes to until then.
#ifndef WAP_GATEWAY_MONITOR_LIVE_OUTPUT_H
#define WAP_GATEWAY_MONITOR_LIVE_OUTPUT_H

#include <stddef.h>

#include <chrono>
#include <string_view>

namespace wap::gateway {

/// What poll is told to wait until a time, at most a day; -1 for the end of all time.
int MillisecondsUntil(std::chrono::steady_clock::time_point stTime);

/// From when it is made, SIGINT, SIGTERM and SIGHUP no longer end the program, but can be seen
/// here; and a closed output is an error instead of a signal. One of them in a program.
class EndSignals {
  public:
    /// Throws GatewayError.
    EndSignals();

    /// A descriptor that can be read when one has come.
    int Get() const { return m_iRead; }
    /// Whether one has come.
    bool HaveCome() const;

  private:
    int m_iRead;
};

/// When a program is to end: when one of the signals has come, or at a time.
struct ProgramEnd {
    using Clock = std::chrono::steady_clock;

    int iSignals = -1;  ///< EndSignals::Get(); -1 for none
    Clock::time_point stTime = Clock::time_point::max();

    /// Waits for it, so long at most; whether it has come.
    bool ComesWithin(std::chrono::milliseconds stWait) const;
};

/// Writes to what may be a pipe or a terminal. What is written is out at once, and nobody waits for
/// a reader who does not read when the program is to end.
class LiveWriter {
  public:
    using Clock = ProgramEnd::Clock;

    /// @param stEnd as long as this object is used
    explicit LiveWriter(const ProgramEnd &stEnd) : m_stEnd(stEnd) {}

    enum class Result {
        kAll,
        kNotAll,  ///< the program is to end; from now on nothing is written
        kFailed,  ///< errno says why
    };

    /// Writes lines, and not the start of one when the program is to end. Only one that is longer
    /// than a pipe takes at once can be cut, when half a second was not enough for the rest.
    Result WriteLines(int iFd, std::string_view sLines) { return Write(iFd, sLines, true); }

    /// Writes bytes of which a part is worth nothing. When the program is to end, they have half a
    /// second, together with all that come later.
    Result WriteBlock(int iFd, std::string_view sBlock) { return Write(iFd, sBlock, false); }

  private:
    Result Write(int iFd, std::string_view sBytes, bool bLines);
    /// Waits until something can be written; false when the program is to end before.
    /// @param bPatient whether it is worth a little patience then
    bool WaitForRoom(int iFd, bool bPatient);

    const ProgramEnd &m_stEnd;
    Clock::time_point m_stPatientUntil = Clock::time_point::max();
    bool m_bOver = false;  ///< something was not written: what comes behind it must not be
};

/// Standard output.
class LiveOutput {
  public:
    /// @param stEnd as long as this object is used
    explicit LiveOutput(const ProgramEnd &stEnd) : m_stWriter(stEnd) {}

    /// Writes lines as LiveWriter does; whether all of them are out. Throws GatewayError for what
    /// is neither the program's end nor a reader who has gone.
    bool Write(std::string_view sLines);

    /// Whether whoever read has gone.
    bool ReaderIsGone() const { return m_bGone; }
    void NoteReaderIsGone() { m_bGone = true; }

    /// How wide lines can be: as the terminal is, and for no terminal a fixed number.
    static size_t Columns();

  private:
    LiveWriter m_stWriter;
    bool m_bGone = false;
};

}  // namespace wap::gateway

#endif
