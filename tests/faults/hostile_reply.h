// Replies that no honest process would give, made from what an honest one gave.
#ifndef WAP_TESTS_FAULTS_HOSTILE_REPLY_H
#define WAP_TESTS_FAULTS_HOSTILE_REPLY_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <random>
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
    kUsual,  ///< all of it; of words and lengths far from the start those that make a difference
    kAll
};

/// The ones that can be listed for a reply like this one.
std::vector<Spoiling> ListedSpoilings(const HostileReply &stReply, Depth eDepth);
/// The reply, or its block, cut off at each length; beyond the first kilobyte at a few unless all
/// of them are wanted.
std::vector<Spoiling> Cuts(const HostileReply &stReply, Depth eDepth);

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

    std::mt19937_64 stEngine;
};

}  // namespace wap::test

#endif
