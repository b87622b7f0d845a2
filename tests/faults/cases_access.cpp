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
constexpr uint32_t kSetFilterMode = 0x47209091;
constexpr uint32_t kAddWired = 0x47209092;
constexpr uint32_t kAddWireless = 0x47209094;
constexpr uint32_t kDeleteWired = 0x47209093;
constexpr uint32_t kDeleteWireless = 0x47209095;
constexpr uint32_t kRestoreWireless = 0x4730701D;
constexpr uint32_t kAttachList = 0x47307034;
constexpr uint32_t kFtpCount = 0x47201064;
constexpr uint32_t kSambaCount = 0x48200114;

/// The filter in a mode, and whether it is on; with its wireless networks.
std::function<void(World &)> Filter(uint32_t uiMode, uint32_t uiStatus) {
    return [=](World &stWorld) {
        stWorld.stPlatform.mapReplies[kFilterMode] = {0, ModeBytes(uiMode, uiStatus)};
        stWorld.stPlatform.setFeatures = {314};
    };
}

/// The record of a host that may not use the storage.
std::string BarredHost() {
    return Field("02:00:00:00:00:0A", 32) + Word(1) + Word(0) + std::string(24, '\0');
}

/// Two wireless entries, the second of which stays, so that the first has to be put back, and the
/// wired one too. What the tables hold then, the filter's own tests look at.
std::function<void(World &)> SecondDeletionRefused() {
    return [](World &stWorld) {
        Filter(0, 1)(stWorld);
        stWorld.stPlatform.mapReplies[0x47309027] = {0, IndexBytes({4, 6}, 256)};
        stWorld.stPlatform.fnReply = [](const RpcRecord &stRpc) -> std::optional<Reply> {
            const bool bSecond = stRpc.uiRpcId == kDeleteWireless && stRpc.sRequest == Word(6);
            return bSecond ? std::optional(Reply{0x1234, ""}) : std::nullopt;
        };
    };
}

}  // namespace

std::vector<CaseRow> FilterCases() {
    const auto fnMac = Texts({u"02:00:00:00:00:0a"});
    const auto fnTwoMacs = Texts({u"02:00:00:00:00:0a", u"02:00:00:00:00:0b"});
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
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
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromBlackList, fnMac),
         "undone",
         stFailed,
         SecondDeletionRefused(),
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
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, NoTexts()), "all",
         stDone},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, Texts({kKnown})),
         "barred",
         stDone,
         Answering(0x47307030, {0, BarredHost()}),
         {0x47209097}},
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
