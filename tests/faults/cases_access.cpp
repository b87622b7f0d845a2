// What hosts may do: the MAC filter, storage rights and speed limits, the accounts of the shares.

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

#include "faults/sweep_cases.h"
#include "support/entry_calls.h"
#include "support/entry_table_rights.h"
#include "support/furnish_macfilter.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kFilterMode = 0x47307000;
constexpr uint32_t kWiredList = 0x47309024;
constexpr uint32_t kWiredEntry = 0x40007000;
constexpr uint32_t kWirelessList = 0x47309027;
constexpr uint32_t kWirelessEntry = 0x4730701A;
constexpr uint32_t kSetFilterMode = 0x47209091;
constexpr uint32_t kAddWired = 0x47209092;
constexpr uint32_t kAddWireless = 0x47209094;
constexpr uint32_t kDeleteWired = 0x47209093;
constexpr uint32_t kDeleteWireless = 0x47209095;
constexpr uint32_t kRestoreWireless = 0x4730701D;
constexpr uint32_t kAttachList = 0x47307034;
constexpr uint32_t kAttachRecord = 0x47307030;
constexpr uint32_t kAddAttach = 0x47209096;
constexpr uint32_t kSetAttach = 0x47209097;
constexpr uint32_t kFtpCount = 0x47201064;
constexpr uint32_t kSambaCount = 0x48200114;

/// The filter in a mode, and whether it is on; with its wireless networks.
std::function<void(World &)> Filter(uint32_t uiMode, uint32_t uiStatus) {
    return [=](World &stWorld) {
        stWorld.stPlatform.mapReplies[kFilterMode] = {0, ModeBytes(uiMode, uiStatus)};
        stWorld.stPlatform.setFeatures = {314};
    };
}

/// Refuses the requests of an RPC that say something.
void Refuse(World &stWorld, uint32_t uiRpcId, const std::string &sSaying) {
    stWorld.stPlatform.fnReply = [=](const RpcRecord &stRpc) -> std::optional<Reply> {
        const bool bRefused =
            stRpc.uiRpcId == uiRpcId && stRpc.sRequest.find(sSaying) != std::string::npos;
        return bRefused ? std::optional(Reply{0x1234, ""}) : std::nullopt;
    };
}

/// One wireless network takes the new address and the second does not, so that the entry of the
/// first has to go again, and the wired one too; both tables show them by then. What the tables
/// hold at the end, the filter's own tests look at.
std::function<void(World &)> SecondAdditionRefused(uint32_t uiMode) {
    return [=](World &stWorld) {
        Filter(uiMode, 1)(stWorld);
        stWorld.stPlatform.mapReplies[kWiredList] = {0, IndexBytes({3, 22}, 32)};
        stWorld.stPlatform.mapReplies[kWirelessList] = {0, IndexBytes({4, 23}, 256)};
        Refuse(stWorld, kAddWireless, "SSID-5");
    };
}

/// Two wireless entries, the second of which stays, so that the first has to be put back, and the
/// wired one too.
std::function<void(World &)> SecondDeletionRefused(uint32_t uiMode) {
    return [=](World &stWorld) {
        Filter(uiMode, 1)(stWorld);
        stWorld.stPlatform.mapReplies[kWirelessList] = {0, IndexBytes({4, 6}, 256)};
        Refuse(stWorld, kDeleteWireless, Word(6));
    };
}

/// The record of a host that may not use the storage.
std::string BarredHost(const std::string &sMac) {
    return Field(sMac, 32) + Word(1) + Word(0) + std::string(24, '\0');
}

/// The host that the filter has in both its tables may not use the storage either.
void BarredAndFiltered(World &stWorld) {
    FurnishMacFilter(stWorld);
    stWorld.stPlatform.mapReplies[kAttachRecord] = {0, BarredHost(kFilteredMac)};
}

