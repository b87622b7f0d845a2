#include "support/entry_table_attach.h"

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI.h>

namespace wap::test {

namespace {

constexpr const char *kPackage = "Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_";

/// The host that FurnishAttach has a record of, and one that it has none of.
constexpr const char16_t *kKnown = u"02:00:00:00:00:0a";
constexpr const char16_t *kUnknown = u"02:00:00:00:00:0b";

template <class Method>
Answer ChangeTwo(FakeJni &stEnv, Method pfnMethod) {
    return NumberAnswerOf(
        pfnMethod(&stEnv, stEnv.JavaObject(), stEnv.JavaTexts({kKnown, kUnknown})));
}

Answer Limit(FakeJni &stEnv) {
    return NumberAnswerOf(
        Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanHostSpeedLimitServiceJNI_setLANHostSpeedLimit(
            &stEnv, stEnv.JavaObject(), stEnv.JavaText(kKnown), 512, 1024));
}

Answer Report(FakeJni &stEnv) {
    const jstring jText =
        Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LANHostsInfoQueryServiceJNI_getLANHostSpeedLimitInfo(
            &stEnv, stEnv.JavaObject(), stEnv.JavaTexts({kKnown, kUnknown}));
    return {stEnv.Utf8Of(jText), std::nullopt};
}

Answer Bar(FakeJni &stEnv) {
    return ChangeTwo(
        stEnv,
        Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_addLANHostToStorageBlackList);
}

Answer Allow(FakeJni &stEnv) {
    return ChangeTwo(
        stEnv,
        Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_LanNetworkAccessConfigServiceJNI_deleteLANHostFromStorageBlackList);
}

Entry Make(const char *pcClass, const char *pcMethod, Answer (*pfnCall)(FakeJni &), Answer stGood,
           Answer stFailure, uint32_t uiRpcId) {
    return {std::string(kPackage) + pcClass + "_" + pcMethod,
            pcMethod,
            pfnCall,
            std::move(stGood),
            std::move(stFailure),
            uiRpcId,
            false};
}

}  // namespace

std::vector<Entry> AttachEntries() {
    const Answer stDone = NumberAnswerOf(0);
    const Answer stFailed = NumberAnswerOf(-1);
    constexpr uint32_t kList = 0x47307034;
    return {
        Make("LanHostSpeedLimitServiceJNI", "setLANHostSpeedLimit", Limit, stDone, stFailed, kList),
        Make("LANHostsInfoQueryServiceJNI", "getLANHostSpeedLimitInfo", Report,
             TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"UpSpeed\": 100, \"DownSpeed\": 200 }, "
                          "{ \"UpSpeed\": 0, \"DownSpeed\": 0 } ] }"),
             TextAnswerOf("{\"Result\":-1}"), kList),
        Make("LanNetworkAccessConfigServiceJNI", "addLANHostToStorageBlackList", Bar, stDone,
             stFailed, kList),
        Make("LanNetworkAccessConfigServiceJNI", "deleteLANHostFromStorageBlackList", Allow, stDone,
             stFailed, kList),
    };
}

}  // namespace wap::test
