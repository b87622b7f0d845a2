#include "monitor/event_text.h"

#include <stdint.h>
#include <stdio.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "framework/codes.h"
#include "framework/error.h"
#include "framework/wire_decode.h"
#include "monitor/event_json.h"

namespace wap::gateway {

namespace {

constexpr size_t kIndent = 13;
constexpr size_t kSenderColumns = 12;
constexpr size_t kReceiverColumns = 10;
constexpr size_t kNameColumns = 21;
/// The longest text that is taken apart when it is JSON, which takes far more memory than it.
constexpr size_t kTakenApartMost = 64u << 10;
/// How much room it may take then: a name stands before each value that it is of. So much for each
/// text, and so many times its length.
constexpr size_t kTakenApartRoom = 1024;
constexpr size_t kTakenApartGrowth = 8;

/// A JSON value on one line, with the control characters that JSON need not escape escaped, too.
std::string Printed(json_object *pstValue) {
    const std::string acText = PrintJson(pstValue, false);
    std::string acOut;
    for (size_t i = 0; i < acText.size(); ++i) {
        const auto ucByte = static_cast<unsigned char>(acText[i]);
        const auto ucNext = static_cast<unsigned char>(i + 1 < acText.size() ? acText[i + 1] : 0);
        // Delete, and those whose UTF-8 is 0xC2 and their number.
        const bool bTwo = ucByte == 0xC2 && ucNext >= 0x80 && ucNext < 0xA0;
        if (ucByte == 0x7F || bTwo) {
            char acEscape[8];
            snprintf(acEscape, sizeof(acEscape), "\\u%04x", bTwo ? ucNext : ucByte);
            acOut += acEscape;
            i += bTwo ? 1 : 0;
        } else {
            acOut += acText[i];
        }
    }
    return acOut;
}

}  // namespace

std::string PrintedName(const char *pcName) {
    std::string acName = ReadableText(pcName);
    constexpr std::string_view kOfNames =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.";
    if (!acName.empty() && acName.find_first_not_of(kOfNames) == std::string::npos) {
        return acName;
    }
    const JsonValue stName(
        json_object_new_string_len(acName.data(), static_cast<int>(acName.size())));
    return Printed(stName.get());
}

namespace {

std::string Padded(std::string acText, size_t uiColumns) {
    acText.resize(std::max(acText.size(), uiColumns), ' ');
    return acText;
}

/// Words in lines, indented behind a label.
class Paragraph {
  public:
    Paragraph(const char *pcLabel, size_t uiWidth)
        : m_acText(Padded("    " + std::string(pcLabel), kIndent)),
          m_uiColumn(kIndent),
          m_uiWidth(uiWidth) {}

    void Word(const std::string &acWord) {
        if (IsFull()) {
            return;
        }
        if (m_uiColumn > kIndent) {
            if (m_uiColumn + 1 + acWord.size() > m_uiWidth) {
                Break();
            } else {
                m_acText += ' ';
                ++m_uiColumn;
            }
        }
        m_acText += acWord;
        m_uiColumn += acWord.size();
    }

    void Break() {
        if (m_uiColumn > kIndent) {
            m_acText += "\n" + std::string(kIndent, ' ');
            m_uiColumn = kIndent;
        }
    }

    /// Has fnAdd add words, all of them or, when they take more than so many bytes, none; whether
    /// they are there. Of words that are too many only the first are made.
    template <class Adder>
    bool AddWithin(size_t uiBytes, const Adder &fnAdd) {
        const size_t uiBefore = m_acText.size();
        const size_t uiColumn = m_uiColumn;
        const size_t uiMost = m_uiMost;
        m_uiMost = std::min(uiMost, uiBefore + uiBytes);
        fnAdd();
        const bool bAll = !IsFull();
        if (!bAll) {
            m_acText.resize(uiBefore);
            m_uiColumn = uiColumn;
        }
        m_uiMost = uiMost;
        return bAll;
    }

    /// Whether what is added is in vain.
    bool IsFull() const { return m_acText.size() > m_uiMost; }

    /// The lines, the last one ended.
    std::string Take() {
        m_acText.resize(m_acText.find_last_not_of(" \n") + 1);
        return m_acText + "\n";
    }

