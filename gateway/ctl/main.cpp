// gatewayctl: starts, watches, changes and disturbs the simulated gateway.
#include <stdio.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>

#include "ctl/commands.h"
#include "ctl/monitor_commands.h"
#include "ctl/usb_commands.h"
#include "ctl/validators.h"
#include "framework/error.h"
#include "framework/numbers.h"
#include "vt_ssp_host.h"

namespace {

using namespace wap::gateway;

constexpr int kExitFailed = 1;
constexpr uint32_t kMaxTimeoutS = 3600;

/// The command line's grammar, and what was read from it.
class CommandLine {
  public:
    CommandLine() {
        m_stApp.require_subcommand(1);
        m_stApp.fallthrough();
        m_stApp.add_option_function<std::string>(
            "--dir",
            [](const std::string &acDir) {
                // The message service takes it from here, as the processes do.
                setenv("VT_RUNTIME_DIR", acDir.c_str(), 1);
            },
            "The runtime directory, in place of VT_RUNTIME_DIR");
        AddLifeVerbs();
        AddHomeVerbs();
        AddHostVerbs();
        AddFeatureVerb();
        AddUplinkVerbs();
        AddBoxVerbs();
        AddUsbVerbs();
        AddFaultVerbs();
        AddMonitorVerbs(m_stApp, m_stOptions, [this](Verb pfnVerb) { m_pfnVerb = pfnVerb; });
        // Last, as verbs take over the footer that is set when they are added.
        m_stApp.footer(
            "Processes: " + ProcessNamesText() +
            "\nExit codes: 0 done, 1 failed, 2 wrong use\n\n"
            "Environment:\n"
            "  VT_RUNTIME_DIR       where the processes meet and keep their state and logs\n"
            "  WAP_GATEWAY_PROGRAM  wap_gateway, when it is not beside gatewayctl\n"
            "  WAP_GATEWAY_HOME     home.json, when it is not in ../share/wap\n"
            "  WAP_EMULATOR         put before wap_gateway, for programs of another machine:\n"
            "                       \"qemu-arm-static -L SYSROOT\"");
    }

    /// Parses and runs; returns the exit code.
    int Run(int iArgc, char **ppcArgv) {
        m_stOptions.stLocations.acArgv0 = ppcArgv[0];
        try {
            m_stApp.parse(iArgc, ppcArgv);
        } catch (const CLI::ParseError &stError) {
            return Explain(stError);
        }
        return m_pfnVerb(m_stOptions);
    }

  private:
    /// Prints the help that was asked for, or what is wrong; returns the exit code.
    int Explain(const CLI::ParseError &stError) {
        if (stError.get_exit_code() == 0) {
            return m_stApp.exit(stError);
        }
        std::string acWhat = stError.what();
        std::string acHelp = "gatewayctl";
        if (m_stApp.get_subcommands().empty()) {
            const std::vector<std::string> astWords = m_stApp.remaining();
            acWhat =
                astWords.empty() ? "say what to do" : "there is no verb \"" + astWords[0] + "\"";
        } else {
            acHelp += " " + m_stApp.get_subcommands()[0]->get_name();
        }
        fprintf(stderr, "gatewayctl: %s\n%s --help says more\n", acWhat.c_str(), acHelp.c_str());
        return kExitUsage;
    }

    CLI::App *Add(const char *pcName, const char *pcHelp, Verb pfnVerb) {
        CLI::App *pstVerb = m_stApp.add_subcommand(pcName, pcHelp);
        pstVerb->callback([this, pfnVerb] { m_pfnVerb = pfnVerb; });
        return pstVerb;
    }

    void AddProcesses(CLI::App *pstVerb, const char *pcHelp) {
        pstVerb->add_option("PROCESS", m_stOptions.astProcesses, pcHelp)
            ->check(KnownProcess())
            ->type_name("");
    }

    void AddOneProcess(CLI::App *pstVerb) {
        pstVerb
            ->add_option_function<std::string>(
                "PROCESS",
                [this](const std::string &acName) { m_stOptions.astProcesses = {acName}; },
                "Which one")
            ->check(KnownProcess())
            ->required()
            ->type_name("");
    }

    void AddTimeout(CLI::App *pstVerb) {
        AddNumber(pstVerb, "--timeout", 0, kMaxTimeoutS, "SECONDS", "How long to wait (10)",
                  [this](uint32_t uiNumber) { m_stOptions.uiTimeoutS = uiNumber; });
    }

    void AddProgram(CLI::App *pstVerb) {
        pstVerb->add_option("--program", m_stOptions.stLocations.acProgram, "wap_gateway")
            ->type_name("FILE");
    }

