#include <json-c/json.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/targets.h"
#include "support/wire_bytes.h"
#include "system/jni_runtime_info.h"

namespace wap::test {

namespace {

constexpr const char *kPath = "/var/osgi/java_version.pipe";
constexpr size_t kPieceMax = 127;
constexpr size_t kField = 32;
constexpr uint32_t kTooLong = 0xF7700005;

struct Names {
    std::string sName;
    std::string sVersion;
    std::string sVendor;
};

/// The output in the pieces in which it is read: a line at most, each up to its first zero.
std::vector<std::string> PiecesOf(const std::string &sOutput) {
    std::vector<std::string> asPieces(1);
    for (const char cChar : sOutput) {
        asPieces.back() += cChar;
        if (cChar == '\n' || asPieces.back().size() == kPieceMax) {
            asPieces.emplace_back();
        }
    }
    for (std::string &sPiece : asPieces) {
        sPiece = UpToZero(sPiece);
    }
    return asPieces;
}

bool Has(const std::string &sText, const char *pcPart) {
    return sText.find(pcPart) != std::string::npos;
}

/// Takes what stands between two places, if both are there and it fits.
void Take(const std::string &sPiece, size_t uiBegin, size_t uiEnd, std::string &sField) {
    if (uiBegin != std::string::npos && uiEnd != std::string::npos && uiEnd - uiBegin < kField) {
        sField = sPiece.substr(uiBegin, uiEnd - uiBegin);
    }
}

Names NamesOf(const std::string &sOutput) {
    Names stNames;
    for (const std::string &sPiece : PiecesOf(sOutput)) {
        if (Has(sPiece, "version")) {
            const size_t uiQuote = sPiece.find('"');
            const size_t uiBegin = uiQuote == std::string::npos ? uiQuote : uiQuote + 1;
            const size_t uiEnd = uiBegin == std::string::npos ? uiBegin : sPiece.find('"', uiBegin);
            Take(sPiece, uiBegin, uiEnd, stNames.sVersion);
        } else if (Has(sPiece, "VM")) {
            Take(sPiece, 0, sPiece.find('('), stNames.sName);
        } else if (Has(sPiece, "OpenJDK")) {
            stNames.sVendor = "Oracle";
        }
    }
    return stNames;
}

/// A field that ends within itself, and what it says.
void CheckField(const char (&acField)[kField], const std::string &sWanted) {
    Require(strnlen(acField, kField) < kField, "a field ends with a zero");
    Require(sWanted == acField, "a field holds what the output says");
}

std::string MemberOf(json_object *pstRoot, const char *pcKey) {
    json_object *pstValue = nullptr;
    Require(json_object_object_get_ex(pstRoot, pcKey, &pstValue) != 0, "all members are there");
    return json_object_get_string(pstValue);
}

/// The answer is JSON with the names, for those that read bytes as they are.
void CheckAnswer(const std::string &sText, const Names &stNames) {
    json_object *pstRoot = json_tokener_parse(sText.c_str());
    Require(pstRoot != nullptr, "the answer is JSON");
    Require(MemberOf(pstRoot, "Result") == "0", "the answer is a success");
    std::vector<std::string> asTexts;
    json_object_object_foreach(pstRoot, pcKey, pstValue) {
        if (json_object_is_type(pstValue, json_type_string) != 0) {
            asTexts.push_back(MemberOf(pstRoot, pcKey));
        }
    }
    std::vector<std::string> asWanted = {stNames.sName, stNames.sVersion, stNames.sVendor};
    std::sort(asTexts.begin(), asTexts.end());
    std::sort(asWanted.begin(), asWanted.end());
    Require(asTexts == asWanted, "the answer holds the names");
    json_object_put(pstRoot);
}

}  // namespace

void FuzzJvmVersion(const uint8_t *pucData, size_t uiSize) {
    const std::string sOutput(uiSize == 0 ? "" : reinterpret_cast<const char *>(pucData), uiSize);
    const Names stWanted = NamesOf(sOutput);
    World stWorld;
    stWorld.stPlatform.stFiles.mapFiles[kPath] = sOutput;
    RuntimeNames stNames;
    std::memset(&stNames, 'z', sizeof(stNames));
    Require(VT_JNI_GetJvmDataByCmd(&stNames) == 0, "output of any kind is read");
    CheckField(stNames.acName, stWanted.sName);
    CheckField(stNames.acVersion, stWanted.sVersion);
    CheckField(stNames.acVendor, stWanted.sVendor);
    std::vector<char> acAnswer(512, 'z');
    const uint32_t uiResult =
        VT_JNI_GetJVMInfo(acAnswer.data(), static_cast<uint32_t>(acAnswer.size()));
    Require(uiResult == 0 || uiResult == kTooLong, "the names make an answer, or too long a one");
    if (uiResult == 0) {
        CheckAnswer(acAnswer.data(), stWanted);
    }
    const auto uiShort = static_cast<uint32_t>(1 + uiSize % 200);
    std::vector<char> acShort(uiShort, 'z');
    Require((VT_JNI_GetJVMInfo(acShort.data(), uiShort) == 0) ==
                (uiResult == 0 && std::strlen(acAnswer.data()) < uiShort),
            "an answer comes where it fits");
    RequireClean(stWorld);
}

}  // namespace wap::test
