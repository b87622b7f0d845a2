#include "access/jni_attach_control.h"

#include "access/jni_macflter.h"
#include "access/mac_text.h"
#include "common/fields.h"
#include "common/id_table.h"
#include "common/jni_common.h"
#include "common/list_answer.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"

using namespace wap;

namespace {

constexpr GeneralRoute kListRecords = {"gulm", 56, kRpcListAttachControls};
constexpr GeneralRoute kGetRecord = {"gulm", 56, kRpcGetAttachControl};
constexpr GeneralRoute kAddRecord = {"osgi_proxy", 0, kRpcAddAttachControl};
constexpr GeneralRoute kSetRecord = {"osgi_proxy", 0, kRpcSetAttachControl};

/// Hosts in one call, of each kind.
constexpr uint32_t kHostsMax = 128;
static_assert(kAttachControlsMax <= kHostsMax);

constexpr uint32_t kRecordSize = sizeof(AttachControl);

/// Bytes of the report for each host, and for what is around them.
constexpr uint32_t kReportShare = 128;

/// The MAC filter as far as it decides who may use the internet.
class FilterSettings {
  public:
    uint32_t Read() {
        char *pcText = nullptr;
        const uint32_t uiResult = VT_API_getMacFltList(&pcText, &m_uiMode);
        m_stText.Adopt(pcText);
        return Recorded(WAP_SPOT, uiResult);
    }
    uint32_t InternetRightOf(const char *pcMac) const {
        if (!m_stText) {
            return 1;
        }
        // The list is one text, and a host is on it when its MAC shows up anywhere in there.
        const bool bListed = VT_OS_StrCaseStr(static_cast<const char *>(m_stText.Lend()),
                                              MacText(pcMac).acMac) != nullptr;
        const bool bTrustList = m_uiMode != 0;
        return bListed == bTrustList ? 1 : 0;
    }

  private:
    PlatformBlock m_stText;
    uint32_t m_uiMode = 0;
};

/// All records, as read once.
class RecordList {
  public:
    uint32_t Read() {
        AttachControl *pstList = nullptr;
        const uint32_t uiResult = VT_API_getAttachControlList(&pstList, &m_uiCount);
        m_stBlock.Adopt(pstList);
        return uiResult;
    }
    const AttachControl *Lend() const {
        return static_cast<const AttachControl *>(m_stBlock.Lend());
    }
    uint32_t Count() const { return m_uiCount; }
    /// The record of a host, or null.
    const AttachControl *Find(const char *pcMac) const {
        uint32_t uiIndex = 0;
        return VT_API_getAttachControlIndex(Lend(), m_uiCount, pcMac, &uiIndex) == 0
                   ? Lend() + uiIndex
                   : nullptr;
    }
    /// The record with an instance id, or null.
    const AttachControl *FindInst(uint32_t uiInstId) const {
        for (uint32_t i = 0; i < m_uiCount; ++i) {
            if (Lend()[i].uiInstId == uiInstId) {
                return Lend() + i;
            }
        }
        return nullptr;
    }

  private:
    PlatformBlock m_stBlock;
    uint32_t m_uiCount = 0;
};

uint32_t SendAdd(SourceSpot stSpot, const AttachControl &stRecord, uint8_t ucMask) {
    AttachControlAdd stRequest = {};
    stRequest.stRecord = stRecord;
    stRequest.ucMask = ucMask;
    AttachInst stReply = {};
    return Recorded(stSpot, Ask(kAddRecord, stRequest, stReply));
}

uint32_t SendSet(SourceSpot stSpot, const AttachControl &stRecord, uint8_t ucMask) {
    AttachControlSet stRequest = {};
    stRequest.uiInstId = stRecord.uiInstId;
    stRequest.stRecord = stRecord;
    stRequest.ucMask = ucMask;
    AttachInst stReply = {};
    return Recorded(stSpot, Ask(kSetRecord, stRequest, stReply), stRecord.uiInstId);
}

/// Gives hosts a storage right, one after the other, and remembers those that it changed.
class StorageChange {
  public:
    StorageChange(const FilterSettings &stFilter, uint32_t uiRight)
        : m_stFilter(stFilter), m_uiRight(uiRight) {}

