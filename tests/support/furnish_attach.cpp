#include "support/furnish_attach.h"

#include "support/furnish_macfilter.h"
#include "support/wire_bytes.h"

namespace wap::test {

void FurnishAttach(World &stWorld) {
    std::map<uint32_t, Reply> &mapReplies = stWorld.stPlatform.mapReplies;
    mapReplies[0x47307034] = {0, IndexBytes({17}, 128)};
    mapReplies[0x47307030] = {0, Field("02:00:00:00:00:0A", 32) + Word(1) + Word(1) + Word(100) +
                                     Word(200) + std::string(16, '\0')};
    mapReplies[0x47209096] = {0, Word(18)};
    mapReplies[0x47209097] = {0, Word(17)};
    mapReplies.try_emplace(0x47307000, Reply{0, ModeBytes(0, 0)});
    mapReplies.try_emplace(0x47309024, Reply{0, IndexBytes({}, 32)});
    mapReplies.try_emplace(0x47309027, Reply{0, IndexBytes({}, 256)});
}

}  // namespace wap::test
