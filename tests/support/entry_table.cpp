#include "support/entry_table.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceSecretInfoQueryServiceJNI.h>

#include <ostream>
#include <sstream>
#include <stdexcept>

#include "support/entry_calls.h"

namespace wap::test {

std::ostream &operator<<(std::ostream &stOut, const Answer &stAnswer) {
    if (stAnswer.iNumber) {
        return stOut << *stAnswer.iNumber;
    }
    return stAnswer.sText ? stOut << '"' << *stAnswer.sText << '"' : stOut << "null";
}

std::string TextOf(const Answer &stAnswer) {
    std::ostringstream stOut;
    stOut << stAnswer;
    return stOut.str();
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

std::vector<Entry> MakeEntries() {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    return {
        // The one method outside the services' package.
        {WAP_SYMBOL_OF(
             Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         "startThread",
         Calling(Java_com_veltra_domoline_deviceservice_kavo_wap_JNINativeMethods_startThread),
         NumberAnswerOf(0), NumberAnswerOf(1), 0, false},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceInfo),
         TextAnswerOf("{\"Result\":0 , \"Vendor\":\"Example Works\", \"ProductCLass\":\"HG-7\", "
                      "\"HardwareVer\":\"A1.2\", \"FirmwareVer\":\"V3.0.1\", \"FlashSize\":256, "
                      "\"RamSize\":512, \"MainChipClass\":\"AX-9\", \"NFC\":\"1\"}"),
         TextAnswerOf("{\"Result\":-1}"), 0x47209035, false},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceMAC), TextAnswerOf("02:A1:B2:00:00:01"), stFault,
         0x47209032, false},
        {WAP_ENTRY(DeviceInfoQuery, getDeviceUpTime), NumberAnswerOf(86400), NumberAnswerOf(-1),
         0x47209036, false},
        {WAP_ENTRY(DeviceInfoQuery, getAPIVersion), TextAnswerOf("1.0"), stFault, 0, false},
        {WAP_ENTRY(DeviceInfoQuery, getCPUOccupancyRate, Number(12345)), NumberAnswerOf(42),
         NumberAnswerOf(-1), 0, false},
        {WAP_ENTRY(DeviceInfoQuery, getRAMOccupancyRate, Number(12345)), NumberAnswerOf(57),
         NumberAnswerOf(-1), 0, false},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDevicePassword), TextAnswerOf(kDevicePassword),
         stFault, 0x47209050, true},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceManufacturerOUI), TextAnswerOf("02A1B2"),
         stFault, 0x4720136A, false},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceSerialNumber), TextAnswerOf("EX0123456789AB"),
         stFault, 0x4720136A, false},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultWebPassword), TextAnswerOf(kWebPassword),
         stFault, 0x47209037, true},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultSSID1Name), TextAnswerOf("Home-2G"),
         stFault, 0x47209037, true},
        {WAP_ENTRY(DeviceSecretInfoQuery, getDeviceDefaultSSID1Password),
         TextAnswerOf(kSsidPassword), stFault, 0x47209037, true},
    };
}

}  // namespace

const std::vector<Entry> &BasicEntries() {
    static const std::vector<Entry> s_astEntries = MakeEntries();
    return s_astEntries;
}

Entry EntryOf(const std::vector<Entry> &astEntries, const std::string &sMethod) {
    for (const Entry &stEntry : astEntries) {
        if (stEntry.sMethod == sMethod) {
            return stEntry;
        }
    }
    throw std::invalid_argument("no entry " + sMethod);
}

Entry EntryOf(const std::string &sMethod) {
    return EntryOf(BasicEntries(), sMethod);
}

}  // namespace wap::test
