// Every Java entry that asks a process, with replies that no honest process would give: cut, empty,
// full of ones, random. What each must answer follows from the records' layouts alone.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "faults/fault_sweep.h"
#include "support/entries.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

/// Where a text lies in a record, and how many bytes the entry's answer has room for.
struct TextField {
    size_t uiRecord;
    size_t uiAt;
    size_t uiWidth;
    size_t uiRoom;
};

const std::map<std::string, TextField> &TextFields() {
    static const std::map<std::string, TextField> s_mapFields = {
        {"getDeviceMAC", {18, 0, 18, 17}},
        {"getDevicePassword", {64, 0, 64, 64}},
        {"getDeviceManufacturerOUI", {265, 65, 72, 6}},
        {"getDeviceSerialNumber", {265, 137, 128, 127}},
        {"getDeviceDefaultWebPassword", {192, 64, 128, 127}},
        {"getDeviceDefaultSSID1Name", {192, 0, 32, 31}},
        {"getDeviceDefaultSSID1Password", {192, 32, 32, 31}},
    };
    return s_mapFields;
}

size_t RecordSize(const Entry &stEntry) {
    if (stEntry.sMethod == "getDeviceInfo") {
        return 336;
    }
    if (stEntry.sMethod == "getDeviceUpTime") {
        return 4;
    }
    return TextFields().at(stEntry.sMethod).uiRecord;
}

std::string GoodRecord(const Entry &stEntry) {
    World stWorld;
    FurnishHome(stWorld);
    return stWorld.stPlatform.mapReplies.at(stEntry.uiRpcId).sBytes;
}

std::string FieldText(const std::string &sRecord, size_t uiAt, size_t uiWidth) {
    return UpToZero(sRecord.substr(uiAt, uiWidth));
}

/// As Java sees a number.
int32_t IntAt(const std::string &sRecord, size_t uiAt) {
    return static_cast<int32_t>(WordAt(sRecord, uiAt));
}

/// As Java sees these bytes.
Answer JavaAnswer(const std::string &sBytes) {
    return sBytes.empty() ? NullAnswer() : TextAnswerOf(ToUtf8(FromUtf8(sBytes)));
}

Answer InfoAnswer(const Entry &stEntry, const std::string &sRecord) {
    const auto Text = [&](size_t uiAt, size_t uiWidth) {
        return "\"" + FieldText(sRecord, uiAt, uiWidth) + "\"";
    };
    const std::string sText =
        "{\"Result\":0 , \"Vendor\":" + Text(75, 65) + ", \"ProductCLass\":" + Text(10, 65) +
        ", \"HardwareVer\":" + Text(140, 65) + ", \"FirmwareVer\":" + Text(205, 65) +
        ", \"FlashSize\":" + std::to_string(IntAt(sRecord, 4)) +
        ", \"RamSize\":" + std::to_string(IntAt(sRecord, 0)) +
        ", \"MainChipClass\":" + Text(270, 66) + ", \"NFC\":" + Text(8, 2) + "}";
    return sText.size() < 512 ? JavaAnswer(sText) : stEntry.stFailure;
}

/// The answer to a reply of these bytes; what the reply does not bring counts as zero.
Answer AnswerTo(const Entry &stEntry, std::string sReply) {
    sReply.resize(RecordSize(stEntry), '\0');
    if (stEntry.sMethod == "getDeviceInfo") {
        return InfoAnswer(stEntry, sReply);
    }
    if (stEntry.sMethod == "getDeviceUpTime") {
        return NumberAnswerOf(IntAt(sReply, 0));
    }
    const TextField &stField = TextFields().at(stEntry.sMethod);
    const std::string sText = FieldText(sReply, stField.uiAt, stField.uiWidth);
    return sText.size() <= stField.uiRoom ? JavaAnswer(sText) : stEntry.stFailure;
}