/// Two hosts are barred, and the second stays so, while the record of the first is deleted: to be
/// barred again it needs a new one.
void RecordGoneBeforeUndoing(World &stWorld) {
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.mapReplies[kAttachList] = {0, IndexBytes({17, 18}, 128)};
    stPlatform.fnReply = [&stPlatform](const RpcRecord &stRpc) -> std::optional<Reply> {
        const bool bOfSecond = stRpc.sRequest.starts_with(Word(18));
        if (stRpc.uiRpcId == kAttachRecord) {
            return Reply{0, BarredHost(bOfSecond ? "02:00:00:00:00:0B" : kFilteredMac)};
        }
        if (stRpc.uiRpcId == kSetAttach && bOfSecond) {
            stPlatform.mapReplies[kAttachList] = {0, IndexBytes({18}, 128)};
            return Reply{0x1234, ""};
        }
        return std::nullopt;
    };
}

}  // namespace

std::vector<CaseRow> FilterCases() {
    const auto fnMac = Texts({u"02:00:00:00:00:0a"});
    const auto fnTwoMacs = Texts({u"02:00:00:00:00:0a", u"02:00:00:00:00:0b"});
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    const std::set<uint32_t> auiUnadding = {kWiredEntry, kWirelessEntry, kDeleteWired,
                                            kDeleteWireless};
    return {
        {WAP_ENTRY(LANHostsInfoQuery, getMacFilterMode), "off", stDone, Filter(0, 0)},
        {WAP_ENTRY(LANHostsInfoQuery, getMacFilterMode), "trust_list", NumberAnswerOf(2),
         Filter(1, 1)},
        {WAP_ENTRY(LanNetworkAccessConfig, setMacFilterMode, Number(1)), "nothing_to_do", stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, setMacFilterMode, Number(0)),
         "off",
         stDone,
         {},
         {kSetFilterMode}},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList, fnTwoMacs),
         "two_with_wlan",
         stDone,
         Filter(0, 1),
         {kAddWired, kAddWireless}},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList, NoTexts()), "nobody", stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList,
                   Texts(std::vector<std::optional<std::u16string>>(9, u"02:00:00:00:00:0a"))),
         "too_many", stFailed},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList, fnMac), "in_the_other_mode",
         stFailed, Filter(1, 1)},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromBlackList, fnTwoMacs),
         "two_with_wlan",
         stDone,
         Filter(0, 1),
         {kDeleteWired, kDeleteWireless}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromBlackList, NoTexts()),
         "all",
         stDone,
         Filter(0, 1),
         {kDeleteWired, kDeleteWireless}},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList, fnMac), "undone", stFailed,
         SecondAdditionRefused(0), auiUnadding},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromBlackList, fnMac),
         "undone",
         stFailed,
         SecondDeletionRefused(0),
         {kRestoreWireless, kAddWired}},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToTrustList, fnMac),
         "in_its_mode",
         stDone,
         Filter(1, 1),
         {kAddWired, kAddWireless}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromTrustList, fnMac),
         "in_its_mode",
         stDone,
         Filter(1, 1),
         {kDeleteWired, kDeleteWireless}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromTrustList, NoTexts()), "nobody", stDone,
         Filter(1, 1)},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToTrustList, fnMac), "undone", stFailed,
         SecondAdditionRefused(1), auiUnadding},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromTrustList, fnMac),
         "undone",
         stFailed,
         SecondDeletionRefused(1),
         {kRestoreWireless, kAddWired}},
    };
}

