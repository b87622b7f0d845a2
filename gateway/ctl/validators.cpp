#include "ctl/validators.h"

#include "framework/numbers.h"
#include "framework/process_list.h"

namespace wap::gateway {

CLI::Validator Number(uint32_t uiMin, uint32_t uiMax) {
    return CLI::Validator(
        [=](const std::string &acText) {
            const std::optional<uint32_t> uiNumber = ReadNumber(acText);
            return uiNumber && *uiNumber >= uiMin && *uiNumber <= uiMax
                       ? std::string()
                       : "\"" + acText + "\" is no number from " + std::to_string(uiMin) + " to " +
                             std::to_string(uiMax) + " (decimal, or hexadecimal as 0x...)";
        },
        "");
}

CLI::Validator KnownProcess() {
    return CLI::Validator(
        [](const std::string &acText) {
            return FindProcess(acText) != nullptr ? std::string()
                                                  : "the gateway has no process \"" + acText +
                                                        "\"; it has " + ProcessNamesText();
        },
        "");
}

CLI::Validator RpcOrAny() {
    return CLI::Validator(
        [](const std::string &acText) {
            return acText == "any" || ReadNumber(acText)
                       ? std::string()
                       : "\"" + acText + "\" is no RPC id: give it as 0x..., in decimal, or any";
        },
        "");
}

std::string ProcessNamesText() {
    std::string acNames;
    for (const ProcessInfo &stInfo : kProcesses) {
        acNames += (acNames.empty() ? "" : ", ") + std::string(stInfo.pcName);
    }
    return acNames;
}

CLI::Option *AddNumber(CLI::App *pstVerb, const char *pcName, uint32_t uiMin, uint32_t uiMax,
                       const char *pcType, const char *pcHelp,
                       const std::function<void(uint32_t)> &fnTake) {
    return pstVerb
        ->add_option_function<std::string>(
            pcName, [fnTake](const std::string &acText) { fnTake(ReadNumber(acText).value_or(0)); },
            pcHelp)
        ->check(Number(uiMin, uiMax))
        ->type_name(pcType);
}

}  // namespace wap::gateway