    /// @param pstRecord the host's record; null when it has none
    uint32_t Apply(const char *pcMac, const AttachControl *pstRecord) {
        const bool bNothingToDo =
            pstRecord != nullptr ? pstRecord->uiStorageRight == m_uiRight : m_uiRight != 0;
        if (bNothingToDo) {
            return 0;
        }
        const uint32_t uiInternet = m_stFilter.InternetRightOf(pcMac);
        const uint32_t uiResult = pstRecord != nullptr
                                      ? VT_API_setStorageRight(pstRecord, uiInternet, m_uiRight)
                                      : VT_API_addStorageRight(pcMac, uiInternet, m_uiRight);
        if (uiResult == 0 && m_uiChanged < kHostsMax) {
            m_astChanged[m_uiChanged++] = {pcMac, pstRecord != nullptr ? pstRecord->uiInstId : 0};
        }
        return uiResult;
    }
    /// A host named twice has its right already the second time, which the list doesn't show yet.
    bool HasChanged(const char *pcMac) const {
        const MacText stMac(pcMac);
        for (uint32_t i = 0; i < m_uiChanged; ++i) {
            if (SameMac(stMac.acMac, m_astChanged[i].pcMac)) {
                return true;
            }
        }
        return false;
    }
    /// The second pass: gives those that changed the opposite right. Reads the list again, because
    /// hosts that had no record have one now. Goes on when one fails: nothing better can be done.
    void Undo() const {
        if (m_uiChanged == 0) {
            return;
        }
        RecordList stList;
        if (Recorded(WAP_SPOT, stList.Read(), m_uiChanged) != 0) {
            return;
        }
        StorageChange stOpposite(m_stFilter, m_uiRight == 0 ? 1 : 0);
        for (uint32_t i = 0; i < m_uiChanged; ++i) {
            const Changed &stChanged = m_astChanged[i];
            // By its id: a host can have several records, and each was changed for itself.
            const AttachControl *pstRecord = stChanged.uiInstId != 0
                                                 ? stList.FindInst(stChanged.uiInstId)
                                                 : stList.Find(stChanged.pcMac);
            const uint32_t uiResult = stOpposite.Apply(stChanged.pcMac, pstRecord);
            (void)Recorded(WAP_SPOT, uiResult, i, m_uiChanged);
        }
    }

  private:
    struct Changed {
        const char *pcMac;
        uint32_t uiInstId;  ///< 0 for a record that was made
    };

    const FilterSettings &m_stFilter;
    uint32_t m_uiRight;
    Changed m_astChanged[kHostsMax] = {};
    uint32_t m_uiChanged = 0;
};

/// Reads what the rights of a host depend on.
uint32_t ReadBoth(FilterSettings &stFilter, RecordList &stList) {
    const uint32_t uiResult = stFilter.Read();
    return uiResult != 0 ? uiResult : stList.Read();
}

/// Reads what a change of storage rights depends on, lets the hosts be gone through, and undoes
/// what was done when one of them fails.
template <class Walk>
uint32_t ChangeRights(SourceSpot stSpot, uint32_t uiRight, Walk fnWalk) {
    FilterSettings stFilter;
    RecordList stList;
    uint32_t uiResult = ReadBoth(stFilter, stList);
    if (uiResult == 0) {
        StorageChange stChange(stFilter, uiRight);
        uiResult = fnWalk(stList, stChange);
        if (uiResult != 0) {
            stChange.Undo();
        }
    }
    return Recorded(stSpot, uiResult, uiRight);
}

}  // namespace

uint32_t VT_API_getAttachControlList(AttachControl **ppstList, uint32_t *puiCount) {
    if (ppstList == nullptr || puiCount == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AttachInstList stIndex = {};
    PlatformBlock stList;
    const uint32_t uiResult = FetchIdTable<AttachControl>(
        WAP_SPOT, kListRecords, stIndex, stList,
        [](uint32_t uiIndex, uint32_t uiInstId, AttachControl &stRecord) -> uint32_t {
            const uint32_t uiFailure = Ask(kGetRecord, AttachInst{uiInstId}, stRecord);
            EndField(stRecord.acMac);
            stRecord.uiInstId = uiInstId;
            return Recorded(WAP_SPOT, uiFailure, uiIndex, uiInstId);
        });
    if (uiResult != 0) {
        return uiResult;
    }
    *puiCount = stIndex.uiCount;
    *ppstList = static_cast<AttachControl *>(stList.Release());
    return 0;
}

uint32_t VT_API_getAttachControlIndex(const AttachControl *pstList, uint32_t uiCount,
                                      const char *pcMac, uint32_t *puiIndex) {
    if ((pstList == nullptr && uiCount != 0) || puiIndex == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument, uiCount);
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (SameMac(pstList[i].acMac, pcMac)) {
            *puiIndex = i;
            return 0;
        }
    }
    return 1;
}

