// The PPP user and password on their way through setWANIf: nothing of them stays behind or is
// shown. What is found in a released block is complained about when a test ends, see SecretWatch.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>

#include "faults/fault_sweep.h"
#include "support/entry_calls.h"
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_wan_config.h"

namespace wap::test {
namespace {

const std::string kUser = kPppUser;
const std::string kPassword = kPppPassword;
const std::string kCredentials =
    "\"Username\":\"" + kUser + "\",\"Password\":\"" + kPassword + "\"";

class WanSecretsTest : public WanConfigTest {
  protected:
    jint Set(const std::string &sJson) {
        const jint iResult = WAP_METHOD(WanConfig, setWANIf)(&stEnv, stEnv.JavaObject(), kWan,
                                                             stEnv.JavaText(FromUtf8(sJson)));
        stEnv.EndCall();
        return iResult;
    }

    /// Nothing that was written for somebody to read holds a secret.
    void ExpectNothingShown() {
        for (const std::string &sSecret : {kUser, kPassword}) {
            for (const TraceRecord &stTrace : stPlatform.astTraces) {
                EXPECT_EQ(stTrace.sText.find(sSecret), std::string::npos) << stTrace.sText;
            }
            for (const std::string &sText : stPlatform.asConsole) {
                EXPECT_EQ(sText.find(sSecret), std::string::npos) << sText;
            }
        }
    }
};

TEST_F(WanSecretsTest, CredentialsAreSentAndGone) {
    EXPECT_EQ(Set("{" + kCredentials + "}"), 0);
    ASSERT_EQ(Rpcs(), Codes{kSet});
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest.substr(144, 68), Field(kUser, 68));
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest.substr(212, 68), Field(kPassword, 68));
    ExpectNothingShown();
}

// Each of these lets json-c keep or copy the texts in another place.
TEST_F(WanSecretsTest, WhateverTheTextLooksLike) {
    const std::string sLong(3000, 'l');
    const std::string asTexts[] = {
        "{" + kCredentials + "} x",
        "{" + kCredentials,
        "{" + kCredentials + ",\"VLANMode\":",
        "{" + kCredentials + ",\"VLANMode\":}",
        "{\"Password\":\"" + kPassword,
        "{\"Password\":\"" + kPassword + "\\",
        "{\"Password\":\"" + kPassword + "\\x\"}",
        "{\"Password\":\"" + kPassword + sLong + "\"}",
        "{\"Password\":\"" + sLong + kPassword + "\"}",
        "{\"Password\":\"" + kPassword + "\\n" + sLong + "\"}",
        "[\"" + kPassword + "\"",
        "[\"" + kPassword + "\" x",
        "{\"Password\":\"" + kPassword + "\",\"Password\":\"\"}",
        "{\"Password\":\"\",\"Password\":\"" + kPassword + "\"}",
        "{\"Password\":[\"" + kPassword + "\",{\"a\":\"" + kUser + "\"}],\"Password\":1}",
        "{\"a\":{\"b\":{" + kCredentials + "}}}",
        "{\"a\":{\"b\":{" + kCredentials + "}}",
        "{\"a\":{\"b\":{" + kCredentials + "},",
        "{\"a\":[[{" + kCredentials + "}],\"" + kPassword + "\"]}",
        "{\"a\":[[{" + kCredentials + "}],\"" + kPassword + "\"",
        "[\"" + kPassword + "\"]",
        "\"" + kPassword + "\"",
        kPassword,
        "{\"\\u0050assword\":\"" + kPassword + "\"}",
        "{" + kCredentials + ",\"IPMode\":\"4\"}",
        "{" + kCredentials + ",\"ServiceList\":\"TR069\"}",
        "{" + kCredentials + ",\"a\":" + std::string(40, '[') + "}",
    };
    for (const std::string &sText : asTexts) {
        SCOPED_TRACE(sText.substr(0, 200));
        (void)Set(sText);
        stWorld.ExpectClean();
        ExpectNothingShown();
    }
}

TEST_F(WanSecretsTest, WhicheverRequestFails) {
    for (const uint32_t uiRpcId : {kAskList, kAskIpDns, kSet, kAskIpv6Dns, kSetIpv6Dns}) {
        FurnishWanConfig(stWorld);
        Refuse(uiRpcId);
        (void)Set("{" + kCredentials +
                  ",\"ServiceList\":\"TR069\",\"DNSServers\":\"192.0.2.9\","
                  "\"IPv6DNSServers\":\"2001:db8::9\"}");
        stWorld.ExpectClean();
        ExpectNothingShown();
    }
}

// What the worker leaves, and what is there when the entry has ended.
TEST_F(WanSecretsTest, SecretsDoNotStayOnTheStack) {
    const auto fnExpect = [this](const std::string &sJson, jint iWanted) {
        uint32_t uiResult = 1;
        EXPECT_FALSE(StackKeeps([&] { uiResult = VT_JNI_SetWANIf(kWan, sJson.c_str()); },
                                {kUser, kPassword}));
        EXPECT_EQ(uiResult == 0, iWanted == 0);
        const jstring jJson = stEnv.JavaText(FromUtf8(sJson));
        const jobject jThis = stEnv.JavaObject();
        jint iResult = 1;
        EXPECT_FALSE(StackKeeps(
            [&] { iResult = WAP_METHOD(WanConfig, setWANIf)(&stEnv, jThis, kWan, jJson); },
            {kUser, kPassword}));
        EXPECT_EQ(iResult, iWanted);
        stEnv.EndCall();
    };
    fnExpect("{" + kCredentials + "}", 0);
    fnExpect("{" + kCredentials + "}x", -1);
    Refuse(kSet);
    fnExpect("{" + kCredentials + "}", -1);
}

