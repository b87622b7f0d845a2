// Replies that no honest process would give, made from what an honest one gave.
#ifndef WAP_TESTS_FAULTS_HOSTILE_REPLY_H
#define WAP_TESTS_FAULTS_HOSTILE_REPLY_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/scripted_platform.h"

namespace wap::test {

/// A reply as it is about to be written, and the block that it names, if any.
struct HostileReply {
    std::string sBytes;
    size_t uiRoom = 0;  ///< what the caller takes
    /// Where the descriptor of the block is, and what is in the block before it is compressed.
    std::optional<size_t> uiDescAt{};
    std::string sBlock{};
    uint32_t uiBlockId = 0;
    /// The block's bytes are given as they are, and the descriptor's lengths stay.
    bool bRawBlock = false;
};

/// Looks at a reply for the descriptor of a block.
HostileReply TakeApart(const Platform &stPlatform, const RpcRecord &stRpc,
                       const std::string &sBytes);
/// Writes the reply and the block back, the block compressed if that is what its length wants, with
/// a descriptor that tells the truth about it unless the bytes of the reply were changed there.
void PutTogether(Platform &stPlatform, const HostileReply &stBefore, HostileReply stAfter,
                 std::string &sBytes);

/// What is done to a reply, and how to say it.
struct Spoiling {
    std::string sName;
    std::function<void(HostileReply &)> fnSpoil;
};

/// How much is tried of what can be listed.
enum class Depth {
    kBrief,  ///< nothing but fillings and the first word, which is a count or an id
    kUsual,  ///< all of it near the start; behind that, a few of it
    kWhole,  ///< the same, but every text and every length
    kAll
};

/// The ones that can be listed for a reply like this one.
std::vector<Spoiling> ListedSpoilings(const HostileReply &stReply, Depth eDepth);
/// The reply, or its block, cut off at each length.
std::vector<Spoiling> Cuts(const HostileReply &stReply, Depth eDepth);

/// Numbers of a seed (splitmix64). Each reply has a seed of its own, and the engines of the
/// standard library fill hundreds of words before the first number.
class SeededNumbers {
  public:
    explicit SeededNumbers(uint64_t ulSeed) : m_ulState(ulSeed) {}
    uint64_t operator()() {
        m_ulState += 0x9E3779B97F4A7C15u;
        uint64_t ulMixed = (m_ulState ^ m_ulState >> 30) * 0xBF58476D1CE4E5B9u;
        ulMixed = (ulMixed ^ ulMixed >> 27) * 0x94D049BB133111EBu;
        return ulMixed ^ ulMixed >> 31;
    }

  private:
    uint64_t m_ulState;
};

/// Draws replies.
class HostileDice {
  public:
    explicit HostileDice(uint64_t ulSeed) : stEngine(ulSeed) {}
    void Spoil(HostileReply &stReply);

  private:
    size_t Below(size_t uiEnd) { return uiEnd == 0 ? 0 : static_cast<size_t>(stEngine() % uiEnd); }
    uint32_t Edge();
    void Fill(std::string &sBytes);
    void Flip(std::string &sBytes);
    void Words(std::string &sBytes);
    void Texts(std::string &sBytes);

    SeededNumbers stEngine;
};

}  // namespace wap::test

#endif
