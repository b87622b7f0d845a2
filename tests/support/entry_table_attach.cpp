#include "support/entry_table_attach.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> AttachEntries() {
    // One host that FurnishAttach has a record of, and one that it has none of.
    constexpr const char16_t *kKnown = u"02:00:00:00:00:0a";
    const auto fnTwoMacs = Texts({kKnown, u"02:00:00:00:00:0b"});
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    constexpr uint32_t kList = 0x47307034;
    return {
        {WAP_ENTRY(LanHostSpeedLimit, setLANHostSpeedLimit, Text(kKnown), Number(512),
                   Number(1024)),
         stDone, stFailed, kList, false},
        {WAP_ENTRY(LANHostsInfoQuery, getLANHostSpeedLimitInfo, fnTwoMacs),
         TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 100, \"DownSpeed\": 200 }, "
                      "{ \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }"),
         TextAnswerOf("{\"Result\":-1}"), kList, false},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToStorageBlackList, fnTwoMacs), stDone,
         stFailed, kList, false},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromStorageBlackList, fnTwoMacs), stDone,
         stFailed, kList, false},
    };
}

}  // namespace wap::test
