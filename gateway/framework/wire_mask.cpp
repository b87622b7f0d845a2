#include "framework/wire_mask.h"

#include <algorithm>
#include <string_view>

#include "framework/wire_decode.h"

namespace wap::gateway {

namespace {

using Bytes = std::span<char>;

/// The part of some bytes that begins at uiAt, as far as it is there.
Bytes Range(Bytes acBytes, size_t uiAt, size_t uiSize) {
    return uiAt < acBytes.size() ? acBytes.subspan(uiAt, std::min(uiSize, acBytes.size() - uiAt))
                                 : Bytes();
}

bool Overwrite(Bytes acSecret) {
    if (std::all_of(acSecret.begin(), acSecret.end(), [](char cByte) { return cByte == '\0'; })) {
        return false;
    }
    std::fill(acSecret.begin(), acSecret.end(), '\0');
    (void)std::string_view(kSecretShown).copy(acSecret.data(), acSecret.size());
    return true;
}

bool HasSecret(const WireRecord &stRecord) {
    return std::any_of(stRecord.astFields.begin(), stRecord.astFields.end(),
                       [](const WireField &stField) {
                           return stField.bSecret ||
                                  (stField.pstRecord != nullptr && HasSecret(*stField.pstRecord));
                       });
}

bool MaskRecord(const WireRecord &stRecord, Bytes acBytes) {
    bool bAny = false;
    for (const WireField &stField : stRecord.astFields) {
        for (uint32_t i = 0; i < stField.uiCount; ++i) {
            const Bytes acElement =
                Range(acBytes, stField.uiOffset + size_t{i} * stField.uiSize, stField.uiSize);
            if (stField.bSecret) {
                bAny |= Overwrite(acElement);
            } else if (stField.pstRecord != nullptr) {
                bAny |= MaskRecord(*stField.pstRecord, acElement);
            }
        }
    }
    return bAny;
}

bool MaskPart(const WirePart &stPart, Bytes acBytes) {
    if (stPart.bSecret) {
        return Overwrite(acBytes);
    }
    if (stPart.pstRecord == nullptr || !HasSecret(*stPart.pstRecord)) {
        return false;
    }
    bool bAny = false;
    if (stPart.eForm == WireForm::kRows) {
        for (size_t uiAt = 0; uiAt < acBytes.size(); uiAt += stPart.uiSize) {
            bAny |= MaskRecord(*stPart.pstRecord, Range(acBytes, uiAt, stPart.uiSize));
        }
        return bAny;
    }
    bAny = MaskRecord(*stPart.pstRecord, acBytes);
    bAny |= Overwrite(Range(acBytes, stPart.uiSize, acBytes.size()));
    return bAny;
}

}  // namespace

bool MaskContent(const WireContent &stContent, std::span<char> acBytes) {
    const auto &[stFirst, stSecond] = stContent.astParts;
    switch (stContent.eJoin) {
        case WireJoin::kAlone:
            return MaskPart(stFirst, acBytes);
        case WireJoin::kEither: {
            const bool bFirst = MaskPart(stFirst, acBytes);
            return MaskPart(stSecond, acBytes) || bFirst;
        }
        case WireJoin::kBoth: {
            const bool bFirst = MaskPart(stFirst, Range(acBytes, 0, stFirst.uiSize));
            return MaskPart(stSecond, Range(acBytes, stFirst.uiSize, acBytes.size())) || bFirst;
        }
    }
    return false;
}

}  // namespace wap::gateway
