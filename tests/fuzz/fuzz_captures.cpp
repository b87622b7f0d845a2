#include <algorithm>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "framework/error.h"
#include "framework/tap_event.h"
#include "fuzz/targets.h"
#include "monitor/capture.h"
#include "monitor/event_filter.h"
#include "monitor/event_json.h"
#include "monitor/event_text.h"
#include "monitor/pcapng.h"

namespace wap::test {

namespace {

using gateway::DecodeEvent;
using gateway::EncodeEvent;
using gateway::Packet;
using gateway::PcapngReader;
using gateway::TapEvent;

/// What a file should be read as: the packets before the first fault.
struct Capture {
    std::vector<Packet> astPackets;
    bool bWhole = false;
};

/// A range of bytes that is taken apart from its start.
class Cursor {
  public:
    Cursor(std::string_view sBytes, bool bBigEndian) : m_sRest(sBytes), m_bBigEndian(bBigEndian) {}

    bool Take(uint64_t ulSize, std::string_view &sTaken) {
        if (ulSize > m_sRest.size()) {
            return false;
        }
        sTaken = m_sRest.substr(0, static_cast<size_t>(ulSize));
        m_sRest.remove_prefix(sTaken.size());
        return true;
    }

    bool Take(uint64_t ulSize, uint64_t &ulNumber) {
        std::string_view sTaken;
        if (!Take(ulSize, sTaken)) {
            return false;
        }
        std::string sBytes(sTaken);
        if (!m_bBigEndian) {
            std::reverse(sBytes.begin(), sBytes.end());
        }
        ulNumber = 0;
        for (const char cByte : sBytes) {
            ulNumber = ulNumber * 256 + static_cast<uint8_t>(cByte);
        }
        return true;
    }

    bool IsEmpty() const { return m_sRest.empty(); }

