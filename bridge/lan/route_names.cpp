#include "lan/route_names.h"

#include <arpa/inet.h>
#include <string.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/report.h"
#include "common/requests.h"
#include "common/scan.h"
#include "records/wan_record.h"
#include "wan/jni_wan_info.h"

using namespace wap;

namespace {

/// Not the sender of the port mappings, who ask for the same record.
constexpr GeneralRoute kAskWan = {"gulm", 321, kRpcGetWanRecord};

constexpr uint32_t kErrNoName = 1;
constexpr uint32_t kErrNoPrefix = 1;

constexpr char kWanWord[] = "wan";
constexpr uint32_t kWanWordLength = sizeof(kWanWord) - 1;
/// The shortest name that a list shows: that of "wanx.y".
constexpr uint32_t kInterfaceMin = 6;
/// A number that is not there, or is too large.
constexpr uint32_t kNoNumber = UINT32_MAX;

bool IsDigit(char cChar) {
    return cChar >= '0' && cChar <= '9';
}

bool IsHexDigit(char cChar) {
    return IsDigit(cChar) || (cChar >= 'a' && cChar <= 'f') || (cChar >= 'A' && cChar <= 'F');
}

/// Reads a number as an unsigned one of 32 bits, to which negative ones wrap, and moves behind it.
uint32_t ReadNumber(const char *&pcAt) {
    int64_t lNumber = 0;
    const bool bFits = ScanNumber(pcAt, lNumber) && lNumber > -kScanTooLarge && lNumber < kNoNumber;
    return bFits ? static_cast<uint32_t>(lNumber) : kNoNumber;
}

/// The kind of connection that a word says; 0 for none.
uint32_t KindOf(const char *pcWord, uint32_t uiLength) {
    char acWord[8] = {};
    if (VT_OS_StrNCpy_S(acWord, sizeof(acWord), pcWord, uiLength) != 0) {
        return 0;
    }
    if (VT_OS_StrCaseCmp(acWord, "ppp") == 0) {
        return kWanKindPpp;
    }
    return VT_OS_StrCaseCmp(acWord, "ip") == 0 ? kWanKindIp : 0;
}

/// Where the connection's own number begins behind the last point: from the second character on,
/// and with one of these digits only. Deliberate: names whose last number begins with a 0 or a 9
/// are not converted, though a connection may be called so.
const char *FindConnectionNumber(const char *pcPoint) {
    if (pcPoint == nullptr || pcPoint[1] == '\0') {
        return nullptr;
    }
    const char *pcAt = pcPoint + 2;
    while (*pcAt != '\0' && (*pcAt < '1' || *pcAt > '8')) {
        ++pcAt;
    }
    return *pcAt == '\0' ? nullptr : pcAt;
}

/// The WAN index of an alias; 0 in it when there is none.
uint32_t FindWanIndex(const char *pcAlias, uint32_t &uiWanIndex) {
    WanIfList stList = {};
    const uint32_t uiResult = AskWanList(stList);
    if (uiResult != 0) {
        return uiResult;
    }
    if (stList.uiCount > kWansMax) {
        // Not cut to what there is room for, unlike elsewhere: a route must not lead through a
        // connection of a list that can't be right.
        return Recorded(WAP_SPOT, kErrNoName, stList.uiCount);
    }
    for (uint32_t i = 0; i < stList.uiCount; ++i) {
        const FieldText stName(stList.astEntries[i].acName);
        if (VT_OS_StrCaseCmp(pcAlias, stName.Lend()) == 0) {
            uiWanIndex = stList.astEntries[i].uiWanIndex;
            return 0;
        }
    }
    return 0;
}

/// Copies what a list shows, all of it.
uint32_t Show(const char *pcName, char (&acShown)[kShownNameSize]) {
    const uint32_t uiLength = VT_OS_StrLen(pcName);
    if (VT_OS_StrNCpy_S(acShown, sizeof(acShown), pcName, uiLength) != 0) {
        return Recorded(WAP_SPOT, kErrNoName, uiLength);
    }
    WAP_TRACE(kTraceEntries, "pcAliasName:%s \r\n", acShown);
    return 0;
}

/// Reads an address as it stands, or without what is no digit at its end.
bool ReadAddress(char *pcAddress, uint8_t (&aucAddress)[16]) {
    if (inet_pton(AF_INET6, pcAddress, aucAddress) == 1) {
        return true;
    }
    size_t uiLength = strlen(pcAddress);
    while (uiLength > 0 && !IsHexDigit(pcAddress[uiLength - 1])) {
        pcAddress[--uiLength] = '\0';
    }
    return inet_pton(AF_INET6, pcAddress, aucAddress) == 1;
}

}  // namespace

