// Texts that bundles left on the gateway come back in lists that the bridge writes: each is one
// value of the list, whatever stands in it.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/tricky_texts.h"
#include "support/entries.h"
#include "support/furnish_flows.h"
#include "support/furnish_portmap.h"
#include "support/furnish_route.h"
#include "support/furnish_rules.h"
#include "support/furnish_runtime.h"
#include "support/furnish_usb.h"
#include "support/furnish_vlanbind.h"
#include "support/furnish_wanconfig.h"
#include "support/strict_json.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

/// A list, and a text that the gateway has for it.
struct Listed {
    const char *pcMethod;
    const char *pcText;
    uint32_t uiRpcId;
    /// Makes the reply's bytes of the text.
    std::function<std::string(const std::string &)> fnBytes;
};

std::string AnswerOf(const Listed &stListed, std::string_view stText) {
    const Native &stNative = NativeOf(stListed.pcMethod);
    Caller stCaller(stNative);
    const std::string sText(stText);
    stCaller.Gateway().mapReplies[stListed.uiRpcId].sBytes = stListed.fnBytes(sText);
    // Both have figures, so that they are listed alike.
    stCaller.Gateway().stDescriptors.mapVolumes[sText] = {100, 50, 40, 512};
    return stCaller.Call(stNative.astGood).sText.value_or("null");
}

/// The texts of a rule, each at a time.
template <class Facts>
std::vector<Listed> TextsOfRule(
    const char *pcMethod, uint32_t uiRpcId, std::string (*pfnBytes)(const Facts &),
    const std::vector<std::pair<const char *, std::string Facts::*>> &astTexts) {
    std::vector<Listed> astAll;
    astAll.reserve(astTexts.size());
    for (const auto &stText : astTexts) {
        astAll.push_back({pcMethod, stText.first, uiRpcId,
                          [pfnBytes, psFact = stText.second](const std::string &sText) {
                              Facts stRule;
                              stRule.*psFact = sText;
                              return pfnBytes(stRule);
                          }});
    }
    return astAll;
}

std::string HttpRule(const HttpFacts &stRule) {
    return HttpRow(9, stRule);
}

std::vector<Listed> MirrorTexts() {
    return TextsOfRule<MirrorFacts>("getMirroRuleInfo", kGetMirrorRules, MirrorBytes,
                                    {{"Address", &MirrorFacts::sAddress},
                                     {"Port", &MirrorFacts::sPort},
                                     {"Mac", &MirrorFacts::sMac},
                                     {"Ip", &MirrorFacts::sIp}});
}

std::vector<Listed> ForwardTexts() {
    return TextsOfRule<ForwardFacts>("getForwardRuleInfo", kGetForwardRules, ForwardBytes,
                                     {{"Address", &ForwardFacts::sAddress},
                                      {"Port", &ForwardFacts::sPort},
                                      {"Mac", &ForwardFacts::sMac},
                                      {"Ip", &ForwardFacts::sIp}});
}

std::vector<Listed> HttpTexts() {
    return TextsOfRule<HttpFacts>("getHTTPTrafficProcessRuleInfo", kGetHttpRules, HttpRule,
                                  {{"Address", &HttpFacts::sAddress},
                                   {"Port", &HttpFacts::sPort},
                                   {"Mac", &HttpFacts::sMac},
                                   {"Methods", &HttpFacts::sMethods},
                                   {"StatusCodes", &HttpFacts::sStatusCodes},
                                   {"Headers", &HttpFacts::sHeaders}});
}