  private:
    std::string_view m_sRest;
    bool m_bBigEndian;
};

/// An interface, and whether its times are plain microseconds.
struct Interface {
    uint16_t usLinkType;
    bool bPlainTimes;
};

/// What the options of an interface say about times; nothing when they are damaged before that is
/// known.
std::optional<bool> TimesOf(Cursor stOptions) {
    std::optional<uint8_t> ucUnit;
    std::optional<std::string_view> sOffset;
    while (!stOptions.IsEmpty() && !(ucUnit && sOffset)) {
        uint64_t ulKind = 0;
        uint64_t ulLength = 0;
        std::string_view sValue;
        std::string_view sFill;
        if (!stOptions.Take(2, ulKind) || !stOptions.Take(2, ulLength)) {
            return std::nullopt;
        }
        if (ulKind == 0) {
            break;
        }
        if (!stOptions.Take(ulLength, sValue) || !stOptions.Take((4 - ulLength % 4) % 4, sFill)) {
            return std::nullopt;
        }
        if (ulKind == 9 && !ucUnit) {
            if (sValue.empty()) {
                return std::nullopt;
            }
            ucUnit = static_cast<uint8_t>(sValue[0]);
        } else if (ulKind == 14 && !sOffset) {
            if (sValue.size() < 8) {
                return std::nullopt;
            }
            sOffset = sValue.substr(0, 8);
        }
    }
    if (ucUnit && *ucUnit > 19 && *ucUnit < 128) {
        return std::nullopt;
    }
    return (!ucUnit || *ucUnit == 6) &&
           (!sOffset || sOffset->find_first_not_of('\0') == std::string_view::npos);
}

/// A block's body into what was read so far; false when it is damaged.
bool TakeBlock(uint64_t ulType, Cursor stBody, std::vector<Interface> &astInterfaces,
               Capture &stCapture, std::vector<bool> &abPlain) {
    uint64_t ulFirst = 0;
    uint64_t ulSecond = 0;
    uint64_t ulThird = 0;
    uint64_t ulHeld = 0;
    uint64_t ulUnused = 0;
    if (ulType == 0x0A0D0D0A) {
        astInterfaces.clear();
        return stBody.Take(4, ulUnused) && stBody.Take(2, ulFirst) && stBody.Take(2, ulUnused) &&
               stBody.Take(8, ulUnused) && ulFirst == 1;
    }
    if (ulType == 1) {
        if (!stBody.Take(2, ulFirst) || !stBody.Take(2, ulUnused) || !stBody.Take(4, ulUnused)) {
            return false;
        }
        const std::optional<bool> bPlain = TimesOf(stBody);
        if (bPlain) {
            astInterfaces.push_back({static_cast<uint16_t>(ulFirst), *bPlain});
        }
        return bPlain.has_value();
    }
    std::string_view sBytes;
    if (ulType != 6) {
        return true;
    }
    if (!stBody.Take(4, ulFirst) || !stBody.Take(4, ulSecond) || !stBody.Take(4, ulThird) ||
        !stBody.Take(4, ulHeld) || !stBody.Take(4, ulUnused) || ulFirst >= astInterfaces.size() ||
        !stBody.Take(ulHeld, sBytes)) {
        return false;
    }
    const Interface &stFrom = astInterfaces[static_cast<size_t>(ulFirst)];
    stCapture.astPackets.push_back(
        {stFrom.usLinkType, ulSecond << 32 | ulThird, std::string(sBytes)});
    abPlain.push_back(stFrom.bPlainTimes);
    return true;
}

/// Reads a file in another way.
Capture ReadSimply(std::string_view sFile, std::vector<bool> &abPlain) {
    Capture stCapture;
    std::vector<Interface> astInterfaces;
    bool bBig = false;
    bool bBegun = false;
    while (!sFile.empty()) {
        uint64_t ulType = 0;
        uint64_t ulLength = 0;
        uint64_t ulAgain = 0;
        std::string_view sBody;
        const bool bSection = sFile.starts_with("\x0A\x0D\x0D\x0A");
        const std::string_view sOrder = sFile.substr(std::min<size_t>(sFile.size(), 8), 4);
        if (bSection && sOrder != "\x1A\x2B\x3C\x4D" && sOrder != "\x4D\x3C\x2B\x1A") {
            return stCapture;
        }
        bBig = bSection ? sOrder[0] == '\x1A' : bBig;
        bBegun = bBegun || bSection;
        Cursor stFile(sFile, bBig);
        if (!bBegun || !stFile.Take(4, ulType) || !stFile.Take(4, ulLength) || ulLength % 4 != 0 ||
            ulLength < (bSection ? 16 : 12) || !stFile.Take(ulLength - 12, sBody) ||
            !stFile.Take(4, ulAgain) || ulAgain != ulLength ||
            !TakeBlock(ulType, Cursor(sBody, bBig), astInterfaces, stCapture, abPlain)) {
            return stCapture;
        }
        sFile.remove_prefix(static_cast<size_t>(ulLength));
    }
    stCapture.bWhole = bBegun;
    return stCapture;
}

Capture ReadAsReplayDoes(const std::string &sFile) {
    std::istringstream stFile(sFile);
    PcapngReader stReader(stFile);
    Capture stCapture;
    try {
        while (std::optional<Packet> stPacket = stReader.Next()) {
            stCapture.astPackets.push_back(std::move(*stPacket));
        }
        stCapture.bWhole = true;
    } catch (const gateway::GatewayError &) {
        stCapture.bWhole = false;
    }
    return stCapture;
}

/// What people see of an event does nothing to a terminal, and what programs see is JSON.
void CheckShown(const TapEvent &stEvent, uint64_t ulLost) {
    constexpr size_t kMost = 64;
    const std::string sText = gateway::PrintEvent(stEvent, 100);
    Require(sText.size() <= kMost * EncodeEvent(stEvent).size(),
            "what is shown is not much longer than what came");
    Require(sText.starts_with(gateway::Headline(stEvent) + "\n"), "the headline comes first");
    Require(sText.ends_with("\n"), "the last line is ended");
    Require(std::none_of(sText.begin(), sText.end(),
                         [](char cByte) {
                             return (static_cast<unsigned char>(cByte) < ' ' && cByte != '\n') ||
                                    cByte == '\x7F';
                         }),
            "a text has no control characters");
    const std::string sJson =
        gateway::PrintJson(gateway::EventToJson(stEvent, ulLost).get(), false);
    Require(sJson.find('\n') == std::string::npos, "JSON is a line");
    Require(gateway::PrintJson(gateway::ParseJson(sJson, "an event").get(), false) == sJson,
            "JSON is read as it was written");
}

/// What is asked of an event is right when it is asked of the event itself.
void CheckFilters(const TapEvent &stEvent) {
    gateway::EventFilter stSame;
    stSame.AddProcess(stEvent.acReceiver);
    gateway::EventFilter stSender;
    stSender.AddProcess(stEvent.stHead.acSndApp);
    gateway::EventFilter stFailed;
    stFailed.AddCode("failed");
    gateway::EventFilter stNobody;
    stNobody.AddProcess("a name that is longer than any name of a process");
    Require(
        gateway::EventFilter().Wants(stEvent) && stSame.Wants(stEvent) && stSender.Wants(stEvent),
        "an event is wanted by its processes");
    Require(!stNobody.Wants(stEvent), "an event of others is not");
    const bool bFailed =
        stEvent.uiCode != 0 || (!stEvent.bAnswered && stEvent.eKind != gateway::TapKind::kMessage);
    Require(stFailed.Wants(stEvent) == bFailed, "what failed is wanted");
}

/// What is kept of an event can be sent again, and no more is written over the second time.
void CheckCaptured(const TapEvent &stEvent) {
    const std::string sPacket = gateway::PacketOf(stEvent);
    Require(sPacket.size() <= gateway::kPacketMax, "a packet is one that others take");
    const std::optional<TapEvent> stRead = gateway::EventIn({gateway::kLinkType, 1, sPacket});
    Require(stRead && gateway::PacketOf(*stRead) == sPacket, "a packet is read as it was written");
    TapEvent stMasked = stEvent;
    gateway::MaskEvent(stMasked);
    Require(stMasked.bMasked || EncodeEvent(stMasked) == EncodeEvent(stEvent),
            "what has no secret stays as it is");
    const std::string sMasked = EncodeEvent(stMasked);
    gateway::MaskEvent(stMasked);
    Require(EncodeEvent(stMasked) == sMasked, "what is written over stays so");
    CheckShown(stMasked, 0);
}

/// What is read as an event stays one, and whatever is done with events can be done with it.
void CheckEvent(const std::string &sBytes) {
    const std::optional<TapEvent> stEvent = DecodeEvent(sBytes);
    if (!stEvent) {
        return;
    }
    const std::string sWritten = EncodeEvent(*stEvent);
    Require(sWritten.size() == sBytes.size(), "an event is as long as it was");
    const std::optional<TapEvent> stAgain = DecodeEvent(sWritten);
    Require(stAgain && EncodeEvent(*stAgain) == sWritten, "what was written is what is read");
    if (!gateway::IsOfCall(stEvent->eKind)) {
        return;
    }
    CheckShown(*stEvent, sBytes.size());
    CheckFilters(*stEvent);
    CheckCaptured(*stEvent);
}

}  // namespace

void FuzzCaptures(const uint8_t *pucData, size_t uiSize) {
    const std::string sFile(reinterpret_cast<const char *>(pucData), uiSize);
    std::vector<bool> abPlain;
    const Capture stWanted = ReadSimply(sFile, abPlain);
    const Capture stRead = ReadAsReplayDoes(sFile);
    Require(stRead.bWhole == stWanted.bWhole, "a file is read, or refused");
    Require(stRead.astPackets.size() == stWanted.astPackets.size(), "the packets before a fault");
    for (size_t i = 0; i < stRead.astPackets.size(); ++i) {
        const Packet &stPacket = stRead.astPackets[i];
        Require(stPacket.acBytes == stWanted.astPackets[i].acBytes &&
                    stPacket.usLinkType == stWanted.astPackets[i].usLinkType,
                "a packet has the bytes that the file holds");
        Require(!abPlain[i] || stPacket.ulTimeUs == stWanted.astPackets[i].ulTimeUs,
                "a packet has its time");
        const Capture stAgain = ReadAsReplayDoes(
            gateway::PcapngStart("p", "i", 1) +
            gateway::PcapngPacket(stPacket.ulTimeUs, stPacket.acBytes,
                                  static_cast<uint32_t>(stPacket.acBytes.size()), "c", i));
        Require(stAgain.bWhole && stAgain.astPackets.size() == 1 &&
                    stAgain.astPackets[0].acBytes == stPacket.acBytes &&
                    stAgain.astPackets[0].ulTimeUs == stPacket.ulTimeUs,
                "what is written is what is read");
        CheckEvent(stPacket.acBytes);
    }
    CheckEvent(sFile);
}

}  // namespace wap::test
