// The System V segments of the scripted platform. Each lies in a block of exactly its size as long
// as it is attached, so that a look past its end or after it was detached shows.
#ifndef WAP_TESTS_SUPPORT_SCRIPTED_SHM_H
#define WAP_TESTS_SUPPORT_SCRIPTED_SHM_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace wap::test {

class ScriptedShm {
  public:
    struct Segment {
        int32_t iKey;
        std::string sBytes;
        std::unique_ptr<char[]> pcAttached;
    };
    std::map<int32_t, Segment> mapSegments;  ///< the segments that exist, by id
    std::function<void()> fnDetached;        ///< called when a segment has been detached

    /// Writes into the segment of that key, as another process would: as far as there is room.
    /// False when there is none.
    bool Fill(int32_t iKey, const std::string &sBytes);
    /// Describes the segments that are left, and removes them.
    std::vector<std::string> TakeLeft();

    int32_t iNextId = 0;  ///< 0 is an id like any other
};

}  // namespace wap::test

#endif
