#include "faults/leniency.h"

#include <map>
#include <string>

#include "faults/fault_sweep.h"
#include "support/furnish_usb.h"

namespace wap::test {

namespace {

using Operations = std::set<std::string_view>;
using Leniencies = std::map<std::string, Leniency>;

/// What it takes to have an element of an array: one that could not be had is left out.
const Operations kElement = {
    "GetObjectArrayElement", "FindClass", "NewStringUTF", "GetMethodID", "CallObjectMethod",
    "GetByteArrayElements",  kMalloc};

const Answer kFailed = NumberAnswerOf(-1);
const Answer kFault = TextAnswerOf("{\"Result\":-1}");

std::vector<Answer> Texts(const std::set<std::string> &asTexts) {
    std::vector<Answer> astAnswers;
    astAnswers.reserve(asTexts.size());
    for (const std::string &sText : asTexts) {
        astAnswers.push_back(TextAnswerOf(sText));
    }
    return astAnswers;
}

Answer Runtime(const char *pcName, const char *pcVersion, const char *pcVendor) {
    return TextAnswerOf(std::string("{ \"Result\": 0, \"Name\": \"") + pcName +
                        "\", \"Version\": \"" + pcVersion + "\", \"Vendor\": \"" + pcVendor +
                        "\" }");
}

/// A volume that there was no memory for is left out, one that can't be measured has zeros.
std::vector<Answer> Volumes(const std::vector<std::string> &asOthers) {
    std::set<std::string> asTexts;
    for (const char *pcFirst : {kMeasuredVolume, kUnmeasuredVolume}) {
        std::vector<std::string> asVolumes = {pcFirst};
        asVolumes.insert(asVolumes.end(), asOthers.begin(), asOthers.end());
        asTexts.merge(WithSomeLeftOut("{ \"Result\": 0, \"List\": [ ", asVolumes, ", ", " ] }", 1));
    }
    // Of a list of one that is left out, nothing is left but the brackets.
    asTexts.erase("{ \"Result\": 0, \"List\": [  ] }");
    if (asOthers.empty()) {
        asTexts.insert("{ \"Result\": 0, \"List\": [ ] }");
    }
    return Texts(asTexts);
}

void AddArrays(Leniencies &mapAll) {
    for (const char *pcMethod : {"deleteLANHostFromBlackList", "deleteLANHostFromTrustList",
                                 "addLANHostToStorageBlackList",
                                 "deleteLANHostFromStorageBlackList", "addLANHostToBlackList"}) {
        mapAll[pcMethod] = {kElement, {}, true};
    }
    // Nothing is left to add when the one element could not be had.
    mapAll["addLANHostToBlackList_in_the_other_mode"] = {kElement, {NumberAnswerOf(0)}, true};
    mapAll["addLANHostToTrustList_usual"] = {kElement, {NumberAnswerOf(0)}, true};
    mapAll["addLANHostToTrustList"] = {kElement, {}, true};
    // Whether a wireless network is left out can't be asked, so it is not.
    Operations asQuestion = kElement;
    asQuestion.insert(kRpcCall);
    mapAll["addLANHostToBlackList_two_with_wlan"] = {asQuestion, {}, true};
    mapAll["addLANHostToTrustList_in_its_mode"] = {asQuestion, {}, true};
    // Its own answer for failures takes memory.
    mapAll["getLANHostInfoByMAC"] = {kElement, {kFault}, true};
    for (const char *pcMethod : {"getSubscribeVoIPEvent", "getUnSubscribeVoIPEvent"}) {
        mapAll[pcMethod] = {kElement, {kFailed}, false};
    }
    // A name that could not be had is none that is unknown.
    mapAll["getSubscribeVoIPEvent_unknown_event"] = {kElement, {kFailed, NumberAnswerOf(0)}, true};
    // An element that there is no exception for is a null one.
    const Operations asOfAList = {"GetObjectArrayElement"};
    mapAll["addHTTPTrafficProcessRule"] = {asOfAList, {}, true};
    Operations asNotice = asOfAList;
    asNotice.insert({kPlatformAllocation, "VT_MSG_AsyncSendData", "VT_VDATA_CreShm",
                     "VT_VDATA_UpdateData", "VT_OS_Compress"});
    for (const char *pcMethod :
         {"addTrafficMonitoringDestAddress", "deleteTrafficMonitoringDestAddress"}) {
        mapAll[pcMethod] = {asNotice, {}, true};
    }
}

void AddOthers(Leniencies &mapAll) {
    // The answer is parsed only to be judged, and an array that can't be made smaller is whole.
    mapAll["getTrafficMonitoringDestAddressInfo"] = {{kMalloc}};
    // Without the platform library there is nothing to start, which is no failure.
    mapAll["startThread"] = {{"dlopen"}};
    // The mapping was fetched, and then it could not be changed.
    mapAll["setPortMappingSwitch"] = {{}, {kFailed}};
    // What can't be compared is set.
    mapAll["setMacFilterMode"] = {{kRpcCall}, {}, true};
    // It is the request alone that can fail and leave an empty list.
    mapAll["getWANIfList"] = {{}, {kFault}};
    mapAll["usbSetSerial"] = {{"tcflush"}};
    mapAll["getStorageInfo"] = {{}, Volumes({kUnknownVolume})};
    mapAll["getStorageInfo_one"] = {{}, Volumes({})};
    for (const char *pcMethod :
         {"getMirroRuleInfo", "getForwardRuleInfo", "getHTTPTrafficProcessRuleInfo"}) {
        mapAll[pcMethod] = {{}, {TextAnswerOf("{ \"Result\": 1 }")}};
    }
    // Where nobody can tell whether there is another connection for management, there is none.
    mapAll["setWANIf_second_for_management"] = {
        {kRpcCall, kPlatformAllocation}, {NumberAnswerOf(0)}, true};
    // The words of a command that failed are there all the same, and a line that could not be read
    // is where they end.
    const Operations asCommand = {"VT_OS_ExecShellCmdEx", "VT_OS_Fgets", "VT_OS_Fclose"};
    mapAll["getJVMInfo"] = {asCommand,
                            {kFault, Runtime("", "", ""), Runtime("", "1.8.0_212", ""),
                             Runtime("", "1.8.0_212", "Oracle")}};
    mapAll["getJVMInfo_other_runtime"] = {asCommand,
                                          {kFault, Runtime("", "", ""), Runtime("", "9", "")}};
}

Leniencies MakeLeniencies() {
    Leniencies mapAll;
    AddArrays(mapAll);
    AddOthers(mapAll);
    return mapAll;
}

}  // namespace

const Leniency &LeniencyOf(const SweepCase &stCase) {
    static const Leniencies s_mapAll = MakeLeniencies();
    static const Leniency s_stNone;
    for (const std::string &sName : {stCase.Name(), stCase.sMethod}) {
        if (const auto it = s_mapAll.find(sName); it != s_mapAll.end()) {
            return it->second;
        }
    }
    return s_stNone;
}

bool IsUnimportant(std::string_view sOperation) {
    static const Operations s_asUnimportant = {"VT_MSG_GetCurProcName", "VT_OS_MutexInit",
                                               "VT_OS_MutexLock", "VT_OS_MutexUnLock",
                                               "VT_VDATA_FreeShm"};
    return s_asUnimportant.contains(sOperation);
}

}  // namespace wap::test
