// Connection names, interfaces as lists show them, and IPv6 prefixes.
#include "lan/route_names.h"

#include <cstring>
#include <string>

#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

class ConnectionNameTest : public BridgeTest {
  protected:
    /// The WAN index of a name; kUntouched for none, which must have been recorded.
    uint32_t IndexOf(const char *pcName) {
        stPlatform.ClearRecords();
        uint32_t uiWanIndex = kUntouched;
        const uint32_t uiResult = ParseConnectionName(pcName, &uiWanIndex);
        EXPECT_EQ(uiResult, uiWanIndex == kUntouched ? 1u : 0u);
        EXPECT_EQ(FaultCodes(stPlatform), uiResult == 0 ? Codes{} : Codes{1});
        return uiWanIndex;
    }
};

struct NameCase {
    const char *pcName;
    uint32_t uiWanIndex;
};

TEST_F(ConnectionNameTest, PacksKindDeviceConnectionDeviceAndInstance) {
    const NameCase astCases[] = {
        {"wan1.1.ip1", 0x10101001},     {"wan1.2.ip3", 0x10102003},     {"wan1.2.ppp3", 0x20102003},
        {"wan12.34.ppp56", 0x20C22038}, {"wan255.255.ip8", 0x1FFFF008}, {"wan0.0.ip1", 0x10000001},
        {"WAN1.2.IP3", 0x10102003},     {"wan1.2.PpP3", 0x20102003},
    };
    for (const NameCase &stCase : astCases) {
        EXPECT_EQ(IndexOf(stCase.pcName), stCase.uiWanIndex) << stCase.pcName;
    }
}

TEST_F(ConnectionNameTest, KeepsEightBitsOfEachNumber) {
    const NameCase astCases[] = {
        {"wan1.2.ppp300", 0x2010202C},       {"wan1.2.ip256", 0x10102000},
        {"wan256.257.ip1", 0x10001001},      {"wan4294967294.1.ip1", 0x1FE01001},
        {"wan1.2.ip4294967294", 0x101020FE},
    };
    for (const NameCase &stCase : astCases) {
        EXPECT_EQ(IndexOf(stCase.pcName), stCase.uiWanIndex) << stCase.pcName;
    }
}

// The digits that may start the instance are 1 to 8, and the search for them starts behind the
// first letter of the kind.
TEST_F(ConnectionNameTest, InstanceStartsWithOneToEight) {
    for (char cDigit = '1'; cDigit <= '8'; ++cDigit) {
        const std::string sName = std::string("wan1.2.ip") + cDigit;
        EXPECT_EQ(IndexOf(sName.c_str()), 0x10102000u + static_cast<uint32_t>(cDigit - '0'));
    }
    EXPECT_EQ(IndexOf("wan1.2.ip10"), 0x1010200Au);
    EXPECT_EQ(IndexOf("wan1.2.ip89"), 0x10102059u);
    for (const char *pcName : {"wan1.2.ip0", "wan1.2.ip9", "wan1.2.ip03", "wan1.2.ip93",
                               "wan1.2.ip09", "wan1.2.ppp90", "wan1.2.1ip3", "wan1.2.i1p3"}) {
        EXPECT_EQ(IndexOf(pcName), kUntouched) << pcName;
    }
}

TEST_F(ConnectionNameTest, LastPointSeparatesTheKind) {
    EXPECT_EQ(IndexOf("wan1.2.3.ip4"), 0x10102004u);
    EXPECT_EQ(IndexOf("wan1.2x.ip4"), 0x10102004u);
    EXPECT_EQ(IndexOf("wan1.2.ip4x"), 0x10102004u);
    EXPECT_EQ(IndexOf("wan1.2.ip4.ip"), kUntouched);
}

// The callers have looked for the word; here its letters are passed over.
TEST_F(ConnectionNameTest, FirstThreeBytesAreNotLookedAt) {
    EXPECT_EQ(IndexOf("xyz1.2.ip3"), 0x10102003u);
    EXPECT_EQ(IndexOf("my-wan1.2.ip3"), kUntouched);
}