std::vector<Listed> RouteTexts() {
    using S = const std::string &;
    return {
        {"getLayer3ForwardingStaticConfigInfo", "Dest", 0x47304002,
         [](S sText) { return StaticBytes(StaticRoute4{.sDest = sText}); }},
        {"getLayer3ForwardingStaticConfigInfo", "Gateway", 0x47304002,
         [](S sText) { return StaticBytes(StaticRoute4{.sGateway = sText}); }},
        {"getLayer3ForwardingStaticConfigInfo", "Alias", 0x47301049,
         [](S sText) { return WanBytes({.sName = sText}); }},
        {"getIPv6Layer3ForwardingStaticConfigInfo", "NextHop", 0x47100004,
         [](S sText) { return StaticBytes(StaticRoute6{.sNextHop = sText}); }},
        {"getIPv6Layer3ForwardingStaticConfigInfo", "Interface", 0x47100004,
         [](S sText) { return StaticBytes(StaticRoute6{.sInterface = sText}); }},
        {"getLayer3ForwardingCurrent", "Gateway", kCurrentOfFamily[0],
         [](S sText) { return CurrentBytes(CurrentRoute4{.sGateway = sText}); }},
        {"getIPv6Layer3ForwardingCurrent", "NextHop", kCurrentOfFamily[1],
         [](S sText) { return CurrentBytes(CurrentRoute6{.sNextHop = sText}); }},
    };
}

std::vector<Listed> OtherTexts() {
    using S = const std::string &;
    return {
        {"getTrafficInfoByFlow", "Address", 0x4830419E,
         [](S sText) {
             return FlowMemberBytes(sText, "443", "1") + FlowMemberBytes("", "1", "1");
         }},
        {"getTrafficInfoByFlow", "Port", 0x4830419E,
         [](S sText) { return FlowMemberBytes("a", sText, "1") + FlowMemberBytes("", "1", "1"); }},
        {"getPortMappingInfo", "Protocol", 0x47309029,
         [](S sText) { return RowBytes(0x10101003, 1, {.sProtocol = sText}); }},
        {"getPortMappingInfo", "Client", 0x47309029,
         [](S sText) { return RowBytes(0x10101003, 1, {.sClient = sText}); }},
        {"getPortMappingInfo", "WanName", 0x47301049,
         [](S sText) { return WanBytes({.sName = sText}); }},
        {"getVLANBindInfo", "LanBind", 0x47603122, [](S sText) { return LanBindBytes(sText); }},
        {"getVLANBindInfo", "SsidBind", 0x47103093,
         [](S sText) {
             return SsidBytes({{1, sText}});
         }},
        {"getWANIfList", "Name", 0x47302025,
         [](S sText) {
             return WanListBytes({{0x10101001, sText}});
         }},
        {"getStorageInfo", "Path", 0x47103067, [](S sText) { return DiscBytes({sText}); }},
    };
}

TEST(ListedTextsTest, EachIsOneValue) {
    for (const auto &astTexts :
         {MirrorTexts(), ForwardTexts(), HttpTexts(), RouteTexts(), OtherTexts()}) {
        for (const Listed &stListed : astTexts) {
            SCOPED_TRACE(std::string(stListed.pcMethod) + " " + stListed.pcText);
            AddToFigure("callers.listed_texts");
            const auto asHarmless = JsonValues(AnswerOf(stListed, kHarmless));
            ASSERT_GT(asHarmless.size(), 2u);
            EXPECT_TRUE(std::any_of(asHarmless.begin(), asHarmless.end(), [](const auto &sValue) {
                return sValue.ends_with(kHarmless);
            }));
            for (const std::string_view stTricky : kTricky) {
                SCOPED_TRACE(stTricky);
                std::vector<std::string> asWanted;
                asWanted.reserve(asHarmless.size());
                for (const std::string &sValue : asHarmless) {
                    asWanted.push_back(WithTricky(sValue, stTricky));
                }
                EXPECT_EQ(JsonValues(AnswerOf(stListed, stTricky)), asWanted);
            }
        }
    }
}

// The one answer whose texts are inserted as they stand, as its description says: here the text is
// there, between the same others.
TEST(ListedTextsTest, DeviceInfoIsPassedAsItStands) {
    const Listed stListed = {"getDeviceInfo", "Vendor", 0x47209035, [](const std::string &sText) {
                                 std::string sRecord = DeviceInfoRecord();
                                 sRecord.replace(75, 65, Field(sText, 65));
                                 return sRecord;
                             }};
    const std::string sHarmless = AnswerOf(stListed, kHarmless);
    EXPECT_NE(sHarmless.find(kHarmless), std::string::npos);
    for (const std::string_view stTricky : kTricky) {
        EXPECT_EQ(AnswerOf(stListed, stTricky), WithTricky(sHarmless, stTricky));
    }
}

}  // namespace

}  // namespace wap::test
