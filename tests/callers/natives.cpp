#include "callers/natives.h"

#include <wap_natives.h>

#include <map>
#include <ostream>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "support/furnish_macfilter.h"

namespace wap::test {

namespace {

/// The value that makes a parameter. A native with a parameter of another type needs a value here.
template <class Parameter>
struct ValueOf;
template <>
struct ValueOf<jint> {
    using Type = jint;
};
template <>
struct ValueOf<jboolean> {
    using Type = jboolean;
};
template <>
struct ValueOf<jstring> {
    using Type = JavaString;
};
template <>
struct ValueOf<jobjectArray> {
    using Type = JavaStrings;
};
template <>
struct ValueOf<jbyteArray> {
    using Type = JavaByteArray;
};

template <class Parameter>
Parameter Pass(FakeJni &stEnv, const Argument &stArgument) {
    const auto &xValue = std::get<typename ValueOf<Parameter>::Type>(stArgument);
    if constexpr (std::is_same_v<Parameter, jstring>) {
        return xValue ? stEnv.JavaText(*xValue) : nullptr;
    } else if constexpr (std::is_same_v<Parameter, jobjectArray>) {
        return xValue ? stEnv.JavaTexts(*xValue) : nullptr;
    } else if constexpr (std::is_same_v<Parameter, jbyteArray>) {
        return xValue ? stEnv.JavaBytes(*xValue) : nullptr;
    } else {
        return xValue;
    }
}

template <class Result, class... Parameters, size_t... kIndexes>
Answer CallWith(Result (*pfnMethod)(JNIEnv *, jobject, Parameters...), FakeJni &stEnv,
                const Arguments &astArguments, std::index_sequence<kIndexes...>) {
    static_assert(std::is_same_v<Result, jint> || std::is_same_v<Result, jstring>);
    if (astArguments.size() != sizeof...(Parameters)) {
        throw std::invalid_argument("a native is called with too few or too many arguments");
    }
    const Result xResult =
        pfnMethod(&stEnv, stEnv.JavaObject(), Pass<Parameters>(stEnv, astArguments[kIndexes])...);
    if constexpr (std::is_same_v<Result, jint>) {
        return NumberAnswerOf(xResult);
    } else {
        return Answer{stEnv.Utf8Of(xResult), std::nullopt};
    }
}

template <class Result, class... Parameters>
Native NativeFrom(const char *pcSymbol, Result (*pfnMethod)(JNIEnv *, jobject, Parameters...)) {
    return {pcSymbol,
            {Argument(typename ValueOf<Parameters>::Type{}).index()...},
            [pfnMethod](FakeJni &stEnv, const Arguments &astArguments) {
                return CallWith(pfnMethod, stEnv, astArguments,
                                std::index_sequence_for<Parameters...>{});
            }};
}

std::vector<Native> MakeNatives() {
#define WAP_NATIVE_ROW(symbol) NativeFrom(#symbol, symbol),
    std::vector<Native> astNatives = {WAP_EVERY_NATIVE(WAP_NATIVE_ROW)};
#undef WAP_NATIVE_ROW
    std::map<std::string, FurnishedEntry> mapEntries;
    for (FurnishedEntry &stEntry : AllEntries()) {
        const std::string sSymbol = stEntry.stEntry.sSymbol;
        mapEntries[sSymbol] = std::move(stEntry);
    }
    for (Native &stNative : astNatives) {
        stNative.stFurnished = mapEntries[stNative.sSymbol];
        stNative.astGood = GoodArgumentsOf(stNative.Method());
    }
    return astNatives;
}

struct State {
    const char *pcMethod;
    const char *pcState;
    void (*pfnAlso)(World &);
};
/// In each of them the methods do their work.
constexpr State kStates[] = {
    {"addLANHostToBlackList", kWithWlan, AddWirelessNetworks},
    {"deleteLANHostFromBlackList", kWithWlan, AddWirelessNetworks},
    {"addLANHostToTrustList", kTrustList, MakeTrustList},
    {"deleteLANHostFromTrustList", kTrustList, MakeTrustList},
};

std::vector<Native> MakeNativesInAllStates() {
    std::vector<Native> astNatives = Natives();
    for (const State &stState : kStates) {
        Native stNative = NativeOf(stState.pcMethod);
        stNative.sState = stState.pcState;
        stNative.pfnAlso = stState.pfnAlso;
        stNative.stFurnished.stEntry.stGood = NumberAnswerOf(0);
        astNatives.push_back(std::move(stNative));
    }
    return astNatives;
}

std::string DescribeText(const JavaString &sText) {
    if (!sText) {
        return "null";
    }
    const std::string sUtf8 = ToUtf8(sText->substr(0, 40));
    return "\"" + sUtf8.substr(0, sUtf8.find('\0')) + "\" of " + std::to_string(sText->size());
}

}  // namespace

std::string Describe(const Argument &stArgument) {
    if (const auto *piNumber = std::get_if<jint>(&stArgument)) {
        return std::to_string(*piNumber);
    }
    if (const auto *pbFlag = std::get_if<jboolean>(&stArgument)) {
        return "flag " + std::to_string(*pbFlag);
    }
    if (const auto *psText = std::get_if<JavaString>(&stArgument)) {
        return DescribeText(*psText);
    }
    if (const auto *psBytes = std::get_if<JavaByteArray>(&stArgument)) {
        return *psBytes ? std::to_string((*psBytes)->size()) + " bytes" : "null";
    }
    const auto &asTexts = std::get<JavaStrings>(stArgument);
    if (!asTexts) {
        return "null";
    }
    std::string sTexts = std::to_string(asTexts->size()) + " texts";
    return asTexts->empty() ? sTexts : sTexts + " like " + DescribeText(asTexts->front());
}

std::string Describe(const Arguments &astArguments) {
    std::string sAll;
    for (const Argument &stArgument : astArguments) {
        sAll += (sAll.empty() ? "" : ", ") + Describe(stArgument);
    }
    return "(" + sAll + ")";
}

void PrintTo(const Native &stNative, std::ostream *pstOut) {
    *pstOut << stNative.Name();
}

const std::vector<Native> &Natives() {
    static const std::vector<Native> s_astNatives = MakeNatives();
    return s_astNatives;
}

const std::vector<Native> &NativesInAllStates() {
    static const std::vector<Native> s_astNatives = MakeNativesInAllStates();
    return s_astNatives;
}

const Native &NativeOf(const std::string &sMethod, const std::string &sState) {
    for (const Native &stNative : sState.empty() ? Natives() : NativesInAllStates()) {
        if (stNative.Method() == sMethod && stNative.sState == sState) {
            return stNative;
        }
    }
    throw std::invalid_argument("no native " + sMethod + " " + sState);
}

void Native::Furnish(World &stWorld) const {
    stFurnished.pfnFurnish(stWorld);
    if (pfnAlso != nullptr) {
        pfnAlso(stWorld);
    }
}

}  // namespace wap::test
