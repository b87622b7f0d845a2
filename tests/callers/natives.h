// The native methods as a table that the compiler makes: every function that the service classes
// declare, with the kinds of its parameters, to be called with any values.
#ifndef WAP_TESTS_CALLERS_NATIVES_H
#define WAP_TESTS_CALLERS_NATIVES_H

#include <jni.h>

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "support/entry_groups.h"
#include "support/entry_table.h"
#include "support/fake_jni.h"

namespace wap::test {

// States of the gateway.
inline constexpr const char *kWithWlan = "with_wlan";
inline constexpr const char *kTrustList = "on_a_trust_list";

/// What Java can pass: null is a value without contents.
using JavaString = std::optional<std::u16string>;
using JavaStrings = std::optional<std::vector<JavaString>>;
using JavaByteArray = std::optional<std::string>;
using Argument = std::variant<jint, jboolean, JavaString, JavaStrings, JavaByteArray>;
using Arguments = std::vector<Argument>;

inline Argument TextArgument(std::u16string sText) {
    return JavaString(std::move(sText));
}

/// A short description, for messages.
std::string Describe(const Argument &stArgument);
std::string Describe(const Arguments &astArguments);

/// A native method, and what the tables of the entries know about it.
struct Native {
    std::string sSymbol;
    std::vector<size_t> auiKinds;  ///< of the parameters: indexes in Argument
    std::function<Answer(FakeJni &, const Arguments &)> fnCall;
    FurnishedEntry stFurnished{};
    Arguments astGood{};   ///< what the entry's good answer is given for
    std::string sState{};  ///< of the gateway; empty for the one that the furnishing makes
    void (*pfnAlso)(World &stWorld) = nullptr;  ///< makes that state of it

    const std::string &Method() const { return stFurnished.stEntry.sMethod; }
    /// With the state, if it has one.
    std::string Name() const { return sState.empty() ? Method() : Method() + "_" + sState; }
    void Furnish(World &stWorld) const;
};

void PrintTo(const Native &stNative, std::ostream *pstOut);

/// All of them, in the order of the generated list. One that the entry table lacks has an empty
/// method name; one that good_arguments.cpp lacks has no good arguments.
const std::vector<Native> &Natives();
/// The same, and once more those that leave their work undone, or a part of it, on the gateway that
/// their furnishing makes: on one in the state that takes all of it.
const std::vector<Native> &NativesInAllStates();
/// The one with this method's name, on the gateway in this state.
const Native &NativeOf(const std::string &sMethod, const std::string &sState = "");

/// Good arguments by method; good_arguments.cpp has them.
Arguments GoodArgumentsOf(const std::string &sMethod);

}  // namespace wap::test

#endif
