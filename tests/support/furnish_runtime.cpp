#include "support/furnish_runtime.h"

#include "support/wire_bytes.h"

namespace wap::test {

void FurnishRuntime(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.stFiles.mapFiles = {{kVersionPath, kVersionText}};
    stPlatform.mapReplies[0x47209051] = {0, Word(0)};
    stPlatform.mapReplies[0x471030D3] = {0, Word(0)};
    stPlatform.mapReplies[0x47209061] = {0, Field("{\"Result\":0,\"List\":[{\"Port\":1}]}", 512)};
    stPlatform.mapReplies[0x47209062] = {0, Word(0)};
    stPlatform.mapReplies[0x47209063] = {0, Word(0)};
}

}  // namespace wap::test
