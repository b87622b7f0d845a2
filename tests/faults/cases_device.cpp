// The device and what runs on it.

#include <com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_DeviceRsetServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI.h>

#include "faults/sweep_cases.h"
#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/furnish_runtime.h"
#include "support/wire_bytes.h"
#include "system/wap_msg_jni.h"

namespace wap::test {

namespace {

/// A password that fills its field of 64 bytes, and one that is nearly as long.
const std::string kFullPassword = "full-password-" + std::string(50, 'p');
const std::string kWidePassword = "wide-password-" + std::string(113, 'w');

std::function<void(World &)> WithSecret(uint32_t uiRpcId, const std::string &sRecord,
                                        const std::string &sSecret) {
    return [=](World &stWorld) {
        stWorld.stPlatform.mapReplies[uiRpcId] = {0, sRecord};
        stWorld.stSecrets.Watch(sSecret);
    };
}

std::string Defaults(size_t uiAt, const std::string &sText) {
    std::string sRecord(192, '\0');
    PutText(sRecord, uiAt, sText);
    return sRecord;
}

/// The Java runtime says something else.
std::function<void(World &)> Saying(const std::string &sText) {
    return [=](World &stWorld) { stWorld.stPlatform.stFiles.mapFiles = {{kVersionPath, sText}}; };
}

}  // namespace

std::vector<CaseRow> DeviceCases() {
    return {
        {WAP_SYMBOL_OF(
             Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         "startThread",
         Calling(Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         "again", NumberAnswerOf(0), [](World &) { uiInitFlag = 1; }},
        {WAP_SYMBOL_OF(
             Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         "startThread",
         Calling(Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         "without_the_library", NumberAnswerOf(0),
         [](World &stWorld) { stWorld.stPlatform.bNoLibrary = true; }},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceInfo), "empty_fields",
         TextAnswerOf("{\"Result\":0 , \"Vendor\":\"\", \"ProductCLass\":\"\", "
                      "\"HardwareVer\":\"\", \"FirmwareVer\":\"\", \"FlashSize\":0, "
                      "\"RamSize\":0, \"MainChipClass\":\"\", \"NFC\":\"\"}"),
         Answering(0x47209035, {0, std::string(336, '\0')})},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceMAC), "empty", NullAnswer(),
         Answering(0x47209032, {0, std::string(18, '\0')})},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceUpTime), "beyond_an_int", NumberAnswerOf(-2),
         Answering(0x47209036, {0, Word(0xFFFFFFFE)})},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDevicePassword), "full_field",
         TextAnswerOf(kFullPassword), WithSecret(0x47209050, kFullPassword, kFullPassword)},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultWebPassword), "long",
         TextAnswerOf(kWidePassword),
         WithSecret(0x47209037, Defaults(64, kWidePassword), kWidePassword)},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultSSID1Name), "empty", NullAnswer(),
         Answering(0x47209037, {0, std::string(192, '\0')})},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultSSID1Password), "empty", NullAnswer(),
         Answering(0x47209037, {0, std::string(192, '\0')})},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDevicePassword), "empty", NullAnswer(),
         Answering(0x47209050, {0, std::string(64, '\0')})},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceManufacturerOUI), "empty", NullAnswer(),
         Answering(0x4720136A, {0, std::string(265, '\0')})},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceManufacturerOUI), "too_long",
         TextAnswerOf("{ \"Result\": -1 }"), Answering(0x4720136A, {0, std::string(265, 'x')})},
    };
}

std::vector<CaseRow> RuntimeCases() {
    const auto fnBundle = Text(u"com.example.phone");
    return {
        {WAP_ENTRY(DeviceInfoQuery, getJVMInfo), "without_output",
         TextAnswerOf("{ \"Result\": 1, \"Name\": \"\", \"Version\": \"\", \"Vendor\": \"\" }"),
         [](World &stWorld) { stWorld.stPlatform.stFiles.mapFiles.clear(); }},
        {WAP_ENTRY(DeviceInfoQuery, getJVMInfo), "other_runtime",
         TextAnswerOf("{ \"Result\": 0, \"Name\": \"Small VM \", \"Version\": \"9\", "
                      "\"Vendor\": \"\" }"),
         Saying("small version \"9\"\nSmall VM (build 1)\n")},
        {WAP_ENTRY(DeviceInfoQuery, getJVMInfo), "nothing_said",
         TextAnswerOf("{ \"Result\": 0, \"Name\": \"\", \"Version\": \"\", \"Vendor\": \"\" }"),
         Saying("")},
        {WAP_ENTRY_OF(tarn, DeviceRset, reset), "refused", NumberAnswerOf(1),
         Answering(0x47209051, {9, ""})},
        {WAP_ENTRY(DeviceConfig, setLedSwitch, Number(0)), "off", NumberAnswerOf(0)},
        {WAP_ENTRY_OF(voip, VoIPInfoQuery, getPOTSInfo), "empty", NullAnswer(),
         Answering(0x47209061, {0, std::string(512, '\0')})},
        {WAP_ENTRY_OF(voip, VoIPInfoQuery, getPOTSInfo), "without_an_end",
         TextAnswerOf(std::string(512, 'x')), Answering(0x47209061, {0, std::string(600, 'x')})},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent, fnBundle, NoTexts()),
         "no_events", NumberAnswerOf(0)},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent, fnBundle,
                      Texts({std::nullopt, u"NOTIFY_VOICE_CALL_INFO"})),
         "null_event", NumberAnswerOf(0)},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent, fnBundle,
                      Texts({u"NOTIFY_OF_SOMETHING"})),
         "unknown_event", NumberAnswerOf(-1)},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent, NoText(), NoTexts()),
         "no_bundle", NumberAnswerOf(-1)},
        {WAP_ENTRY_OF(
             voip, VoIPInfoSubscribe, getUnSubscribeVoIPEvent, fnBundle,
             Texts(std::vector<std::optional<std::u16string>>(8, u"NOTIFY_VOICE_CALL_INFO"))),
         "many_events", NumberAnswerOf(0)},
        {WAP_ENTRY_OF(
             voip, VoIPInfoSubscribe, getUnSubscribeVoIPEvent, fnBundle,
             Texts(std::vector<std::optional<std::u16string>>(9, u"NOTIFY_VOICE_CALL_INFO"))),
         "too_many_events", NumberAnswerOf(-1)},
    };
}

}  // namespace wap::test
