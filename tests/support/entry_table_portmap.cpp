#include "support/entry_table_portmap.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI.h>

namespace wap::test {

#define WAP_CONFIG(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI_##method
#define WAP_QUERY(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingQueryServiceJNI_##method
#define WAP_TEXT_OF(name) #name
#define WAP_NAMED(function, method) WAP_TEXT_OF(function), #method

std::vector<Entry> PortMappingEntries() {
    constexpr jint kWan = 0x10101003;
    const auto fnAdd = [](FakeJni &stEnv) {
        return NumberAnswerOf(WAP_CONFIG(addPortMapping)(&stEnv, stEnv.JavaObject(), kWan, 8080, 80,
                                                         stEnv.JavaText(u"TCP"),
                                                         stEnv.JavaText(u"192.168.1.20")));
    };
    const auto fnDelete = [](FakeJni &stEnv) {
        return NumberAnswerOf(WAP_CONFIG(deletePortMapping)(&stEnv, stEnv.JavaObject(), kWan, 2));
    };
    const auto fnSwitch = [](FakeJni &stEnv) {
        return NumberAnswerOf(
            WAP_CONFIG(setPortMappingSwitch)(&stEnv, stEnv.JavaObject(), kWan, 1, JNI_FALSE));
    };
    const auto fnList = [](FakeJni &stEnv) {
        const jstring jText = WAP_QUERY(getPortMappingInfo)(&stEnv, stEnv.JavaObject());
        return Answer{stEnv.Utf8Of(jText), std::nullopt};
    };
    return {
        {WAP_NAMED(WAP_CONFIG(addPortMapping), addPortMapping), fnAdd, NumberAnswerOf(0),
         NumberAnswerOf(-1), 0x4720909A, false},
        {WAP_NAMED(WAP_CONFIG(deletePortMapping), deletePortMapping), fnDelete, NumberAnswerOf(0),
         NumberAnswerOf(-1), 0x4720909B, false},
        // -2 when the mapping can't be fetched; -1 when that worked and the change fails.
        {WAP_NAMED(WAP_CONFIG(setPortMappingSwitch), setPortMappingSwitch), fnSwitch,
         NumberAnswerOf(0), NumberAnswerOf(-2), 0x4720909C, false},
        {WAP_NAMED(WAP_QUERY(getPortMappingInfo), getPortMappingInfo), fnList,
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
