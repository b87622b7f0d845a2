// The listing of 500 forward rules, from the table of records to the Java text, on a platform that
// answers at once.
#include <string.h>
#include <vt_ssp_basic.h>

#include <stdexcept>
#include <string>

#include "common/measure.h"
#include "common/ready_answers.h"
#include "peers/plain_list.h"
#include "records/traffic_rules.h"

using namespace wap::bench;

namespace {

constexpr char kPurpose[] =
    "Measures the listing of 500 forward rules, on a platform that answers at once:\n"
    "  rules_bridge/500      the library under test, from the records to the Java text\n"
    "  rules_plain/500       plain code over json-c that makes and prints the same text, likewise\n"
    "  rules_plain_text/500  the same code without the platform and without Java\n"
    "The texts are compared first.";

constexpr uint32_t kRules = 500;
constexpr size_t kBatch = 16;

const std::string &Table() {
    static const std::string s_acTable = ForwardRuleTable(kRules);
    return s_acTable;
}

std::string MakePlainText() {
    json_object *pstAnswer = BENCH_MakeRuleList(Table().data(), kRules);
    std::string acText = json_object_to_json_string(pstAnswer);
    json_object_put(pstAnswer);
    return acText;
}

void SetUp(Surroundings &stAround) {
    stAround.StayOnOneCpu();
    stAround.StartJava();
    const std::string acText = MakePlainText();
    if (acText.size() < size_t{kRules} * 100) {
        throw std::runtime_error("the plain code's text is too short for 500 rules");
    }
    for (const char *pcPeer : {"rules_bridge", "rules_plain"}) {
        RegisterJava(stAround, std::string(pcPeer) + "/500", kBatch,
                     stAround.pstJava->Prepare(pcPeer, "", ""), acText);
    }
    Register("rules_plain_text/500", kBatch, Timing([] {
                 json_object *pstAnswer = BENCH_MakeRuleList(Table().data(), kRules);
                 benchmark::DoNotOptimize(json_object_to_json_string(pstAnswer));
                 json_object_put(pstAnswer);
             }));
}

}  // namespace

// The platform that answers at once. These functions are found before those of the host platform,
// because the program comes first. A block "decompresses" into the table by a copy.
extern "C" {

uint32_t VT_MSG_RpcCall(const RpcMsgHead *, uint32_t uiRpcId, uint32_t, const void *, uint32_t,
                        void *pvRsp, uint32_t uiRspCap, uint32_t) {
    const auto uiLength = static_cast<uint32_t>(Table().size());
    const wap::RuleTableReply stReply = {kRules, {1, uiLength, 16}};
    if (uiRpcId != wap::kRpcGetForwardRules || uiRspCap < sizeof(stReply)) {
        return 1;
    }
    memcpy(pvRsp, &stReply, sizeof(stReply));
    return 0;
}

uint32_t VT_VDATA_ReadData(uint32_t, uint32_t, void *) {
    return 0;
}

uint32_t VT_VDATA_FreeShm(uint32_t) {
    return 0;
}

uint32_t VT_OS_Decompress(const void *, void *pvDst, uint32_t uiDstCap) {
    if (uiDstCap < Table().size()) {
        return 1;
    }
    memcpy(pvDst, Table().data(), Table().size());
    return 0;
}

}  // extern "C"

int main(int iArgCount, char **ppcArgs) {
    return RunProgram(iArgCount, ppcArgs, kPurpose, SetUp);
}
