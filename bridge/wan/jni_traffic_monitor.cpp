#include "wan/jni_traffic_monitor.h"

#include <string.h>

#include <initializer_list>
#include <string_view>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/json_parse.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/traffic_monitor.h"

using namespace wap;

namespace {

constexpr GeneralRoute kAdd = {"gulm", 216, kRpcAddMonitoredAddresses};
constexpr GeneralRoute kDelete = {"gulm", 216, kRpcDelMonitoredAddresses};
constexpr GeneralRoute kAskRegistry = {"gulm", 216, kRpcGetMonitoredAddresses};
constexpr char kNotified[] = "app_m";

constexpr uint32_t kErrRefused = 1;
constexpr uint32_t kErrNoAnswer = 1;
/// What a bundle and an address may take up in the answer.
constexpr uint64_t kTextPerBundle = 384;
constexpr uint64_t kTextPerAddress = 272;
constexpr uint32_t kBundleNameMax = 255;

constexpr std::string_view kAnswerHead = "{\"Result\":0,\"List\":[";
constexpr std::string_view kAnswerTail = "]}";

/// A text that is written into a buffer part by part.
class GrowingText {
  public:
    GrowingText(char *pcOut, uint32_t uiRoom) : m_pcOut(pcOut), m_uiRoom(uiRoom) {}

    /// Appends all the parts, or none when they don't all fit.
    [[nodiscard]] bool Append(std::initializer_list<std::string_view> stParts) {
        size_t uiNeeded = 0;
        for (const std::string_view stPart : stParts) {
            uiNeeded += stPart.size();
        }
        if (uiNeeded > m_uiRoom) {
            return false;
        }
        for (const std::string_view stPart : stParts) {
            memcpy(m_pcOut, stPart.data(), stPart.size());
            m_pcOut += stPart.size();
        }
        m_uiRoom -= static_cast<uint32_t>(uiNeeded);
        return true;
    }
    /// Puts the last part and a zero behind the text; there must be room for them behind the room.
    void End(std::string_view stPart) {
        memcpy(m_pcOut, stPart.data(), stPart.size());
        m_pcOut[stPart.size()] = '\0';
    }

  private:
    char *m_pcOut;
    uint32_t m_uiRoom;
};

/// The registry text cut at its semicolons.
class Records {
  public:
    explicit Records(const char *pcText) : m_pcNext(pcText) {}

    /// Takes the next record that has a name and a list; false when there is none.
    [[nodiscard]] bool Next(std::string_view &stName, std::string_view &stList) {
        while (*m_pcNext != '\0') {
            const std::string_view stRecord(m_pcNext, strcspn(m_pcNext, ";"));
            m_pcNext += stRecord.size();
            m_pcNext += *m_pcNext == ';' ? 1 : 0;
            const void *pvList = memchr(stRecord.data(), '[', stRecord.size());
            const auto *pcList = static_cast<const char *>(pvList);
            if (pcList != nullptr && pcList != stRecord.data()) {
                const auto uiName = static_cast<size_t>(pcList - stRecord.data());
                stName = {stRecord.data(), uiName < kBundleNameMax ? uiName : kBundleNameMax};
                stList = {pcList, stRecord.size() - uiName};
                return true;
            }
        }
        return false;
    }

