// app_m's part of the box itself: its lights and its voice lines.
#include "processes/processes.h"
#include "records/device_control.h"
#include "records/voip.h"

namespace wap::gateway {

namespace {

uint32_t SwitchLeds(HandlerContext &stContext, const LedSwitch &stRequest, DeviceControlReply &) {
    if (stRequest.uiOn >= kLedSwitchEnd) {
        return kRefused;
    }
    HomeChange stChange(stContext.stHome);
    PutBool(stChange.At("leds"), "on", stRequest.uiOn != 0);
    stChange.Commit();
    return 0;
}

uint32_t GetVoiceLines(HandlerContext &stContext, std::string_view pcRequest,
                       std::string &acReply) {
    if (pcRequest != std::string_view("\0\0\0\0", sizeof(WordRequest))) {
        return VT_HOST_ERR_ARGUMENT;
    }
    JsonValue stList = MakeArray();
    {
        const HomeReader stHome(stContext.stHome);
        for (json_object *pstLine : Elements(stHome.At("voice"))) {
            JsonValue stEntry = MakeObject();
            PutText(stEntry.get(), "Name", TextOf(pstLine, "name"));
            PutText(stEntry.get(), "Number", TextOf(pstLine, "number"));
            PutText(stEntry.get(), "Status", TextOf(pstLine, "state"));
            Append(stList.get(), std::move(stEntry));
        }
    }
    const JsonValue stAnswer = MakeObject();
    PutNumber(stAnswer.get(), "Result", 0);
    PutMember(stAnswer.get(), "List", std::move(stList));
    acReply = PrintJson(stAnswer.get(), false) + '\0';
    // A text that is cut would be no JSON.
    return acReply.size() > kPotsInfoSize ? static_cast<uint32_t>(VT_HOST_ERR_TOO_LONG) : 0u;
}

}  // namespace

void AddBoxRpcs(RpcTable &stTable) {
    stTable.Add(kRpcSetLedSwitch, SwitchLeds);
    stTable.AddBytes(kRpcGetPotsInfo, GetVoiceLines);
}

}  // namespace wap::gateway
