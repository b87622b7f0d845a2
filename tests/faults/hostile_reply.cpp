#include "faults/hostile_reply.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr size_t kDescSize = 12;

/// The longest block that the bridge takes.
constexpr uint32_t kLargestBlock = 0x01000000;
/// Counts and lengths that are at some limit of the records, or at one of their type.
constexpr uint32_t kEdges[] = {
    0,    1,          8,          9,          16,         17,         32,         33,        64,
    65,   128,        129,        192,        193,        256,        257,        2047,      2048,
    2049, 0x00FFFFFF, 0x01000000, 0x01000001, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};
/// Those of the type alone.
constexpr uint32_t kExtremes[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
/// Words that are counts or lengths come first in all records.
constexpr size_t kFirstWords = 4;
/// Words that are tried with every extreme value, and texts that are spoiled in every way, before
/// all of them are wanted.
constexpr size_t kNearWords = 16;
constexpr size_t kNearTexts = 4;
/// Lengths that are tried one by one, and the step between those beyond.
constexpr size_t kLengthStep = 29;
constexpr size_t kNearLengths = 1100;

/// What may stand where a text is expected.
const std::vector<std::string_view> &BadTexts() {
    using namespace std::string_view_literals;
    static const std::vector<std::string_view> s_asTexts = {"\""sv,
                                                            "\\"sv,
                                                            "\"}"sv,
                                                            "\\u"sv,
                                                            "\\\""sv,
                                                            "\x01\x1F\x7F"sv,
                                                            "\n\r\t\b\f"sv,
                                                            "\xC3\x28"sv,
                                                            "\xFF\xFE"sv,
                                                            "\xED\xA0\x80"sv,
                                                            "\xF4\x90\x80\x80"sv,
                                                            "\xC0\x80"sv,
                                                            "%s%n%d"sv,
                                                            "[{,:;]}"sv,
                                                            "\xE2\x82"sv,
                                                            "\xF0\x9F\x98\x80"sv};
    return s_asTexts;
}

bool IsPrintable(char cByte) {
    return cByte >= ' ' && cByte <= '~';
}

/// Where texts of two letters or more lie: their beginnings and lengths.
std::vector<std::pair<size_t, size_t>> TextsIn(const std::string &sBytes) {
    std::vector<std::pair<size_t, size_t>> astTexts;
    for (size_t uiAt = 0; uiAt < sBytes.size();) {
        size_t uiEnd = uiAt;
        while (uiEnd < sBytes.size() && IsPrintable(sBytes[uiEnd])) {
            ++uiEnd;
        }
        if (uiEnd - uiAt >= 2) {
            astTexts.emplace_back(uiAt, uiEnd - uiAt);
        }
        uiAt = uiEnd + 1;
    }
    return astTexts;
}

/// Writes over what is there, and no further.
void Overwrite(std::string &sBytes, size_t uiAt, std::string_view sWith) {
    for (size_t i = 0; i < sWith.size() && uiAt + i < sBytes.size(); ++i) {
        sBytes[uiAt + i] = sWith[i];
    }
}

void OverwriteWith(std::string &sBytes, size_t uiAt, size_t uiLength, std::string_view sPart) {
    for (size_t i = 0; i < uiLength; ++i) {
        Overwrite(sBytes, uiAt + i, sPart.substr(i % sPart.size(), 1));
    }
}

/// The bytes that a spoiling is about: the block's where there is one, as the reply is then little
/// more than its descriptor.
std::string &BodyOf(HostileReply &stReply) {
    return stReply.uiDescAt ? stReply.sBlock : stReply.sBytes;
}

void AddFills(std::vector<Spoiling> &astAll) {
    for (const auto &stFill : {std::pair('\xFF', "ones"), std::pair('\0', "zeros"),
                               std::pair('x', "a text without an end")}) {
        // Not a structured binding: clang before 16 has none captured.
        const char cByte = stFill.first;
        const char *pcName = stFill.second;
        astAll.push_back({std::string("all ") + pcName, [=](HostileReply &stReply) {
                              stReply.sBytes.assign(stReply.uiRoom, cByte);
                          }});
        astAll.push_back({std::string("a body of ") + pcName, [=](HostileReply &stReply) {
                              std::string &sBody = BodyOf(stReply);
                              sBody.assign(sBody.size(), cByte);
                          }});
        astAll.push_back(
            {std::string("more than asked for, ") + pcName,
             [=](HostileReply &stReply) { stReply.sBytes.assign(stReply.uiRoom + 64, cByte); }});
    }
}

/// In the reply or in the block.
void AddWord(std::vector<Spoiling> &astAll, size_t uiWord, uint32_t uiValue, bool bBlock) {
    astAll.push_back({(bBlock ? "word of the block " : "word ") + std::to_string(uiWord) + " is " +
                          std::to_string(uiValue),
                      [=](HostileReply &stReply) {
                          Overwrite(bBlock ? stReply.sBlock : stReply.sBytes, 4 * uiWord,
                                    Word(uiValue));
                      }});
}

void AddWords(std::vector<Spoiling> &astAll, const std::string &sBytes, bool bBlock, Depth eDepth) {
    const size_t uiWords = sBytes.size() / 4;
    for (size_t i = 0; i < std::min(uiWords, eDepth == Depth::kBrief ? 1 : kFirstWords); ++i) {
        for (const uint32_t uiValue : kEdges) {
            AddWord(astAll, i, uiValue, bBlock);
        }
    }
    for (size_t i = kFirstWords; i < uiWords && eDepth != Depth::kBrief; ++i) {
        // Far behind, a word of zeros belongs to a field that is empty or to nobody.
        const bool bFar = i >= kNearWords && eDepth != Depth::kAll;
        if (bFar) {
            AddWord(astAll, i, UINT32_MAX, bBlock);
            continue;
        }
        for (const uint32_t uiValue : kExtremes) {
            AddWord(astAll, i, uiValue, bBlock);
        }
    }
}

void AddTexts(std::vector<Spoiling> &astAll, const std::string &sBody, Depth eDepth) {
    auto astTexts = TextsIn(sBody);
    if (eDepth == Depth::kUsual) {
        astTexts.resize(std::min(astTexts.size(), kNearTexts));
    }
    for (const auto &[uiAt, uiLength] : astTexts) {
        const std::string sWhere = "text at " + std::to_string(uiAt);
        for (const std::string_view sBad : BadTexts()) {
            for (const size_t uiFrom : {size_t{0}, uiLength / 2, uiLength - 1}) {
                astAll.push_back({sWhere + " spoiled", [=, uiAt = uiAt](HostileReply &stReply) {
                                      Overwrite(BodyOf(stReply), uiAt + uiFrom, sBad);
                                  }});
            }
            astAll.push_back({sWhere + " full of it",
                              [=, uiAt = uiAt, uiLength = uiLength](HostileReply &stReply) {
                                  OverwriteWith(BodyOf(stReply), uiAt, uiLength, sBad);
                              }});
        }
        astAll.push_back({sWhere + " does not end", [uiAt = uiAt](HostileReply &stReply) {
                              std::string &sText = BodyOf(stReply);
                              OverwriteWith(sText, uiAt, sText.size() - uiAt, "t");
                          }});
    }
}

/// Blocks that are not as long as they are said to be.
void AddBlockLengths(std::vector<Spoiling> &astAll, const HostileReply &stReply) {
    const size_t uiDesc = *stReply.uiDescAt;
    for (const uint32_t uiOriginal : kEdges) {
        for (const uint32_t uiCompressed : kExtremes) {
            astAll.push_back(
                {"lengths " + std::to_string(uiOriginal) + " and " + std::to_string(uiCompressed),
                 [=](HostileReply &stSpoiled) {
                     Overwrite(stSpoiled.sBytes, uiDesc + 4, Word(uiOriginal) + Word(uiCompressed));
                 }});
        }
    }
    for (const uint32_t uiLength : kEdges) {
        astAll.push_back(
            {"a compressed length of " + std::to_string(uiLength), [=](HostileReply &stSpoiled) {
                 Overwrite(stSpoiled.sBytes, uiDesc + 8, Word(uiLength));
             }});
    }
    for (const char *pcText : {"", "0", "\"", "[]", "{", "null", "{\"Result\":0}x"}) {
        astAll.push_back({std::string("a block of ") + pcText, [=](HostileReply &stSpoiled) {
                              stSpoiled.sBlock = pcText + std::string(1, '\0');
                          }});
    }
    for (const size_t uiMore : {size_t{1}, size_t{64}, size_t{5000}}) {
        astAll.push_back({"a longer block", [=](HostileReply &stSpoiled) {
                              stSpoiled.sBlock += std::string(uiMore, 'm');
                          }});
    }
}

}  // namespace

