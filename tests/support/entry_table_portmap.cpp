#include "support/entry_table_portmap.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> PortMappingEntries() {
    constexpr jint kMappedWan = 0x10101003;
    return {
        {WAP_ENTRY(PortMappingConfig, addPortMapping, Number(kMappedWan), Number(8080), Number(80),
                   Text(u"TCP"), Text(u"192.168.1.20")),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x4720909A, false},
        {WAP_ENTRY(PortMappingConfig, deletePortMapping, Number(kMappedWan), Number(2)),
         NumberAnswerOf(0), NumberAnswerOf(-1), 0x4720909B, false},
        // -2 when the mapping can't be fetched; -1 when that worked and the change fails.
        {WAP_ENTRY(PortMappingConfig, setPortMappingSwitch, Number(kMappedWan), Number(1),
                   Flag(false)),
         NumberAnswerOf(0), NumberAnswerOf(-2), 0x4720909C, false},
        {WAP_ENTRY(PortMappingQuery, getPortMappingInfo),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"WANName\": \"1_INTERNET_R_VID_100\", "
                      "\"MapList\": [ { \"PortMappingIndex\": 1, \"PortMappingEnabled\": \"TRUE\", "
                      "\"ExternalPort\": 8080, \"InternalPort\": 80, \"PortMappingProtocol\": "
                      "\"TCP\", \"InternalClient\": \"192.168.1.20\" }, { \"PortMappingIndex\": 2, "
                      "\"PortMappingEnabled\": \"FALSE\", \"ExternalPort\": 2222, "
                      "\"InternalPort\": 22, \"PortMappingProtocol\": \"TCP\", "
                      "\"InternalClient\": \"192.168.1.21\" } ] } ] }"),
         TextAnswerOf("{\"Result\":-1}"), 0x47309029, false},
    };
}

}  // namespace wap::test
