#include "framework/fault_table.h"

#include <stdio.h>

#include <array>

#include "framework/error.h"
#include "vt_ssp_host.h"

namespace wap::gateway {

namespace {

struct KindInfo {
    FaultKind eKind;
    const char *pcName;
    uint32_t uiMaxValue;
};

constexpr std::array<KindInfo, 6> kKinds = {{
    {FaultKind::kNone, "none", 0},
    {FaultKind::kCode, "code", UINT32_MAX},
    {FaultKind::kDrop, "drop", 0},
    {FaultKind::kTruncate, "truncate", VT_HOST_MAX_PAYLOAD},
    {FaultKind::kGarbage, "garbage", 0},
    {FaultKind::kFill, "fill", 255},
}};

const KindInfo &InfoOf(FaultKind eKind) {
    return kKinds[static_cast<size_t>(eKind)];
}

uint32_t NumberOf(json_object *pstFault, const char *pcKey, uint32_t uiMin, uint32_t uiMax) {
    const std::optional<int64_t> iNumber = GetNumber(pstFault, pcKey);
    if (!iNumber || *iNumber < uiMin || *iNumber > uiMax) {
        throw GatewayError("a fault's " + std::string(pcKey) + " must be from " +
                           std::to_string(uiMin) + " to " + std::to_string(uiMax));
    }
    return static_cast<uint32_t>(*iNumber);
}

}  // namespace

JsonValue FaultToJson(const Fault &stFault) {
    JsonValue stJson = MakeObject();
    PutText(stJson.get(), "kind", InfoOf(stFault.eKind).pcName);
    PutNumber(stJson.get(), "value", stFault.uiValue);
    PutNumber(stJson.get(), "delay", stFault.uiDelayMs);
    if (stFault.uiTimes) {
        PutNumber(stJson.get(), "times", *stFault.uiTimes);
    }
    return stJson;
}

Fault FaultFromJson(json_object *pstFault) {
    const std::optional<std::string> acKind = GetText(pstFault, "kind");
    for (const KindInfo &stInfo : kKinds) {
        if (acKind != stInfo.pcName) {
            continue;
        }
        Fault stFault;
        stFault.eKind = stInfo.eKind;
        stFault.uiValue = NumberOf(pstFault, "value", 0, stInfo.uiMaxValue);
        stFault.uiDelayMs = NumberOf(pstFault, "delay", 0, kMaxFaultDelayMs);
        if (FindMember(pstFault, "times") != nullptr) {
            stFault.uiTimes = NumberOf(pstFault, "times", 1, UINT32_MAX);
        }
        if (stFault.eKind == FaultKind::kCode && stFault.uiValue == 0) {
            throw GatewayError("a fault's code must not be 0, which is success");
        }
        if (stFault.eKind == FaultKind::kNone && stFault.uiDelayMs == 0) {
            throw GatewayError("a fault must do something");
        }
        return stFault;
    }
    throw GatewayError("there is no such kind of fault");
}

std::string DescribeFault(const Fault &stFault) {
    std::string acText = InfoOf(stFault.eKind).pcName;
    if (stFault.eKind == FaultKind::kNone) {
        return "late by " + std::to_string(stFault.uiDelayMs) + " ms";
    }
    if (stFault.eKind == FaultKind::kCode) {
        char acCode[16];
        snprintf(acCode, sizeof(acCode), " 0x%08X", stFault.uiValue);
        acText += acCode;
    } else if (InfoOf(stFault.eKind).uiMaxValue > 0) {
        acText.append(" ").append(std::to_string(stFault.uiValue));
    }
    if (stFault.uiDelayMs > 0) {
        acText.append(" after ").append(std::to_string(stFault.uiDelayMs)).append(" ms");
    }
    return acText;
}

void FaultTable::Set(std::optional<uint32_t> uiRpcId, const Fault &stFault) {
    const std::scoped_lock stLock(m_stMutex);
    m_stFaults[uiRpcId] = stFault;
}

std::optional<Fault> FaultTable::Take(uint32_t uiRpcId) {
    const std::scoped_lock stLock(m_stMutex);
    auto stFound = m_stFaults.find(uiRpcId);
    if (stFound == m_stFaults.end()) {
        stFound = m_stFaults.find(std::nullopt);
    }
    if (stFound == m_stFaults.end()) {
        return std::nullopt;
    }
    const Fault stFault = stFound->second;
    if (stFound->second.uiTimes && --*stFound->second.uiTimes == 0) {
        m_stFaults.erase(stFound);
    }
    return stFault;
}

FaultTable::Faults FaultTable::List() const {
    const std::scoped_lock stLock(m_stMutex);
    return m_stFaults;
}

size_t FaultTable::Clear() {
    const std::scoped_lock stLock(m_stMutex);
    const size_t uiCount = m_stFaults.size();
    m_stFaults.clear();
    return uiCount;
}

}  // namespace wap::gateway
