// Adding, deleting and switching port mappings, request by request.
#include <string>

#include "lan/jni_port_mapping.h"
#include "unit/portmap/portmap_fixture.h"

namespace wap::test {
namespace {

class AddMappingTest : public PortMappingTest {
  protected:
    uint32_t Add(const char *pcProtocol = "TCP", const char *pcClient = "192.168.1.20") {
        return VT_JNI_addPortMapping(kWanIndex, 8080, 80, pcProtocol, pcClient);
    }

    /// The addition that was sent last.
    std::string Sent() const { return stPlatform.astRpcs.back().sRequest; }
};

TEST_F(AddMappingTest, AsksForTheWanAndSendsTheMapping) {
    EXPECT_EQ(Add(), 0u);
    const std::string sEntry = Word(1) + std::string(20, '\0') + Word(8080) + Word(8080) +
                               Word(80) + Field("TCP", 16) + Field("192.168.1.20", 16) +
                               std::string(257, '\0') + Word(80) + std::string(47, '\0');
    ASSERT_EQ(sEntry.size(), 376u);
    ExpectRpcs(
        {WanQuery(), {"osgi_proxy", 0, kAdd, Word(1) + Word(1) + Word(2) + Word(3) + sEntry, 4}});
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{kWanTrace, kNumbersTrace}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(AddMappingTest, InternalPortIsSentTwiceAndTheSecondTimeUnaligned) {
    EXPECT_EQ(VT_JNI_addPortMapping(kWanIndex, 0x01020304, 0x0A0B0C0D, "UDP", "10.0.0.2"), 0u);
    // Behind the 16 bytes that name the WAN connection.
    EXPECT_EQ(Sent().substr(16 + 24, 12), Word(0x01020304) + Word(0x01020304) + Word(0x0A0B0C0D));
    EXPECT_EQ(Sent().substr(16 + 325, 4), "\x0D\x0C\x0B\x0A");
}

TEST_F(AddMappingTest, NumbersAreNotChecked) {
    EXPECT_EQ(VT_JNI_addPortMapping(0xFFFFFFFF, 0xFFFFFFFF, 0, "TCP", "10.0.0.2"), 0u);
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, Word(0) + Word(0xFFFFFFFF));
    EXPECT_EQ(Sent().substr(16 + 24, 12), Word(0xFFFFFFFF) + Word(0xFFFFFFFF) + Word(0));
}

TEST_F(AddMappingTest, TellsTheConnectionsKindAndNumbers) {
    for (const uint32_t uiKind : {0u, 1u, 2u, 0xFFFFFFFFu}) {
        AnswerWan({.uiDev = 0xF0000001, .uiConnDev = 7, .uiConn = 9, .uiKind = uiKind});
        EXPECT_EQ(Add(), 0u);
        EXPECT_EQ(Sent().substr(0, 16), Word(uiKind) + Word(0xF0000001) + Word(7) + Word(9));
    }
    EXPECT_EQ(
        EntryTraces(stPlatform).back(),
        "VT_API_CoverWanInfo uiWANDevIns:4026531841,  uiWANConnDevIns:7  uiWANConnIns:9 \n\r");
}

TEST_F(AddMappingTest, TextsAreCutAtTheirFields) {
    const std::string s15 = "abcdefghijklmno";
    EXPECT_EQ(Add(s15.c_str(), "255.255.255.255"), 0u);
    EXPECT_EQ(Sent().substr(16 + 36, 32), s15 + '\0' + "255.255.255.255" + '\0');
    EXPECT_EQ(Add((s15 + "p").c_str(), "255.255.255.2551"), 0u);
    EXPECT_EQ(Sent().substr(16 + 36, 32), s15 + '\0' + "255.255.255.255" + '\0');
    EXPECT_EQ(Add(std::string(5000, 'x').c_str(), std::string(5000, 'y').c_str()), 0u);
    EXPECT_EQ(Sent().substr(16 + 36, 32),
              std::string(15, 'x') + '\0' + std::string(15, 'y') + '\0');
    EXPECT_EQ(Sent().substr(16 + 68, 257), std::string(257, '\0'));
}

TEST_F(AddMappingTest, MissingTextsLeaveTheirFieldsEmpty) {
    EXPECT_EQ(Add(nullptr, nullptr), 0u);
    EXPECT_EQ(Sent().substr(16 + 36, 32), std::string(32, '\0'));
}

TEST_F(AddMappingTest, WhatTheConnectionMustBe) {
    for (const GateCase &stCase : kGateCases) {
        SCOPED_TRACE(std::to_string(stCase.uiGate) + " " + std::to_string(stCase.uiMode));
        stPlatform.ClearRecords();
        AnswerWan({.uiGate = stCase.uiGate, .uiMode = stCase.uiMode});
        EXPECT_EQ(Add(), stCase.bAllowed ? 0 : kMinusOne);
        EXPECT_EQ(Rpcs(), stCase.bAllowed ? (Codes{kAskWan, kAdd}) : (Codes{kAskWan}));
        EXPECT_EQ(EntryTraces(stPlatform),
                  stCase.bAllowed ? (Calls{kWanTrace, kNumbersTrace}) : (Calls{kWanTrace}));
        EXPECT_EQ(HasRecorded(kNotMappable, {kWanIndex, 0, 0, 0}), !stCase.bAllowed);
    }
}

TEST_F(AddMappingTest, UnknownConnection) {
    Refuse(kAskWan);
    EXPECT_EQ(Add(), kMinusOne);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan}));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(HasRecorded(kRefused, {kWanIndex, 0, 0, 0}));
}

