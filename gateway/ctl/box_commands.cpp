// The verbs about the box itself: its lights and its voice lines.
#include <stdio.h>

#include "ctl/client.h"
#include "ctl/commands.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/process_list.h"

namespace wap::gateway {

namespace {

void ShowVoice() {
    const JsonValue stLines = ValueOf("voice");
    const JsonValue stBundles = ValueOf("voiceEvents");
    printf("%-8s %-16s %s\n", "LINE", "NUMBER", "STATE");
    for (json_object *pstLine : Elements(stLines.get())) {
        const auto Word = [&](const char *pcKey) { return GetText(pstLine, pcKey).value_or(""); };
        printf("%-8s %-16s %s\n", Word("name").c_str(), Word("number").c_str(),
               Word("state").c_str());
    }
    for (json_object *pstBundle : Elements(stBundles.get())) {
        printf("events go to %s\n", GetText(pstBundle, "bundle").value_or("").c_str());
    }
}

}  // namespace

int Leds(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    if (stOptions.bOn) {
        SetValue("leds", "on", *stOptions.bOn ? "true" : "false");
    } else {
        const JsonValue stLeds = ValueOf("leds");
        printf("%s\n", json_object_get_boolean(FindMember(stLeds.get(), "on")) ? "on" : "off");
    }
    return 0;
}

int Voice(const Options &stOptions) {
    (void)RuntimeDir::FromEnvironment();
    if (stOptions.acPath.empty()) {
        ShowVoice();
        return 0;
    }
    if (stOptions.acText.empty()) {
        throw GatewayError("say what the line shall do: gatewayctl voice " + stOptions.acPath +
                           " STATE");
    }
    const JsonValue stRequest = MakeObject();
    PutText(stRequest.get(), "path", "voice");
    PutText(stRequest.get(), "key", "name");
    PutText(stRequest.get(), "id", stOptions.acPath);
    PutText(stRequest.get(), "member", "state");
    PutText(stRequest.get(), "text", stOptions.acText);
    (void)Ask(FindOwner("voice")->pcName, kControlChange, stRequest.get());
    return 0;
}

}  // namespace wap::gateway
