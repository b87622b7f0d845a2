// Follows secrets through the memory of the code under test: where the platform's functions put
// them, whether those places were overwritten with zeros, and whether they show up in released
// blocks, traces or fault records.
#ifndef WAP_TESTS_SUPPORT_SECRET_WATCH_H
#define WAP_TESTS_SUPPORT_SECRET_WATCH_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace wap::test {

class SecretWatch {
  public:
    /// Adds a text to look for. Take 16 bytes or more, so that copies in tests stay on the heap.
    void Watch(std::string sSecret) { asSecrets.push_back(std::move(sSecret)); }

    /// Bytes were written at pvAt: notes where secrets lie in them.
    void Written(const void *pvAt, size_t uiLen);
    /// A range was set to zero through the platform.
    void Wiped(const void *pvAt, size_t uiLen);
    /// A block is about to be released.
    void CheckFreed(const void *pvAt, size_t uiLen);
    /// A text was shown to somebody.
    void CheckShown(std::string_view sText, const char *pcWhere);
    /// The test itself owns this buffer: what lies in it is no concern.
    void Disown(const void *pvAt, size_t uiLen) { Wiped(pvAt, uiLen); }

    /// Describes what was never wiped or was seen in the open, and forgets it.
    std::vector<std::string> TakeUnwiped();

  private:
    struct Place {
        uintptr_t ulAt;
        size_t uiLen;
    };
    std::vector<std::string> asSecrets;
    std::vector<Place> astPlaces;
    std::vector<std::string> asSeen;
};

/// Runs fnCall on a stack of its own, in the calling thread's World, and tells whether any of the
/// texts lies on that stack at the moment when it returns.
///
/// It sees what the frames below fnCall have left, whoever wrote it there, and nothing is called
/// between fnCall's return and the look. It can't see what a later call within fnCall has
/// overwritten: give it a worker alone to see what that worker leaves, and no expectation behind
/// the call. Nor does it see registers, or parts of a text. Locals that AddressSanitizer
/// keeps elsewhere to look for their use after the return are seen. A text must be long enough to
/// lie on the heap in a std::string: 16 bytes.
bool StackKeeps(const std::function<void()> &fnCall, const std::vector<std::string> &asTexts);

}  // namespace wap::test

#endif
