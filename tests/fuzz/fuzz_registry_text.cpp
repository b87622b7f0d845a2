#include <json-c/json.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "wan/jni_traffic_monitor.h"

namespace wap::test {

namespace {

constexpr uint32_t kAskRegistry = 0x483041A5;
/// Deeper than any input: what is JSON by itself must not be too deep in a list.
constexpr int kDepth = 10000;
/// Capacities that depend on the input are below this one.
constexpr uint32_t kSmallCaps = 700;

std::string List(const std::string &sRecords) {
    return "{\"Result\":0,\"List\":[" + sRecords + "]}";
}

/// The records of a registry text as they stand in a list, worked out in another way: by cutting it
/// up first.
std::vector<std::string> RecordsOf(const std::string &sText) {
    std::vector<std::string> asRecords;
    size_t uiBegin = 0;
    while (uiBegin <= sText.size()) {
        const size_t uiEnd = std::min(sText.find(';', uiBegin), sText.size());
        const std::string sRecord = sText.substr(uiBegin, uiEnd - uiBegin);
        const size_t uiBracket = sRecord.find('[');
        if (uiBracket != 0 && uiBracket != std::string::npos) {
            const std::string sName = sRecord.substr(0, std::min<size_t>(uiBracket, 255));
            asRecords.push_back("{\"BundleName\":\"" + sName +
                                "\",\"DestAddressList\":" + sRecord.substr(uiBracket) + "}");
        }
        uiBegin = uiEnd + 1;
    }
    return asRecords;
}

/// The list of the first records that fit.
std::string Expected(const std::string &sText, uint64_t ulCap) {
    std::string sList;
    for (const std::string &sRecord : RecordsOf(sText)) {
        std::string sLonger = sList;
        sLonger.append(sList.empty() ? "" : ",").append(sRecord);
        if (List(sLonger).size() >= ulCap) {
            break;
        }
        sList = sLonger;
    }
    return List(sList);
}

/// Whether a text is JSON, by json-c, that is no deeper than so.
bool IsJsonWithin(const std::string &sText, int iDepth) {
    json_object *pstRoot = StrictJson(sText, 0, iDepth);
    const bool bIs = pstRoot != nullptr;
    json_object_put(pstRoot);
    return bIs;
}

bool IsJson(const std::string &sText) {
    return IsJsonWithin(sText, kDepth);
}

/// Reads JSON, by its grammar alone.
class JsonReader {
  public:
    explicit JsonReader(const std::string &sText) : m_sText(sText) {}

    bool IsValue() { return Value() && m_uiAt == m_sText.size(); }
    /// Whether it can stand between two quotes.
    bool IsInside() {
        while (Letter()) {
        }
        return m_uiAt == m_sText.size();
    }

  private:
    char Next() const { return m_uiAt < m_sText.size() ? m_sText[m_uiAt] : '\0'; }
    bool Take(char cByte) {
        const bool bIs = m_uiAt < m_sText.size() && m_sText[m_uiAt] == cByte;
        m_uiAt += bIs ? 1 : 0;
        return bIs;
    }
    bool TakeOneOf(const std::string &sBytes) {
        return m_uiAt < m_sText.size() && sBytes.find(m_sText[m_uiAt]) != std::string::npos &&
               Take(m_sText[m_uiAt]);
    }
    void Blanks() {
        while (TakeOneOf(" \t\r\n")) {
        }
    }
    bool Word(const std::string &sWord) {
        const bool bIs = m_sText.compare(m_uiAt, sWord.size(), sWord) == 0;
        m_uiAt += bIs ? sWord.size() : 0;
        return bIs;
    }
    bool Letter() {
        if (Take('\\')) {
            if (!Take('u')) {
                return TakeOneOf("\"\\/bfnrt");
            }
            for (int i = 0; i < 4; ++i) {
                if (!TakeOneOf("0123456789abcdefABCDEF")) {
                    return false;
                }
            }
            return true;
        }
        return Next() != '"' && static_cast<unsigned char>(Next()) >= ' ' && Take(Next());
    }
    bool Text() {
        if (!Take('"')) {
            return false;
        }
        while (Letter()) {
        }
        return Take('"');
    }
    bool Digits() {
        const size_t uiBegin = m_uiAt;
        while (TakeOneOf("0123456789")) {
        }
        return m_uiAt > uiBegin;
    }
    bool Number() {
        Take('-');
        if (!Take('0') && !Digits()) {
            return false;
        }
        if (Take('.') && !Digits()) {
            return false;
        }
        if (TakeOneOf("eE")) {
            TakeOneOf("+-");
            return Digits();
        }
        return true;
    }
    bool Members(char cEnd, bool bNamed) {
        Blanks();
        if (Take(cEnd)) {
            return true;
        }
        do {
            Blanks();
            if (bNamed && !Text()) {
                return false;
            }
            Blanks();
            if ((bNamed && !Take(':')) || !Value()) {
                return false;
            }
        } while (Take(','));
        return Take(cEnd);
    }
    bool Value() {
        Blanks();
        const bool bIs = Take('[')   ? Members(']', false)
                         : Take('{') ? Members('}', true)
                         : Next() == '"'
                             ? Text()
                             : Word("true") || Word("false") || Word("null") || Number();
        Blanks();
        return bIs;
    }

