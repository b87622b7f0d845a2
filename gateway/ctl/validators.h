// Checks of words on the command line, for CLI11: "" when a word is right, else what is wrong.
#ifndef WAP_GATEWAY_CTL_VALIDATORS_H
#define WAP_GATEWAY_CTL_VALIDATORS_H

#include <stdint.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace wap::gateway {

/// A number in bounds.
CLI::Validator Number(uint32_t uiMin, uint32_t uiMax);

/// The name of a process of the gateway.
CLI::Validator KnownProcess();

/// An RPC's id, or "any".
CLI::Validator RpcOrAny();

/// The names of the processes: "gulm, app_m".
std::string ProcessNamesText();

/// Adds an option that takes a number in bounds.
/// @param fnTake gets the number
CLI::Option *AddNumber(CLI::App *pstVerb, const char *pcName, uint32_t uiMin, uint32_t uiMax,
                       const char *pcType, const char *pcHelp,
                       const std::function<void(uint32_t)> &fnTake);

}  // namespace wap::gateway

#endif
