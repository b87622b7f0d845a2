#include "callers/hostile_values.h"

#include <limits>
#include <map>
#include <string>

#include "callers/text_fields.h"

namespace wap::test {

namespace {

constexpr size_t kMega = size_t{1024} * 1024;
constexpr size_t kVeryMany = 10000;
/// Lengths that are tried where no limit is known, which no field has room for.
constexpr size_t kUnknownLimits[] = {127, 255, 1023, 4095};

/// The longest arrays that the methods take; those that are missing take any.
const std::map<std::string, size_t> kArrayLimits = {
    {"addLANHostToBlackList", 8},          {"addLANHostToTrustList", 8},
    {"deleteLANHostFromBlackList", 128},   {"deleteLANHostFromTrustList", 8},
    {"addLANHostToStorageBlackList", 128}, {"deleteLANHostFromStorageBlackList", 8},
    {"getLANHostInfoByMAC", 128},          {"getLANHostStats", 128},
    {"getLANHostSpeedLimitInfo", 128},     {"getSubscribeVoIPEvent", 8},
    {"getUnSubscribeVoIPEvent", 8},
};

std::vector<jint> HostileNumbers() {
    constexpr jint kMin = std::numeric_limits<jint>::min();
    constexpr jint kMax = std::numeric_limits<jint>::max();
    std::vector<jint> aiNumbers = {kMin, kMin + 1, -65536, -256, -2, kMax - 1, kMax};
    // One around each number that some method has as a limit.
    for (const jint iLimit : {0, 2, 4, 8, 63, 127, 255, 999, 1023, 4094, 9999, 32767, 51579, 65535,
                              99999, 0x0FFFFFFF, 0x10101003, 0x20101001, 0x30101003}) {
        for (const jint iNumber : {iLimit - 1, iLimit, iLimit + 1}) {
            aiNumbers.push_back(iNumber);
        }
    }
    return aiNumbers;
}

/// Texts that are odd wherever they stand; sGood is one that the method takes.
std::vector<JavaString> OddTexts(const std::u16string &sGood) {
    using namespace std::string_literals;
    return {
        std::nullopt,
        u"",
        u"x",
        u" ",
        u"\U0001F600",
        u"\U0001F600\U0001F468\U0001F469 emoji \u00e4\u4e2d",
        u"\xD800"s,                // half a character
        u"a\xDC00"s + u"b\xDBFF",  // other halves, where they don't belong
        u"\xFFFE\xFFFF"s,          // no characters
        u"\0"s,
        u"before\0behind"s,
        sGood + u"\0"s + sGood,
        u"\0"s + sGood,
        u"\x01\x1F\x7F\u0080\u2028"s,
        u"-1",
        u"+0",
        u"4294967296",
        u"99999999999999999999999",
        u"0x7f",
        u"1e9",
        u"null",
        u"{}",
        u"[]",
        u"{\"Timeout\":99999999999999999999,\"DSCP\":-2147483649,\"DataBlockSize\":1e400}",
        u"{\"Username\":{\"Username\":[]},\"Password\":null,\"NATEnabled\":true}",
        std::u16string(400, u'['),
        std::u16string(400, u'"'),
    };
}

std::vector<JavaString> HostileTexts(const Native &stNative, size_t uiParameter,
                                     const std::u16string &sGood) {
    std::vector<JavaString> asTexts = OddTexts(sGood);
    asTexts.push_back(MegaText());
    bool bKnown = false;
    for (const TextField &stField : TextFields()) {
        if (stNative.Method() == stField.pcMethod && uiParameter == stField.uiArgument) {
            bKnown = true;
            asTexts.push_back(FilledText(stField, stField.uiLimit));
            asTexts.push_back(FilledText(stField, stField.uiLimit + 1));
        }
    }
    for (const size_t uiLength : kUnknownLimits) {
        if (!bKnown) {
            asTexts.emplace_back(std::u16string(uiLength, u'9'));
            asTexts.emplace_back(std::u16string(uiLength + 1, u'9'));
        }
    }
    return asTexts;
}

std::vector<Argument> HostileLists(const Native &stNative, size_t uiParameter) {
    const JavaStrings &asGood = std::get<JavaStrings>(stNative.astGood[uiParameter]);
    const JavaString sGood = asGood->front();
    const auto itLimit = kArrayLimits.find(stNative.Method());
    const size_t uiLimit = itLimit == kArrayLimits.end() ? 20 : itLimit->second;
    using List = std::vector<JavaString>;
    std::vector<Argument> astLists = {
        JavaStrings(),
        JavaStrings(List()),
        JavaStrings(List(1)),
        JavaStrings(List{u""}),
        JavaStrings(List{std::nullopt, u"", sGood, std::nullopt}),
        JavaStrings(List(uiLimit, sGood)),
        JavaStrings(List(uiLimit)),
        JavaStrings(List(uiLimit + 1, sGood)),
        JavaStrings(List(uiLimit + 1)),
        JavaStrings(List(kVeryMany, sGood)),
        JavaStrings(List(kVeryMany)),
    };
    for (const JavaString &sText : HostileTexts(stNative, uiParameter, *sGood)) {
        astLists.emplace_back(JavaStrings(List{sGood, sText, sGood}));
        if (sText && sText->size() < kMega) {
            astLists.emplace_back(JavaStrings(List{sText}));
        }
    }
    return astLists;
}

}  // namespace

const std::u16string &MegaText() {
    static const std::u16string s_sText = [] {
        std::u16string sText;
        for (size_t i = 0; i < kMega; ++i) {
            sText += static_cast<char16_t>(u'a' + (i * 7 + i / 26) % 26);
        }
        return sText;
    }();
    return s_sText;
}

std::vector<Argument> HostileValues(const Native &stNative, size_t uiParameter) {
    const Argument &stGood = stNative.astGood[uiParameter];
    std::vector<Argument> astValues;
    if (std::holds_alternative<jint>(stGood)) {
        for (const jint iNumber : HostileNumbers()) {
            astValues.emplace_back(iNumber);
        }
    } else if (std::holds_alternative<jboolean>(stGood)) {
        for (const int iFlag : {0, 1, 2, 128, 255}) {
            astValues.emplace_back(static_cast<jboolean>(iFlag));
        }
    } else if (const auto *psText = std::get_if<JavaString>(&stGood)) {
        for (const JavaString &sText : HostileTexts(stNative, uiParameter, **psText)) {
            astValues.emplace_back(sText);
        }
    } else if (std::holds_alternative<JavaByteArray>(stGood)) {
        for (const size_t uiLength : {size_t{0}, size_t{1}, size_t{9}, size_t{11}, kMega}) {
            astValues.emplace_back(JavaByteArray(std::string(uiLength, '\x7F')));
        }
        astValues.emplace_back(JavaByteArray());
    } else {
        astValues = HostileLists(stNative, uiParameter);
    }
    return astValues;
}

}  // namespace wap::test
