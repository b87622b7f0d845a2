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

/// Where in the sources something was asked for, as the platform's allocator was told.
struct AllocPlace {
    std::string sFile;  ///< empty for the allocators of the C library, which are told nothing
    uint32_t uiLine = 0;
};

struct AllocRecord {
    Origin eOrigin;
    size_t uiSize;
    AllocPlace stPlace;
};

class AllocWatch {
  public:
    /// Takes note of a new block.
    void Add(void *pvBlock, size_t uiSize, Origin eOrigin, const AllocPlace &stPlace = {});
    /// Forgets a block; false when it is not known.
    bool Remove(void *pvBlock, Origin *peOrigin = nullptr);
    /// Takes note of a release through the platform.
    void NoteRelease(const AllocPlace &stPlace) { astReleases.push_back(stPlace); }
    /// The size of a known block, or 0.
    size_t SizeOf(void *pvBlock) const;

    size_t Live() const { return mapLive.size(); }
    /// Describes the blocks that nobody released, and forgets them.
    std::vector<std::string> TakeLive();
    void ClearRecords();

    /// Every allocation so far, in order.
    std::vector<AllocRecord> astLog;
    /// Every release through the platform so far, in order; also those of null.
    std::vector<AllocPlace> astReleases;

  private:
    struct Block {
        size_t uiSize;
        Origin eOrigin;
        AllocPlace stPlace;
    };
    std::map<void *, Block> mapLive;
};

/// What is wrong with the file and line that the platform's allocator was given; empty when they
/// are in order: the base name of a source file, and a line of it.
std::string PlaceFault(const char *pcFile, uint32_t uiLine);

}  // namespace wap::test

#endif