// The same status of the first request is no refusal of the mapping.
TEST_F(AddMappingTest, RefusalOfTheServiceIsMinusTwo) {
    Refuse(kAdd, kRefusedByService);
    EXPECT_EQ(Add(), kMinusTwo);
    EXPECT_TRUE(HasRecorded(kRefusedByService, {kWanIndex, 0, 0, 0}));
    Refuse(kAskWan, kRefusedByService);
    EXPECT_EQ(Add(), kMinusOne);
}

TEST_F(AddMappingTest, AnyOtherStatusIsMinusOne) {
    for (const uint32_t uiStatus : {1u, kRefusedByService - 1, kRefusedByService + 1, kMinusOne}) {
        Refuse(kAdd, uiStatus);
        EXPECT_EQ(Add(), kMinusOne);
        EXPECT_TRUE(HasRecorded(uiStatus, {kWanIndex, 0, 0, 0}));
    }
}

TEST_F(AddMappingTest, WordOfTheReplySaysNothing) {
    for (const std::string &sReply : {Word(kRefusedByService), Word(kMinusOne), std::string()}) {
        stPlatform.mapReplies[kAdd] = {0, sReply};
        EXPECT_EQ(Add(), 0u);
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(AddMappingTest, ConnectionCutShortOrNonsense) {
    const std::string sWan = WanBytes();
    for (size_t i = 0; i < sWan.size(); ++i) {
        stPlatform.mapReplies[kAskWan].sBytes = sWan.substr(0, i);
        // What is missing is zero: the gate's word is whole from its first byte on.
        EXPECT_EQ(Add(), i > 276 ? 0 : kMinusOne) << i;
    }
    stPlatform.mapReplies[kAskWan].sBytes = std::string(400, '\xFF');
    EXPECT_EQ(Add(), kMinusOne);
}

class DeleteMappingTest : public PortMappingTest {};

TEST_F(DeleteMappingTest, AsksForTheWanAndSendsTheNumber) {
    EXPECT_EQ(VT_JNI_deletePortMapping(kWanIndex, 77), 0u);
    ExpectRpcs({WanQuery(),
                {"osgi_proxy", 0, kDelete, Word(1) + Word(1) + Word(2) + Word(3) + Word(77), 4}});
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{kWanTrace, kNumbersTrace}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeleteMappingTest, TellsTheConnectionsKind) {
    for (const uint32_t uiKind : {0u, 1u, 5u}) {
        AnswerWan({.uiKind = uiKind});
        EXPECT_EQ(VT_JNI_deletePortMapping(kWanIndex, 0xFFFFFFFF), 0u);
        EXPECT_EQ(stPlatform.astRpcs.back().sRequest,
                  Word(uiKind) + Word(1) + Word(2) + Word(3) + Word(0xFFFFFFFF));
    }
}

TEST_F(DeleteMappingTest, WhatTheConnectionMustBe) {
    for (const GateCase &stCase : kGateCases) {
        SCOPED_TRACE(std::to_string(stCase.uiGate) + " " + std::to_string(stCase.uiMode));
        stPlatform.ClearRecords();
        AnswerWan({.uiGate = stCase.uiGate, .uiMode = stCase.uiMode});
        EXPECT_EQ(VT_JNI_deletePortMapping(kWanIndex, 77), stCase.bAllowed ? 0 : kMinusOne);
        EXPECT_EQ(Rpcs(), stCase.bAllowed ? (Codes{kAskWan, kDelete}) : (Codes{kAskWan}));
        EXPECT_EQ(HasRecorded(kNotMappable, {kWanIndex, 77, 0, 0}), !stCase.bAllowed);
    }
}

TEST_F(DeleteMappingTest, EveryFailureIsMinusOne) {
    for (const uint32_t uiStatus : {kRefusedByService, kRefused}) {
        Refuse(kDelete, uiStatus);
        EXPECT_EQ(VT_JNI_deletePortMapping(kWanIndex, 77), kMinusOne);
        EXPECT_TRUE(HasRecorded(uiStatus, {kWanIndex, 77, 0, 0}));
    }
    stPlatform.ClearRecords();
    Refuse(kAskWan);
    EXPECT_EQ(VT_JNI_deletePortMapping(kWanIndex, 77), kMinusOne);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan}));
    EXPECT_TRUE(HasRecorded(kRefused, {kWanIndex, 77, 0, 0}));
}