uint32_t VT_API_addStorageRight(const char *pcMac, uint32_t uiInternetRight,
                                uint32_t uiStorageRight) {
    if (pcMac == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AttachControl stRecord = {};
    PutField(stRecord.acMac, pcMac);
    stRecord.uiInternetRight = uiInternetRight;
    stRecord.uiStorageRight = uiStorageRight;
    return SendAdd(WAP_SPOT, stRecord, kAttachMaskStorage);
}

uint32_t VT_API_setStorageRight(const AttachControl *pstRecord, uint32_t uiInternetRight,
                                uint32_t uiStorageRight) {
    if (pstRecord == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AttachControl stRecord = *pstRecord;
    stRecord.uiInternetRight = uiInternetRight;
    stRecord.uiStorageRight = uiStorageRight;
    return SendSet(WAP_SPOT, stRecord, kAttachMaskStorage);
}

uint32_t VT_API_setStorageRightList(const char *const *ppcMacs, uint32_t uiCount,
                                    uint32_t uiRight) {
    if (ppcMacs == nullptr || uiCount > kHostsMax) {
        return Recorded(WAP_SPOT, 1, uiCount);
    }
    return ChangeRights(
        WAP_SPOT, uiRight, [=](const RecordList &stList, StorageChange &stChange) -> uint32_t {
            for (uint32_t i = 0; i < uiCount; ++i) {
                const char *pcMac = ppcMacs[i];
                if (pcMac == nullptr) {
                    WAP_TRACE(kTraceEntries, "VT_API_setStorageRightList Mac[%u] is Null\r\n", i);
                    continue;
                }
                const uint32_t uiResult =
                    stChange.HasChanged(pcMac) ? 0 : stChange.Apply(pcMac, stList.Find(pcMac));
                if (uiResult != 0) {
                    return uiResult;
                }
            }
            return 0;
        });
}

uint32_t VT_API_changeStorgeRightList(uint32_t uiRight) {
    return ChangeRights(WAP_SPOT, uiRight,
                        [](const RecordList &stList, StorageChange &stChange) -> uint32_t {
                            for (uint32_t i = 0; i < stList.Count(); ++i) {
                                const AttachControl &stRecord = stList.Lend()[i];
                                const uint32_t uiResult = stChange.Apply(stRecord.acMac, &stRecord);
                                if (uiResult != 0) {
                                    return uiResult;
                                }
                            }
                            return 0;
                        });
}

uint32_t VT_JNI_addLANHostToStorageBlackList(const char *const *ppcMacs, uint32_t uiCount) {
    if (VT_JNI_MacfltNullCheck(ppcMacs, uiCount) != 0) {
        return 0;
    }
    return ZeroOrFailed(WAP_SPOT, VT_API_setStorageRightList(ppcMacs, uiCount, 0));
}

uint32_t VT_JNI_delLANHostFromStorageBlackList(const char *const *ppcMacs, uint32_t uiCount) {
    // Nobody named means everybody: that is how Java empties the list.
    const bool bAll = VT_JNI_MacfltNullCheck(ppcMacs, uiCount) != 0;
    return ZeroOrFailed(WAP_SPOT, bAll ? VT_API_changeStorgeRightList(1)
                                       : VT_API_setStorageRightList(ppcMacs, uiCount, 1));
}

uint32_t VT_API_addSpeedLimit(const char *pcMac, uint32_t uiInternetRight, uint32_t uiUp,
                              uint32_t uiDown) {
    if (pcMac == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AttachControl stRecord = {};
    PutField(stRecord.acMac, pcMac);
    stRecord.uiInternetRight = uiInternetRight;
    stRecord.uiStorageRight = 1;
    stRecord.uiUsBandwidth = uiUp;
    stRecord.uiDsBandwidth = uiDown;
    return SendAdd(WAP_SPOT, stRecord, kAttachMaskNewLimits);
}

uint32_t VT_API_setSpeedLimit(const AttachControl *pstRecord, uint32_t uiInternetRight,
                              uint32_t uiUp, uint32_t uiDown) {
    if (pstRecord == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    AttachControl stRecord = *pstRecord;
    stRecord.uiInternetRight = uiInternetRight;
    stRecord.uiUsBandwidth = uiUp;
    stRecord.uiDsBandwidth = uiDown;
    return SendSet(WAP_SPOT, stRecord, kAttachMaskLimits);
}

uint32_t VT_API_setSpeedLimitInfo(const char *pcMac, uint32_t uiUp, uint32_t uiDown) {
    if (pcMac == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    FilterSettings stFilter;
    RecordList stList;
    uint32_t uiResult = ReadBoth(stFilter, stList);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult);
    }
    const AttachControl *pstRecord = stList.Find(pcMac);
    const uint32_t uiUpNow = pstRecord == nullptr ? 0 : pstRecord->uiUsBandwidth;
    const uint32_t uiDownNow = pstRecord == nullptr ? 0 : pstRecord->uiDsBandwidth;
    if (uiUpNow == uiUp && uiDownNow == uiDown) {
        return 0;
    }
    const uint32_t uiInternet = stFilter.InternetRightOf(pcMac);
    uiResult = pstRecord == nullptr ? VT_API_addSpeedLimit(pcMac, uiInternet, uiUp, uiDown)
                                    : VT_API_setSpeedLimit(pstRecord, uiInternet, uiUp, uiDown);
    return Recorded(WAP_SPOT, uiResult, uiUp, uiDown);
}

uint32_t VT_JNI_setLANHostSpeedLimit(const char *pcMac, uint32_t uiUp, uint32_t uiDown) {
    return ZeroOrFailed(WAP_SPOT, VT_API_setSpeedLimitInfo(pcMac, uiUp, uiDown));
}

uint32_t VT_API_getAttachControlListByMac(const char *const *ppcMacs, uint32_t uiCount,
                                          AttachControl **ppstHosts) {
    if (ppcMacs == nullptr || ppstHosts == nullptr || uiCount == 0 || uiCount > kHostsMax) {
        return Recorded(WAP_SPOT, 1, uiCount);
    }
    RecordList stList;
    const uint32_t uiResult = stList.Read();
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult);
    }
    PlatformBlock stHosts;
    if (!stHosts.Make(uiCount * kRecordSize, WAP_SPOT)) {
        return Recorded(WAP_SPOT, 1, uiCount);
    }
    auto *pstHosts = static_cast<AttachControl *>(stHosts.Lend());
    for (uint32_t i = 0; i < uiCount; ++i) {
        const AttachControl *pstRecord = stList.Find(ppcMacs[i]);
        if (pstRecord != nullptr) {
            pstHosts[i] = *pstRecord;
        } else {
            PutField(pstHosts[i].acMac, ppcMacs[i]);
            pstHosts[i].uiStorageRight = 1;
        }
    }
    *ppstHosts = static_cast<AttachControl *>(stHosts.Release());
    return 0;
}

uint32_t VT_API_getALLAttachControlList(AttachControl **ppstHosts, uint32_t *puiCount) {
    // A list as read never holds more than a report does.
    return Recorded(WAP_SPOT, VT_API_getAttachControlList(ppstHosts, puiCount));
}

uint32_t VT_JNI_getSpeedLimitJsonStr(const AttachControl *pstHosts, uint32_t uiCount,
                                     char **ppcText) {
    if ((pstHosts == nullptr && uiCount != 0) || uiCount > kHostsMax || ppcText == nullptr) {
        return Recorded(WAP_SPOT, 1, uiCount);
    }
    JsonValue stList(JNI_JSON_ObjNewArray());
    if (!stList) {
        return Recorded(WAP_SPOT, 1, uiCount);
    }
    // No MACs in the rows, deliberately: Java knows the hosts by their order.
    for (uint32_t i = 0; i < uiCount; ++i) {
        const JsonItem astRow[] = {
            {"UpSpeed", pstHosts[i].uiUsBandwidth, kItemInt, kEmptyAsText},
            {"DownSpeed", pstHosts[i].uiDsBandwidth, kItemInt, kEmptyAsText},
        };
        if (!AppendObject(WAP_SPOT, stList, astRow)) {
            return Recorded(WAP_SPOT, 1, i, uiCount);
        }
    }
    return ComposeList(WAP_SPOT, __func__, stList, kReportShare * (uiCount + 1), ppcText);
}

namespace {

/// Prints the records that one of the two queries gave, and releases them.
uint32_t Report(SourceSpot stSpot, uint32_t uiResult, AttachControl *pstHosts, uint32_t uiCount,
                char **ppcText) {
    PlatformBlock stHosts;
    stHosts.Adopt(pstHosts);
    if (uiResult == 0) {
        uiResult = VT_JNI_getSpeedLimitJsonStr(pstHosts, uiCount, ppcText);
    }
    return ZeroOrFailed(stSpot, uiResult);
}

}  // namespace

uint32_t VT_JNI_getAllLANHostSpeedLimitInfo(char **ppcText) {
    AttachControl *pstHosts = nullptr;
    uint32_t uiCount = 0;
    const uint32_t uiResult = VT_API_getALLAttachControlList(&pstHosts, &uiCount);
    return Report(WAP_SPOT, uiResult, pstHosts, uiCount, ppcText);
}

uint32_t VT_JNI_getSingleLANHostSpeedLimitInfo(const char *const *ppcMacs, uint32_t uiCount,
                                               char **ppcText) {
    AttachControl *pstHosts = nullptr;
    const uint32_t uiResult = VT_API_getAttachControlListByMac(ppcMacs, uiCount, &pstHosts);
    return Report(WAP_SPOT, uiResult, pstHosts, uiCount, ppcText);
}

uint32_t VT_JNI_getLANHostSpeedLimitInfo(const char *const *ppcMacs, uint32_t uiCount,
                                         char **ppcText) {
    return VT_JNI_MacfltNullCheck(ppcMacs, uiCount) != 0
               ? VT_JNI_getAllLANHostSpeedLimitInfo(ppcText)
               : VT_JNI_getSingleLANHostSpeedLimitInfo(ppcMacs, uiCount, ppcText);
}
