#include "faults/failing_answers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace wap::test {

namespace {

/// Answers as TextOf tells them, by the names of methods.
using AnswersByMethod = std::map<std::string, std::set<std::string>>;

/// Each line has a method, a blank and an answer; those about the file begin with '#'.
AnswersByMethod ReadList() {
    AnswersByMethod mapListed;
    std::ifstream stList(WAP_FAILING_ANSWERS);
    for (std::string sLine; std::getline(stList, sLine);) {
        const size_t uiBlank = sLine.find(' ');
        if (!sLine.starts_with('#') && uiBlank != std::string::npos) {
            mapListed[sLine.substr(0, uiBlank)].insert(sLine.substr(uiBlank + 1));
        }
    }
    return mapListed;
}

const AnswersByMethod &Listed() {
    static const AnswersByMethod s_mapListed = ReadList();
    return s_mapListed;
}

AnswersByMethod &Seen() {
    static AnswersByMethod s_mapSeen;
    return s_mapSeen;
}

/// How many cases of each method have been gone through.
std::map<std::string, size_t> &Swept() {
    static std::map<std::string, size_t> s_mapSwept;
    return s_mapSwept;
}

/// Whether a text is a JSON object whose result is not 0.
bool HasBadResult(std::string sText) {
    std::erase(sText, ' ');
    constexpr std::string_view kKey = "{\"Result\":";
    return sText.starts_with(kKey) && !sText.substr(kKey.size()).starts_with('0');
}

/// What is given in the place of the good answer may also be one with less in it.
bool IsFailing(const SweepCase &stCase, const Answer &stAnswer) {
    if (stAnswer == stCase.stGood) {
        return false;
    }
    if (stAnswer == stCase.stFailure || (!stAnswer.sText && !stAnswer.iNumber)) {
        return true;
    }
    return stAnswer.iNumber ? *stAnswer.iNumber < 0 : HasBadResult(*stAnswer.sText);
}

}  // namespace

void ExpectListed(const SweepCase &stCase, const Answer &stAnswer) {
    if (!IsFailing(stCase, stAnswer)) {
        return;
    }
    const std::string sAnswer = TextOf(stAnswer);
    if (!Seen()[stCase.sMethod].insert(sAnswer).second) {
        return;
    }
    const auto it = Listed().find(stCase.sMethod);
    EXPECT_TRUE(it != Listed().end() && it->second.contains(sAnswer))
        << "to be added to " << WAP_FAILING_ANSWERS << ", and told by the Javadoc:\n"
        << stCase.sMethod << " " << sAnswer;
}

void NoteSwept(const SweepCase &stCase) {
    ++Swept()[stCase.sMethod];
}

void ExpectAllSeen() {
    std::map<std::string, size_t> mapCases;
    for (const SweepCase &stCase : AllCases()) {
        ++mapCases[stCase.sMethod];
    }
    for (const auto &[sMethod, asAnswers] : Listed()) {
        EXPECT_NE(mapCases[sMethod], 0u) << WAP_FAILING_ANSWERS << " names no method: " << sMethod;
        if (Swept()[sMethod] == mapCases[sMethod]) {
            EXPECT_EQ(Seen()[sMethod], asAnswers) << WAP_FAILING_ANSWERS << " has other answers of "
                                                  << sMethod << " than faults lead to";
        }
    }
}

}  // namespace wap::test