std::vector<CaseRow> AttachCases() {
    constexpr const char16_t *kKnown = u"02:00:00:00:00:0a";
    constexpr const char16_t *kUnknown = u"02:00:00:00:00:0c";
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    const Answer stFault = TextAnswerOf("{\"Result\":-1}");
    return {
        {WAP_ENTRY(LanHostSpeedLimit, setLANHostSpeedLimit, Text(kUnknown), Number(512),
                   Number(1024)),
         "unknown_host", stDone},
        {WAP_ENTRY(LanHostSpeedLimit, setLANHostSpeedLimit, Text(kKnown), Number(100), Number(200)),
         "nothing_to_do", stDone},
        {WAP_ENTRY(LanHostSpeedLimit, setLANHostSpeedLimit, NoText(), Number(1), Number(2)),
         "no_host", stFailed},
        {WAP_ENTRY(LanHostSpeedLimit, setLANHostSpeedLimit, Text(kKnown), Number(512),
                   Number(1024)),
         "filtered",
         stDone,
         FurnishMacFilter,
         {kWiredEntry, kWirelessEntry, kSetAttach}},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostSpeedLimitInfo, NoTexts()), "all",
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 100, \"DownSpeed\": 200 } ] }")},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostSpeedLimitInfo, NoTexts()), "none",
         TextAnswerOf("{ \"Result\": 0, \"List\": [ ] }"),
         Answering(kAttachList, {0, IndexBytes({}, 128)})},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostSpeedLimitInfo, Texts({kKnown, std::nullopt})),
         "null_element", stFault},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToStorageBlackList, NoTexts()), "nobody",
         stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToStorageBlackList,
                   Texts({kUnknown, std::nullopt})),
         "null_element", stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToStorageBlackList, Texts({kKnown})),
         "filtered",
         stDone,
         FurnishMacFilter,
         {kWiredEntry, kWirelessEntry, kSetAttach}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, NoTexts()), "all",
         stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, Texts({kKnown})),
         "barred",
         stDone,
         BarredAndFiltered,
         {kWiredEntry, kWirelessEntry, kSetAttach}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, NoTexts()),
         "undone",
         stFailed,
         RecordGoneBeforeUndoing,
         {kSetAttach, kAddAttach}},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, Texts({kUnknown})),
         "unknown_host", stDone},
    };
}

std::vector<CaseRow> RightsCases() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stRefused = NumberAnswerOf(-1);
    const auto fnUser = Text(u"share-user");
    return {
        {WAP_ENTRY(DeviceAccessRightQuery, getFTPRightInfo), "no_accounts",
         TextAnswerOf(kFtpRightText), Answering(kFtpCount, {0, Word(0)})},
        {WAP_ENTRY(DeviceAccessRightQuery, getSambaRightInfo), "absurd_count",
         TextAnswerOf("{ \"Result\": -1 }"), Answering(kSambaCount, {0, Word(0xFFFFFFFF)})},
        {WAP_ENTRY(DeviceAccessRightQuery, getSambaRightInfo), "refused",
         TextAnswerOf("{ \"Result\": -1 }"), Answering(0x4720903D, {7, ""})},
        {WAP_ENTRY(DeviceAccessRightQuery, getHTTPRightInfo), "empty", NullAnswer(),
         Answering(0x47209042, {0, std::string(256, '\0')})},
        {WAP_ENTRY(DeviceAccessRightConfig, setFTPRight, Number(0), Number(0)), "off", stDone},
        {WAP_ENTRY(DeviceAccessRightConfig, setFTPRight, Number(4), Number(0)), "no_right",
         stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, setSambaRight, Number(1), Number(5)), "first", stDone},
        {WAP_ENTRY(DeviceAccessRightConfig, addFTPAccount, fnUser, NoText()), "no_password",
         stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, addSambaAccount, NoText(),
                   Text(u"samba-password-ABCDEFGHIJ")),
         "no_user", stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, addSambaAccount, Letters(300, u'u'),
                   Text(u"samba-password-ABCDEFGHIJ")),
         "long_user", stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteFTPAccount, fnUser), "no_accounts", stRefused,
         Answering(kFtpCount, {0, Word(0)})},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteSambaAccount, NoText()), "no_user", stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteAllFTPAccount), "no_accounts", stDone,
         Answering(kFtpCount, {0, Word(0)})},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteAllSambaAccount), "no_accounts", stDone,
         Answering(kSambaCount, {0, Word(0)})},
        {WAP_ENTRY(DeviceAccessRightConfig, setHTTPRight, Number(0)), "off", stDone},
        {WAP_ENTRY(DeviceAccessRightConfig, setHTTPRight, Number(9)), "no_right", stRefused},
        {WAP_ENTRY(DeviceAccessRightConfig, setHTTPUserPassword, NoText()), "no_password",
         stRefused},
    };
}

}  // namespace wap::test
