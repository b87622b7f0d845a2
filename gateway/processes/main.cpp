// wap_gateway PROCESS: one process of the simulated gateway, in the foreground.
#include <signal.h>
#include <stdio.h>
#include <string.h>

#include <string_view>

#include "framework/error.h"
#include "framework/process.h"
#include "processes/accounts.h"
#include "processes/processes.h"

namespace {

using wap::gateway::RpcTable;

constexpr int kExitUsage = 2;

void PrintUsage(FILE *pstTo) {
    fprintf(pstTo,
            "Usage: wap_gateway PROCESS\n\n"
            "Runs one process of the simulated gateway until SIGTERM or SIGINT. It meets the\n"
            "others in the directory that VT_RUNTIME_DIR names and keeps its state there.\n"
            "gatewayctl starts all of them, watches and ends them; start with it.\n\n"
            "Processes:");
    for (const auto &stInfo : wap::gateway::kProcesses) {
        fprintf(pstTo, " %s", stInfo.pcName);
    }
    fprintf(pstTo, "\n");
}

/// The RPCs of a process; one that serves none answers every request with "unknown RPC".
RpcTable MakeTable(std::string_view pcProcess) {
    RpcTable stTable;
    if (pcProcess == "gulm") {
        wap::gateway::AddGulmRpcs(stTable);
    } else if (pcProcess == "app_m") {
        wap::gateway::AddAppManagerRpcs(stTable);
    } else if (pcProcess == "osgi_proxy") {
        wap::gateway::AddOsgiProxyRpcs(stTable);
    } else if (pcProcess == "usb_mngt") {
        wap::gateway::AddUsbManagerRpcs(stTable);
        wap::gateway::AddSambaAccountRpcs(stTable);
    } else if (pcProcess == "tarn") {
        wap::gateway::AddTarnRpcs(stTable);
    } else if (pcProcess == "cwmp") {
        wap::gateway::AddCwmpRpcs(stTable);
    } else if (pcProcess == "igmp") {
        wap::gateway::AddIgmpRpcs(stTable);
    }
    return stTable;
}

/// Leaves the signals that end the process to the one thread that waits for them.
void BlockSignals() {
    signal(SIGPIPE, SIG_IGN);
    // Nobody waits for the program that restarts the gateway; one that fails leaves no trace.
    signal(SIGCHLD, SIG_IGN);
    sigset_t stSignals;
    sigemptyset(&stSignals);
    sigaddset(&stSignals, SIGTERM);
    sigaddset(&stSignals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &stSignals, nullptr);
}

}  // namespace

int main(int iArgc, char **ppcArgv) {
    if (iArgc == 2 && (strcmp(ppcArgv[1], "--help") == 0 || strcmp(ppcArgv[1], "-h") == 0)) {
        PrintUsage(stdout);
        return 0;
    }
    const wap::gateway::ProcessInfo *pstInfo =
        iArgc == 2 ? wap::gateway::FindProcess(ppcArgv[1]) : nullptr;
    if (pstInfo == nullptr) {
        if (iArgc == 2) {
            fprintf(stderr, "wap_gateway: the gateway has no process \"%s\"\n", ppcArgv[1]);
        }
        PrintUsage(stderr);
        return kExitUsage;
    }
    setvbuf(stdout, nullptr, _IOLBF, 0);
    BlockSignals();
    try {
        const auto stDir = wap::gateway::RuntimeDir::FromEnvironment();
        stDir.Make();
        wap::gateway::Process stProcess(stDir, *pstInfo, MakeTable(pstInfo->pcName));
        printf("%s of the simulated gateway starts in %s\n", pstInfo->pcName, stDir.Path().c_str());
        stProcess.Run();
        printf("%s ends\n", pstInfo->pcName);
        return 0;
    } catch (const std::exception &stError) {
        fprintf(stderr, "wap_gateway %s: %s\n", pstInfo->pcName, stError.what());
        return 1;
    }
}
