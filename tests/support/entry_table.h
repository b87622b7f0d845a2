// The Java entries as a table: how to call each, and its good and its failing answer.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_H

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "support/fake_jni.h"

namespace wap::test {

/// What an entry gave back: a text (or null), or a number.
struct Answer {
    std::optional<std::string> sText;
    std::optional<int32_t> iNumber;
    bool operator==(const Answer &) const = default;
};
std::ostream &operator<<(std::ostream &stOut, const Answer &stAnswer);
/// The answer as that prints it.
std::string TextOf(const Answer &stAnswer);

Answer TextAnswerOf(std::string sText);
Answer NumberAnswerOf(int32_t iNumber);
/// A null Java text.
Answer NullAnswer();

struct Entry {
    std::string sSymbol;
    std::string sMethod;
    std::function<Answer(FakeJni &)> fnCall;
    Answer stGood;     ///< with the replies of its group
    Answer stFailure;  ///< when what it asks fails
    uint32_t uiRpcId;  ///< 0 for none
    bool bSecret;
};

/// The entries of the start and of the device services. Those that give secrets give the ones named
/// below.
const std::vector<Entry> &BasicEntries();
/// The entry of a table with this method's name.
Entry EntryOf(const std::vector<Entry> &astEntries, const std::string &sMethod);
/// One of the basic ones.
Entry EntryOf(const std::string &sMethod);

inline constexpr const char *kDevicePassword = "device-pass-0123456789";
inline constexpr const char *kSsidPassword = "ssid-pass-ABCDEFGHIJKL";
inline constexpr const char *kWebPassword = "web-pass-abcdefghijklmnopq";

}  // namespace wap::test

#endif
