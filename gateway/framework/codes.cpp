#include "framework/codes.h"

#include <stdio.h>

#include "vt_ssp_host.h"

namespace wap::gateway {

const char *MeaningOfCode(uint32_t uiCode) {
    static constexpr struct {
        uint32_t uiCode;
        const char *pcMeaning;
    } kMeanings[] = {
        {0, "ok"},
        {VT_HOST_ERR_ARGUMENT, "bad request"},
        {VT_HOST_ERR_STATE, "not ready"},
        {VT_HOST_ERR_NO_RECEIVER, "no receiver"},
        {VT_HOST_ERR_TIMEOUT, "no answer in time"},
        {VT_HOST_ERR_BROKEN, "connection broken"},
        {VT_HOST_ERR_SYSTEM, "system call failed"},
        {VT_HOST_ERR_MEMORY, "out of memory"},
        {VT_HOST_ERR_TOO_LONG, "too long"},
        {VT_HOST_ERR_NO_BLOCK, "no such block"},
        {VT_HOST_ERR_DATA, "damaged data"},
        {VT_HOST_ERR_UNKNOWN_RPC, "unknown RPC"},
        {VT_HOST_ERR_FULL, "no room"},
        {VT_HOST_ERR_NO_PROCEDURE, "nobody takes it"},
        {VT_HOST_ERR_IN_USE, "in use"},
        {kRefused, "refused"},
        {kTableFull, "table full"},
    };
    for (const auto &stRow : kMeanings) {
        if (stRow.uiCode == uiCode) {
            return stRow.pcMeaning;
        }
    }
    return nullptr;
}

std::string DescribeCode(uint32_t uiCode) {
    const char *pcMeaning = MeaningOfCode(uiCode);
    if (uiCode == 0) {
        return pcMeaning;
    }
    char acCode[16];
    snprintf(acCode, sizeof(acCode), "0x%08X", uiCode);
    return pcMeaning == nullptr ? acCode : std::string(acCode) + " " + pcMeaning;
}

}  // namespace wap::gateway