std::vector<Entry> AskingEntries() {
    std::vector<Entry> astEntries;
    for (const Entry &stEntry : BasicEntries()) {
        if (stEntry.uiRpcId != 0) {
            astEntries.push_back(stEntry);
        }
    }
    return astEntries;
}

class EntryReplyTest : public ::testing::TestWithParam<Entry> {
  protected:
    void SetUp() override {
        ResetBridge();
        FurnishHome(stWorld);
    }

    void ExpectAnswer(const Answer &stWanted, Reply stReply, const std::string &sWhat) {
        SCOPED_TRACE(sWhat);
        stWorld.stPlatform.astNextReplies.push_back(std::move(stReply));
        EXPECT_EQ(GetParam().fnCall(stEnv), stWanted);
        EXPECT_TRUE(stWorld.stPlatform.astNextReplies.empty());
        EXPECT_EQ(GetParam().fnCall(stEnv), GetParam().stGood) << "the call after it";
        stEnv.EndCall();
        stWorld.ExpectClean();
        stWorld.ClearRecords();
    }

    void ExpectAnswerTo(const std::string &sReply, const std::string &sWhat) {
        ExpectAnswer(AnswerTo(GetParam(), sReply), {0, sReply}, sWhat);
    }

    World stWorld;
    FakeJni stEnv;
};

TEST_P(EntryReplyTest, ReadsItsOwnRecord) {
    EXPECT_EQ(AnswerTo(GetParam(), GoodRecord(GetParam())), GetParam().stGood);
    ExpectAnswerTo(GoodRecord(GetParam()), "the good reply");
}

TEST_P(EntryReplyTest, TakesReplyOfOnes) {
    ExpectAnswerTo(std::string(RecordSize(GetParam()), '\xFF'), "ones");
    ExpectAnswerTo(std::string(RecordSize(GetParam()) + 64, '\xFF'), "more ones than asked for");
}

TEST_P(EntryReplyTest, TakesReplyFullOfText) {
    ExpectAnswerTo(std::string(RecordSize(GetParam()), 'x'), "no terminating zero anywhere");
}

TEST_P(EntryReplyTest, TakesReplyCutAnywhere) {
    const std::string sGood = GoodRecord(GetParam());
    for (size_t i = 0; i < sGood.size(); ++i) {
        ExpectAnswerTo(sGood.substr(0, i), "cut to " + std::to_string(i));
    }
}

TEST_P(EntryReplyTest, TakesRandomReply) {
    Dice stDice(20240229);
    for (uint32_t i = 0; i < 200; ++i) {
        // From no zeros at all to nearly nothing else.
        const uint32_t uiZeroOf256 = i % 8 == 0 ? 0 : stDice.Roll(256);
        std::string sReply(RecordSize(GetParam()) + stDice.Roll(3) - 1, '\0');
        for (char &cByte : sReply) {
            if (stDice.Roll(256) >= uiZeroOf256) {
                cByte = static_cast<char>(1 + stDice.Roll(255));
            }
        }
        ExpectAnswerTo(sReply, "random reply " + std::to_string(i));
    }
}

TEST_P(EntryReplyTest, FailsOnStatusWhateverTheBytes) {
    for (const uint32_t uiStatus : {1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        ExpectAnswer(GetParam().stFailure, {uiStatus, GoodRecord(GetParam())}, "the good bytes");
        ExpectAnswer(GetParam().stFailure, {uiStatus, std::string(RecordSize(GetParam()), '\xFF')},
                     "ones");
        ExpectAnswer(GetParam().stFailure, {uiStatus, ""}, "nothing");
    }
}

INSTANTIATE_TEST_SUITE_P(Every, EntryReplyTest, ::testing::ValuesIn(AskingEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

TEST(EntryReplies, CoverEveryEntryThatAsks) {
    // Start, version and the two rates ask no process.
    EXPECT_EQ(AskingEntries().size(), BasicEntries().size() - 4);
}

}  // namespace

}  // namespace wap::test
