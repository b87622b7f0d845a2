#include "support/entry_table.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI.h>

#include <ostream>
#include <stdexcept>

namespace wap::test {

std::ostream &operator<<(std::ostream &stOut, const Answer &stAnswer) {
    if (stAnswer.iNumber) {
        return stOut << *stAnswer.iNumber;
    }
    return stAnswer.sText ? stOut << '"' << *stAnswer.sText << '"' : stOut << "null";
}

Answer TextAnswerOf(std::string sText) {
    return {std::move(sText), std::nullopt};
}

Answer NumberAnswerOf(int32_t iNumber) {
    return {std::nullopt, iNumber};
}

Answer NullAnswer() {
    return {};
}

namespace {

using TextMethod = jstring (*)(JNIEnv *, jobject);

std::function<Answer(FakeJni &)> CallText(TextMethod pfnMethod) {
    return [pfnMethod](FakeJni &stEnv) {
        const jstring jText = pfnMethod(&stEnv, stEnv.JavaObject());
        return Answer{stEnv.Utf8Of(jText), std::nullopt};
    };
}

std::function<Answer(FakeJni &)> CallNumber(jint (*pfnMethod)(JNIEnv *, jobject)) {
    return [pfnMethod](FakeJni &stEnv) {
        return NumberAnswerOf(pfnMethod(&stEnv, stEnv.JavaObject()));
    };
}

std::function<Answer(FakeJni &)> CallRate(jint (*pfnMethod)(JNIEnv *, jobject, jint)) {
    return [pfnMethod](FakeJni &stEnv) {
        return NumberAnswerOf(pfnMethod(&stEnv, stEnv.JavaObject(), 12345));
    };
}

#define WAP_ENTRY(prefix, method) \
    "Java_com_veltra_domoline_deviceservice_kavo_wap_" #prefix "_" #method, #method
#define WAP_INFO(method)                                   \
    WAP_ENTRY(gulm_jni_DeviceInfoQueryServiceJNI, method), \
        CallText(                                          \
            Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_##method)
#define WAP_SECRET(method)                                       \
    WAP_ENTRY(gulm_jni_DeviceSecretInfoQueryServiceJNI, method), \
        CallText(                                                \
            Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI_##method)
#define WAP_INFO_FUNCTION(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI_##method

std::vector<Entry> MakeEntries() {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    return {
        {WAP_ENTRY(JNINativeMethods, startThread),
         CallNumber(Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         NumberAnswerOf(0), NumberAnswerOf(1), 0, false},
        {WAP_INFO(getDeviceInfo),
         TextAnswerOf("{\"Result\":0 , \"Vendor\":\"Example Works\", \"ProductCLass\":\"HG-7\", "
                      "\"HardwareVer\":\"A1.2\", \"FirmwareVer\":\"V3.0.1\", \"FlashSize\":256, "
                      "\"RamSize\":512, \"MainChipClass\":\"AX-9\", \"NFC\":\"1\"}"),
         TextAnswerOf("{\"Result\":-1}"), 0x47209035, false},
        {WAP_INFO(getDeviceMAC), TextAnswerOf("02:A1:B2:00:00:01"), stFault, 0x47209032, false},
        {WAP_ENTRY(gulm_jni_DeviceInfoQueryServiceJNI, getDeviceUpTime),
         CallNumber(WAP_INFO_FUNCTION(getDeviceUpTime)), NumberAnswerOf(86400), NumberAnswerOf(-1),
         0x47209036, false},
        {WAP_INFO(getAPIVersion), TextAnswerOf("1.0"), stFault, 0, false},
        {WAP_ENTRY(gulm_jni_DeviceInfoQueryServiceJNI, getCPUOccupancyRate),
         CallRate(WAP_INFO_FUNCTION(getCPUOccupancyRate)), NumberAnswerOf(42), NumberAnswerOf(-1),
         0, false},
        {WAP_ENTRY(gulm_jni_DeviceInfoQueryServiceJNI, getRAMOccupancyRate),
         CallRate(WAP_INFO_FUNCTION(getRAMOccupancyRate)), NumberAnswerOf(57), NumberAnswerOf(-1),
         0, false},
        {WAP_SECRET(getDevicePassword), TextAnswerOf(kDevicePassword), stFault, 0x47209050, true},
        {WAP_SECRET(getDeviceManufacturerOUI), TextAnswerOf("02A1B2"), stFault, 0x4720136A, false},
        {WAP_SECRET(getDeviceSerialNumber), TextAnswerOf("EX0123456789AB"), stFault, 0x4720136A,
         false},
        {WAP_SECRET(getDeviceDefaultWebPassword), TextAnswerOf(kWebPassword), stFault, 0x47209037,
         true},
        {WAP_SECRET(getDeviceDefaultSSID1Name), TextAnswerOf("Home-2G"), stFault, 0x47209037, true},
        {WAP_SECRET(getDeviceDefaultSSID1Password), TextAnswerOf(kSsidPassword), stFault,
         0x47209037, true},
    };
}

}  // namespace

const std::vector<Entry> &Entries() {
    static const std::vector<Entry> s_astEntries = MakeEntries();
    return s_astEntries;
}

const Entry &EntryOf(const std::string &sMethod) {
    for (const Entry &stEntry : Entries()) {
        if (stEntry.sMethod == sMethod) {
            return stEntry;
        }
    }
    throw std::invalid_argument("no entry " + sMethod);
}

}  // namespace wap::test
