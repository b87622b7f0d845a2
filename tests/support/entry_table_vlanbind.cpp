#include "support/entry_table_vlanbind.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TransferQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_VLANBindConfigServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> VlanBindEntries() {
    return {
        {WAP_ENTRY(VLANBindConfig, setVLANBind, Text(u"LAN1"), Text(u"10/100,20/200")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x47209075, false},
        {WAP_ENTRY(VLANBindConfig, clearVLANBind, Text(u"SSID2")), NumberAnswerOf(0),
         NumberAnswerOf(-1), 0x47209075, false},
        {WAP_ENTRY(TransferQuery, getVLANBindInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ "
                      "{ \"LanInterface\": \"LAN1\", \"Bind\": \"10\\/100\" }, "
                      "{ \"LanInterface\": \"LAN2\", \"Bind\": \"10\\/100\" }, "
                      "{ \"LanInterface\": \"SSID1\", \"Bind\": \"20\\/200,30\\/300\" }, "
                      "{ \"LanInterface\": \"SSID2\", \"Bind\": \"\" } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x47103093, false},
        // Java tells a failure by the empty text.
        {WAP_ENTRY(TransferQuery, getIPTVStatus), TextAnswerOf("IPTV_BUSSINESS_OK"),
         TextAnswerOf(""), 0x47317140, false},
    };
}

}  // namespace wap::test
