#include "framework/wire_decode.h"

#include <algorithm>

namespace wap::gateway {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

uint8_t ByteAt(std::string_view sBytes, size_t uiAt) {
    return static_cast<uint8_t>(sBytes[uiAt]);
}

/// The part of some bytes that begins at uiAt, as far as it is there.
std::string_view Part(std::string_view sBytes, size_t uiAt, size_t uiSize) {
    return uiAt < sBytes.size() ? sBytes.substr(uiAt, uiSize) : std::string_view();
}

bool IsZero(std::string_view sBytes) {
    return sBytes.find_first_not_of('\0') == std::string_view::npos;
}

/// How long the character is that some bytes begin with; 0 for what is no UTF-8.
size_t CharacterLength(std::string_view sBytes) {
    const uint8_t ucFirst = ByteAt(sBytes, 0);
    if (ucFirst < 0x80) {
        return 1;
    }
    const size_t uiLength = ucFirst >= 0xF0 ? 4 : ucFirst >= 0xE0 ? 3 : 2;
    if (ucFirst < 0xC2 || ucFirst > 0xF4 || sBytes.size() < uiLength) {
        return 0;
    }
    // No character in more bytes than it needs, no half of a pair, none above the last one.
    const uint8_t ucSecond = ByteAt(sBytes, 1);
    const uint8_t ucLeast = ucFirst == 0xE0 ? 0xA0 : ucFirst == 0xF0 ? 0x90 : 0x80;
    const uint8_t ucMost = ucFirst == 0xED ? 0x9F : ucFirst == 0xF4 ? 0x8F : 0xBF;
    if (ucSecond < ucLeast || ucSecond > ucMost) {
        return 0;
    }
    for (size_t i = 2; i < uiLength; ++i) {
        if ((ByteAt(sBytes, i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return uiLength;
}

std::string Hexadecimal(std::string_view sBytes) {
    std::string sText;
    for (size_t i = 0; i < std::min<size_t>(sBytes.size(), kWireBytesShown); ++i) {
        sText += kDigits[ByteAt(sBytes, i) >> 4];
        sText += kDigits[ByteAt(sBytes, i) & 0xF];
    }
    return sBytes.size() > kWireBytesShown ? sText + "..." : sText;
}

uint64_t Unsigned(std::string_view sBytes) {
    uint64_t ulValue = 0;
    for (size_t i = sBytes.size(); i-- > 0;) {
        ulValue = ulValue << 8 | ByteAt(sBytes, i);
    }
    return ulValue;
}

int64_t Signed(std::string_view sBytes) {
    const unsigned uiUnused = 64 - 8 * static_cast<unsigned>(sBytes.size());
    return static_cast<int64_t>(Unsigned(sBytes) << uiUnused) >> uiUnused;
}

JsonValue MakeText(std::string_view sText) {
    return Checked(json_object_new_string_len(sText.data(), static_cast<int>(sText.size())));
}

/// How many rows the word before a descriptor counts; 0 where none is.
uint64_t RowsCounted(const WireContent &stContent, std::string_view sBytes) {
    const uint32_t uiDescriptor = DescriptorOffset(stContent).value_or(0);
    return uiDescriptor < 4 ? 0 : Unsigned(Part(sBytes, uiDescriptor - 4, 4));
}

JsonValue MakeSecret(std::string_view sBytes) {
    return MakeText(IsZero(sBytes) ? "" : kSecretShown);
}

/// What one element of a field holds; null for nothing to show.
JsonValue DecodeElement(const WireField &stField, std::string_view sBytes) {
    if (stField.bSecret) {
        return MakeSecret(sBytes);
    }
    const bool bWhole = sBytes.size() == stField.uiSize;
    switch (stField.eKind) {
        case WireKind::kUnsigned:
            return bWhole ? Checked(json_object_new_uint64(Unsigned(sBytes))) : nullptr;
        case WireKind::kSigned:
            return bWhole ? Checked(json_object_new_int64(Signed(sBytes))) : nullptr;
        case WireKind::kText:
            return MakeText(ReadableText(sBytes));
        case WireKind::kBytes:
            return IsZero(sBytes) ? nullptr : MakeText(Hexadecimal(sBytes));
        case WireKind::kRecord:
        case WireKind::kDescriptor:
            return DecodeRecord(*stField.pstRecord, sBytes);
    }
    return nullptr;
}

JsonValue DecodeArray(const WireField &stField, std::string_view sBytes) {
    JsonValue stArray = MakeArray();
    // Behind the last byte that is not zero there is nothing to show.
    const size_t uiLast = sBytes.find_last_not_of('\0');
    const size_t uiElements = uiLast == std::string_view::npos ? 0 : uiLast / stField.uiSize + 1;
    for (size_t i = 0; i < std::min<size_t>(uiElements, stField.uiCount); ++i) {
        JsonValue stElement =
            DecodeElement(stField, Part(sBytes, i * stField.uiSize, stField.uiSize));
        if (stElement) {
            Append(stArray.get(), std::move(stElement));
        }
    }
    return stArray;
}

void DecodeRows(const WirePart &stPart, std::string_view sBytes, json_object *pstOut) {
    const size_t uiRows = sBytes.size() / stPart.uiSize;
    const size_t uiShown = std::min<size_t>(uiRows, kWireRowsShown);
    JsonValue stRows = MakeArray();
    for (size_t i = 0; i < uiShown; ++i) {
        Append(stRows.get(),
               DecodeRecord(*stPart.pstRecord, sBytes.substr(i * stPart.uiSize, stPart.uiSize)));
    }
    PutMember(pstOut, "rows", std::move(stRows));
    if (uiRows > uiShown) {
        PutNumber(pstOut, "rowsMore", static_cast<int64_t>(uiRows - uiShown));
    }
    if (sBytes.size() % stPart.uiSize != 0) {
        PutNumber(pstOut, "bytesExtra", static_cast<int64_t>(sBytes.size() % stPart.uiSize));
    }
}

/// What is wrong with a number of bytes.
void PutLengthFault(json_object *pstOut, size_t uiBytes, size_t uiWanted) {
    if (uiBytes < uiWanted) {
        PutNumber(pstOut, "bytesMissing", static_cast<int64_t>(uiWanted - uiBytes));
    } else if (uiBytes > uiWanted) {
        PutNumber(pstOut, "bytesExtra", static_cast<int64_t>(uiBytes - uiWanted));
    }
}

void DecodeFields(const WireRecord &stRecord, std::string_view sBytes, json_object *pstOut) {
    for (const WireField &stField : stRecord.astFields) {
        if (stField.uiOffset >= sBytes.size()) {
            break;
        }
        const std::string_view sField =
            Part(sBytes, stField.uiOffset, size_t{stField.uiSize} * stField.uiCount);
        JsonValue stValue = stField.uiCount > 1 && !stField.bSecret
                                ? DecodeArray(stField, sField)
                                : DecodeElement(stField, sField);
        if (stValue) {
            PutMember(pstOut, stField.pcName, std::move(stValue));
        }
    }
}

void DecodePart(const WirePart &stPart, std::string_view sBytes, json_object *pstOut) {
    switch (stPart.eForm) {
        case WireForm::kNothing:
            PutLengthFault(pstOut, sBytes.size(), 0);
            return;
        case WireForm::kWord:
            if (sBytes.size() >= 4) {
                PutMember(pstOut, stPart.pcName == nullptr ? "word" : stPart.pcName,
                          stPart.bSecret
                              ? MakeSecret(sBytes.substr(0, 4))
                              : Checked(json_object_new_uint64(Unsigned(sBytes.substr(0, 4)))));
            }
            PutLengthFault(pstOut, sBytes.size(), 4);
            return;
        case WireForm::kText:
            PutMember(pstOut, "text",
                      stPart.bSecret ? MakeSecret(sBytes) : MakeText(ReadableText(sBytes)));
            return;
        case WireForm::kRecord:
        case WireForm::kRows:
            break;
    }
    if (stPart.bSecret) {
        PutMember(pstOut, stPart.pstRecord->pcName, MakeSecret(sBytes));
    } else if (stPart.eForm == WireForm::kRows) {
        DecodeRows(stPart, sBytes, pstOut);
    } else {
        DecodeFields(*stPart.pstRecord, sBytes, pstOut);
        PutLengthFault(pstOut, sBytes.size(), stPart.uiSize);
    }
}

/// Whether some bytes are as long as a part is.
bool Fits(const WirePart &stPart, size_t uiBytes) {
    switch (stPart.eForm) {
        case WireForm::kRows:
            return uiBytes != 0 && uiBytes % stPart.uiSize == 0;
        case WireForm::kText:
            return stPart.uiSize == 0 || uiBytes <= stPart.uiSize;
        default:
            return uiBytes == stPart.uiSize;
    }
}

}  // namespace

std::string ReadableText(std::string_view sBytes) {
    std::string_view sRest = sBytes.substr(0, sBytes.find('\0'));
    std::string sText;
    while (!sRest.empty()) {
        const size_t uiLength = CharacterLength(sRest);
        if (uiLength == 0) {
            sText += {'\\', 'x', kDigits[ByteAt(sRest, 0) >> 4], kDigits[ByteAt(sRest, 0) & 0xF]};
        } else {
            sText += sRest.substr(0, uiLength);
        }
        sRest.remove_prefix(std::max<size_t>(uiLength, 1));
    }
    return sText;
}

JsonValue DecodeRecord(const WireRecord &stRecord, std::string_view sBytes) {
    JsonValue stOut = MakeObject();
    DecodeFields(stRecord, sBytes, stOut.get());
    PutLengthFault(stOut.get(), sBytes.size(), stRecord.uiSize);
    return stOut;
}

JsonValue DecodeContent(const WireContent &stContent, std::string_view sBytes) {
    JsonValue stOut = MakeObject();
    const auto &[stFirst, stSecond] = stContent.astParts;
    switch (stContent.eJoin) {
        case WireJoin::kAlone:
            DecodePart(stFirst, sBytes, stOut.get());
            break;
        case WireJoin::kEither:
            DecodePart(
                !Fits(stFirst, sBytes.size()) && Fits(stSecond, sBytes.size()) ? stSecond : stFirst,
                sBytes, stOut.get());
            break;
        case WireJoin::kBoth:
            DecodePart(stFirst, sBytes.substr(0, stFirst.uiSize), stOut.get());
            if (sBytes.size() > stFirst.uiSize) {
                DecodePart(stSecond, sBytes.substr(stFirst.uiSize), stOut.get());
            }
            break;
    }
    return stOut;
}

JsonValue DecodeBlock(const WireRpc &stRpc, std::string_view sOwner, std::string_view sBlock) {
    if (stRpc.stBlock.eJoin == WireJoin::kEither) {
        const uint64_t ulRows = RowsCounted(
            stRpc.eBlockSide == WireSide::kRequest ? stRpc.stRequest : stRpc.stReply, sOwner);
        for (const WirePart &stPart : stRpc.stBlock.astParts) {
            if (stPart.eForm == WireForm::kRows && ulRows * stPart.uiSize == sBlock.size()) {
                JsonValue stOut = MakeObject();
                DecodePart(stPart, sBlock, stOut.get());
                return stOut;
            }
        }
    }
    return DecodeContent(stRpc.stBlock, sBlock);
}

}  // namespace wap::gateway
