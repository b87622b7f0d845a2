// How the rows of an entry table are written: WAP_ENTRY gives the symbol, the method's name and the
// call, with arguments that are made when it happens.
#ifndef WAP_TESTS_SUPPORT_ENTRY_CALLS_H
#define WAP_TESTS_SUPPORT_ENTRY_CALLS_H

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// A call of an entry, whatever it gives back.
template <class Result, class... Args, class... Makers>
std::function<Answer(FakeJni &)> Calling(Result (*pfnMethod)(JNIEnv *, jobject, Args...),
                                         Makers... fnMakers) {
    return [=](FakeJni &stEnv) {
        const Result xResult = pfnMethod(&stEnv, stEnv.JavaObject(), fnMakers(stEnv)...);
        if constexpr (std::is_same_v<Result, jint>) {
            return NumberAnswerOf(xResult);
        } else {
            return Answer{stEnv.Utf8Of(xResult), std::nullopt};
        }
    };
}

/// Arguments.
inline auto Text(const char16_t *pcText) {
    return [=](FakeJni &stEnv) { return stEnv.JavaText(pcText); };
}
inline auto Texts(std::vector<std::optional<std::u16string>> asTexts) {
    return [asTexts = std::move(asTexts)](FakeJni &stEnv) { return stEnv.JavaTexts(asTexts); };
}
/// So many of a letter.
inline auto Letters(size_t uiCount, char16_t cLetter) {
    return [=](FakeJni &stEnv) { return stEnv.JavaText(std::u16string(uiCount, cLetter)); };
}
inline auto NoText() {
    return [](FakeJni &) -> jstring { return nullptr; };
}
inline auto NoTexts() {
    return [](FakeJni &) -> jobjectArray { return nullptr; };
}
inline auto NoBytes() {
    return [](FakeJni &) -> jbyteArray { return nullptr; };
}
inline auto Bytes(const char *pcBytes) {
    return [=](FakeJni &stEnv) { return stEnv.JavaBytes(pcBytes); };
}
inline auto Number(jint iNumber) {
    return [=](FakeJni &) { return iNumber; };
}
inline auto Flag(bool bFlag) {
    return [=](FakeJni &) -> jboolean { return bFlag ? JNI_TRUE : JNI_FALSE; };
}

}  // namespace wap::test

/// The function of a method of a service class; the class's name without "ServiceJNI". Most classes
/// are in the package gulm.jni.
#define WAP_METHOD_OF(package, service, method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_##package##_jni_##service##ServiceJNI_##method
#define WAP_METHOD(service, method) WAP_METHOD_OF(gulm, service, method)
#define WAP_NAME_OF(name) #name
#define WAP_SYMBOL_OF(function) WAP_NAME_OF(function)
#define WAP_ENTRY_OF(package, service, method, ...)                  \
    WAP_SYMBOL_OF(WAP_METHOD_OF(package, service, method)), #method, \
        ::wap::test::Calling(WAP_METHOD_OF(package, service, method) __VA_OPT__(, ) __VA_ARGS__)
#define WAP_ENTRY(service, method, ...) \
    WAP_ENTRY_OF(gulm, service, method __VA_OPT__(, ) __VA_ARGS__)

#endif