HostileReply TakeApart(const Platform &stPlatform, const RpcRecord &stRpc,
                       const std::string &sBytes) {
    HostileReply stReply = {sBytes, stRpc.uiRspCap};
    if (stPlatform.mapBlocks.empty()) {
        return stReply;
    }
    for (size_t uiAt = 0; uiAt + kDescSize <= sBytes.size(); uiAt += 4) {
        const auto it = stPlatform.mapBlocks.find(WordAt(sBytes, uiAt));
        if (it != stPlatform.mapBlocks.end() && WordAt(sBytes, uiAt + 8) == it->second.size()) {
            stReply.uiDescAt = uiAt;
            stReply.uiBlockId = it->first;
            stReply.sBlock = WordAt(sBytes, uiAt + 4) > 2048 ? Unpacked(it->second) : it->second;
        }
    }
    return stReply;
}

void PutTogether(Platform &stPlatform, const HostileReply &stBefore, HostileReply stAfter,
                 std::string &sBytes) {
    if (stBefore.uiDescAt && stAfter.sBlock != stBefore.sBlock) {
        const bool bPacked = stAfter.bRawBlock
                                 ? WordAt(stBefore.sBytes, *stBefore.uiDescAt + 4) > 2048
                                 : stAfter.sBlock.size() > 2048;
        std::string sStored =
            bPacked && !stAfter.bRawBlock ? Packed(stAfter.sBlock) : stAfter.sBlock;
        const std::string sLengths = Word(static_cast<uint32_t>(stAfter.sBlock.size())) +
                                     Word(static_cast<uint32_t>(sStored.size()));
        stPlatform.mapBlocks[stBefore.uiBlockId] = std::move(sStored);
        const bool bUntouched = stAfter.sBytes == stBefore.sBytes;
        if (bUntouched && !stAfter.bRawBlock) {
            Overwrite(stAfter.sBytes, *stBefore.uiDescAt + 4, sLengths);
        }
    }
    sBytes = std::move(stAfter.sBytes);
}