  private:
    const char *m_pcNext;
};

/// Where a text of JSON ends that begins with stRest: at the next quote, or at the end of stRest
/// when there is none. Nowhere (npos) when a control character stands in it, which json-c lets
/// pass, or when the end cuts an escape.
size_t EndOfText(std::string_view stRest) {
    for (size_t i = 0; i < stRest.size(); ++i) {
        if (stRest[i] == '"') {
            return i;
        }
        i += stRest[i] == '\\' ? 1 : 0;
        if (i == stRest.size() || static_cast<unsigned char>(stRest[i]) < ' ') {
            return std::string_view::npos;
        }
    }
    return stRest.size();
}

size_t CountDigits(std::string_view stRest) {
    size_t uiCount = 0;
    while (uiCount < stRest.size() && stRest[uiCount] >= '0' && stRest[uiCount] <= '9') {
        ++uiCount;
    }
    return uiCount;
}

bool IsIn(char cByte, std::string_view stBytes) {
    return memchr(stBytes.data(), cByte, stBytes.size()) != nullptr;
}

/// How long the number of JSON is that stRest begins with; 0 when it is none, or more follows than
/// may stand behind one.
size_t NumberLength(std::string_view stRest) {
    const auto Is = [stRest](size_t uiAt, std::string_view stOf) {
        return uiAt < stRest.size() && IsIn(stRest[uiAt], stOf);
    };
    const auto Digits = [stRest](size_t uiAt) {
        return CountDigits({stRest.data() + uiAt, stRest.size() - uiAt});
    };
    size_t uiAt = Is(0, "-") ? 1 : 0;
    size_t uiDigits = Digits(uiAt);
    bool bGood = uiDigits == 1 || (uiDigits > 1 && !Is(uiAt, "0"));
    uiAt += uiDigits;
    if (Is(uiAt, ".")) {
        uiDigits = Digits(++uiAt);
        bGood = bGood && uiDigits > 0;
        uiAt += uiDigits;
    }
    if (Is(uiAt, "eE")) {
        uiAt += Is(uiAt + 1, "+-") ? 2 : 1;
        uiDigits = Digits(uiAt);
        bGood = bGood && uiDigits > 0;
        uiAt += uiDigits;
    }
    return bGood && Is(uiAt, ",]} \t\r\n") ? uiAt : 0;
}

/// Whether a list ends with its text, and holds nothing that json-c lets pass and JSON does not
/// know: names in single quotes, NaN, 00. The rest is for the parser to say.
bool IsOneList(std::string_view stList) {
    int32_t iDepth = 0;
    for (size_t i = 0; i < stList.size(); ++i) {
        const char cByte = stList[i];
        if (cByte == '"') {
            const std::string_view stRest(&stList[i] + 1, stList.size() - i - 1);
            const size_t uiEnd = EndOfText(stRest);
            if (uiEnd >= stRest.size()) {
                return false;
            }
            i += uiEnd + 1;
        } else if (cByte == '[' || cByte == '{') {
            ++iDepth;
        } else if (cByte == ']' || cByte == '}') {
            if (--iDepth == 0) {
                return strspn(&stList[i] + 1, " \t\r\n") >= stList.size() - i - 1;
            }
        } else if (cByte == '-' || (cByte >= '0' && cByte <= '9')) {
            const size_t uiNumber = NumberLength({&stList[i], stList.size() - i});
            if (uiNumber == 0) {
                return false;
            }
            i += uiNumber - 1;
        } else if ((cByte < 'a' || cByte > 'z') && !IsIn(cByte, ",: \t\r\n")) {
            return false;
        }
    }
    return false;
}

/// Whether no name and no list of the registry reaches into what stands around it in an answer.
bool StayInTheirPlaces(const char *pcRegistry) {
    Records stRecords(pcRegistry);
    std::string_view stName;
    std::string_view stList;
    while (stRecords.Next(stName, stList)) {
        if (EndOfText(stName) != stName.size() || !IsOneList(stList)) {
            return false;
        }
    }
    return true;
}

/// Fetches the registry text, which is there, and makes the answer of it.
uint32_t MakeAnswer(const TrafficMonitorInfoReply &stInfo, PlatformBlock &stAnswer) {
    BulkBlock stRegistry;
    const uint32_t uiResult = stRegistry.Make(stInfo.stRegistry);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    const char *pcRegistry = stRegistry.LendText();
    if (pcRegistry == nullptr || !StayInTheirPlaces(pcRegistry)) {
        return Recorded(WAP_SPOT, kErrFailed, stInfo.stRegistry.uiOriginalLen);
    }
    const uint64_t ulCap = stInfo.uiBundles * kTextPerBundle + stInfo.uiAddresses * kTextPerAddress;
    const auto uiCap = static_cast<uint32_t>(ulCap);
    if (ulCap == 0 || ulCap > kBlockMax || !stAnswer.Make(uiCap, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoAnswer, stInfo.uiBundles, stInfo.uiAddresses);
    }
    auto *pcAnswer = static_cast<char *>(stAnswer.Lend());
    const uint32_t uiConverted = VT_API_ConvertAddrListToJson(pcRegistry, pcAnswer, uiCap);
    if (uiConverted != 0) {
        return uiConverted;
    }
    // Names and lists stand in it as they came. None leaves its place, but whether each is
    // well-formed in itself is for a parser to say.
    const JsonValue stParsed(ParseJson(WAP_SPOT, pcAnswer, Grammar::kStrict, Secrecy::kPlain));
    return stParsed ? 0 : Recorded(WAP_SPOT, kErrFailed, stInfo.stRegistry.uiOriginalLen);
}

}  // namespace