    void AddLifeVerbs() {
        Add("status", "Show the processes; exit code 1 when one is down", Status);
        CLI::App *pstStart =
            Add("start",
                "Start processes in the background and wait until they answer; none stays when "
                "one does not come up",
                Start);
        AddProcesses(pstStart, "Which ones (all)");
        AddTimeout(pstStart);
        pstStart->add_flag("--fresh", m_stOptions.bFresh, "Start over with the home as shipped");
        pstStart
            ->add_option("--home", m_stOptions.stLocations.acHome,
                         "The home, taken over when none of the processes runs; it gives the "
                         "values that were not in the state before")
            ->type_name("FILE");
        AddProgram(pstStart);
        CLI::App *pstStop = Add("stop", "End processes and wait until they have ended", Stop);
        AddProcesses(pstStop, "Which ones (all)");
        AddTimeout(pstStop);
        CLI::App *pstRestart =
            Add("restart", "End all processes and start them again, as a reset does", Restart);
        AddTimeout(pstRestart);
        AddProgram(pstRestart);
        CLI::App *pstKill = Add("kill", "End a process at once, as a crash would", Kill);
        AddOneProcess(pstKill);
        CLI::App *pstWait =
            Add("wait", "Wait until processes answer; exit code 1 when one does not", Wait);
        AddProcesses(pstWait, "Which ones (all)");
        AddTimeout(pstWait);
    }

    void AddHomeVerbs() {
        CLI::App *pstGet = Add("get", "Print a value of the home, or all of it as JSON", Get);
        pstGet->add_option("PATH", m_stOptions.acPath, "Such as device.vendor (everything)")
            ->type_name("");
        CLI::App *pstSet = Add("set", "Change a value of the home", Set);
        pstSet->add_option("PATH", m_stOptions.acPath, "Such as device.vendor")
            ->required()
            ->type_name("");
        pstSet
            ->add_option("VALUE", m_stOptions.acText,
                         "A text or a number, as the value is one; put -- before one that "
                         "starts with a dash")
            ->required()
            ->type_name("");
        pstSet->footer("The next request sees the change, and it survives a restart.");
    }

    CLI::App *AddSubVerb(CLI::App *pstGroup, const char *pcName, const char *pcHelp, Verb pfnVerb) {
        CLI::App *pstVerb = pstGroup->add_subcommand(pcName, pcHelp);
        pstVerb->callback([this, pfnVerb] { m_pfnVerb = pfnVerb; });
        return pstVerb;
    }

    void AddMac(CLI::App *pstVerb) {
        pstVerb->add_option("MAC", m_stOptions.acMac, "Such as 02:A1:B2:00:20:01")
            ->required()
            ->type_name("");
    }

    void AddHostVerbs() {
        CLI::App *pstHost = m_stApp.add_subcommand("host", "The hosts on the LAN");
        pstHost->require_subcommand(1);
        AddSubVerb(pstHost, "list", "List them", ListHosts);
        CLI::App *pstAdd = AddSubVerb(pstHost, "add", "One joins", AddHost);
        AddMac(pstAdd);
        static constexpr std::pair<const char *, const char *> kMembers[] = {
            {"ip", "Its address (0.0.0.0)"},
            {"name", "Its name (none)"},
            {"class", "Such as PC, PHONE, TABLET, TV (OTHER)"},
            {"interface", "Such as LAN1 or SSID1 (LAN1)"},
        };
        for (const auto &[pcName, pcHelp] : kMembers) {
            AddMember(pstAdd, pcName, pcHelp);
        }
        AddMac(AddSubVerb(pstHost, "remove", "One leaves", RemoveHost));
        CLI::App *pstSet = AddSubVerb(pstHost, "set", "Change something of one", SetHost);
        AddMac(pstSet);
        pstSet->add_option("MEMBER", m_stOptions.acPath, "Such as name or upSpeed")
            ->required()
            ->type_name("");
        pstSet->add_option("VALUE", m_stOptions.acText, "A text, a number, or true or false")
            ->required()
            ->type_name("");
    }

    void AddFeatureVerb() {
        CLI::App *pstFeature =
            Add("feature", "Show or switch a feature of the firmware", wap::gateway::Feature);
        pstFeature
            ->add_option_function<std::string>(
                "NUMBER",
                [this](const std::string &acText) { m_stOptions.uiFeature = ReadNumber(acText); },
                "Which one (all that are on)")
            ->check(Number(0, UINT32_MAX))
            ->type_name("");
        AddState(pstFeature, "on", "off", "on or off");
        pstFeature->footer("314 is Wi-Fi: without it no SSID takes part in the MAC filter.");
    }

