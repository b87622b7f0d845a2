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
/// Longer blocks are compressed.
constexpr size_t kPlainMax = 2048;
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
        const std::string sLonger = sList + (sList.empty() ? "" : ",") + sRecord;
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

/// A text of JSON without its escapes, which are two letters each then.
std::string WithoutEscapes(std::string sText) {
    for (size_t i = 0; i + 1 < sText.size(); ++i) {
        if (sText[i] == '\\') {
            sText[i] = 'x';
            sText[++i] = 'x';
        }
    }
    return sText;
}

bool IsControl(char cByte) {
    return static_cast<unsigned char>(cByte) < ' ';
}

bool HasControlInText(const std::string &sList) {
    bool bInText = false;
    bool bFound = false;
    for (const char cByte : WithoutEscapes(sList)) {
        bInText ^= cByte == '"';
        bFound |= bInText && IsControl(cByte);
    }
    return bFound;
}

/// Whether each name and each list of a text is JSON by itself, the name between quotes.
bool AreApart(const std::string &sText) {
    const size_t uiName = std::string("{\"BundleName\":\"").size();
    const size_t uiBetween = std::string("\",\"DestAddressList\":").size();
    for (const std::string &sRecord : RecordsOf(sText)) {
        const size_t uiBracket = sRecord.find('[');
        const std::string sName = sRecord.substr(uiName, uiBracket - uiBetween - uiName);
        const std::string sList = sRecord.substr(uiBracket, sRecord.size() - uiBracket - 1);
        const std::string sPlain = WithoutEscapes(sName);
        if (sPlain.find('"') != std::string::npos || sPlain.ends_with('\\') ||
            std::any_of(sName.begin(), sName.end(), IsControl) || HasControlInText(sList) ||
            !IsJson(sList)) {
            return false;
        }
    }
    return true;
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
    if (sBlock.size() > kPlainMax && Packed(sBlock).size() > sBlock.size()) {
        return;  // no process can put that into a block
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
    } else if (ulCap == 0 || ulCap > 16u * 1024 * 1024) {
        Require(uiResult == 1 && pcText == nullptr, "a list has a size that can be");
    } else {
        const std::string sExpected = Expected(sBlock.substr(0, uiEnd), ulCap);
        if (AreApart(sBlock.substr(0, uiEnd)) &&
            IsJsonWithin(sExpected, JSON_TOKENER_DEFAULT_DEPTH)) {
            Require(uiResult == 0 && pcText != nullptr, "a text of JSON becomes a list");
            Require(sExpected == pcText, "it is that of the text");
        } else {
            Require(uiResult == 0xFFFFFFFF && pcText == nullptr, "what is no JSON is no answer");
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
