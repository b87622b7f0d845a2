#include "support/entry_table_rights.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

namespace {

std::vector<Entry> RightQueries() {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    return {
        {WAP_ENTRY(DeviceAccessRightQuery, getFTPRightInfo), TextAnswerOf(kFtpRightText), stFault,
         0x47209038, false},
        {WAP_ENTRY(DeviceAccessRightQuery, getSambaRightInfo), TextAnswerOf(kSambaRightText),
         stFault, 0x4720903D, false},
        {WAP_ENTRY(DeviceAccessRightQuery, getHTTPRightInfo), TextAnswerOf(kHttpRightText), stFault,
         0x47209042, false},
    };
}

std::vector<Entry> RightChanges() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stRefused = NumberAnswerOf(-1);
    return {
        {WAP_ENTRY(DeviceAccessRightConfig, setFTPRight, Number(3), Number(7)), stDone, stRefused,
         0x47209039, false},
        {WAP_ENTRY(DeviceAccessRightConfig, setSambaRight, Number(2), Number(-1)), stDone,
         stRefused, 0x4720903E, false},
        {WAP_ENTRY(DeviceAccessRightConfig, addFTPAccount, Text(u"share-user"),
                   Text(u"ftp-password-0123456789")),
         stDone, stRefused, 0x4720903A, true},
        {WAP_ENTRY(DeviceAccessRightConfig, addSambaAccount, Text(u"share-user"),
                   Text(u"samba-password-ABCDEFGHIJ")),
         stDone, stRefused, 0x4720903F, true},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteFTPAccount, Text(u"share-user")), stDone,
         stRefused, 0x4720903B, false},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteSambaAccount, Text(u"share-user")), stDone,
         stRefused, 0x47209040, false},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteAllFTPAccount), stDone, stRefused, 0x4720903C,
         false},
        {WAP_ENTRY(DeviceAccessRightConfig, deleteAllSambaAccount), stDone, stRefused, 0x47209041,
         false},
        {WAP_ENTRY(DeviceAccessRightConfig, setHTTPRight, Number(1)), stDone, stRefused, 0x47209043,
         false},
        {WAP_ENTRY(DeviceAccessRightConfig, setHTTPUserPassword, Text(u"http-password-abcdefghij")),
         stDone, stRefused, 0x47209044, true},
    };
}

}  // namespace

std::vector<Entry> RightsEntries() {
    std::vector<Entry> astEntries = RightQueries();
    const std::vector<Entry> astChanges = RightChanges();
    astEntries.insert(astEntries.end(), astChanges.begin(), astChanges.end());
    return astEntries;
}

}  // namespace wap::test