  private:
    std::string m_acText;
    size_t m_uiColumn;
    const size_t m_uiWidth;
    size_t m_uiMost = SIZE_MAX;  ///< bytes, before it is full
};

size_t TextLength(json_object *pstText) {
    return static_cast<size_t>(json_object_get_string_len(pstText));
}

bool IsGroup(json_object *pstValue) {
    return json_object_is_type(pstValue, json_type_object) ||
           json_object_is_type(pstValue, json_type_array);
}

/// What a text says that is a JSON object or array, as many of the gateway's are; null for another.
JsonValue JsonInText(json_object *pstValue) {
    const char *pcText =
        json_object_is_type(pstValue, json_type_string) ? json_object_get_string(pstValue) : "";
    if ((*pcText != '{' && *pcText != '[') || TextLength(pstValue) > kTakenApartMost) {
        return nullptr;
    }
    try {
        return ParseJson(pcText, "the text");
    } catch (const GatewayError &) {
        return nullptr;
    }
}

void AddWords(json_object *pstValue, const std::string &acName, Paragraph &stOut);

/// Puts what a text says that is JSON; false when it is none, or would take too much room.
bool AddTakenApart(json_object *pstText, const std::string &acName, Paragraph &stOut) {
    const JsonValue stInside = JsonInText(pstText);
    return stInside && stOut.AddWithin(kTakenApartRoom + kTakenApartGrowth * TextLength(pstText),
                                       [&] { AddWords(stInside.get(), acName, stOut); });
}

/// Puts the elements of a list on lines of their own.
void AddRows(const std::vector<json_object *> &astElements, const std::string &acName,
             Paragraph &stOut) {
    const size_t uiShown = std::min<size_t>(astElements.size(), kWireRowsShown);
    for (size_t i = 0; i < uiShown; ++i) {
        stOut.Break();
        stOut.Word(acName + "[" + std::to_string(i) + "]");
        AddWords(astElements[i], "", stOut);
    }
    stOut.Break();
    if (uiShown < astElements.size()) {
        stOut.Word("(" + std::to_string(astElements.size() - uiShown) + " more)");
        stOut.Break();
    }
}

/// Puts NAME=VALUE for each value that is in an object, and each object of a list on lines of its
/// own.
void AddWords(json_object *pstValue, const std::string &acName, Paragraph &stOut) {
    if (stOut.IsFull() || AddTakenApart(pstValue, acName, stOut)) {
        return;
    }
    const std::vector<json_object *> astElements = Elements(pstValue);
    if (json_object_is_type(pstValue, json_type_object)) {
        if (json_object_object_length(pstValue) == 0) {
            stOut.Word(acName + "={}");
        }
        json_object_object_foreach(pstValue, pcKey, pstMember) {
            if (stOut.IsFull()) {
                break;
            }
            AddWords(pstMember, (acName.empty() ? "" : acName + ".") + PrintedName(pcKey), stOut);
        }
    } else if (std::any_of(astElements.begin(), astElements.end(), IsGroup)) {
        AddRows(astElements, acName, stOut);
    } else {
        stOut.Word((acName.empty() ? "" : acName + "=") + Printed(pstValue));
    }
}

/// What a part of an event says; "" for one of no length.
std::string PrintPart(const TapEvent &stEvent, TapPart ePart, const char *pcLabel, size_t uiWidth) {
    const TapBytes &stBytes = stEvent.astParts[ePart];
    if (stBytes.uiLength == 0) {
        return "";
    }
    Paragraph stOut(pcLabel, uiWidth);
    const std::string acLength = std::to_string(stBytes.uiLength) + " bytes";
    const JsonValue stContent = ContentOf(stEvent, ePart);
    if (stContent && json_object_object_length(stContent.get()) > 0) {
        if (!stBytes.IsWhole()) {
            stOut.Word("(the first " + std::to_string(stBytes.acHeld.size()) + " of " + acLength +
                       ")");
        }
        AddWords(stContent.get(), "", stOut);
    } else if (stContent) {
        stOut.Word("(" + acLength + " without a meaning)");
    } else if (RpcOf(stEvent) == nullptr) {
        stOut.Word("(" + acLength + " of an unknown RPC, which may be secret)");
    } else {
        stOut.Word("(" + acLength + " that can't be read)");
    }
    return stOut.Take();
}

std::string Ending(const TapEvent &stEvent) {
    std::string acEnding = stEvent.bAnswered || stEvent.eKind == TapKind::kMessage
                               ? DescribeCode(stEvent.uiCode)
                               : "no answer";
    if (stEvent.stFault) {
        acEnding += "  [fault: " + DescribeFault(*stEvent.stFault) + "]";
    }
    return acEnding;
}

}  // namespace

std::string Headline(const TapEvent &stEvent) {
    std::string acSender = PrintedName(stEvent.stHead.acSndApp);
    if (stEvent.stHead.uiSndMid != 0) {
        acSender += "/" + std::to_string(stEvent.stHead.uiSndMid);
    }
    std::string acName = NameOfRpc(stEvent);
    if (acName.empty()) {
        acName = stEvent.eKind == TapKind::kMessage ? "(unknown message)" : "(unknown RPC)";
    }
    char acDuration[40];
    snprintf(acDuration, sizeof(acDuration), "%8llu.%03u ms",
             static_cast<unsigned long long>(stEvent.ulDurationUs / 1000),
             static_cast<unsigned>(stEvent.ulDurationUs % 1000));
    return TimeOfDay(stEvent.ulTimeUs) + "  " + Padded(acSender, kSenderColumns) + " -> " +
           Padded(PrintedName(stEvent.acReceiver.c_str()), kReceiverColumns) + "  " +
           Padded(acName, kNameColumns) + "  " + Padded(IdText(stEvent), 10) + acDuration + "  " +
           Ending(stEvent);
}

std::string PrintEvent(const TapEvent &stEvent, size_t uiWidth) {
    std::string acText = Headline(stEvent) + "\n";
    acText += PrintPart(stEvent, kTapRequest, "request", uiWidth);
    if (stEvent.eBlockSide == WireSide::kRequest) {
        acText += PrintPart(stEvent, kTapBlock, "block", uiWidth);
    }
    acText += PrintPart(stEvent, kTapReply, "reply", uiWidth);
    if (stEvent.eBlockSide == WireSide::kReply) {
        acText += PrintPart(stEvent, kTapBlock, "block", uiWidth);
    }
    return acText;
}

}  // namespace wap::gateway