bool wap::IsDefaultRoute(const Ipv6Prefix &stPrefix) {
    constexpr Ipv6Prefix kDefault = {};
    return memcmp(&stPrefix, &kDefault, sizeof(kDefault)) == 0;
}

bool wap::IsLanBridge(const char *pcInterface) {
    return VT_OS_StrCaseCmp(pcInterface, kLanBridge) == 0;
}

bool wap::IsWanName(const char *pcInterface) {
    return VT_OS_StrCaseStr(pcInterface, kWanWord) != nullptr;
}

uint32_t wap::FindConnectionName(const char *pcAlias, char (&acName)[kConnectionNameSize]) {
    static_assert(kConnectionNameSize == kWanIfNameSize);
    uint32_t uiWanIndex = 0;
    const uint32_t uiResult = FindWanIndex(pcAlias, uiWanIndex);
    if (uiResult != 0) {
        return uiResult;
    }
    // An index without a kind, and so that of an unknown alias, has no name.
    if (VT_API_GetWanIfName(uiWanIndex, acName) != 0) {
        return Recorded(WAP_SPOT, kErrNoName, uiWanIndex);
    }
    return 0;
}

uint32_t wap::ParseConnectionName(const char *pcName, uint32_t *puiWanIndex) {
    char acName[kConnectionNameSize] = {};
    PutField(acName, pcName);
    const uint32_t uiLength = VT_OS_StrLen(acName);
    if (uiLength <= kWanWordLength || puiWanIndex == nullptr) {
        return Recorded(WAP_SPOT, kErrNoName, uiLength);
    }
    const char *pcAt = acName + kWanWordLength;
    WanPlace stPlace = {0, ReadNumber(pcAt), kNoNumber, kNoNumber};
    if (*pcAt == '.') {
        ++pcAt;
        stPlace.uiConnDev = ReadNumber(pcAt);
    }
    const char *pcPoint = strrchr(acName, '.');
    const char *pcNumber = FindConnectionNumber(pcPoint);
    if (pcNumber == nullptr) {
        return Recorded(WAP_SPOT, kErrNoName, stPlace.uiWanDev, stPlace.uiConnDev);
    }
    const char *pcWord = pcPoint + 1;
    stPlace.uiKind = KindOf(pcWord, static_cast<uint32_t>(pcNumber - pcWord));
    stPlace.uiConnIns = ReadNumber(pcNumber);
    if (stPlace.uiKind == 0 || stPlace.uiWanDev == kNoNumber || stPlace.uiConnDev == kNoNumber ||
        stPlace.uiConnIns == kNoNumber) {
        return Recorded(WAP_SPOT, kErrNoName, stPlace.uiWanDev, stPlace.uiConnDev,
                        stPlace.uiConnIns);
    }
    // 8 bits of the last number, though an index has room for 12: those who number the connections
    // of routes count on the narrow form.
    *puiWanIndex =
        PackWanIndex(stPlace.uiKind, stPlace.uiWanDev, stPlace.uiConnDev, stPlace.uiConnIns & 0xFF);
    return 0;
}

uint32_t wap::ShowInterface(const char *pcInterface, char (&acShown)[kShownNameSize]) {
    const uint32_t uiLength = VT_OS_StrLen(pcInterface);
    if (uiLength < kInterfaceMin) {
        return Recorded(WAP_SPOT, kErrNoName, uiLength);
    }
    if (!IsWanName(pcInterface)) {
        return Show(pcInterface, acShown);
    }
    uint32_t uiWanIndex = 0;
    if (ParseConnectionName(pcInterface, &uiWanIndex) != 0) {
        return kErrNoName;
    }
    WanRecord stWan = {};
    const uint32_t uiResult = Ask(kAskWan, WanRecordRequest{0, uiWanIndex}, stWan);
    if (Recorded(WAP_SPOT, uiResult, uiWanIndex) != 0) {
        return uiResult;
    }
    const FieldText stAlias(stWan.acName);
    return Show(stAlias.Lend(), acShown);
}

uint32_t VT_Route6_GetIpStuctFromString(const char *pcText, Ipv6Prefix *pstPrefix) {
    if (pcText == nullptr || pstPrefix == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    char acText[64] = {};
    PutField(acText, pcText);
    char *pcRest = nullptr;
    char *pcAddress = VT_OS_StrtokR(acText, "/", &pcRest);
    const char *pcLength = pcAddress == nullptr ? nullptr : VT_OS_StrtokR(nullptr, "/", &pcRest);
    Ipv6Prefix stPrefix = {};
    if (pcLength == nullptr || VT_OS_StrToUInt32(pcLength, &stPrefix.uiLength) != 0 ||
        !ReadAddress(pcAddress, stPrefix.aucAddress)) {
        return Recorded(WAP_SPOT, kErrNoPrefix);
    }
    *pstPrefix = stPrefix;
    return 0;
}