TEST_F(ConnectionNameTest, EverythingElseIsNoName) {
    for (const char *pcName : {"",
                               "w",
                               "wan",
                               "wan1",
                               "wan1.",
                               "wan1.2",
                               "wan1.2.",
                               "wan1.2.3",
                               "wan1.2.i",
                               "wan1.2.ip",
                               "wan.2.ip3",
                               "wan1..ip3",
                               "wan1.ip3",
                               "wan1ip3",
                               "wanx.2.ip3",
                               "wan1.x.ip3",
                               "wan-1.2.ip3",
                               "wan1 .2.ip3",
                               "wan+ 1.2.ip3",
                               "wan-4294967296.2.ip3",
                               "wan1.2.p3",
                               "wan1.2.pp3",
                               "wan1.2.pppp3",
                               "wan1.2.pppppppp3",
                               "wan1.2.ipxxxxxx3",
                               "wan1.2.ip-3",
                               "wan1.2.eth3",
                               "....",
                               "wan...",
                               "wan4294967295.2.ip3",
                               "wan1.4294967295.ip3",
                               "wan1.2.ip4294967295",
                               "wan4294967297.2.ip3",
                               "wan1.18446744073709551618.ip3",
                               "wan1.2.ip18446744073709551617"}) {
        EXPECT_EQ(IndexOf(pcName), kUntouched) << pcName;
    }
    EXPECT_EQ(IndexOf("wan"), kUntouched);
    EXPECT_EQ(stPlatform.astFaults.back().auiArgs[0], 3u);
    EXPECT_EQ(IndexOf(nullptr), kUntouched);
    EXPECT_EQ(ParseConnectionName("wan1.2.ip3", nullptr), 1u);
}

TEST_F(ConnectionNameTest, BlanksAndSignsStandBeforeTheFirstTwoNumbers) {
    for (const char *pcName : {"wan 1.2.ip3", "wan+1.2.ip3", "wan1. \t2.ip3", "wan1.+2.ip3"}) {
        EXPECT_EQ(IndexOf(pcName), 0x10102003u) << pcName;
    }
    EXPECT_EQ(IndexOf("wan-2.2.ip3"), 0x1FE02003u);
    EXPECT_EQ(IndexOf("wan-4294967295.2.ip3"), 0x10102003u);
}

TEST_F(ConnectionNameTest, LooksAtThirtyOneBytes) {
    const std::string sHead = "wan" + std::string(17, '0') + "1.2.ppp";
    ASSERT_EQ(sHead.size(), 27u);
    EXPECT_EQ(IndexOf((sHead + "1234").c_str()), 0x201020D2u);
    EXPECT_EQ(IndexOf((sHead + "12345").c_str()), 0x201020D2u);
    EXPECT_EQ(IndexOf((sHead + "12345.ip9").c_str()), 0x201020D2u);
    // The last byte is a point, and nothing but the end of the place is behind it.
    EXPECT_EQ(IndexOf(("wan1." + std::string(25, '0') + ".ip3").c_str()), kUntouched);
    const std::string sLong = "wan" + std::string(5000, '0') + "1.2.ip3";
    EXPECT_EQ(IndexOf(sLong.c_str()), kUntouched);
}

class ShowInterfaceTest : public RouteTest {
  protected:
    std::string Show(const std::string &sInterface, uint32_t uiWanted = 0) {
        stPlatform.ClearRecords();
        char acShown[128] = {};
        EXPECT_EQ(ShowInterface(sInterface.c_str(), acShown), uiWanted);
        EXPECT_EQ(stPlatform.astFaults.empty(), uiWanted == 0);
        EXPECT_EQ(HasEntryTrace(stPlatform, NameTrace(acShown)), uiWanted == 0);
        return acShown;
    }
};

TEST_F(ShowInterfaceTest, ConnectionIsShownByItsAlias) {
    EXPECT_EQ(Show("wan1.2.ip3"), kRouteAlias);
    ExpectRpcs({WanQuery()});
    EXPECT_EQ(EntryTraces(stPlatform), Calls{"pcAliasName:2_INTERNET_R_VID_100 \r\n"});
    EXPECT_EQ(Show("WAN3.4.ppp5"), kRouteAlias);
    ExpectRpcs({WanQuery(0x20304005)});
}

