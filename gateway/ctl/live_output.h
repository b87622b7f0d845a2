// Standard output and the end of a program that prints while others work.
#ifndef WAP_GATEWAY_CTL_LIVE_OUTPUT_H
#define WAP_GATEWAY_CTL_LIVE_OUTPUT_H

#include <stddef.h>

#include <string_view>

namespace wap::gateway {

/// From when it is made, SIGINT, SIGTERM and SIGHUP no longer end the program, but can be seen
/// here; and a closed output is an error instead of a signal. One of them in a program.
class EndSignals {
  public:
    /// Throws GatewayError.
    EndSignals();

    /// A descriptor that can be read when one has come.
    int Get() const { return m_iRead; }

  private:
    int m_iRead;
};

/// Standard output. What is written is out at once, and nobody waits for a reader who does not
/// read when the program is to end.
class LiveOutput {
  public:
    explicit LiveOutput(const EndSignals &stSignals) : m_iSignals(stSignals.Get()) {}

    /// Writes a text, or as much of it as can be before the program is to end. Throws GatewayError
    /// for what is neither that nor a reader who has gone.
    void Write(std::string_view sText);

    /// From now on does not wait any more.
    void Hurry() { m_bHurry = true; }

    /// Whether whoever read has gone.
    bool ReaderIsGone() const { return m_bGone; }
    void NoteReaderIsGone() { m_bGone = true; }

    /// How wide lines can be: as the terminal is, and for no terminal a fixed number.
    static size_t Columns();

  private:
    /// Waits until something can be written; false when the program is to end before.
    bool WaitForRoom() const;

    const int m_iSignals;
    bool m_bHurry = false;
    bool m_bGone = false;
};

}  // namespace wap::gateway

#endif
