#include "support/entry_table_runtime.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_DeviceRsetServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_voip_jni_VoIPInfoSubscribeServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

namespace {

/// What the platform says of an RPC that is made to fail: these methods pass it on.
constexpr int32_t kRpcFailure = 0x0E0E0001;

}  // namespace

std::vector<Entry> RuntimeEntries() {
    const auto fnBundle = Text(u"com.example.phone");
    const auto fnEvents = Texts({u"NOTIFY_VOICE_CALL_INFO", u"NOTIFY_VOICE_RESTRAT_FINISH"});
    return {
        // Without the command's output there is still an object.
        {WAP_ENTRY(DeviceInfoQuery, getJVMInfo),
         TextAnswerOf("{ \"Result\": 0, \"Name\": \"OpenJDK Client VM \", "
                      "\"Version\": \"1.8.0_212\", \"Vendor\": \"Oracle\" }"),
         TextAnswerOf("{ \"Result\": 1, \"Name\": \"\", \"Version\": \"\", \"Vendor\": \"\" }"), 0,
         false},
        {WAP_ENTRY(DeviceInfoQuery, getOSGiInfo),
         TextAnswerOf("{ \"Result\": 0, \"Name\": \"Felix OSGi\", \"Version\": \"4.4.0\", "
                      "\"Vendor\": \"Apache Software Foundation\" }"),
         TextAnswerOf("{\"Result\":-1}"), 0, false},
        {WAP_ENTRY_OF(tarn, DeviceRset, reset), NumberAnswerOf(0), NumberAnswerOf(1), 0x47209051,
         false},
        {WAP_ENTRY(DeviceConfig, setLedSwitch, Number(1)), NumberAnswerOf(0), NumberAnswerOf(-1),
         0x471030D3, false},
        {WAP_ENTRY_OF(voip, VoIPInfoQuery, getPOTSInfo),
         TextAnswerOf("{\"Result\":0,\"List\":[{\"Port\":1}]}"), NullAnswer(), 0x47209061, false},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getSubscribeVoIPEvent, fnBundle, fnEvents),
         NumberAnswerOf(0), NumberAnswerOf(kRpcFailure), 0x47209062, false},
        {WAP_ENTRY_OF(voip, VoIPInfoSubscribe, getUnSubscribeVoIPEvent, fnBundle, fnEvents),
         NumberAnswerOf(0), NumberAnswerOf(kRpcFailure), 0x47209063, false},
    };
}

}  // namespace wap::test
