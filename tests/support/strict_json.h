// A second opinion about JSON: a strict parser that is not the bridge's.
#ifndef WAP_TESTS_SUPPORT_STRICT_JSON_H
#define WAP_TESTS_SUPPORT_STRICT_JSON_H

#include <string>
#include <vector>

namespace wap::test {

/// Whose the values are that stand in the elements of an answer's list.
enum class Elements {
    kOwn,
    /// Somebody else's, handed over as they are: JSON by its grammar, but a name may stand twice in
    /// an object of theirs, an escape be half a surrogate pair, and a number in a list or an object
    /// of theirs be larger than any type of ours.
    kHandedOver,
};

/// What is wrong with an answer of the services: it has to be one JSON object and nothing else,
/// with a number under "Result", an array under "List" if there is one, no name twice in an object,
/// and all of it UTF-8. Empty when it is in order.
std::string JsonFault(const std::string &sText, Elements eElements = Elements::kOwn);

/// The values of a JSON text, each behind the way to it. None when it is no strict JSON.
std::vector<std::string> JsonValues(const std::string &sText);

}  // namespace wap::test

#endif
