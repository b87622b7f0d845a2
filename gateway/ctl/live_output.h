// Standard output and the end of a program that prints while others work.
#ifndef WAP_GATEWAY_CTL_LIVE_OUTPUT_H
#define WAP_GATEWAY_CTL_LIVE_OUTPUT_H

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

/// Standard output. What is written is out at once, and nobody waits for a reader who does not
/// read when the program is to end.
class LiveOutput {
  public:
    explicit LiveOutput(const EndSignals &stSignals) : m_iSignals(stSignals.Get()) {}

    using Clock = std::chrono::steady_clock;

    /// Writes lines; whether all of them are out. When the program is to end, nobody waits for a
    /// reader, so there may be fewer, and from then on there are none. Only a line that is longer
    /// than a pipe takes at once can be cut, when half a second was not enough for the rest of it.
    /// Throws GatewayError for what is neither that nor a reader who has gone.
    bool Write(std::string_view sLines);

    /// Says when the program is to end.
    void SetEnd(Clock::time_point stEnd) { m_stEnd = stEnd; }
    /// From now on does not wait any more.
    void Hurry() { m_stEnd = Clock::time_point::min(); }

    /// Whether whoever read has gone.
    bool ReaderIsGone() const { return m_bGone; }
    void NoteReaderIsGone() { m_bGone = true; }

    /// How wide lines can be: as the terminal is, and for no terminal a fixed number.
    static size_t Columns();

  private:
    /// Waits until something can be written; false when the program is to end before.
    /// @param bInLine whether a line is begun, which is worth a little patience
    bool WaitForRoom(bool bInLine) const;

    const int m_iSignals;
    Clock::time_point m_stEnd = Clock::time_point::max();
    bool m_bOver = false;  ///< something was not written: what comes behind it must not be
    bool m_bGone = false;
};

}  // namespace wap::gateway

#endif
