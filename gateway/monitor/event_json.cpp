#include "monitor/event_json.h"

#include <stdio.h>
#include <time.h>

#include "framework/codes.h"
#include "framework/wire_decode.h"

namespace wap::gateway {

namespace {

constexpr uint64_t kSecond = 1000000;

void PutWord(json_object *pstObject, const char *pcKey, uint32_t uiWord) {
    PutNumber(pstObject, pcKey, int64_t{uiWord});
}

JsonValue SideToJson(const std::string &acName, uint32_t uiPid, uint32_t uiModule) {
    JsonValue stSide = MakeObject();
    PutText(stSide.get(), "name", acName);
    if (uiPid != 0) {
        PutWord(stSide.get(), "pid", uiPid);
    }
    if (uiModule != 0) {
        PutWord(stSide.get(), "module", uiModule);
    }
    return stSide;
}

/// A request or a reply: its length, and what it says.
void PutPart(json_object *pstOut, const TapEvent &stEvent, TapPart ePart, const char *pcName) {
    PutWord(pstOut, (std::string(pcName) + "Bytes").c_str(), stEvent.astParts[ePart].uiLength);
    if (JsonValue stContent = ContentOf(stEvent, ePart)) {
        PutMember(pstOut, pcName, std::move(stContent));
    }
}

JsonValue BlockToJson(const TapEvent &stEvent) {
    const TapBytes &stBytes = stEvent.astParts[kTapBlock];
    JsonValue stBlock = MakeObject();
    PutText(stBlock.get(), "of", stEvent.eBlockSide == WireSide::kRequest ? "request" : "reply");
    PutWord(stBlock.get(), "bytes", stBytes.uiLength);
    if (!stBytes.IsWhole()) {
        PutWord(stBlock.get(), "bytesHeld", static_cast<uint32_t>(stBytes.acHeld.size()));
    }
    if (JsonValue stContent = ContentOf(stEvent, kTapBlock)) {
        PutMember(stBlock.get(), "content", std::move(stContent));
    }
    return stBlock;
}

/// The time of the day, with a date or without, by a calendar function.
std::string TimeText(uint64_t ulMicroseconds,
                     struct tm *(*pfnCalendar)(const time_t *, struct tm *), const char *pcForm) {
    const auto iSeconds = static_cast<time_t>(ulMicroseconds / kSecond);
    struct tm stTime = {};
    char acTime[64] = "";
    if (pfnCalendar(&iSeconds, &stTime) != nullptr) {
        (void)strftime(acTime, sizeof(acTime), pcForm, &stTime);
    }
    char acFraction[16];
    snprintf(acFraction, sizeof(acFraction), ".%06u",
             static_cast<unsigned>(ulMicroseconds % kSecond));
    return std::string(acTime) + acFraction;
}

}  // namespace

JsonValue ContentOf(const TapEvent &stEvent, TapPart ePart) {
    const WireRpc *pstRpc = RpcOf(stEvent);
    const std::string &acHeld = stEvent.astParts[ePart].acHeld;
    if (pstRpc == nullptr || acHeld.empty()) {
        return nullptr;
    }
    switch (ePart) {
        case kTapRequest:
            return DecodeContent(pstRpc->stRequest, acHeld);
        case kTapReply:
            return DecodeContent(pstRpc->stReply, acHeld);
        default:
            return DecodeBlock(
                *pstRpc,
                stEvent.astParts[stEvent.eBlockSide == WireSide::kRequest ? kTapRequest : kTapReply]
                    .acHeld,
                acHeld);
    }
}

const char *NameOfRpc(const TapEvent &stEvent) {
    const WireRpc *pstRpc = RpcOf(stEvent);
    return pstRpc == nullptr ? "" : pstRpc->pcName;
}

std::string IdText(const TapEvent &stEvent) {
    char acId[16];
    snprintf(acId, sizeof(acId), stEvent.eKind == TapKind::kMessage ? "%u" : "0x%08X",
             stEvent.uiId);
    return acId;
}

std::string TimeInUtc(uint64_t ulMicroseconds) {
    return TimeText(ulMicroseconds, gmtime_r, "%Y-%m-%dT%H:%M:%S") + "Z";
}

std::string TimeOfDay(uint64_t ulMicroseconds) {
    return TimeText(ulMicroseconds, localtime_r, "%H:%M:%S");
}

JsonValue EventToJson(const TapEvent &stEvent, uint64_t ulLost) {
    JsonValue stOut = MakeObject();
    json_object *pstOut = stOut.get();
    if (ulLost != 0) {
        PutNumber(pstOut, "lostBefore", static_cast<int64_t>(ulLost));
    }
    PutText(pstOut, "time", TimeInUtc(stEvent.ulTimeUs));
    PutText(pstOut, "kind", stEvent.eKind == TapKind::kMessage ? "message" : "rpc");
    PutMember(pstOut, "sender",
              SideToJson(ReadableText(stEvent.stHead.acSndApp), stEvent.uiSenderPid,
                         stEvent.stHead.uiSndMid));
    PutMember(
        pstOut, "receiver",
        SideToJson(ReadableText(stEvent.acReceiver), stEvent.uiReceiverPid, stEvent.uiDstMid));
    PutText(pstOut, "id", IdText(stEvent));
    if (RpcOf(stEvent) != nullptr) {
        PutText(pstOut, "name", NameOfRpc(stEvent));
    }
    PutNumber(pstOut, "durationUs", static_cast<int64_t>(stEvent.ulDurationUs));
    PutBool(pstOut, "answered", stEvent.bAnswered);
    if (stEvent.bAnswered || stEvent.eKind == TapKind::kMessage) {
        PutWord(pstOut, "code", stEvent.uiCode);
        if (const char *pcMeaning = MeaningOfCode(stEvent.uiCode)) {
            PutText(pstOut, "meaning", pcMeaning);
        }
    }
    if (stEvent.stFault) {
        PutText(pstOut, "fault", DescribeFault(*stEvent.stFault));
    }
    PutPart(pstOut, stEvent, kTapRequest, "request");
    if (stEvent.bAnswered && stEvent.eKind == TapKind::kRpc) {
        PutPart(pstOut, stEvent, kTapReply, "reply");
    }
    if (stEvent.eBlockSide != WireSide::kNone) {
        PutMember(pstOut, "block", BlockToJson(stEvent));
    }
    return stOut;
}

}  // namespace wap::gateway
