#include "support/entry_table_macfilter.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

#include "support/entry_calls.h"

namespace wap::test {

std::vector<Entry> MacFilterEntries() {
    const auto fnMac = Texts({u"02:00:00:00:00:0a"});
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    constexpr uint32_t kMode = 0x47307000;
    return {
        {WAP_ENTRY(LANHostsInfoQuery, getMacFilterMode), NumberAnswerOf(1), stFailed, kMode, false},
        {WAP_ENTRY(LanNetworkAccessConfig, setMacFilterMode, Number(2)), stDone, stFailed,
         0x47209091, false},
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToBlackList, fnMac), stDone, stFailed, kMode,
         false},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromBlackList, fnMac), stDone, stFailed,
         kMode, false},
        // The filter is a black list, so there is nothing on the trust list, and no adding to it.
        {WAP_ENTRY(LanNetworkAccessConfig, addLANHostToTrustList, fnMac), stFailed, stFailed, kMode,
         false},
        {WAP_ENTRY(LanNetworkAccessConfig, deleteLANHostFromTrustList, fnMac), stDone, stFailed,
         kMode, false},
    };
}

}  // namespace wap::test