uint32_t VT_JNI_addTrafficMonitoringDestAddress(const char *pcList, uint32_t uiListLen,
                                                const char *pcBundle, uint32_t uiBundleLen) {
    return VT_API_TrafficMonitoringDestAddrOper(pcList, uiListLen, pcBundle, uiBundleLen,
                                                kMonitorAdd);
}

uint32_t VT_JNI_deleteTrafficMonitoringDestAddress(const char *pcList, uint32_t uiListLen,
                                                   const char *pcBundle, uint32_t uiBundleLen) {
    return VT_API_TrafficMonitoringDestAddrOper(pcList, uiListLen, pcBundle, uiBundleLen,
                                                kMonitorDelete);
}

uint32_t VT_API_TrafficMonitoringDestAddrOper(const char *pcList, uint32_t uiListLen,
                                              const char *pcBundle, uint32_t uiBundleLen,
                                              uint32_t uiOperation) {
    if (pcList == nullptr || pcBundle == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused, uiOperation);
    }
    const bool bAdd = uiOperation == kMonitorAdd;
    WAP_TRACE(kTraceEntries, "BundleName [%s] Act [%s]\r\n", pcBundle, bAdd ? "add" : "del");
    WAP_TRACE(kTraceEntries, "AddrStrList [%s]\r\n", pcList);
    if (VT_OS_StrLen(pcList) != uiListLen || VT_OS_StrLen(pcBundle) != uiBundleLen) {
        return Recorded(WAP_SPOT, kErrRefused, uiOperation, uiListLen, uiBundleLen);
    }
    // The registry is what counts: it changes whether "app_m" hears of it or not.
    (void)VT_API_TrafficMonitoringNotifyAppM(pcList, uiListLen, pcBundle, uiBundleLen, uiOperation);
    VDataDesc stList = {};
    uint32_t uiResult = VT_JNI_COMMON_WriteVData(&stList, pcList, uiListLen + 1);
    if (Recorded(WAP_SPOT, uiResult, uiOperation, uiListLen) != 0) {
        return uiResult;
    }
    TrafficMonitorOperReq stRequest = {};
    stRequest.stAddrList = stList;
    PutField(stRequest.acBundleName, pcBundle);
    TrafficMonitorOperReply stReply = {};
    uiResult = Ask(bAdd ? kAdd : kDelete, stRequest, stReply);
    if (Recorded(WAP_SPOT, uiResult, uiOperation) != 0) {
        // Nobody else might free the list. That "gulm" did already is no failure.
        (void)VT_VDATA_FreeShm(stList.uiDataID);
    }
    return uiResult;
}

