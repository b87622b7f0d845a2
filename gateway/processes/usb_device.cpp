#include "processes/usb_device.h"

#include <ctype.h>

#include <algorithm>
#include <utility>

namespace wap::gateway {

namespace {

/// Sends back what it gets.
class EchoAdapter : public UsbDevice {
  public:
    std::string Take(std::string_view pcBytes) override { return std::string(pcBytes); }
};

constexpr char kOk[] = "\r\nOK\r\n";
constexpr char kError[] = "\r\nERROR\r\n";

/// A question to the modem, without the AT, and the answer that comes before the OK.
struct ModemAnswer {
    std::string_view pcCommand;
    const char *pcAnswer;
};
constexpr ModemAnswer kModemAnswers[] = {
    {"I", "Simulated modem\r\nRevision 1.0"},
    {"+CGMI", "Simulated gateway"},
    {"+CGMM", "Simulated modem"},
    {"+CGMR", "1.0"},
    {"+CGSN", "000000000000001"},
    {"+CSQ", "+CSQ: 20,99"},
    {"+CPIN?", "+CPIN: READY"},
    {"+CREG?", "+CREG: 0,1"},
    {"+COPS?", "+COPS: 0,0,\"Simulated network\""},
};

/// Takes a command per line and answers in words. As a modem does, it echoes what is typed until it
/// is told not to.
class Modem : public UsbDevice {
  public:
    std::string Take(std::string_view pcBytes) override {
        std::string acOut;
        for (const char cByte : pcBytes) {
            if (m_bEcho) {
                acOut += cByte;
            }
            if (cByte == '\r') {
                acOut += Answer(std::exchange(m_acLine, {}));
            } else if (cByte == '\b' || cByte == '\x7F') {
                m_acLine.resize(m_acLine.empty() ? 0 : m_acLine.size() - 1);
            } else if (cByte != '\n' && m_acLine.size() <= kLineMax) {
                m_acLine += cByte;
            }
        }
        return acOut;
    }

  private:
    static constexpr size_t kLineMax = 256;

    /// A line that is too long was kept up to one byte more than a line may have.
    std::string Answer(std::string acLine) {
        const bool bTooLong = acLine.size() > kLineMax;
        std::erase(acLine, ' ');
        std::transform(acLine.begin(), acLine.end(), acLine.begin(),
                       [](unsigned char ucByte) { return static_cast<char>(toupper(ucByte)); });
        if (acLine.empty() && !bTooLong) {
            return "";
        }
        if (bTooLong || !acLine.starts_with("AT")) {
            return kError;
        }
        const std::string_view pcCommand = std::string_view(acLine).substr(2);
        if (pcCommand == "E0" || pcCommand == "E1" || pcCommand == "Z") {
            m_bEcho = pcCommand != "E0";
            return kOk;
        }
        for (const ModemAnswer &stAnswer : kModemAnswers) {
            if (pcCommand == stAnswer.pcCommand) {
                return std::string("\r\n") + stAnswer.pcAnswer + "\r\n" + kOk;
            }
        }
        return pcCommand.empty() ? kOk : kError;
    }

    bool m_bEcho = true;
    std::string m_acLine;
};

struct DeviceKind {
    const char *pcName;
    std::unique_ptr<UsbDevice> (*pfnMake)();
};

template <class Device>
std::unique_ptr<UsbDevice> Make() {
    return std::make_unique<Device>();
}

constexpr DeviceKind kKinds[] = {
    {"echo", Make<EchoAdapter>},
    {"modem", Make<Modem>},
};

}  // namespace

std::unique_ptr<UsbDevice> MakeUsbDevice(std::string_view pcKind) {
    for (const DeviceKind &stKind : kKinds) {
        if (pcKind == stKind.pcName) {
            return stKind.pfnMake();
        }
    }
    return nullptr;
}

std::string UsbDeviceKinds() {
    std::string acKinds;
    for (const DeviceKind &stKind : kKinds) {
        acKinds += (acKinds.empty() ? "" : ", ") + std::string(stKind.pcName);
    }
    return acKinds;
}

}  // namespace wap::gateway