TEST_F(WanSecretsTest, WhateverFailsAfterSecretsInAnArray) {
    const std::string sJson = "{\"a\":[\"" + kUser + "\",\"" + kPassword + "\",{\"b\":[\"" +
                              kPassword + "\",\"c\",\"d\"]},\"e\"],\"f\":\"g\"}";
    jint iResult = 0;
    Subject stSubject;
    stSubject.sName = "setWANIf of an array";
    stSubject.fnFurnish = FurnishWanConfig;
    stSubject.fnCall = [&](FakeJni &stJni) {
        iResult = WAP_METHOD(WanConfig, setWANIf)(&stJni, stJni.JavaObject(), kWan,
                                                  stJni.JavaText(FromUtf8(sJson)));
    };
    stSubject.fnOutcome = [&](FakeJni &) { return std::to_string(iResult); };
    stSubject.sGood = "0";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> { return {"0", "-1"}; };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 20u);
}

// An array that json-c has no memory to grow ends neither the text nor the care for its secrets.
TEST_F(WanSecretsTest, WhateverFailsBehindALongArray) {
    std::string sJson = "{" + kCredentials + ",\"VLANMode\":\"1\",\"list\":[0";
    for (int i = 1; i < 70; ++i) {
        sJson += ",\"" + kPassword + "\"";
    }
    sJson += "],\"b\":\"c\"}";
    bool bDone = false;
    uint32_t uiRefused = 0;
    for (uint32_t uiAt = 1; !bDone; ++uiAt) {
        SCOPED_TRACE(uiAt);
        World stOther;
        FurnishWanConfig(stOther);
        FakeJni stJni;
        const jstring jJson = stJni.JavaText(FromUtf8(sJson));
        stOther.Plan({Op::kAlloc, uiAt, false});
        const jint iResult =
            WAP_METHOD(WanConfig, setWANIf)(&stJni, stJni.JavaObject(), kWan, jJson);
        bDone = stOther.Count(Op::kAlloc) < uiAt;
        stOther.Plan({});
        stJni.EndCall();
        uiRefused += iResult == 0 ? 0 : 1;
        for (const RpcRecord &stRpc : stOther.stPlatform.astRpcs) {
            EXPECT_EQ(stRpc.sRequest.substr(212, 68), Field(kPassword, 68)) << iResult;
        }
        EXPECT_TRUE(iResult == -1 || !stOther.stPlatform.astRpcs.empty());
        stOther.ExpectClean();
    }
    EXPECT_GT(uiRefused, 70u);
}

// Every single fault: nothing may stay, and a setting must not get lost without a word.
TEST_F(WanSecretsTest, WhateverFails) {
    const std::string sJson =
        "{" + kCredentials +
        ",\"DNSServers\":\"192.0.2.9\",\"IPv6DNSServers\":\"2001:db8::9\",\"VLANMode\":\"1\","
        "\"LanInterface\":\"LAN1\",\"802-1pMark\":\"3\",\"MACAddress\":\"02:00:00:00:00:01\","
        "\"ConnectionTrigger\":\"AlwaysOn\",\"NATEnabled\":\"TRUE\",\"IPMode\":\"3\","
        "\"SubnetMask\":\"255.255.255.0\",\"AddressingType\":\"Static\"}";
    World *pstWorld = nullptr;
    jint iResult = 0;
    Subject stSubject;
    stSubject.sName = "setWANIf";
    stSubject.fnFurnish = [&](World &stOther) {
        pstWorld = &stOther;
        FurnishWanConfig(stOther);
        stOther.stPlatform.ClearRecords();
    };
    stSubject.fnCall = [&](FakeJni &stJni) {
        iResult = WAP_METHOD(WanConfig, setWANIf)(&stJni, stJni.JavaObject(), kWan,
                                                  stJni.JavaText(FromUtf8(sJson)));
    };
    std::string sSent;
    stSubject.fnOutcome = [&](FakeJni &) {
        std::string sRecord = "none";
        for (const RpcRecord &stRpc : pstWorld->stPlatform.astRpcs) {
            sRecord = stRpc.uiRpcId == kSet ? stRpc.sRequest : sRecord;
        }
        if (sSent.empty()) {
            sSent = sRecord;
        }
        const std::string sWhich = sRecord == sSent ? "whole" : sRecord == "none" ? "none" : "less";
        return std::to_string(iResult) + " " + sWhich;
    };
    stSubject.sGood = "0 whole";
    stSubject.fnAllowed = [](const FaultPlan &stPlan) -> std::
                                                          set<std::string> {
                                                              // Names and locks are no reason to
                                                              // refuse.
                                                              return stPlan.eOp == Op::kPlatform ? std::set<std::string>{"0 whole"}
                                           : std::set<std::string>{"-1 none", "-1 whole"};
                                                          };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 50u);
    EXPECT_EQ(CountOf(auiCounts, Op::kRpc), 4u);
    EXPECT_EQ(sSent.size(), 1080u);
}

}  // namespace
}  // namespace wap::test