TEST_F(ShowInterfaceTest, AnotherInterfaceIsShownByItsName) {
    for (const char *pcName : {"nbif1.1.ip1", "usb123", "wa1.2.ip3"}) {
        EXPECT_EQ(Show(pcName), pcName);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
}

TEST_F(ShowInterfaceTest, SixBytesAtLeast) {
    EXPECT_EQ(Show("", 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {0, 0, 0, 0}));
    EXPECT_EQ(Show("ppp12", 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {5, 0, 0, 0}));
    EXPECT_EQ(Show("ppp123"), "ppp123");
}

TEST_F(ShowInterfaceTest, NameWithTheWordThatIsNoConnection) {
    for (const char *pcName : {"wan1.2", "wanx.y", "swan12", "my-wan1.2.ip3", "wan1.2.ip9"}) {
        EXPECT_EQ(Show(pcName, 1), "") << pcName;
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
}

TEST_F(ShowInterfaceTest, ConnectionThatIsNotKnown) {
    Refuse(kAskWan);
    EXPECT_EQ(Show("wan1.2.ip3", kRefused), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", kRefused, {0x10102003, 0, 0, 0}));
}

TEST_F(ShowInterfaceTest, WhatIsShownMustFit) {
    const std::string s127(127, 'n');
    EXPECT_EQ(Show(s127), s127);
    EXPECT_EQ(Show(s127 + "n", 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {128, 0, 0, 0}));
    AnswerAlias(s127);
    EXPECT_EQ(Show("wan1.2.ip3"), s127);
    AnswerAlias(s127 + "n");
    EXPECT_EQ(Show("wan1.2.ip3", 1), "");
    // All of the record, without a zero anywhere.
    stPlatform.mapReplies[kAskWan] = {0, std::string(284, 'n')};
    EXPECT_EQ(Show("wan1.2.ip3", 1), "");
    EXPECT_TRUE(HasRecorded("route_names.cpp", 1, {256, 0, 0, 0}));
}

TEST_F(ShowInterfaceTest, RecordCutShort) {
    stPlatform.mapReplies[kAskWan] = {0, "abc"};
    EXPECT_EQ(Show("wan1.2.ip3"), "abc");
    stPlatform.mapReplies[kAskWan] = {0, ""};
    EXPECT_EQ(Show("wan1.2.ip3"), "");
}

class PrefixTest : public BridgeTest {
  protected:
    /// The 16 bytes and the length; empty for none, which must have been recorded.
    std::string Parse(const char *pcText) {
        stPlatform.ClearRecords();
        Ipv6Prefix stPrefix;
        memset(&stPrefix, 0xA5, sizeof(stPrefix));
        const uint32_t uiResult = VT_Route6_GetIpStuctFromString(pcText, &stPrefix);
        const std::string sBytes(reinterpret_cast<const char *>(stPrefix.aucAddress), 16);
        if (uiResult == 0) {
            EXPECT_TRUE(stPlatform.astFaults.empty());
            return sBytes + Word(stPrefix.uiLength);
        }
        EXPECT_EQ(uiResult, pcText == nullptr ? kNullArgument : 1u);
        EXPECT_EQ(FaultCodes(stPlatform), Codes{uiResult});
        EXPECT_EQ(sBytes + Word(stPrefix.uiLength), std::string(20, '\xA5'));
        return "";
    }

    static std::string Bytes(const std::string &sHead, const std::string &sTail,
                             uint32_t uiLength) {
        return sHead + std::string(16 - sHead.size() - sTail.size(), '\0') + sTail + Word(uiLength);
    }
};

TEST_F(PrefixTest, AddressAndLength) {
    EXPECT_EQ(Parse("::/0"), Bytes("", "", 0));
    EXPECT_EQ(Parse("::1/128"), Bytes("", "\x01", 128));
    EXPECT_EQ(Parse("2001:db8::/32"), Bytes("\x20\x01\x0D\xB8", "", 32));
    EXPECT_EQ(Parse("2001:DB8:0:1::5/64"),
              Bytes(std::string("\x20\x01\x0D\xB8\0\0\0\x01", 8), "\x05", 64));
    EXPECT_EQ(Parse("1:2:3:4:5:6:7:8/48"),
              Bytes(std::string("\0\x01\0\x02\0\x03\0\x04\0\x05\0\x06\0\x07\0\x08", 16), "", 48));
    EXPECT_EQ(Parse("::ffff:1.2.3.4/96"), Bytes("", "\xFF\xFF\x01\x02\x03\x04", 96));
}

// An address that ends with a colon is one, and stays so.
TEST_F(PrefixTest, OnlyAnAddressThatIsNoneLosesItsEnd) {
    EXPECT_EQ(Parse("fe80::/10"), Bytes("\xFE\x80", "", 10));
    EXPECT_EQ(Parse("fe80::1 /64"), Bytes("\xFE\x80", "\x01", 64));
    EXPECT_EQ(Parse("fe80::1xyz. /64"), Bytes("\xFE\x80", "\x01", 64));
    EXPECT_EQ(Parse("fe80::aF%/64"), Bytes("\xFE\x80", "\xAF", 64));
    EXPECT_EQ(Parse("fe80::Af%/64"), Bytes("\xFE\x80", "\xAF", 64));
    // Not two of the three colons: all of the end goes.
    EXPECT_EQ(Parse("fe80:::/64"), "");
    EXPECT_EQ(Parse("fe80::1%eth0/64"), "");
    EXPECT_EQ(Parse(" fe80::1/64"), "");
}

TEST_F(PrefixTest, LengthIsANumberOfItsOwn) {
    EXPECT_EQ(Parse("::1/032"), Bytes("", "\x01", 32));
    EXPECT_EQ(Parse("::1/129"), Bytes("", "\x01", 129));
    EXPECT_EQ(Parse("::1/4294967295"), Bytes("", "\x01", 0xFFFFFFFF));
    EXPECT_EQ(Parse("::1//64"), Bytes("", "\x01", 64));
    EXPECT_EQ(Parse("::1/64/x"), Bytes("", "\x01", 64));
    for (const char *pcText : {"::1", "::1/", "::1/x", "::1/64x", "::1/ 64", "::1/-1", "::1/+1",
                               "::1/4294967296", "::1/18446744073709551616"}) {
        EXPECT_EQ(Parse(pcText), "") << pcText;
    }
}

TEST_F(PrefixTest, NoAddress) {
    for (const char *pcText : {"", "/", "//", "/64", "//64", "x/64", ":/64", ":::/64", "10.0.0.0/8",
                               "12345::/64", "1:2:3:4:5:6:7/64", "2001:db8:/64", "g::/64"}) {
        EXPECT_EQ(Parse(pcText), "") << pcText;
    }
    EXPECT_EQ(Parse(nullptr), "");
    EXPECT_EQ(VT_Route6_GetIpStuctFromString("::1/64", nullptr), kNullArgument);
}

TEST_F(PrefixTest, LooksAtSixtyThreeBytes) {
    // The zeros before the length are cut off with the last of it.
    const std::string sText = "::1/" + std::string(58, '0') + "64";
    ASSERT_EQ(sText.size(), 64u);
    EXPECT_EQ(Parse(sText.c_str()), Bytes("", "\x01", 6));
    EXPECT_EQ(Parse(("::1" + std::string(60, ' ') + "/64").c_str()), "");
    EXPECT_EQ(Parse(std::string(5000, '1').c_str()), "");
}

TEST(DefaultRoute, IsZeroAllThrough) {
    Ipv6Prefix stPrefix = {};
    EXPECT_TRUE(IsDefaultRoute(stPrefix));
    stPrefix.uiLength = 1;
    EXPECT_FALSE(IsDefaultRoute(stPrefix));
    for (uint8_t &ucByte : stPrefix.aucAddress) {
        stPrefix = {};
        ucByte = 1;
        EXPECT_FALSE(IsDefaultRoute(stPrefix));
    }
}

}  // namespace
}  // namespace wap::test