std::vector<Spoiling> ListedSpoilings(const HostileReply &stReply, Depth eDepth) {
    std::vector<Spoiling> astAll;
    AddFills(astAll);
    AddWords(astAll, stReply.sBytes, false, eDepth);
    if (stReply.uiDescAt) {
        AddWords(astAll, stReply.sBlock, true, eDepth);
    }
    if (eDepth != Depth::kBrief) {
        AddTexts(astAll, stReply.uiDescAt ? stReply.sBlock : stReply.sBytes, eDepth);
    }
    if (eDepth != Depth::kBrief && stReply.uiDescAt) {
        AddBlockLengths(astAll, stReply);
    }
    return astAll;
}

std::vector<Spoiling> Cuts(const HostileReply &stReply, Depth eDepth) {
    const auto fnNext = [=](size_t uiLength) {
        return uiLength + (uiLength < kNearLengths || eDepth != Depth::kUsual ? 1 : kLengthStep);
    };
    std::vector<Spoiling> astAll;
    if (eDepth == Depth::kBrief) {
        return astAll;
    }
    for (size_t i = 0; i < stReply.sBytes.size(); i = fnNext(i)) {
        astAll.push_back({"cut to " + std::to_string(i),
                          [=](HostileReply &stSpoiled) { stSpoiled.sBytes.resize(i); }});
    }
    for (size_t i = 0; i < stReply.sBlock.size(); i = fnNext(i)) {
        astAll.push_back({"block cut to " + std::to_string(i),
                          [=](HostileReply &stSpoiled) { stSpoiled.sBlock.resize(i); }});
        astAll.push_back(
            {"block that holds " + std::to_string(i) + " bytes", [=](HostileReply &stSpoiled) {
                 stSpoiled.bRawBlock = true;
                 stSpoiled.sBlock.resize(i);
             }});
    }
    return astAll;
}