class SwitchMappingTest : public PortMappingTest {
  protected:
    uint32_t Switch(uint32_t uiEnable) {
        return VT_JNI_setPortMappingSwitch(kWanIndex, 77, uiEnable);
    }

    /// An entry with something in every byte, on or off.
    static std::string FullEntry(uint32_t uiEnable) {
        std::string sEntry(376, '\0');
        for (size_t i = 0; i < sEntry.size(); ++i) {
            sEntry[i] = static_cast<char>(1 + i % 255);
        }
        PutText(sEntry, 0, Word(uiEnable));
        return sEntry;
    }

    void AnswerEntry(uint32_t uiEnable) {
        stPlatform.mapReplies[kAskEntryOfKind1] = {0, FullEntry(uiEnable)};
    }

    /// The change that goes out: no kind, and the entry as it came but for its first word.
    static WantedRpc Change(uint32_t uiEnable) {
        return {"osgi_proxy", 0, kSwitch,
                Word(0) + Word(1) + Word(2) + Word(3) + Word(77) + FullEntry(uiEnable) + Word(0x10),
                4};
    }

    static WantedRpc EntryQuery() {
        return {"gulm", 87, kAskEntryOfKind1, Word(1) + Word(2) + Word(3) + Word(77), 376};
    }
};

TEST_F(SwitchMappingTest, OffSendsTheEntryBackWithOneWordChanged) {
    AnswerEntry(1);
    EXPECT_EQ(Switch(0), 0u);
    ASSERT_EQ(Change(0).sRequest.size(), 400u);
    ExpectRpcs({WanQuery(), EntryQuery(), WanQuery(), Change(0)});
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{kWanTrace, kNumbersTrace, kWanTrace, kNumbersTrace}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(SwitchMappingTest, OnLikewise) {
    AnswerEntry(0);
    EXPECT_EQ(Switch(1), 0u);
    ExpectRpcs({WanQuery(), EntryQuery(), WanQuery(), Change(1)});
}

TEST_F(SwitchMappingTest, AnyNumberButZeroMeansOn) {
    AnswerEntry(0);
    EXPECT_EQ(Switch(255), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest, Change(1).sRequest);
}

TEST_F(SwitchMappingTest, WhatIsSoAlreadyIsLeftAlone) {
    for (const uint32_t uiEnable : {0u, 1u}) {
        stPlatform.ClearRecords();
        AnswerEntry(uiEnable);
        EXPECT_EQ(Switch(uiEnable), 0u);
        EXPECT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1}));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
    stPlatform.ClearRecords();
    AnswerEntry(1);
    EXPECT_EQ(Switch(7), 0u);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1}));
}

