#include "support/furnish_diagnostics.h"

#include "support/wire_bytes.h"

namespace wap::test {

Reply DiagBlockReply(const std::string &sBytes) {
    Reply stReply = {0, sBytes, true};
    stReply.sBeforeBulk = Word(0);
    return stReply;
}

Reply DiagTextReply(const std::string &sText) {
    return DiagBlockReply(sText + '\0');
}

void FurnishDiagnostics(World &stWorld) {
    auto &mapReplies = stWorld.stPlatform.mapReplies;
    for (const uint32_t uiStart : {0x47103088u, 0x47103090u, 0x47103096u}) {
        mapReplies[uiStart] = {0, Word(0)};
    }
    mapReplies[0x47103089] = {0, "{\"Result\":0,\"SuccessCount\":4}"};
    mapReplies[0x47103097] = DiagTextReply("{\"Result\":0,\"IPAddress\":\"198.51.100.7\"}");
    mapReplies[0x47103091] = DiagTextReply("{\"Result\":0,\"Hops\":[\"192.168.1.1\"]}");
}

}  // namespace wap::test
