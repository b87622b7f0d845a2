// The grammar of monitor and replay.
#include "ctl/monitor_commands.h"
#include "ctl/validators.h"
#include "framework/error.h"

namespace wap::gateway {

namespace {

constexpr uint32_t kMaxSeconds = 86400;

/// Adds an option that can be given more than once, with a word each time.
void AddWords(CLI::App *pstVerb, const char *pcName, const char *pcType, const char *pcHelp,
              const std::function<void(const std::string &)> &fnTake) {
    pstVerb
        ->add_option_function<std::vector<std::string>>(
            pcName,
            [=](const std::vector<std::string> &asWords) {
                for (const std::string &acWord : asWords) {
                    try {
                        fnTake(acWord);
                    } catch (const GatewayError &stError) {
                        throw CLI::ValidationError(pcName, stError.what());
                    }
                }
            },
            pcHelp)
        ->allow_extra_args(false)
        ->type_name(pcType);
}

void AddProcessAndRpc(CLI::App *pstVerb, EventFilter &stFilter) {
    AddWords(pstVerb, "--process", "NAME",
             "Only what this process sends or receives; who sends may have any name",
             [&stFilter](const std::string &acWord) { stFilter.AddProcess(acWord); });
    AddWords(pstVerb, "--rpc", "ID|NAME",
             "Only this RPC or message, by its id or its name; 'Get*' are all whose name begins so",
             [&stFilter](const std::string &acWord) { stFilter.AddRpc(acWord); });
}

void AddMonitorVerb(CLI::App *pstVerb, MonitorOptions &stOptions) {
    AddProcessAndRpc(pstVerb, stOptions.stFilter);
    AddWords(pstVerb, "--code", "N|failed", "Only what is answered with this code, or fails",
             [&stOptions](const std::string &acWord) { stOptions.stFilter.AddCode(acWord); });
    AddNumber(pstVerb, "--count", 1, UINT32_MAX, "N", "End when so many were shown",
              [&stOptions](uint32_t uiNumber) { stOptions.uiCount = uiNumber; });
    AddNumber(pstVerb, "--seconds", 1, kMaxSeconds, "N", "End after so many seconds",
              [&stOptions](uint32_t uiNumber) { stOptions.uiSeconds = uiNumber; });
    CLI::Option *pstBrief =
        pstVerb->add_flag("--brief", stOptions.bBrief, "A line each, without the contents");
    pstVerb->add_flag("--json", stOptions.bJson, "A JSON object each, on a line of its own")
        ->excludes(pstBrief);
    CLI::Option *pstCapture =
        pstVerb
            ->add_option("--capture", stOptions.acCapture,
                         "Write them into this file, too, which Wireshark opens and replay sends "
                         "again")
            ->type_name("FILE.pcapng");
    pstVerb
        ->add_flag("--with-secrets", stOptions.bSecrets,
                   "Leave passwords and the like in the file as they are; without it \"(secret)\" "
                   "is written over "
                   "them, which a replay sends, and the bytes of unknown RPCs are left out")
        ->needs(pstCapture);
    pstVerb->add_flag("--quiet", stOptions.bQuiet, "Print nothing, only write the file")
        ->needs(pstCapture);
    pstVerb->footer(
        "Ends with Ctrl-C, or when nobody reads its output any more. The gateway never waits for\n"
        "it: what it does not take in time is lost, and it says how much that was. Processes that\n"
        "start later are watched from their first call on. The time is the receiver's: from the\n"
        "request's arrival until the answer is ready. --process, --rpc and --code can be given\n"
        "more than once; one of each must be right. Secrets are never shown.");
}

void AddReplayVerb(CLI::App *pstVerb, ReplayOptions &stOptions) {
    pstVerb->add_option("FILE", stOptions.acFile, "What monitor --capture wrote")
        ->required()
        ->type_name("");
    AddProcessAndRpc(pstVerb, stOptions.stFilter);
    CLI::Option *pstSpeed =
        pstVerb
            ->add_option("--speed", stOptions.dSpeed,
                         "How much faster than it was; 0.5 takes twice as long (1)")
            ->check(CLI::Range(0.001, 1000.0))
            ->type_name("X");
    pstVerb
        ->add_flag_callback(
            "--fast", [&stOptions] { stOptions.dSpeed = 0; }, "Without pauses")
        ->excludes(pstSpeed);
    pstVerb->add_flag("--dry-run", stOptions.bDryRun, "Only say what would be sent");
    pstVerb->footer(
        "Calls are sent one after the other, each as its caller sent it. What the gateway's\n"
        "processes asked each other is left out: they ask again. Of a call whose secrets are\n"
        "written over in the file, \"(secret)\" is sent in their place. Exit code 1: an answer\n"
        "has another code than it had, or something could not be sent; 2: the file can't be "
        "used.");
}

}  // namespace

void AddMonitorVerbs(CLI::App &stApp, Options &stOptions,
                     const std::function<void(Verb)> &fnChoose) {
    CLI::App *pstMonitor = stApp.add_subcommand(
        "monitor", "Show what is called and what comes of it, while it happens");
    AddMonitorVerb(pstMonitor, stOptions.stMonitor);
    pstMonitor->callback([fnChoose] { fnChoose(Monitor); });
    CLI::App *pstReplay =
        stApp.add_subcommand("replay", "Send what was captured again, and compare the codes");
    AddReplayVerb(pstReplay, stOptions.stReplay);
    pstReplay->callback([fnChoose] { fnChoose(Replay); });
}

}  // namespace wap::gateway
