#include "fuzz/targets.h"

#include <json-c/json.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wap::test {

void Require(bool bHolds, const char *pcRule) {
    if (!bHolds) {
        (void)std::fprintf(stderr, "Broken: %s\n", pcRule);
        std::abort();
    }
}

void RequireClean(World &stWorld) {
    for (const std::string &sComplaint : stWorld.TakeComplaints()) {
        Require(false, sComplaint.c_str());
    }
}

json_object *StrictJson(const std::string &sText, int iFlags, int iDepth) {
    json_tokener *pstTokener = json_tokener_new_ex(iDepth);
    json_tokener_set_flags(pstTokener, JSON_TOKENER_STRICT | iFlags);
    json_object *pstRoot =
        json_tokener_parse_ex(pstTokener, sText.c_str(), static_cast<int>(sText.size()) + 1);
    json_tokener_free(pstTokener);
    return pstRoot;
}

bool FitsBlock(const std::string &sBytes) {
    constexpr size_t kPlainMax = 2048;
    return sBytes.size() <= kPlainMax || Packed(sBytes).size() <= sBytes.size();
}

std::string TextIn(const uint8_t *pucData, size_t uiSize) {
    const auto *pcText = reinterpret_cast<const char *>(pucData);
    return uiSize == 0 ? std::string() : std::string(pcText, strnlen(pcText, uiSize));
}

std::optional<uint32_t> DecimalIn(const std::string &sText) {
    unsigned long long uiValue = 0;
    for (const char cDigit : sText) {
        if (cDigit < '0' || cDigit > '9') {
            return std::nullopt;
        }
        uiValue =
            std::min(uiValue * 10 + static_cast<unsigned long long>(cDigit - '0'), 0x100000000ULL);
    }
    return uiValue > 0xFFFFFFFF ? std::nullopt : std::optional(static_cast<uint32_t>(uiValue));
}

}  // namespace wap::test