    const std::string &m_sText;
    size_t m_uiAt = 0;
};

/// Whether the name of a record can stand in a text of JSON, and its list is JSON by itself.
bool IsApart(const std::string &sRecord) {
    const size_t uiName = std::string("{\"BundleName\":\"").size();
    const size_t uiBetween = std::string("\",\"DestAddressList\":").size();
    const size_t uiBracket = sRecord.find('[');
    const std::string sName = sRecord.substr(uiName, uiBracket - uiBetween - uiName);
    const std::string sList = sRecord.substr(uiBracket, sRecord.size() - uiBracket - 1);
    return JsonReader(sName).IsInside() && JsonReader(sList).IsValue();
}

/// The conversion alone, into a buffer that ends where it says.
void CheckConversion(const std::string &sText, uint32_t uiCap) {
    World stWorld;
    std::vector<char> acOut(uiCap);
    const uint32_t uiResult = VT_API_ConvertAddrListToJson(sText.c_str(), acOut.data(), uiCap);
    const bool bRoom = uiCap > List("").size();
    Require(uiResult == (bRoom ? 0 : 1), "a list is made where an empty one fits");
    Require(!bRoom || Expected(sText, uiCap) == acOut.data(), "a list has the records that fit");
    RequireClean(stWorld);
}

/// The conversion of a text whose records are JSON.
void CheckIsJson(const std::string &sText, uint32_t uiCap) {
    World stWorld;
    std::vector<char> acOut(uiCap);
    if (VT_API_ConvertAddrListToJson(sText.c_str(), acOut.data(), uiCap) == 0) {
        Require(IsJson(acOut.data()), "a list of JSON is JSON");
    }
    RequireClean(stWorld);
}

/// The whole query: a block of any bytes and counts that need not fit it.
void CheckQuery(const std::string &sBlock, uint32_t uiBundles, uint32_t uiAddresses) {
    if (!FitsBlock(sBlock)) {
        return;
    }
    World stWorld;
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[kAskRegistry] = {0, sBlock, true, Word(uiBundles) + Word(uiAddresses)};
    char *pcText = nullptr;
    const uint32_t uiResult = VT_JNI_getTrafficMonitoringDestAddressInfo(&pcText);
    const uint64_t ulCap = uint64_t{uiBundles} * 384 + uint64_t{uiAddresses} * 272;
    const size_t uiEnd = sBlock.find('\0');
    if (sBlock.empty()) {
        Require(uiResult == 0 && pcText == nullptr, "nothing is no text");
    } else if (uiEnd == std::string::npos) {
        Require(uiResult == 0xFFFFFFFF && pcText == nullptr, "a text has an end");
    } else {
        const std::string sText = sBlock.substr(0, uiEnd);
        const std::vector<std::string> asRecords = RecordsOf(sText);
        const bool bAllApart = std::all_of(asRecords.begin(), asRecords.end(), IsApart);
        const bool bRoom = ulCap != 0 && ulCap <= uint64_t{16} * 1024 * 1024;
        const std::string sExpected = bRoom ? Expected(sText, ulCap) : "";
        // The records behind those that fit are not parsed: they may pass or not when they are no
        // JSON. json-c has a say in how deep a list may be.
        if (uiResult == 0) {
            Require(bRoom, "a list has a size that can be");
            Require(sExpected == pcText, "it is that of the text");
            Require(JsonReader(sExpected).IsValue(), "an answer is JSON");
        } else if (uiResult == 1) {
            Require(!bRoom && pcText == nullptr, "where there is room there is a list");
        } else {
            Require(uiResult == 0xFFFFFFFF && pcText == nullptr, "what is no JSON is no answer");
            Require(!bAllApart || !IsJsonWithin(sExpected, JSON_TOKENER_DEFAULT_DEPTH),
                    "a text of JSON becomes a list");
        }
        for (size_t i = 0, uiShown = 0; uiResult == 0 && i < asRecords.size(); ++i) {
            uiShown = sExpected.find(asRecords[i], uiShown);
            if (uiShown == std::string::npos) {
                break;
            }
            Require(IsApart(asRecords[i]), "each bundle is one that is registered");
        }
    }
    VT_OS_MemFreeD(pcText, "fuzz_registry_text.cpp", __LINE__);
    RequireClean(stWorld);
}

}  // namespace

void FuzzRegistryText(const uint8_t *pucData, size_t uiSize) {
    const std::string sBytes(uiSize == 0 ? "" : reinterpret_cast<const char *>(pucData), uiSize);
    const std::string sText = TextIn(pucData, uiSize);
    const auto uiWhole = static_cast<uint32_t>(Expected(sText, UINT64_MAX).size());
    // Around its own size, and one that depends on the text.
    for (const uint32_t uiCap : {uiWhole + 2, uiWhole + 1, uiWhole, uiWhole / 2 + 1,
                                 static_cast<uint32_t>(uiSize * 31 % kSmallCaps)}) {
        CheckConversion(sText, uiCap);
    }
    // The counts are the first bytes of what stands behind the text, which are mostly too small.
    const std::string sRest = Field(sBytes.substr(std::min(sText.size() + 1, uiSize)), 8);
    CheckQuery(sBytes, WordAt(sRest, 0), WordAt(sRest, 4));
    CheckQuery(sBytes, 1, 1);
    // Where each record is JSON, so is the list, also one that is cut.
    const std::vector<std::string> asRecords = RecordsOf(sText);
    if (std::all_of(asRecords.begin(), asRecords.end(), IsJson)) {
        for (const uint32_t uiCap : {uiWhole + 1, uiWhole, uiWhole / 2 + 1, uiWhole / 3 + 1}) {
            CheckIsJson(sText, uiCap);
        }
    }
}

}  // namespace wap::test
