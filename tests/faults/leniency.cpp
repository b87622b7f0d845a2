#include "faults/leniency.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <optional>

#include "support/furnish_monitor.h"
#include "support/furnish_usb.h"

namespace wap::test {

namespace {

using Operations = std::set<std::string>;
using Ids = std::multiset<uint32_t>;

/// An array's element that is null, and no exception says why.
const std::string kNullElement = "null element";

/// What may have been asked for, next to what is when nothing fails.
enum class Asked {
    kTheSame,
    kLess,        ///< nothing besides
    kOtherTexts,  ///< as often and of the same, but what the requests say
    kMore,        ///< other things
};

/// What an entry does instead of failing when nothing but certain operations have failed.
struct Leniency {
    Operations asOperations;  ///< "malloc" means each, "malloc 3" one, as FailedOperationsOf tells
    std::vector<Answer> astAnswers{};  ///< none: the good one
    Asked eAsked = Asked::kTheSame;
    std::optional<Ids> auiIds{};  ///< of these requests, and no others
    Operations asNeeded{};        ///< those that must have failed, each of them
    bool bMayFail = false;        ///< it depends on which of them failed whether it does this
};

/// Of a case, or of its method.
struct Rules {
    std::vector<Leniency> astLeniencies{};
    Operations asFailing{};  ///< what leads to the failing answer; none: everything
    /// Requests that take things back, which a failing answer may come after.
    std::set<uint32_t> auiUndoes{};
    /// What the failing answer itself takes: null is right when one of these fails alone.
    Operations asNull{};
};
using AllRules = std::map<std::string, Rules>;

/// What it takes to have an element of an array.
const Operations kElement = {"GetObjectArrayElement", "FindClass",        "NewStringUTF",
                             "GetMethodID",           "CallObjectMethod", "GetByteArrayElements",
                             std::string(kMalloc)};
/// The same, and an element that is null without an exception, which is no failure for anybody.
const Operations kElementOrNull = [] {
    Operations asOperations = kElement;
    asOperations.insert(kNullElement);
    return asOperations;
}();

/// Those operations of one element, counted from 1.
Operations Only(const Operations &asOperations, uint32_t uiNth) {
    Operations asOnly;
    for (const std::string &sName : asOperations) {
        asOnly.insert(sName + " " + std::to_string(uiNth));
    }
    return asOnly;
}

const Answer kFailed = NumberAnswerOf(-1);
const Answer kFault = TextAnswerOf("{\"Result\":-1}");

Answer Runtime(const char *pcName, const char *pcVersion, const char *pcVendor) {
    return TextAnswerOf(std::string("{ \"Result\": 0, \"Name\": \"") + pcName +
                        "\", \"Version\": \"" + pcVersion + "\", \"Vendor\": \"" + pcVendor +
                        "\" }");
}

Answer VolumeList(const std::string &sVolumes) {
    return TextAnswerOf("{ \"Result\": 0, \"List\": [ " + sVolumes + " ] }");
}

/// The answer is as ever, and so are the requests.
Leniency NoMatter(Operations asOperations) {
    return {std::move(asOperations)};
}

/// Of these operations, some lead to one of these answers, none: the good one.
Leniency SomeOf(Operations asOperations, std::vector<Answer> astAnswers) {
    return {std::move(asOperations), std::move(astAnswers), Asked::kLess, {}, {}, true};
}

/// An element that could not be had is left out.
void AddHosts(AllRules &mapAll) {
    // Whether a wireless network is left out can't be asked, so it is not.
    const Leniency stQuestion = NoMatter({"VT_MSG_RpcCall 49350180"});
    // Nobody is left to add.
    const Leniency stNobody = {kElementOrNull, {NumberAnswerOf(0)}, Asked::kLess, {{}}};
    const Ids auiOneAdded = {0x47307000, 0x47209092, 0x47103092, 0x49350180,
                             0x49350180, 0x47209094, 0x47209094};
    // An entry is looked up before it is taken back.
    const std::set<uint32_t> auiUnadd = {0x47309024, 0x40007000, 0x47209093,
                                         0x47309027, 0x4730701A, 0x47209095};
    mapAll["addLANHostToBlackList"] = {{stNobody}, {}, auiUnadd};
    mapAll["addLANHostToTrustList"] = {{stNobody}};
    mapAll["addLANHostToTrustList_in_its_mode"] = {{stNobody, stQuestion}, {}, auiUnadd};
    mapAll["addLANHostToBlackList_two_with_wlan"] = {
        {stNobody,
         stQuestion,
         {Only(kElementOrNull, 1), {}, Asked::kLess, auiOneAdded},
         {Only(kElementOrNull, 2), {}, Asked::kLess, auiOneAdded}},
        {},
        auiUnadd};
    // Nothing but nulls stands for everyone, but not what could not be had.
    const Ids auiRead = {0x47307000, 0x47309024, 0x40007000, 0x47309027, 0x4730701A};
    Ids auiCleared = auiRead;
    auiCleared.insert({0x47209093, 0x47209095, 0x47309024, 0x40007000, 0x47309027, 0x4730701A});
    const std::set<uint32_t> auiUndelete = {0x47209092, 0x4730701D};
    mapAll["deleteLANHostFromBlackList"] = {
        {{{kNullElement + " 1"}, {}, Asked::kMore, auiCleared}}, {}, auiUndelete};
    const Operations asBothNull = {kNullElement + " 1", kNullElement + " 2"};
    mapAll["deleteLANHostFromBlackList_two_with_wlan"] = {
        {{{kNullElement}, {}, Asked::kMore, auiCleared, asBothNull},
         {Only(kElementOrNull, 1), {}, Asked::kLess, auiRead},
         NoMatter(Only(kElementOrNull, 2))},
        {},
        auiUndelete};
    // Here one of all is refused, too.
    const Ids auiAllUndone = {0x40007000, 0x47209092, 0x47209093, 0x47209095,
                              0x47209095, 0x47307000, 0x4730701A, 0x4730701A,
                              0x4730701D, 0x47309024, 0x47309027};
    mapAll["deleteLANHostFromBlackList_undone"] = {
        {{{kNullElement + " 1"}, {}, Asked::kMore, auiAllUndone}}, {}, auiUndelete};
    mapAll["deleteLANHostFromTrustList"] = {{NoMatter(kElementOrNull)}};
    mapAll["deleteLANHostFromTrustList_in_its_mode"] = {
        {{kElementOrNull, {}, Asked::kLess, auiRead}}, {}, auiUndelete};
    // Nothing is refused where nothing is deleted.
    Ids auiReadTwo = auiRead;
    auiReadTwo.insert(0x4730701A);
    mapAll["deleteLANHostFromTrustList_undone"] = {
        {{kElementOrNull, {NumberAnswerOf(0)}, Asked::kLess, auiReadTwo}}, {}, auiUndelete};
    const Ids auiRights = {0x47307000, 0x47307030, 0x47307034, 0x47309024, 0x47309027};
    Ids auiSecond = auiRights;
    auiSecond.insert(0x47209096);
    Ids auiFirst = auiRights;
    auiFirst.insert(0x47209097);
    mapAll["addLANHostToStorageBlackList"] = {
        {stNobody,
         {Only(kElementOrNull, 1), {}, Asked::kLess, auiSecond},
         {Only(kElementOrNull, 2), {}, Asked::kLess, auiFirst}},
        {},
        // The list is read again, and who had a right before gets it back.
        {0x47307034, 0x47307030, 0x47209096, 0x47209097}};
    mapAll["addLANHostToStorageBlackList_null_element"] = {
        {stNobody, NoMatter(Only(kElementOrNull, 2))}};
    mapAll["deleteLANHostFromStorageBlackList"] = {
        {NoMatter({kNullElement}), NoMatter(Only(kElement, 1)), NoMatter(Only(kElement, 2))}};
    mapAll["deleteLANHostFromStorageBlackList_unknown_host"] = {{NoMatter({kNullElement})}};
    mapAll["deleteLANHostFromStorageBlackList_barred"] = {{NoMatter({kNullElement})}};
    // The first host's record is gone only when the gateway itself refuses the second.
    mapAll["deleteLANHostFromStorageBlackList_undone"] = {{}, {}, {0x47307030, 0x47209097}};
    // The failing answer of its own takes memory, and is for later failures.
    Operations asBefore = kElement;
    asBefore.insert({"EnsureLocalCapacity", std::string(kPlatformAllocation)});
    const Leniency stBefore = SomeOf(asBefore, {kFault});
    mapAll["getLANHostInfoByMAC"] = {{stBefore}};
    // Behind the last element comes the answer, which may be what could not be had.
    mapAll["getLANHostInfoByMAC_usual"] = {
        {stBefore,
         {{kNullElement}, {}, Asked::kOtherTexts},
         {Only(kElement, 1), {}, Asked::kOtherTexts},
         {Only(kElement, 2), {}, Asked::kOtherTexts, {}, {}, true}}};
    mapAll["getLANHostInfoByMAC_one"] = {{stBefore, {{kNullElement}, {}, Asked::kOtherTexts}}};
    mapAll["getLANHostInfoByMAC_null_element"] = {{stBefore,
                                                   {{kNullElement}, {}, Asked::kOtherTexts},
                                                   NoMatter({"GetObjectArrayElement 1"})}};
}

/// Names of events are only looked at, and what could not be had is none that is unknown.
void AddEvents(AllRules &mapAll) {
    Operations asBefore = kElementOrNull;
    asBefore.insert("EnsureLocalCapacity");
    const auto fnRules = [&](uint32_t uiEvents) -> Rules {
        Operations asEvents = {"GetObjectArrayElement", kNullElement};
        for (uint32_t i = 1; i <= uiEvents; ++i) {
            asEvents.merge(Only(kElement, i));
        }
        return {{NoMatter(asEvents), SomeOf(asBefore, {kFailed})}, {std::string(kRpcCall)}};
    };
    mapAll["getSubscribeVoIPEvent"] = fnRules(0);
    mapAll["getUnSubscribeVoIPEvent"] = fnRules(0);
    mapAll["getSubscribeVoIPEvent_usual"] = fnRules(2);
    mapAll["getUnSubscribeVoIPEvent_usual"] = fnRules(2);
    mapAll["getSubscribeVoIPEvent_null_event"] = fnRules(1);
    mapAll["getUnSubscribeVoIPEvent_many_events"] = fnRules(8);
    Operations asEvent = Only(kElementOrNull, 1);
    mapAll["getSubscribeVoIPEvent_unknown_event"] = {
        {{asEvent, {NumberAnswerOf(0)}, Asked::kMore, {{0x47209062}}}, SomeOf(asBefore, {kFailed})},
        {std::string(kRpcCall)}};
}

void AddTraffic(AllRules &mapAll) {
    const Leniency stNull = {{kNullElement}, {}, Asked::kOtherTexts};
    mapAll["addHTTPTrafficProcessRule"] = {{stNull}};
    // The registry changes whether anybody hears of it or not.
    const Operations asNotice = {"platform allocation 2", "VT_MSG_AsyncSendData",
                                 "VT_VDATA_CreShm 1", "VT_VDATA_UpdateData 1"};
    mapAll["addTrafficMonitoringDestAddress"] = {
        {stNull, {asNotice, {}, Asked::kLess, {{kAddMonitored}}}}};
    mapAll["deleteTrafficMonitoringDestAddress"] = {
        {stNull, {asNotice, {}, Asked::kLess, {{kDelMonitored}}}}};
    // One that is compressed takes another block, and if that were the list's there would be none.
    const Operations asPacked = {"platform allocation 3", "VT_OS_Compress 1"};
    mapAll["addTrafficMonitoringDestAddress_compressed"] = {
        {stNull,
         {asNotice, {}, Asked::kLess, {{kAddMonitored}}},
         {asPacked, {}, Asked::kLess, {{kAddMonitored}}}}};
    // The answer is parsed only to be judged, and an array that can't be made smaller is whole.
    mapAll["getTrafficMonitoringDestAddressInfo"] = {{SomeOf({std::string(kMalloc)}, {})}};
    // It is the reading that has failed.
    for (const char *pcCase : {"getMirroRuleInfo_unreadable", "getForwardRuleInfo_unreadable",
                               "getHTTPTrafficProcessRuleInfo_unreadable"}) {
        mapAll[pcCase] = {{NoMatter({"VT_VDATA_FreeShm"})}};
    }
}

/// A line of the runtime's words that can't be read is where they end.
Rules Runtimes(const std::vector<Answer> &astByLine) {
    Rules stRules = {{
                         // The words of a command that failed are there all the same.
                         NoMatter({"VT_OS_ExecShellCmdEx", "VT_OS_Fclose",
                                   "VT_OS_Fgets " + std::to_string(astByLine.size() + 1)}),
                         SomeOf({std::string(kMalloc)}, {kFault}),
                     },
                     {"VT_OS_Fopen"}};
    for (size_t i = 0; i < astByLine.size(); ++i) {
        stRules.astLeniencies.push_back(
            {{"VT_OS_Fgets " + std::to_string(i + 1), "VT_OS_Fclose"}, {astByLine[i]}});
    }
    return stRules;
}

void AddDevice(AllRules &mapAll) {
    // Without the platform library there is nothing to start, which is no failure.
    mapAll["startThread"] = {{NoMatter({"dlopen"})}};
    mapAll["getJVMInfo"] = Runtimes(
        {Runtime("", "", ""), Runtime("", "1.8.0_212", ""), Runtime("", "1.8.0_212", "Oracle")});
    mapAll["getJVMInfo_other_runtime"] = Runtimes({Runtime("", "", ""), Runtime("", "9", "")});
    mapAll["getJVMInfo_nothing_said"] = Runtimes({});
    mapAll["getJVMInfo_without_output"] = Runtimes({});
    // Their good answer is the failing one: it is the object of that which there is no memory for.
    for (const char *pcCase : {"getDeviceManufacturerOUI_too_long",
                               "getSambaRightInfo_absurd_count", "getSambaRightInfo_refused"}) {
        mapAll[pcCase] = {{}, {}, {}, {std::string(kMalloc)}};
    }
    mapAll["usbSetSerial"] = {{NoMatter({"tcflush"})}};
    // A volume that can't be measured has zeros, and one that there is no memory for is left out.
    const std::string sBoth = std::string(kUnmeasuredVolume) + ", " + kUnknownVolume;
    const std::string sAnyMalloc(kMalloc);
    mapAll["getStorageInfo"] = {
        {{{"statfs"}, {VolumeList(sBoth)}, Asked::kTheSame, {}, {"statfs 1"}},
         NoMatter({"statfs 2"}),
         SomeOf({sAnyMalloc}, {VolumeList(kMeasuredVolume), VolumeList(kUnknownVolume)})}};
    mapAll["getStorageInfo_one"] = {{{{"statfs"}, {VolumeList(kUnmeasuredVolume)}},
                                     SomeOf({sAnyMalloc}, {TextAnswerOf(kEmptyList)})}};
    // A block that a reply names beside a count of 0 is freed unread.
    for (const char *pcCase : {"getPortMappingInfo_none", "getLayer3ForwardingCurrent_none"}) {
        mapAll[pcCase] = {{NoMatter({"VT_VDATA_FreeShm"})}};
    }
}

void AddSettings(AllRules &mapAll) {
    // What can't be compared is set.
    mapAll["setMacFilterMode"] = {{NoMatter({"VT_MSG_RpcCall 47307000"})}};
    mapAll["setMacFilterMode_nothing_to_do"] = {
        {{{"VT_MSG_RpcCall 47307000"}, {}, Asked::kMore, {{0x47307000, 0x47209091}}}}};
    // The mapping was fetched, and then it could not be changed.
    mapAll["setPortMappingSwitch"] = {
        {SomeOf({"VT_MSG_RpcCall 47301049"}, {kFailed}),
         SomeOf({"VT_MSG_RpcCall 47301049", "VT_MSG_RpcCall 4720909c"}, {kFailed})},
        {"VT_MSG_RpcCall 47301049", "VT_MSG_RpcCall 47309010", "VT_MSG_RpcCall 47309014",
         std::string(kPlatformAllocation)}};
    // It is the request alone that can fail and leave an empty list.
    mapAll["getWANIfList"] = {
        {SomeOf({std::string(kMalloc), std::string(kPlatformAllocation)}, {kFault})},
        {std::string(kRpcCall)}};
    // Where nobody can tell whether there is another connection for management, there is none.
    mapAll["setWANIf_second_for_management"] = {
        {{{"VT_MSG_RpcCall 47302025"},
          {NumberAnswerOf(0)},
          Asked::kMore,
          {{0x47302025, 0x47209078}}},
         {{"platform allocation 2"}, {NumberAnswerOf(0)}, Asked::kMore, {{0x47209078}}}}};
}

AllRules MakeRules() {
    AllRules mapAll;
    AddHosts(mapAll);
    AddEvents(mapAll);
    AddTraffic(mapAll);
    AddDevice(mapAll);
    AddSettings(mapAll);
    return mapAll;
}

/// Names and locks: nothing that any answer depends on.
const Operations kUnimportant = {"VT_MSG_GetCurProcName", "VT_OS_MutexInit", "VT_OS_MutexLock",
                                 "VT_OS_MutexUnLock"};

/// What the Java environment does for the bridge.
const Operations kOfJava = {"FindClass",          "NewStringUTF",       "GetMethodID",
                            "CallObjectMethod",   "NewObject",          "GetByteArrayElements",
                            "NewByteArray",       "SetByteArrayRegion", "GetObjectArrayElement",
                            "EnsureLocalCapacity"};
const Operations kMemory = {std::string(kMalloc), std::string(kPlatformAllocation)};

/// Whether something that failed is among the operations of a table.
bool IsAmong(const Operations &asOperations, const std::string &sFailed) {
    return asOperations.contains(sFailed) ||
           asOperations.contains(sFailed.substr(0, sFailed.rfind(' ')));
}

/// Whether nothing has failed but these operations and unimportant ones.
bool AreAll(const Operations &asOperations, const std::vector<std::string> &asFailed) {
    return std::all_of(asFailed.begin(), asFailed.end(), [&](const std::string &sFailed) {
        return IsAmong(kUnimportant, sFailed) || IsAmong(asOperations, sFailed);
    });
}

const AllRules &EveryRule() {
    static const AllRules s_mapAll = MakeRules();
    return s_mapAll;
}

const Rules &RulesOf(const SweepCase &stCase) {
    static const Rules s_stNone;
    for (const std::string &sName : {stCase.Name(), stCase.sMethod}) {
        if (const auto it = EveryRule().find(sName); it != EveryRule().end()) {
            return it->second;
        }
    }
    return s_stNone;
}

bool IsPart(const Requests &stPart, const Requests &stWhole) {
    return std::includes(stWhole.begin(), stWhole.end(), stPart.begin(), stPart.end());
}

Ids IdsOf(const Requests &stRequests) {
    Ids auiIds;
    for (const auto &[uiId, sTold] : stRequests) {
        auiIds.insert(uiId);
    }
    return auiIds;
}

/// Whether a call asked for what it may ask for under a leniency.
bool AskedWell(const Leniency &stLeniency, const Requests &stGood, const Requests &stAsked) {
    if (stLeniency.auiIds && IdsOf(stAsked) != *stLeniency.auiIds) {
        return false;
    }
    switch (stLeniency.eAsked) {
        case Asked::kTheSame:
            return stAsked == stGood;
        case Asked::kLess:
            return IsPart(stAsked, stGood);
        case Asked::kOtherTexts:
            return IdsOf(stAsked) == IdsOf(stGood);
        case Asked::kMore:
            return true;
    }
    return false;
}

/// Whether one of the operations has failed.
bool IsAny(const Operations &asOperations, const std::vector<std::string> &asFailed) {
    return std::any_of(asFailed.begin(), asFailed.end(),
                       [&](const std::string &sFailed) { return IsAmong(asOperations, sFailed); });
}

/// A text takes memory and the virtual machine to make, also that of a failure. But where memory
/// was refused once only, it is there again for that one.
bool MayBeNull(const Rules &stRules, const SweepCase &stCase,
               const std::vector<std::string> &asFailed) {
    const auto iRefused =
        std::count_if(asFailed.begin(), asFailed.end(),
                      [](const std::string &sFailed) { return IsAmong(kMemory, sFailed); });
    return !stCase.stFailure.iNumber &&
           (iRefused > 1 || IsAny(kOfJava, asFailed) || IsAny(stRules.asNull, asFailed));
}

/// Whether what was asked for besides is only what takes things back.
bool OnlyUndid(const std::set<uint32_t> &auiUndoes, const Requests &stGood,
               const Requests &stAsked) {
    Requests stBesides;
    std::set_difference(stAsked.begin(), stAsked.end(), stGood.begin(), stGood.end(),
                        std::inserter(stBesides, stBesides.end()));
    return std::all_of(stBesides.begin(), stBesides.end(),
                       [&](const auto &stRequest) { return auiUndoes.contains(stRequest.first); });
}

/// Whether a call that failed asked for nothing but what it may have asked for until then.
bool FailedWell(const Rules &stRules, const Requests &stGood, const CallRecord &stCall) {
    return OnlyUndid(stRules.auiUndoes, stGood, stCall.stRequests) ||
           std::any_of(stRules.astLeniencies.begin(), stRules.astLeniencies.end(),
                       [&](const Leniency &stLeniency) {
                           return IsAny(stLeniency.asOperations, stCall.asFailed) &&
                                  AskedWell(stLeniency, stGood, stCall.stRequests);
                       });
}

/// Whether a leniency is for what has failed.
bool IsFor(const Leniency &stLeniency, const std::vector<std::string> &asFailed) {
    const Operations &asNeeded = stLeniency.asNeeded;
    return AreAll(stLeniency.asOperations, asFailed) &&
           std::all_of(asNeeded.begin(), asNeeded.end(),
                       [&](const std::string &sNeeded) { return IsAny({sNeeded}, asFailed); });
}

/// Whether what a leniency asks for has been done.
bool IsDone(const Leniency &stLeniency, const SweepCase &stCase, const Requests &stGood,
            const CallRecord &stCall) {
    const std::vector<Answer> &astAnswers = stLeniency.astAnswers;
    const bool bAnswer = astAnswers.empty() ? stCall.stAnswer == stCase.stGood
                                            : std::find(astAnswers.begin(), astAnswers.end(),
                                                        stCall.stAnswer) != astAnswers.end();
    return bAnswer && AskedWell(stLeniency, stGood, stCall.stRequests);
}

/// Whether a call may have failed, and did as it should.
bool IsFailure(const Rules &stRules, const SweepCase &stCase, const Requests &stGood,
               const CallRecord &stCall) {
    const bool bNull =
        stCall.stAnswer == NullAnswer() && MayBeNull(stRules, stCase, stCall.asFailed);
    const bool bAnswer =
        bNull || (stCall.stAnswer == stCase.stFailure &&
                  (stRules.asFailing.empty() || IsAny(stRules.asFailing, stCall.asFailed)));
    return bAnswer && FailedWell(stRules, stGood, stCall);
}

std::string Hex(uint32_t uiNumber) {
    char acText[9];
    (void)std::snprintf(acText, sizeof(acText), "%x", uiNumber);
    return acText;
}

std::string Describe(const Requests &stGood, const CallRecord &stCall) {
    std::string sText = " where these failed:";
    for (const std::string &sFailed : stCall.asFailed) {
        sText += " " + sFailed;
    }
    sText += "; requests:";
    for (const uint32_t uiId : IdsOf(stCall.stRequests)) {
        sText += " " + Hex(uiId);
    }
    return sText + (stCall.stRequests == stGood         ? ", as ever"
                    : IsPart(stCall.stRequests, stGood) ? ", less than ever"
                                                        : ", unlike ever");
}

}  // namespace

Requests RequestsOf(const Platform &stPlatform) {
    Requests stRequests;
    for (const RpcRecord &stRpc : stPlatform.astRpcs) {
        stRequests.emplace(stRpc.uiRpcId, stRpc.sTold);
    }
    for (const MessageRecord &stMessage : stPlatform.astMessages) {
        stRequests.emplace(stMessage.uiType, stMessage.sReceiver + " " + stMessage.sTold);
    }
    return stRequests;
}

std::vector<std::string> FailedOperationsOf(const World &stWorld, JniFailure eFailure) {
    std::vector<std::string> asFailed;
    asFailed.reserve(stWorld.Failed().size());
    for (const FailedOp &stFailed : stWorld.Failed()) {
        const bool bNull =
            stFailed.sName == "GetObjectArrayElement" && eFailure == JniFailure::kNullAlone;
        const std::string sWhich =
            stFailed.sName == kRpcCall
                ? Hex(stWorld.stPlatform.astRpcs.at(stFailed.uiNth - 1).uiRpcId)
                : std::to_string(stFailed.uiNth);
        asFailed.push_back((bNull ? kNullElement : std::string(stFailed.sName)) + " " + sWhich);
    }
    return asFailed;
}

std::vector<std::string> RuledNames() {
    std::vector<std::string> asNames;
    for (const auto &[sName, stRules] : EveryRule()) {
        asNames.push_back(sName);
    }
    return asNames;
}

std::string Judge(const SweepCase &stCase, const Requests &stGood, const CallRecord &stCall) {
    const Rules &stRules = RulesOf(stCase);
    bool bRight = false;
    bool bMayFail = true;
    for (const Leniency &stLeniency : stRules.astLeniencies) {
        if (IsFor(stLeniency, stCall.asFailed)) {
            bMayFail = bMayFail && stLeniency.bMayFail;
            bRight = bRight || IsDone(stLeniency, stCase, stGood, stCall);
        }
    }
    if (AreAll({}, stCall.asFailed)) {
        bRight = stCall.stAnswer == stCase.stGood && stCall.stRequests == stGood;
    } else if (bMayFail) {
        bRight = bRight || IsFailure(stRules, stCase, stGood, stCall);
    }
    return bRight ? "" : Describe(stGood, stCall);
}

}  // namespace wap::test
