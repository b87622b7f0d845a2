// Sees every allocation of the bridge and of json-c: the linker sends their calls of malloc and its
// kin to hooks (--wrap), and the platform's allocator is scripted. What C++ containers of the tests
// allocate goes past them.
#ifndef WAP_TESTS_SUPPORT_ALLOC_WATCH_H
#define WAP_TESTS_SUPPORT_ALLOC_WATCH_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace wap::test {

enum class Origin { kMalloc, kPlatform };

struct AllocRecord {
    Origin eOrigin;
    size_t uiSize;
};

class AllocWatch {
  public:
    /// Takes note of a new block.
    void Add(void *pvBlock, size_t uiSize, Origin eOrigin, std::string sWhere = "");
    /// Forgets a block; false when it is not known.
    bool Remove(void *pvBlock, Origin *peOrigin = nullptr);
    /// The size of a known block, or 0.
    size_t SizeOf(void *pvBlock) const;

    size_t Live() const { return mapLive.size(); }
    /// Describes the blocks that nobody released, and forgets them.
    std::vector<std::string> TakeLive();
    void ClearRecords() { astLog.clear(); }

    /// Every allocation so far, in order.
    std::vector<AllocRecord> astLog;

  private:
    struct Block {
        size_t uiSize;
        Origin eOrigin;
        std::string sWhere;
    };
    std::map<void *, Block> mapLive;
};

}  // namespace wap::test

#endif
