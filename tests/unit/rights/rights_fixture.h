// What the tests of the accounts and rights share: how FTP and Samba differ, written down once more
// by hand, and a gateway with accounts.
#ifndef WAP_TESTS_UNIT_RIGHTS_FIXTURE_H
#define WAP_TESTS_UNIT_RIGHTS_FIXTURE_H

#include <gtest/gtest.h>

#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceAccessRightQueryServiceJNI.h>

#include <iostream>
#include <string>
#include <vector>

#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/expect.h"
#include "support/furnish_rights.h"
#include "system/jni_access_right.h"

namespace wap::test {

inline constexpr uint32_t kNoMemory = 0xF7108001;

inline constexpr const char *kWorkerFile = "jni_access_right.cpp";
inline constexpr const char *kSegmentFile = "right_segment.cpp";
inline constexpr const char *kConfigFile = "DeviceAccessRightConfigServiceJNI.cpp";
inline constexpr const char *kQueryFile = "DeviceAccessRightQueryServiceJNI.cpp";

/// One of the services that share the storage.
struct Service {
    const char *pcName;
    const char *pcCounter;  ///< the process that counts its accounts
    uint32_t uiAccounts;    ///< how many it says there are
    uint32_t uiCount;
    uint32_t uiFill;
    uint32_t uiSet;
    uint32_t uiAdd;
    uint32_t uiDelete;
    uint32_t uiDeleteAll;
    int32_t iKey;
    uint32_t uiBytesPerAccount;
    uint32_t uiPasswordMax;
    uint32_t uiPasswordField;
    const char *pcText;

    jstring (*pfnGetRight)(JNIEnv *, jobject);
    jint (*pfnSetRight)(JNIEnv *, jobject, jint, jint);
    jint (*pfnAdd)(JNIEnv *, jobject, jstring, jstring);
    jint (*pfnDelete)(JNIEnv *, jobject, jstring);
    jint (*pfnDeleteAll)(JNIEnv *, jobject);

    uint32_t (*pfnCountWorker)(uint32_t *);
    uint32_t (*pfnFillWorker)(uint32_t);
    uint32_t (*pfnSetWorker)(uint32_t, uint32_t);
    uint32_t (*pfnAddWorker)(const char *, const char *);
    uint32_t (*pfnDeleteWorker)(const char *);
    uint32_t (*pfnDeleteAllWorker)();
};

inline void PrintTo(const Service &stService, std::ostream *pstOut) {
    *pstOut << stService.pcName;
}

inline std::vector<Service> Services() {
    return {
        {"FTP",
         "tarn",
         2,
         0x47201064,
         0x47209038,
         0x47209039,
         0x4720903A,
         0x4720903B,
         0x4720903C,
         0xD2036,
         514,
         256,
         257,
         kFtpRightText,
         WAP_METHOD(DeviceAccessRightQuery, getFTPRightInfo),
         WAP_METHOD(DeviceAccessRightConfig, setFTPRight),
         WAP_METHOD(DeviceAccessRightConfig, addFTPAccount),
         WAP_METHOD(DeviceAccessRightConfig, deleteFTPAccount),
         WAP_METHOD(DeviceAccessRightConfig, deleteAllFTPAccount),
         VT_JNI_GetFtpAccountCount,
         VT_JNI_GetFTPRightInfo,
         VT_JNI_SetFTPRight,
         VT_JNI_AddFTPAcount,
         VT_JNI_DeleteFTPAcount,
         VT_JNI_DeleteAllFTPAcount},
        {"Samba",
         "usb_mngt",
         3,
         0x48200114,
         0x4720903D,
         0x4720903E,
         0x4720903F,
         0x47209040,
         0x47209041,
         0xD2038,
         322,
         64,
         65,
         kSambaRightText,
         WAP_METHOD(DeviceAccessRightQuery, getSambaRightInfo),
         WAP_METHOD(DeviceAccessRightConfig, setSambaRight),
         WAP_METHOD(DeviceAccessRightConfig, addSambaAccount),
         WAP_METHOD(DeviceAccessRightConfig, deleteSambaAccount),
         WAP_METHOD(DeviceAccessRightConfig, deleteAllSambaAccount),
         VT_JNI_GetSambaAccountCount,
         VT_JNI_GetSambaRightInfo,
         VT_JNI_SetSambaRight,
         VT_JNI_AddSambaAcount,
         VT_JNI_DeleteSambaAcount,
         VT_JNI_DeleteAllSambaAcount},
    };
}

/// A gateway that answers all requests; the requests, traces and faults of a call are looked at.
class RightsTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishRights(stWorld);
    }

    void Refuse(uint32_t uiRpcId) { stPlatform.mapReplies[uiRpcId].uiStatus = kRefused; }
    void AnswerWith(uint32_t uiRpcId, std::string sBytes) {
        stPlatform.mapReplies[uiRpcId] = {0, std::move(sBytes)};
    }

    jstring Text(const std::string &sText) { return stEnv.JavaText(FromUtf8(sText)); }

    /// The requests of a call, with the sender ids of the first calls of a process.
    void ExpectAsked(const std::vector<WantedRpc> &astWanted) {
        ExpectRpcs(stPlatform, astWanted);
        NextCall();
    }
    void ExpectNobodyAsked() { EXPECT_TRUE(stPlatform.astRpcs.empty()); }

    /// Forgets what was recorded, and which sender ids were used.
    void NextCall() {
        stPlatform.ClearRecords();
        ResetBridge();
    }

    size_t Recorded(const char *pcFile, uint32_t uiCode, const Args &auiArgs = {}) const {
        return TimesRecorded(stPlatform, pcFile, uiCode, auiArgs);
    }
};

/// The same for each of the services.
class ServiceTest : public RightsTest, public ::testing::WithParamInterface<Service> {
  protected:
    const Service &stService = GetParam();

    WantedRpc CountRpc() const {
        return {stService.pcCounter, 0, stService.uiCount, Word(0), 1020, 30000};
    }
    WantedRpc ProxyRpc(uint32_t uiRpcId, std::string sRequest) const {
        return {"osgi_proxy", 281, uiRpcId, std::move(sRequest), 4, 30000};
    }
};

/// One test for each service.
#define WAP_EACH_SERVICE(Fixture)                                            \
    INSTANTIATE_TEST_SUITE_P(Each, Fixture, ::testing::ValuesIn(Services()), \
                             [](const auto &stInfo) { return stInfo.param.pcName; })

}  // namespace wap::test

#endif