uint32_t VT_API_TrafficMonitoringNotifyAppM(const char *pcList, uint32_t uiListLen,
                                            const char *pcBundle, uint32_t, uint32_t uiOperation) {
    if (pcList == nullptr || pcBundle == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused, uiOperation);
    }
    const uint64_t ulSize = sizeof(TrafficMonitorNotice) + uint64_t{uiListLen} + 1;
    const auto uiSize = static_cast<uint32_t>(ulSize);
    PlatformBlock stBlock;
    if (ulSize > kBlockMax || !stBlock.Make(uiSize, WAP_SPOT)) {
        return Recorded(WAP_SPOT, kErrNoMemory, uiOperation, uiListLen);
    }
    auto *pstNotice = static_cast<TrafficMonitorNotice *>(stBlock.Lend());
    pstNotice->ucOperation = uiOperation == kMonitorAdd ? kNoticeAdd : kNoticeDel;
    // Deliberately shorter than in the request for "gulm": it is what "app_m" has room for.
    PutField(pstNotice->acBundleName, pcBundle);
    (void)VT_OS_StrNCpy_S(reinterpret_cast<char *>(pstNotice + 1), uiListLen + 1, pcList,
                          uiListLen);
    VDataDesc stDesc = {};
    const uint32_t uiResult = VT_JNI_COMMON_WriteVData(&stDesc, pstNotice, uiSize);
    if (Recorded(WAP_SPOT, uiResult, uiOperation, uiListLen) != 0) {
        return uiResult;
    }
    // Whether somebody hears it is nobody's concern, but what nobody will read must not stay.
    if (VT_MSG_AsyncSendData(kNotified, kMsgTrafficMonitorChanged, &stDesc, sizeof(stDesc)) != 0) {
        (void)VT_VDATA_FreeShm(stDesc.uiDataID);
    }
    return 0;
}

uint32_t VT_JNI_getTrafficMonitoringDestAddressInfo(char **ppcText) {
    if (ppcText == nullptr) {
        return Recorded(WAP_SPOT, kErrRefused);
    }
    TrafficMonitorInfoReply stInfo = {};
    uint32_t uiResult = AskBytes(kAskRegistry, nullptr, 0, stInfo);
    if (Recorded(WAP_SPOT, uiResult) != 0) {
        return uiResult;
    }
    const VDataDesc stRegistry = stInfo.stRegistry;
    WAP_TRACE(kTraceEntries,
              "uiPlugNum:%u, uiAddrNum:%u, uivDataID:%u, uiOriginalLen:%u, "
              "uiCompressedLen:%u\r\n",
              stInfo.uiBundles, stInfo.uiAddresses, stRegistry.uiDataID, stRegistry.uiOriginalLen,
              stRegistry.uiCompressedLen);
    PlatformBlock stAnswer;
    if (stRegistry.uiOriginalLen != 0 && stRegistry.uiCompressedLen != 0) {
        uiResult = MakeAnswer(stInfo, stAnswer);
    } else {
        FreeUnread(stRegistry.uiDataID);
    }
    if (uiResult == 0) {
        *ppcText = static_cast<char *>(stAnswer.Release());
    }
    return uiResult;
}

uint32_t VT_API_ConvertAddrListToJson(const char *pcText, char *pcOut, uint32_t uiCap) {
    const size_t uiEmpty = kAnswerHead.size() + kAnswerTail.size() + 1;
    if (pcText == nullptr || pcOut == nullptr || uiCap < uiEmpty) {
        return Recorded(WAP_SPOT, kErrRefused, uiCap);
    }
    // The end's place is set aside, so that a list cut short is still one.
    GrowingText stOut(pcOut, uiCap - static_cast<uint32_t>(kAnswerTail.size()) - 1);
    bool bFits = stOut.Append({kAnswerHead});
    std::string_view stSeparator = "";
    std::string_view stName;
    std::string_view stList;
    for (Records stRecords(pcText); bFits && stRecords.Next(stName, stList); stSeparator = ",") {
        bFits = stOut.Append(
            {stSeparator, "{\"BundleName\":\"", stName, "\",\"DestAddressList\":", stList, "}"});
    }
    if (!bFits) {
        // A success all the same: the records before it are whole.
        RecordFault(WAP_SPOT, kErrTooLong, uiCap);
    }
    stOut.End(kAnswerTail);
    WAP_TRACE(kTraceEntries, "pcOutJson: %s\r\n", pcOut);
    return 0;
}
