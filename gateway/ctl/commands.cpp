#include "ctl/commands.h"

#include <signal.h>
#include <stdio.h>

#include <algorithm>

#include "ctl/client.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

ProcessNames Chosen(const Options &stOptions) {
    ProcessNames astChosen;
    for (const std::string &acName : stOptions.astProcesses) {
        astChosen.push_back(FindProcess(acName));
    }
    if (astChosen.empty()) {
        for (const ProcessInfo &stInfo : kProcesses) {
            astChosen.push_back(&stInfo);
        }
    }
    return astChosen;
}

/// The processes that a verb about faults asks: those that are named, else those that run, because
/// one that does not run has no faults.
ProcessNames Asked(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    return stOptions.astProcesses.empty() ? Running(stDir) : Chosen(stOptions);
}

std::string NamesOf(const ProcessNames &astProcesses) {
    std::string acNames;
    for (const ProcessInfo *pstInfo : astProcesses) {
        acNames += (acNames.empty() ? "" : ", ") + std::string(pstInfo->pcName);
    }
    return acNames;
}

std::string Duration(int64_t iSeconds) {
    char acText[32];
    snprintf(acText, sizeof(acText), "%lld:%02d:%02d", static_cast<long long>(iSeconds / 3600),
             static_cast<int>(iSeconds / 60 % 60), static_cast<int>(iSeconds % 60));
    return acText;
}

/// The process that owns the value of a path.
const ProcessInfo &OwnerOf(const std::string &acPath) {
    const std::string acSection = acPath.substr(0, acPath.find('.'));
    const ProcessInfo *pstOwner = FindOwner(acSection);
    if (pstOwner != nullptr) {
        return *pstOwner;
    }
    std::string acSections;
    for (const ProcessInfo &stInfo : kProcesses) {
        for (const std::string_view pcSection : stInfo.astSections) {
            if (!pcSection.empty()) {
                acSections += (acSections.empty() ? "" : ", ") + std::string(pcSection);
            }
        }
    }
    throw GatewayError("there is no value \"" + acPath + "\": the home has no \"" + acSection +
                       "\"; it has " + acSections);
}

/// The answer to a get of a path, as the process gives it.
JsonValue AskValue(const ProcessInfo &stOwner, const std::string &acPath) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", acPath);
    return Ask(stOwner.pcName, kControlGet, stRequest.get());
}

}  // namespace

int Start(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    const ProcessNames astChosen = Chosen(stOptions);
    StartProcesses(stDir, stOptions.stLocations, astChosen, stOptions.bFresh,
                   std::chrono::seconds(stOptions.uiTimeoutS));
    printf("Simulated gateway in %s: %s up\n", stDir.Path().c_str(), NamesOf(astChosen).c_str());
    return 0;
}

int Stop(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    const ProcessNames astEnded =
        StopProcesses(stDir, Chosen(stOptions), std::chrono::seconds(stOptions.uiTimeoutS));
    if (astEnded.empty()) {
        printf("Nothing was running\n");
    } else {
        printf("Ended %s\n", NamesOf(astEnded).c_str());
    }
    return 0;
}

int Restart(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    RestartProcesses(stDir, stOptions.stLocations, Chosen(stOptions),
                     std::chrono::seconds(stOptions.uiTimeoutS));
    printf("Simulated gateway in %s: restarted\n", stDir.Path().c_str());
    return 0;
}

int Kill(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    if (EndProcesses(stDir, Chosen(stOptions), SIGKILL, std::chrono::seconds(stOptions.uiTimeoutS))
            .empty()) {
        fprintf(stderr, "gatewayctl: %s is not running\n", stOptions.astProcesses[0].c_str());
        return 1;
    }
    printf("Killed %s\n", stOptions.astProcesses[0].c_str());
    return 0;
}

int Status(const Options &) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    int iExit = 0;
    printf("Simulated gateway in %s\n", stDir.Path().c_str());
    printf("%-12s %-14s %8s %12s %10s %7s %5s\n", "PROCESS", "STATE", "PID", "UPTIME", "REQUESTS",
           "FAULTS", "BUSY");
    for (const ProcessInfo &stInfo : kProcesses) {
        const pid_t iPid = RunningProcess(stDir, stInfo.pcName);
        constexpr uint32_t kTimeoutMs = 2000;
        const JsonValue stStatus =
            iPid == 0 ? nullptr : TryAsk(stInfo.pcName, kControlStatus, kTimeoutMs);
        if (stStatus) {
            const auto stNumber = [&](const char *pcKey) {
                return GetNumber(stStatus.get(), pcKey).value_or(0);
            };
            printf("%-12s %-14s %8d %12s %10lld %7lld %5lld\n", stInfo.pcName, "running",
                   static_cast<int>(iPid), Duration(stNumber("upTime")).c_str(),
                   static_cast<long long>(stNumber("served")),
                   static_cast<long long>(stNumber("faults")),
                   static_cast<long long>(stNumber("busy")));
            continue;
        }
        iExit = 1;
        if (iPid == 0) {
            printf("%-12s not running\n", stInfo.pcName);
        } else {
            printf("%-12s %-14s %8d\n", stInfo.pcName, "not answering", static_cast<int>(iPid));
        }
    }
    return iExit;
}