// Neither of them is the word that is wanted, so both are put right.
TEST_F(SwitchMappingTest, OddEnableWordsAreReplaced) {
    for (const uint32_t uiOdd : {2u, 0xFFFFFFFFu}) {
        for (const uint32_t uiEnable : {0u, 1u}) {
            stPlatform.ClearRecords();
            AnswerEntry(uiOdd);
            EXPECT_EQ(Switch(uiEnable), 0u);
            ExpectRpcs({WanQuery(), EntryQuery(), WanQuery(), Change(uiEnable)});
        }
    }
}

TEST_F(SwitchMappingTest, KindSaysWhomToAskAndIsNotToldAgain) {
    AnswerWan({.uiKind = 0});
    stPlatform.mapReplies[kAskEntryOfKind0] = {0, FullEntry(1)};
    EXPECT_EQ(Switch(0), 0u);
    WantedRpc stQuery = EntryQuery();
    stQuery.uiRpcId = kAskEntryOfKind0;
    ExpectRpcs({WanQuery(), stQuery, WanQuery(), Change(0)});
}

TEST_F(SwitchMappingTest, NumbersAreThoseOfTheSecondAnswer) {
    const std::string sSecond =
        WanBytes({.uiDev = 4, .uiConnDev = 5, .uiConn = 6, .uiKind = 9, .uiGate = 0, .uiMode = 1});
    stPlatform.astNextReplies = {{0, WanBytes()}, {0, FullEntry(1)}, {0, sSecond}, {0, Word(0)}};
    EXPECT_EQ(Switch(0), 0u);
    ASSERT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1, kAskWan, kSwitch}));
    EXPECT_EQ(stPlatform.astRpcs[3].sRequest,
              Word(0) + Word(4) + Word(5) + Word(6) + Word(77) + FullEntry(0) + Word(0x10));
}

TEST_F(SwitchMappingTest, EntryThatCannotBeFetchedIsMinusTwo) {
    Refuse(kAskEntryOfKind1);
    EXPECT_EQ(Switch(0), kMinusTwo);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1}));
    // By the request, the fetch and the switch.
    EXPECT_EQ(FaultCodes(stPlatform), Codes(3, kRefused));
    EXPECT_TRUE(HasRecorded(kRefused, {kWanIndex, 77, 0, 0}));
    for (const WanFacts &stWan :
         {WanFacts{.uiGate = 0}, WanFacts{.uiMode = 1}, WanFacts{.uiKind = 2}}) {
        stPlatform.ClearRecords();
        AnswerWan(stWan);
        EXPECT_EQ(Switch(0), kMinusTwo);
        EXPECT_EQ(Rpcs(), (Codes{kAskWan}));
    }
    Refuse(kAskWan);
    EXPECT_EQ(Switch(0), kMinusTwo);
}

TEST_F(SwitchMappingTest, LaterFailuresAreMinusOne) {
    AnswerEntry(1);
    stPlatform.astNextReplies = {{0, WanBytes()}, {0, FullEntry(1)}, {kRefused, ""}};
    EXPECT_EQ(Switch(0), kMinusOne);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1, kAskWan}));
    EXPECT_TRUE(HasRecorded(kRefused, {kWanIndex, 77, 0, 0}));
    for (const uint32_t uiStatus : {kRefusedByService, 5u}) {
        Refuse(kSwitch, uiStatus);
        EXPECT_EQ(Switch(0), kMinusOne);
        EXPECT_TRUE(HasRecorded(uiStatus, {kWanIndex, 77, 0, 0}));
    }
}

TEST_F(SwitchMappingTest, EntryCutShortIsFilledWithZeros) {
    stPlatform.mapReplies[kAskEntryOfKind1] = {0, Word(1) + "abc"};
    EXPECT_EQ(Switch(0), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(20, 376),
              Word(0) + "abc" + std::string(369, '\0'));
}

}  // namespace
}  // namespace wap::test
