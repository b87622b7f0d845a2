#include "support/entry_table_macfilter.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

namespace wap::test {

namespace {

using ListMethod = jint (*)(JNIEnv *, jobject, jobjectArray);

std::function<Answer(FakeJni &)> CallList(ListMethod pfnMethod) {
    return [pfnMethod](FakeJni &stEnv) {
        const jobjectArray jMacs = stEnv.JavaTexts({u"02:00:00:00:00:0a"});
        return NumberAnswerOf(pfnMethod(&stEnv, stEnv.JavaObject(), jMacs));
    };
}

#define WAP_ACCESS(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_##method
#define WAP_HOSTS(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_##method
#define WAP_TEXT_OF(name) #name
#define WAP_NAMED(function, method) WAP_TEXT_OF(function), #method
#define WAP_LIST(method) WAP_NAMED(WAP_ACCESS(method), method), CallList(WAP_ACCESS(method))

}  // namespace

std::vector<Entry> MacFilterEntries() {
    const auto fnSetMode = [](FakeJni &stEnv) {
        return NumberAnswerOf(WAP_ACCESS(setMacFilterMode)(&stEnv, stEnv.JavaObject(), 2));
    };
    const auto fnGetMode = [](FakeJni &stEnv) {
        return NumberAnswerOf(WAP_HOSTS(getMacFilterMode)(&stEnv, stEnv.JavaObject()));
    };
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    constexpr uint32_t kMode = 0x47307000;
    return {
        {WAP_NAMED(WAP_HOSTS(getMacFilterMode), getMacFilterMode), fnGetMode, NumberAnswerOf(1),
         stFailed, kMode, false},
        {WAP_NAMED(WAP_ACCESS(setMacFilterMode), setMacFilterMode), fnSetMode, stDone, stFailed,
         0x47209091, false},
        {WAP_LIST(addLANHostToBlackList), stDone, stFailed, kMode, false},
        {WAP_LIST(deleteLANHostFromBlackList), stDone, stFailed, kMode, false},
        // The filter is a black list, so there is nothing on the trust list, and no adding to it.
        {WAP_LIST(addLANHostToTrustList), stFailed, stFailed, kMode, false},
        {WAP_LIST(deleteLANHostFromTrustList), stDone, stFailed, kMode, false},
    };
}

}  // namespace wap::test