int Wait(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    const ProcessNames astMissing =
        WaitForAnswers(Chosen(stOptions), std::chrono::seconds(stOptions.uiTimeoutS));
    if (!astMissing.empty()) {
        fprintf(stderr, "gatewayctl: no answer from %s\n", NamesOf(astMissing).c_str());
        return 1;
    }
    return 0;
}

int Get(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    if (!stOptions.acPath.empty()) {
        const JsonValue stAnswer = AskValue(OwnerOf(stOptions.acPath), stOptions.acPath);
        // A text as it is, for scripts; everything else as JSON.
        const auto acText = GetText(stAnswer.get(), "value");
        printf("%s\n", acText ? acText->c_str()
                              : PrintJson(FindMember(stAnswer.get(), "value"), true).c_str());
        return 0;
    }
    int iExit = 0;
    const JsonValue stHome = MakeObject();
    for (const ProcessInfo &stInfo : kProcesses) {
        for (const std::string_view pcSection : stInfo.astSections) {
            if (pcSection.empty()) {
                continue;
            }
            const std::string acSection(pcSection);
            try {
                const JsonValue stAnswer = AskValue(stInfo, acSection);
                PutMember(stHome.get(), acSection.c_str(),
                          JsonValue(json_object_get(FindMember(stAnswer.get(), "value"))));
            } catch (const GatewayError &stError) {
                fprintf(stderr, "gatewayctl: \"%s\" is missing: %s\n", acSection.c_str(),
                        stError.what());
                iExit = 1;
            }
        }
    }
    printf("%s\n", PrintJson(stHome.get(), true).c_str());
    return iExit;
}

int Set(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", stOptions.acPath);
    PutText(stRequest.get(), "text", stOptions.acText);
    (void)Ask(OwnerOf(stOptions.acPath).pcName, kControlSet, stRequest.get());
    return 0;
}

int SetFault(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    const JsonValue stRequest = MakeObject();
    if (stOptions.uiRpcId) {
        PutNumber(stRequest.get(), "rpc", *stOptions.uiRpcId);
    }
    PutMember(stRequest.get(), "fault", FaultToJson(stOptions.stFault));
    (void)Ask(stOptions.astProcesses[0].c_str(), kControlFault, stRequest.get());
    return 0;
}

int ListFaults(const Options &stOptions) {
    printf("%-12s %-12s %-32s %s\n", "PROCESS", "RPC", "FAULT", "REQUESTS LEFT");
    for (const ProcessInfo *pstInfo : Asked(stOptions)) {
        const JsonValue stAnswer = Ask(pstInfo->pcName, kControlFaults);
        json_object *pstList = FindMember(stAnswer.get(), "faults");
        const size_t uiCount =
            json_object_is_type(pstList, json_type_array) ? json_object_array_length(pstList) : 0;
        for (size_t uiAt = 0; uiAt < uiCount; ++uiAt) {
            json_object *pstEntry = json_object_array_get_idx(pstList, uiAt);
            const Fault stFault = FaultFromJson(FindMember(pstEntry, "fault"));
            char acRpc[16] = "any";
            if (const auto iRpc = GetNumber(pstEntry, "rpc")) {
                snprintf(acRpc, sizeof(acRpc), "0x%08X", static_cast<uint32_t>(*iRpc));
            }
            printf("%-12s %-12s %-32s %s\n", pstInfo->pcName, acRpc, DescribeFault(stFault).c_str(),
                   stFault.uiTimes ? std::to_string(*stFault.uiTimes).c_str() : "all");
        }
    }
    return 0;
}

int ClearFaults(const Options &stOptions) {
    for (const ProcessInfo *pstInfo : Asked(stOptions)) {
        (void)Ask(pstInfo->pcName, kControlClear);
    }
    return 0;
}

}  // namespace wap::gateway