    /// A word that switches something.
    void AddState(CLI::App *pstVerb, const char *pcOn, const char *pcOff, const char *pcHelp) {
        pstVerb
            ->add_option_function<std::string>(
                "STATE",
                [this, acOn = std::string(pcOn)](const std::string &acText) {
                    m_stOptions.bOn = acText == acOn;
                },
                pcHelp)
            ->check(CLI::IsMember({pcOn, pcOff}))
            ->type_name("");
    }

    void AddUplinkVerbs() {
        CLI::App *pstPon = Add("pon", "Show whether the PON is up, or bring it up or down", Pon);
        AddState(pstPon, "up", "down", "up or down (show it)");
        pstPon->footer("While it is down, every question about it fails.");

        CLI::App *pstWan = m_stApp.add_subcommand("wan", "The WAN connections");
        pstWan->require_subcommand(1);
        AddSubVerb(pstWan, "list", "List them", ListWans);
        CLI::App *pstSet = AddSubVerb(pstWan, "set", "Bring one up or down", SetWan);
        pstSet->add_option("NAME", m_stOptions.acPath, "Such as 1_INTERNET_R_VID_100")
            ->required()
            ->type_name("");
        AddState(pstSet, "up", "down", "up or down");
        pstSet->get_option("STATE")->required();

        CLI::App *pstIptv = Add("iptv", "Show IPTV, or change it", Iptv);
        AddState(pstIptv, "up", "down", "Bring its WAN connection up or down");
        static constexpr std::tuple<const char *, const char *, uint32_t, const char *> kNumbers[] =
            {
                {"--service", "serviceType", UINT32_MAX, "Its type; 7 to 11 and 13 to 16 are IPTV"},
                {"--vlan4", "ipv4Vlan", UINT16_MAX, "Its multicast VLAN; 4095 and up are none"},
                {"--vlan6", "ipv6Vlan", UINT16_MAX, "The same for IPv6"},
                {"--users", "users", UINT32_MAX, "How many listen to multicast groups"},
            };
        for (const auto &[pcName, pcMember, uiMax, pcHelp] : kNumbers) {
            AddNumber(pstIptv, pcName, 0, uiMax, "N", pcHelp,
                      [this, acMember = std::string(pcMember)](uint32_t uiNumber) {
                          m_stOptions.mapMembers[acMember] = std::to_string(uiNumber);
                      });
        }
        pstIptv
            ->add_option_function<std::string>(
                "--ipv4",
                [this](const std::string &acText) {
                    m_stOptions.mapMembers["ipv4Enabled"] = acText == "on" ? "true" : "false";
                },
                "Whether it uses IPv4")
            ->check(CLI::IsMember({"on", "off"}))
            ->type_name("on|off");
    }

    void AddBoxVerbs() {
        CLI::App *pstLeds = Add("leds", "Show whether the lights are on, or switch them", Leds);
        AddState(pstLeds, "on", "off", "on or off (show it)");

        CLI::App *pstVoice =
            Add("voice", "Show the voice lines and who is told of their events, or change a line",
                Voice);
        pstVoice->add_option("LINE", m_stOptions.acPath, "Such as POTS1 (show all)")->type_name("");
        pstVoice->add_option("STATE", m_stOptions.acText, "What it does from now on")
            ->check(CLI::IsMember({"idle", "ringing", "talking", "offhook", "unregistered"}))
            ->type_name("");
    }

    /// A verb that lists without more words and has verbs below it.
    CLI::App *AddListGroup(const char *pcName, const char *pcHelp, Verb pfnList) {
        CLI::App *pstGroup = m_stApp.add_subcommand(pcName, pcHelp);
        pstGroup->require_subcommand(0, 1);
        pstGroup->callback([this, pstGroup, pfnList] {
            if (pstGroup->get_subcommands().empty()) {
                m_pfnVerb = pfnList;
            }
        });
        return pstGroup;
    }

    /// The word that names what a verb is about.
    void AddWord(CLI::App *pstVerb, const char *pcName, const char *pcHelp) {
        pstVerb->add_option(pcName, m_stOptions.acPath, pcHelp)->required()->type_name("");
    }

    CLI::Option *AddMember(CLI::App *pstVerb, const std::string &acMember, const char *pcHelp) {
        return pstVerb
            ->add_option_function<std::string>(
                "--" + acMember,
                [this, acMember](const std::string &acText) {
                    m_stOptions.mapMembers[acMember] = acText;
                },
                pcHelp)
            ->type_name("TEXT");
    }