uint32_t HostileDice::Edge() {
    const size_t uiSide = Below(std::size(kEdges) + 2);
    const uint32_t uiEdge =
        uiSide < std::size(kEdges) ? kEdges[uiSide] : static_cast<uint32_t>(Below(300));
    // What may still be allocated takes its time, so it comes up seldom.
    const bool bLarge = uiEdge >= kLargestBlock - 1 && uiEdge <= kLargestBlock;
    return bLarge && Below(256) != 0 ? kLargestBlock + 1 : uiEdge;
}

void HostileDice::Fill(std::string &sBytes) {
    for (size_t i = 0; i < sBytes.size(); i += 8) {
        const uint64_t ulBytes = stEngine();
        for (size_t j = i; j < std::min(i + 8, sBytes.size()); ++j) {
            sBytes[j] = static_cast<char>(ulBytes >> (8 * (j - i)));
        }
    }
}

void HostileDice::Flip(std::string &sBytes) {
    for (size_t i = 1 + Below(8); i > 0 && !sBytes.empty(); --i) {
        char &cByte = sBytes[Below(sBytes.size())];
        cByte = Below(2) == 0 ? static_cast<char>(stEngine())
                              : static_cast<char>(cByte ^ (1 << Below(8)));
    }
}

void HostileDice::Words(std::string &sBytes) {
    for (size_t i = 1 + Below(3); i > 0; --i) {
        const size_t uiWords = sBytes.size() / 4;
        Overwrite(sBytes,
                  4 * (Below(2) == 0 ? Below(std::min(uiWords, kFirstWords)) : Below(uiWords)),
                  Word(Edge()));
    }
}

void HostileDice::Texts(std::string &sBytes) {
    const auto astTexts = TextsIn(sBytes);
    for (size_t i = 1 + Below(3); i > 0 && !astTexts.empty(); --i) {
        const auto &[uiAt, uiLength] = astTexts[Below(astTexts.size())];
        const std::string_view sBad = BadTexts()[Below(BadTexts().size())];
        OverwriteWith(sBytes, uiAt + Below(uiLength), 1 + Below(2 * uiLength), sBad);
    }
}

void HostileDice::Spoil(HostileReply &stReply) {
    const bool bBlock = stReply.uiDescAt && Below(4) != 0;
    std::string &sBytes = bBlock ? stReply.sBlock : stReply.sBytes;
    switch (Below(6)) {
        case 0:
            sBytes.resize(Below(bBlock ? 6000 : stReply.uiRoom + 1));
            Fill(sBytes);
            break;
        case 1: {
            // Counts that can be true in front of nonsense.
            const std::string sFirst = sBytes.substr(0, 4 * (1 + Below(3)));
            Fill(sBytes);
            Overwrite(sBytes, 0, sFirst);
            break;
        }
        case 2:
            Flip(sBytes);
            break;
        case 3:
            Words(sBytes);
            break;
        case 4:
            Texts(sBytes);
            break;
        default:
            Words(sBytes);
            Texts(sBytes);
            Flip(sBytes);
            sBytes.resize(Below(sBytes.size() + 1));
    }
    stReply.bRawBlock = bBlock && Below(8) == 0;
}

}  // namespace wap::test
