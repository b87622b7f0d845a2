#include "ctl/client.h"

#include "framework/control.h"
#include "framework/error.h"
#include "framework/peers.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

/// A person waits rather than be told of a machine that is merely busy.
constexpr uint32_t kAnswerTimeoutMs = 15000;

}  // namespace

JsonValue Ask(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest) {
    return AskControl(pcProcess, uiRpcId, pstRequest, kAnswerTimeoutMs);
}

JsonValue TryAsk(const char *pcProcess, uint32_t uiRpcId, uint32_t uiTimeoutMs) {
    try {
        return AskControl(pcProcess, uiRpcId, nullptr, uiTimeoutMs);
    } catch (const GatewayError &) {
        return nullptr;
    }
}

JsonValue ValueOf(const char *pcSection) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", pcSection);
    const JsonValue stAnswer = Ask(FindOwner(pcSection)->pcName, kControlGet, stRequest.get());
    return Copy(FindMember(stAnswer.get(), "value"));
}

void SetValue(const char *pcSection, const char *pcMember, const std::string &acText) {
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", std::string(pcSection) + "." + pcMember);
    PutText(stRequest.get(), "text", acText);
    (void)Ask(FindOwner(pcSection)->pcName, kControlSet, stRequest.get());
}

}  // namespace wap::gateway