    void AddUsbVerbs() {
        CLI::App *pstUsb = AddListGroup(
            "usb", "List the USB serial devices and who uses them, or plug one in or out", ListUsb);
        CLI::App *pstPlug = AddSubVerb(pstUsb, "plug", "Plug a simulated one in", PlugUsb);
        AddWord(pstPlug, "NAME", "Such as serial1");
        AddMember(pstPlug, "kind", "echo returns what it gets, modem answers AT commands")
            ->required()
            ->check(CLI::IsMember({"echo", "modem"}))
            ->type_name("echo|modem");
        AddWord(AddSubVerb(pstUsb, "unplug", "Pull one out", UnplugUsb), "DEVICE",
                "Its name or its id");

        CLI::App *pstStorage = AddListGroup(
            "storage", "List the volumes on USB sticks, or mount or unmount one", ListStorage);
        CLI::App *pstAdd =
            AddSubVerb(pstStorage, "add", "Mount a folder of this machine", AddStorage);
        AddWord(pstAdd, "DIR", "The folder");
        AddMember(pstAdd, "name", "The volume's name (the folder's)");
        AddWord(AddSubVerb(pstStorage, "remove", "Unmount one", RemoveStorage), "VOLUME",
                "Its name or its folder");
    }

    void SetKind(FaultKind eKind, uint32_t uiValue = 0) {
        m_stOptions.stFault.eKind = eKind;
        m_stOptions.stFault.uiValue = uiValue;
    }

    void AddFaultVerbs() {
        CLI::App *pstFault = Add("fault", "Make a process fail when it is asked an RPC", SetFault);
        AddOneProcess(pstFault);
        pstFault
            ->add_option_function<std::string>(
                "RPC",
                [this](const std::string &acText) { m_stOptions.uiRpcId = ReadNumber(acText); },
                "Its id, as 0x... or in decimal; any for all that have no fault of their own")
            ->check(RpcOrAny())
            ->required()
            ->type_name("");
        AddFaultKinds(pstFault);
        AddNumber(pstFault, "--times", 1, UINT32_MAX, "N", "How many requests it hits (all)",
                  [this](uint32_t uiNumber) { m_stOptions.stFault.uiTimes = uiNumber; });
        pstFault->footer(
            "A fault replaces an earlier one for the same RPC. It lasts until it has hit its "
            "requests,\nuntil clear, or until the process ends. --delay goes with every kind and "
            "alone.");
        AddProcesses(Add("faults", "List the faults that are set", ListFaults), "Of which (all)");
        AddProcesses(Add("clear", "Remove faults", ClearFaults), "Of which processes (all)");
    }

    void AddFaultKinds(CLI::App *pstFault) {
        const auto stKind = [this](FaultKind eKind) {
            return [this, eKind](uint32_t uiNumber) { SetKind(eKind, uiNumber); };
        };
        CLI::Option_group *pstKinds = pstFault->add_option_group("kind", "What it does");
        AddNumber(pstKinds, "--code", 1, UINT32_MAX, "CODE", "Answer with this status",
                  stKind(FaultKind::kCode));
        pstKinds->add_flag_callback(
            "--drop", [this] { SetKind(FaultKind::kDrop); }, "Do not answer at all");
        AddNumber(pstKinds, "--truncate", 0, VT_HOST_MAX_PAYLOAD, "BYTES",
                  "Send only this much of the right reply", stKind(FaultKind::kTruncate));
        pstKinds->add_flag_callback(
            "--garbage", [this] { SetKind(FaultKind::kGarbage); },
            "Answer with random bytes, as many as the caller takes");
        AddNumber(pstKinds, "--fill", 0, 255, "BYTE", "The same, but all of them this byte",
                  stKind(FaultKind::kFill));
        pstKinds->require_option(0, 1);
        CLI::Option *pstDelay =
            AddNumber(pstFault, "--delay", 1, kMaxFaultDelayMs, "MS", "Wait this long first",
                      [this](uint32_t uiNumber) { m_stOptions.stFault.uiDelayMs = uiNumber; });
        pstFault->callback([pstDelay, this] {
            if (m_stOptions.stFault.eKind == FaultKind::kNone && pstDelay->count() == 0) {
                throw CLI::ValidationError(
                    "fault",
                    "say what it does: --code, --drop, --truncate, --garbage, --fill or "
                    "--delay");
            }
            m_pfnVerb = SetFault;
        });
    }

    CLI::App m_stApp{
        "Starts, watches, changes and disturbs the simulated gateway: seven processes on this\n"
        "machine that answer the requests of the device services. It is a simulator.",
        "gatewayctl"};
    Options m_stOptions;
    Verb m_pfnVerb = nullptr;
};

}  // namespace

int main(int iArgc, char **ppcArgv) {
    try {
        const int iExit = CommandLine().Run(iArgc, ppcArgv);
        if (fflush(stdout) != 0) {
            fprintf(stderr, "gatewayctl: cannot write the output\n");
            return kExitFailed;
        }
        return iExit;
    } catch (const std::exception &stError) {
        fprintf(stderr, "gatewayctl: %s\n", stError.what());
        return kExitFailed;
    }
}
