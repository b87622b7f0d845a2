#include "monitor/capture.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "framework/error.h"
#include "framework/wire_mask.h"
#include "monitor/event_text.h"

namespace wap::gateway {

namespace {

// Tags of an exported PDU: two bytes for the tag, two for a length, both with the most significant
// byte first, and as many bytes as it says.
constexpr uint16_t kTagEnd = 0;
constexpr uint16_t kTagDissector = 12;
constexpr uint16_t kTagProtocol = 33;  ///< what the column "Protocol" says
constexpr char kDissector[] = "data";
constexpr char kProtocol[] = "VT-RPC";
constexpr size_t kTagHead = 4;

std::string Tag(uint16_t usTag, std::string_view sValue) {
    std::string acBytes = {static_cast<char>(usTag >> 8), static_cast<char>(usTag & 0xFF)};
    const size_t uiLength = (sValue.size() + 3) / 4 * 4;
    acBytes += {static_cast<char>(uiLength >> 8), static_cast<char>(uiLength & 0xFF)};
    acBytes += sValue;
    acBytes.resize(kTagHead + uiLength, '\0');
    return acBytes;
}

std::string Tags() {
    return Tag(kTagDissector, kDissector) + Tag(kTagProtocol, kProtocol) + Tag(kTagEnd, "");
}

uint32_t TagNumber(std::string_view sBytes, size_t uiAt) {
    return static_cast<uint32_t>(static_cast<uint8_t>(sBytes[uiAt])) << 8 |
           static_cast<uint8_t>(sBytes[uiAt + 1]);
}

/// Takes the tags off a packet. Whether they are those of an event; what is left is untouched else.
bool TakeTags(std::string_view &sPacket) {
    std::string_view sRest = sPacket;
    bool bOurs = false;
    while (sRest.size() >= kTagHead) {
        const uint32_t uiTag = TagNumber(sRest, 0);
        const uint32_t uiLength = TagNumber(sRest, 2);
        if (uiLength > sRest.size() - kTagHead) {
            return false;
        }
        const std::string_view sValue = sRest.substr(kTagHead, uiLength);
        sRest.remove_prefix(kTagHead + uiLength);
        if (uiTag == kTagProtocol) {
            bOurs = sValue.substr(0, sValue.find('\0')) == kProtocol;
        } else if (uiTag == kTagEnd) {
            sPacket = bOurs ? sRest : sPacket;
            return bOurs;
        }
    }
    return false;
}

bool IsPipe(const std::string &acPath) {
    struct stat stInfo = {};
    return stat(acPath.c_str(), &stInfo) == 0 && S_ISFIFO(stInfo.st_mode);
}

/// Opens what a capture is written to, -1 with errno for what can't be opened. A pipe waits for who
/// reads it, unless the program is to end.
int OpenCapture(const std::string &acPath, const ProgramEnd &stEnd) {
    constexpr std::chrono::milliseconds kLookAgain(50);
    for (;;) {
        const int iFile =
            open(acPath.c_str(), O_WRONLY | O_CREAT | O_NOCTTY | O_NONBLOCK | O_CLOEXEC, 0600);
        const int iWhy = errno;
        if (iFile >= 0 || iWhy != ENXIO || !IsPipe(acPath)) {
            errno = iWhy;
            return iFile;
        }
        if (stEnd.ComesWithin(kLookAgain)) {
            throw GatewayError("cannot write " + acPath + ": nobody has opened it to read");
        }
    }
}

}  // namespace

void MaskEvent(TapEvent &stEvent) {
    const WireRpc *pstRpc = RpcOf(stEvent);
    if (pstRpc == nullptr) {
        for (TapBytes &stPart : stEvent.astParts) {
            stEvent.bMasked = stEvent.bMasked || !stPart.acHeld.empty();
            stPart.acHeld.clear();
        }
        return;
    }
    const WireContent *apstContents[kTapParts] = {&pstRpc->stRequest, &pstRpc->stReply,
                                                  &pstRpc->stBlock};
    for (size_t i = 0; i < kTapParts; ++i) {
        if (MaskContent(*apstContents[i], stEvent.astParts[i].acHeld)) {
            stEvent.bMasked = true;
        }
    }
}

uint32_t WholePacketLength(const TapEvent &stEvent) {
    size_t uiLength = Tags().size() + sizeof(TapHead);
    for (const TapBytes &stPart : stEvent.astParts) {
        uiLength += stPart.acHeld.size();
    }
    return static_cast<uint32_t>(uiLength);
}

std::string PacketOf(TapEvent stEvent) {
    const size_t uiLength = WholePacketLength(stEvent);
    size_t uiTooMuch = uiLength > kPacketMax ? uiLength - kPacketMax : 0;
    // What is needed to send it again goes last; a request alone is never too long.
    const bool bOfRequest = stEvent.eBlockSide == WireSide::kRequest;
    for (const TapPart ePart :
         {bOfRequest ? kTapReply : kTapBlock, bOfRequest ? kTapBlock : kTapReply}) {
        std::string &acHeld = stEvent.astParts[ePart].acHeld;
        const size_t uiCut = std::min(uiTooMuch, acHeld.size());
        acHeld.resize(acHeld.size() - uiCut);
        uiTooMuch -= uiCut;
    }
    return Tags() + EncodeEvent(stEvent);
}

std::optional<TapEvent> EventIn(const Packet &stPacket) {
    std::string_view sBytes = stPacket.acBytes;
    if (stPacket.usLinkType != kLinkType || !TakeTags(sBytes)) {
        return std::nullopt;
    }
    std::optional<TapEvent> stEvent = DecodeEvent(sBytes);
    if (!stEvent || !IsOfCall(stEvent->eKind)) {
        throw GatewayError("a packet of the gateway's is damaged, or of another version of it");
    }
    return stEvent;
}

CaptureFile::CaptureFile(const std::string &acPath, bool bSecrets, const ProgramEnd &stEnd)
    : m_acPath(acPath),
      m_bSecrets(bSecrets),
      m_stFile(OpenCapture(acPath, stEnd)),
      m_stWriter(stEnd) {
    struct stat stInfo = {};
    bool bReady = m_stFile.Get() >= 0 && fstat(m_stFile.Get(), &stInfo) == 0;
    m_bIsFile = bReady && S_ISREG(stInfo.st_mode);
    if (m_bIsFile) {
        // One that was there may be open to others. A device stays open to them.
        bReady = fchmod(m_stFile.Get(), 0600) == 0 && ftruncate(m_stFile.Get(), 0) == 0;
    }
    if (!bReady) {
        throw GatewayError("cannot make " + acPath + ": " + ErrnoText(errno));
    }
    (void)Write(PcapngStart("gatewayctl monitor", "gateway", kLinkType));
}

bool CaptureFile::Add(const TapEvent &stEvent, uint64_t ulLost) {
    TapEvent stCopy = stEvent;
    if (!m_bSecrets) {
        MaskEvent(stCopy);
    }
    return Write(PcapngPacket(stCopy.ulTimeUs, PacketOf(stCopy), WholePacketLength(stCopy),
                              Headline(stCopy), ulLost));
}

void CaptureFile::Finish(uint64_t ulTimeUs, uint64_t ulLost) {
    if (!m_bFailed) {
        (void)Write(PcapngStatistics(ulTimeUs, ulLost));
    }
}

bool CaptureFile::Write(const std::string &acBytes) {
    const LiveWriter::Result eResult = m_stWriter.WriteBlock(m_stFile.Get(), acBytes);
    if (eResult == LiveWriter::Result::kFailed) {
        const std::string acWhy = ErrnoText(errno);
        m_bFailed = true;
        if (m_bIsFile) {
            (void)!ftruncate(m_stFile.Get(), m_iWhole);
        }
        throw GatewayError("cannot write " + m_acPath + ": " + acWhy);
    }
    m_iWhole += static_cast<off_t>(acBytes.size());
    return eResult == LiveWriter::Result::kAll;
}

}  // namespace wap::gateway
