// gulm's attach-control list: what single hosts may do, and how fast.
#include "processes/processes.h"
#include "records/attach_control.h"

namespace wap::gateway {

namespace {

constexpr char kList[] = "attachControl";

// Bits of a change's mask: which of the record's fields are meant. Bits 0 and 3 go with every one.
constexpr uint8_t kStorageBit = 1u << 1;
constexpr uint8_t kInternetBit = 1u << 2;
constexpr uint8_t kUpBit = 1u << 4;
constexpr uint8_t kDownBit = 1u << 5;
constexpr uint8_t kUpGuaranteeBit = 1u << 6;
constexpr uint8_t kDownGuaranteeBit = 1u << 7;

void Apply(json_object *pstRecord, const AttachControl &stFields, uint8_t ucMask) {
    const struct {
        const char *pcKey;
        uint32_t uiValue;
        uint8_t ucBit;
    } astFields[] = {
        {"internetRight", stFields.uiInternetRight, kInternetBit},
        {"storageRight", stFields.uiStorageRight, kStorageBit},
        {"upLimit", stFields.uiUsBandwidth, kUpBit},
        {"downLimit", stFields.uiDsBandwidth, kDownBit},
        {"upGuarantee", stFields.uiUsGaranteeBw, kUpGuaranteeBit},
        {"downGuarantee", stFields.uiDsGaranteeBw, kDownGuaranteeBit},
    };
    for (const auto &stField : astFields) {
        if ((ucMask & stField.ucBit) != 0) {
            PutNumber(pstRecord, stField.pcKey, stField.uiValue);
        }
    }
}

uint32_t List(HandlerContext &stContext, const AttachInst &, AttachInstList &stReply) {
    const HomeReader stHome(stContext.stHome);
    for (json_object *pstRecord : Elements(stHome.At(kList))) {
        if (stReply.uiCount < kAttachControlsMax) {
            stReply.auiInstIds[stReply.uiCount++] = NumberOf(pstRecord, "id");
        }
    }
    return 0;
}

uint32_t Get(HandlerContext &stContext, const AttachInst &stRequest, AttachControl &stReply) {
    const HomeReader stHome(stContext.stHome);
    json_object *pstRecord = FindNumber(stHome.At(kList), "id", stRequest.uiInstId);
    if (pstRecord == nullptr) {
        return kRefused;
    }
    PutField(stReply.acMac, TextOf(pstRecord, "mac"));
    stReply.uiInternetRight = NumberOf(pstRecord, "internetRight");
    stReply.uiStorageRight = NumberOf(pstRecord, "storageRight");
    stReply.uiUsBandwidth = NumberOf(pstRecord, "upLimit");
    stReply.uiDsBandwidth = NumberOf(pstRecord, "downLimit");
    stReply.uiUsGaranteeBw = NumberOf(pstRecord, "upGuarantee");
    stReply.uiDsGaranteeBw = NumberOf(pstRecord, "downGuarantee");
    return 0;
}

uint32_t Add(HandlerContext &stContext, const AttachControlAdd &stRequest, AttachInst &stReply) {
    const std::string acMac = TextIn(stRequest.stRecord.acMac);
    HomeChange stChange(stContext.stHome);
    json_object *pstList = stChange.At(kList);
    if (acMac.empty() || FindElement(pstList, "mac", acMac) != nullptr) {
        return kRefused;
    }
    if (Elements(pstList).size() >= kAttachControlsMax) {
        return kTableFull;
    }
    const uint32_t uiId = FreeNumber(pstList, "id");
    JsonValue stRecord = MakeObject();
    PutNumber(stRecord.get(), "id", uiId);
    PutText(stRecord.get(), "mac", acMac);
    // What the mask leaves out begins with everything allowed and no limit.
    AttachControl stDefaults = {};
    stDefaults.uiInternetRight = 1;
    stDefaults.uiStorageRight = 1;
    Apply(stRecord.get(), stDefaults, 0xFF);
    Apply(stRecord.get(), stRequest.stRecord, stRequest.ucMask);
    Append(pstList, std::move(stRecord));
    stChange.Commit();
    stReply.uiInstId = uiId;
    return 0;
}

uint32_t Set(HandlerContext &stContext, const AttachControlSet &stRequest, AttachInst &stReply) {
    HomeChange stChange(stContext.stHome);
    json_object *pstRecord = FindNumber(stChange.At(kList), "id", stRequest.uiInstId);
    if (pstRecord == nullptr) {
        return kRefused;
    }
    Apply(pstRecord, stRequest.stRecord, stRequest.ucMask);
    stChange.Commit();
    stReply.uiInstId = stRequest.uiInstId;
    return 0;
}

}  // namespace

void AddAttachControlRpcs(RpcTable &stTable) {
    stTable.Add(kRpcListAttachControls, List);
    stTable.Add(kRpcGetAttachControl, Get);
    stTable.Add(kRpcAddAttachControl, Add);
    stTable.Add(kRpcSetAttachControl, Set);
}

}  // namespace wap::gateway
