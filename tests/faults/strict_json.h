// A second opinion about JSON: a strict parser that is not the bridge's.
#ifndef WAP_TESTS_FAULTS_STRICT_JSON_H
#define WAP_TESTS_FAULTS_STRICT_JSON_H

#include <string>

namespace wap::test {

/// What is wrong with an answer of the services: it has to be one JSON object and nothing else,
/// with a number under "Result", an array under "List" if there is one, no name twice in an object,
/// and all of it UTF-8. Empty when it is in order.
std::string JsonFault(const std::string &sText);

}  // namespace wap::test

#endif
