#include "callers/text_fields.h"

#include <cstdio>
#include <ostream>

namespace wap::test {

namespace {

using enum TooLong;

std::vector<TextField> DeviceFields() {
    return {
        {"addFTPAccount", 0, 0x4720903A, 0, 257, 256, kRefused},
        {"addFTPAccount", 1, 0x4720903A, 257, 257, 256, kRefused},
        {"addSambaAccount", 0, 0x4720903F, 0, 257, 256, kRefused},
        {"addSambaAccount", 1, 0x4720903F, 257, 65, 64, kRefused},
        {"deleteFTPAccount", 0, 0x4720903B, 0, 257, 256, kRefused},
        {"deleteSambaAccount", 0, 0x47209040, 0, 257, 256, kRefused},
        {"setHTTPUserPassword", 0, 0x47209044, 0, 128, 127, kRefused},
        {"usbRegister", 0, 0x47103041, 4, 128, 127, kCut},
        {"usbUnregister", 0, 0x47103042, 4, 128, 127, kCut},
        // The whole field, without a zero if need be.
        {"getSubscribeVoIPEvent", 0, 0x47209062, 0, 128, 128, kCut},
        {"getUnSubscribeVoIPEvent", 0, 0x47209063, 0, 128, 128, kCut},
    };
}

std::vector<TextField> LanFields() {
    return {
        {"setLANHostIP", 0, 0x47209098, 12, 16, 15, kLeftOut},
        {"setLANHostIP", 1, 0x47209098, 28, 16, 15, kLeftOut},
        {"setLANDHCPInfo", 1, 0x47209099, 24, 16, 15, kLeftOut},
        {"setLANDHCPInfo", 2, 0x47209099, 40, 16, 15, kLeftOut},
        {"getLANHostInfoByMAC", 0, 0x471030B1, 0, 32, 31, kCut},
        {"getLANHostStats", 0, 0x471030B4, 0, 32, 31, kCut},
        {"getLANHostInfoByInterface", 0, 0x471030B3, 0, 16, 15, kLeftOut},
        {"getLANHostInfoByClass", 0, 0x471030B2, 0, 16, 15, kLeftOut},
        {"getLANHostSpeed", 0, 0x471030B0, 0, 0, 5000, kSent},
        {"setGatewayName", 0, 0x4720909E, 0, 0, 256, kRefused, -2},
        {"setLANHostName", 0, 0x4720909D, 4, 32, 31, kLeftOut},
        {"setLANHostName", 1, 0x4720909D, 36, 257, 64, kRefused, -2},
        // A host that has no record yet gets one.
        {"setLANHostSpeedLimit", 0, 0x47209096, 0, 32, 31, kCut},
        {"addLANHostToStorageBlackList", 0, 0x47209096, 0, 32, 31, kCut},
        {"addLANHostToBlackList", 0, 0x47209092, 8, 32, 31, kCut},
        {"addLANHostToBlackList", 0, 0x47209094, 40, 32, 31, kCut, -1, "", "", kWithWlan},
        {"addLANHostToTrustList", 0, 0x47209092, 8, 32, 31, kCut, -1, "", "", kTrustList},
        {"addLANHostToTrustList", 0, 0x47209094, 40, 32, 31, kCut, -1, "", "", kTrustList},
        {"addPortMapping", 3, 0x4720909A, 52, 16, 15, kCut},
        {"addPortMapping", 4, 0x4720909A, 68, 16, 15, kCut},
        {"addLayer3ForwardingStatic", 0, 0x47209071, 4, 16, 15, kRefused},
        {"addLayer3ForwardingStatic", 1, 0x47209071, 20, 16, 15, kRefused},
        {"addLayer3ForwardingStatic", 2, 0x47209071, 36, 16, 15, kCut},
        {"addIPv6Layer3ForwardingStatic", 0, 0x47209073, 0, 64, 63, kRefused, -1, "2001:db8::1",
         "/48"},
        {"addIPv6Layer3ForwardingStatic", 1, 0x47209073, 64, 64, 63, kCut},
    };
}

std::vector<TextField> WanFields() {
    return {
        {"setVLANBind", 0, 0x47209075, 0, 64, 63, kCut},
        {"setVLANBind", 1, 0x47209075, 68, 129, 128, kCut, -1, "10/100"},
        {"clearVLANBind", 0, 0x47209075, 0, 64, 63, kCut},
        {"startIPPingDiagnostics", 1, 0x47103088, 260, 256, 255, kRefused, -2},
        {"startDnsDiagnostics", 1, 0x47103096, 4, 256, 255, kRefused},
        {"startDnsDiagnostics", 2, 0x47103096, 260, 512, 511, kCut},
        {"startDnsDiagnostics", 3, 0x47103096, 772, 512, 511, kRefused},
        {"startTraceRouteDiagnostics", 1, 0x47103090, 4, 256, 254, kRefused},
        {"startTraceRouteDiagnostics", 2, 0x47103090, 260, 256, 254, kRefused},
    };
}

std::vector<TextField> TrafficFields() {
    return {
        {"addTrafficMonitoringDestAddress", 1, 0x48304173, 12, 256, 255, kCut},
        {"deleteTrafficMonitoringDestAddress", 1, 0x48304174, 12, 256, 255, kCut},
        {"addMirrorRule", 0, 0x48304191, 0, 256, 255, kRefused},
        {"addMirrorRule", 1, 0x48304191, 256, 12, 11, kRefused},
        {"addMirrorRule", 2, 0x48304191, 268, 5, 4, kRefused},
        {"addMirrorRule", 3, 0x48304191, 273, 4, 3, kRefused},
        {"addMirrorRule", 4, 0x48304191, 277, 18, 17, kRefused},
        {"addMirrorRule", 5, 0x48304191, 295, 40, 39, kRefused},
        {"addForwardRule", 0, 0x48304195, 0, 256, 255, kRefused},
        {"addForwardRule", 1, 0x48304195, 256, 12, 11, kRefused},
        {"addForwardRule", 2, 0x48304195, 268, 4, 3, kRefused},
        {"addForwardRule", 3, 0x48304195, 272, 18, 17, kRefused},
        {"addForwardRule", 4, 0x48304195, 290, 40, 39, kRefused},
        {"addHTTPTrafficProcessRule", 0, 0x48304198, 0, 256, 255, kRefused},
        {"addHTTPTrafficProcessRule", 2, 0x48304198, 268, 5, 4, kRefused},
        {"addHTTPTrafficProcessRule", 3, 0x48304198, 273, 18, 17, kRefused},
        {"addHTTPTrafficProcessRule", 4, 0x48304198, 291, 64, 61, kRefused},
        {"addHTTPTrafficProcessRule", 5, 0x48304198, 355, 256, 253, kRefused},
        {"addHTTPTrafficProcessRule", 6, 0x48304198, 611, 256, 253, kRefused},
        {"addTrafficToFlow", 0, 0x4830419B, 0, 256, 255, kRefused},
        {"addTrafficToFlow", 1, 0x4830419B, 256, 12, 11, kRefused},
        {"deleteTrafficFromFlow", 0, 0x4830419C, 0, 256, 255, kRefused},
        {"deleteTrafficFromFlow", 1, 0x4830419C, 256, 12, 11, kRefused},
    };
}

std::vector<TextField> MakeFields() {
    std::vector<TextField> astFields = DeviceFields();
    for (const auto &astMore : {LanFields(), WanFields(), TrafficFields()}) {
        astFields.insert(astFields.end(), astMore.begin(), astMore.end());
    }
    return astFields;
}

}  // namespace

// Gtest prints it where it names a test.
void PrintTo(const TextField &stField, std::ostream *pstOut) {
    *pstOut << stField.Name();
}

std::string TextField::Name() const {
    char acId[16];
    (void)std::snprintf(acId, sizeof(acId), "%08X", static_cast<unsigned>(uiRpcId));
    return std::string(pcMethod) + "_" + std::to_string(uiArgument) + "_" + acId;
}

const std::vector<TextField> &TextFields() {
    static const std::vector<TextField> s_astFields = MakeFields();
    return s_astFields;
}

const std::map<std::pair<std::string, size_t>, std::string> &TextsWithoutField() {
    static const std::map<std::pair<std::string, size_t>, std::string> s_mapTexts = {
        {{"getSubscribeVoIPEvent", 1}, "words of which a number is sent"},
        {{"getUnSubscribeVoIPEvent", 1}, "words of which a number is sent"},
        {{"setLANDHCPInfo", 0}, "a word of which a number is sent"},
        {{"addWANIf", 0}, "a number"},
        {{"addWANIf", 1}, "a number"},
        {{"addWANIf", 2}, "one of the words that it knows, which all fit"},
        {{"getLANHostSpeedLimitInfo", 0}, "looked for among what the gateway has"},
        {{"deleteLANHostFromBlackList", 0}, "looked for among what the gateway has"},
        {{"deleteLANHostFromTrustList", 0}, "looked for among what the gateway has"},
        {{"deleteLANHostFromStorageBlackList", 0}, "looked for among what the gateway has"},
        {{"addLayer3ForwardingStatic", 3}, "looked for among what the gateway has"},
        {{"addIPv6Layer3ForwardingStatic", 2}, "looked for among what the gateway has"},
        {{"addTrafficMonitoringDestAddress", 0}, "sent in a block that is as long as it is"},
        {{"deleteTrafficMonitoringDestAddress", 0}, "sent in a block that is as long as it is"},
        {{"setWANIf", 1}, "JSON, whose texts have fields: wan_settings_test.cpp"},
        {{"startIPPingDiagnostics", 2}, "JSON, of which numbers are sent"},
    };
    return s_mapTexts;
}

Arguments WithText(const TextField &stField, const std::u16string &sText) {
    Arguments astArguments = stField.Called().astGood;
    Argument &stArgument = astArguments.at(stField.uiArgument);
    if (std::holds_alternative<JavaStrings>(stArgument)) {
        stArgument = JavaStrings({JavaString(sText)});
    } else {
        stArgument = JavaString(sText);
    }
    return astArguments;
}

std::u16string FilledText(const TextField &stField, size_t uiBytes) {
    const std::u16string sBefore = FromUtf8(stField.pcBefore);
    const std::u16string sBehind = FromUtf8(stField.pcBehind);
    std::u16string sText = sBefore;
    // No hexadecimal digits: those would belong to an address before them.
    while (sText.size() + sBehind.size() < uiBytes) {
        sText += static_cast<char16_t>(u'g' + (sText.size() * 7 + sText.size() / 20) % 20);
    }
    return sText + sBehind;
}

}  // namespace wap::test
