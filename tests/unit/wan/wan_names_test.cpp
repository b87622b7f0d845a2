// WAN indexes and the interface names that they stand for.
#include <string>

#include "support/wire_bytes.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

struct Parts {
    uint32_t uiKind = 0xAAAAAAAA;
    uint8_t ucWanDev = 0xAA;
    uint8_t ucConnDev = 0xAA;
    uint16_t usConnIns = 0xAAAA;

    bool operator==(const Parts &) const = default;
};

Parts PartsOf(uint32_t uiWanIndex) {
    Parts stParts;
    VT_API_ParseWanIndex(uiWanIndex, &stParts.uiKind, &stParts.ucWanDev, &stParts.ucConnDev,
                         &stParts.usConnIns);
    return stParts;
}

class WanNameTest : public WanTest {
  protected:
    /// The 32 bytes of the buffer behind the name are checked to be left alone.
    std::string NameOf(uint32_t uiWanIndex, uint32_t uiWanted = 0) {
        std::string sBuffer(40, '~');
        EXPECT_EQ(VT_API_GetWanIfName(uiWanIndex, sBuffer.data()), uiWanted);
        EXPECT_EQ(sBuffer.substr(32), "~~~~~~~~");
        return uiWanted == 0 ? UpToZero(sBuffer) : sBuffer;
    }
};

TEST_F(WanNameTest, IndexHoldsFourParts) {
    EXPECT_EQ(PartsOf(0x10101001), (Parts{1, 1, 1, 1}));
    EXPECT_EQ(PartsOf(0x20102003), (Parts{2, 1, 2, 3}));
    EXPECT_EQ(PartsOf(0xFABCDEF9), (Parts{15, 0xAB, 0xCD, 0xEF9}));
    EXPECT_EQ(PartsOf(0), (Parts{0, 0, 0, 0}));
    EXPECT_EQ(PartsOf(0xFFFFFFFF), (Parts{15, 255, 255, 4095}));
}

TEST_F(WanNameTest, EachBitBelongsToOnePart) {
    for (uint32_t uiBit = 0; uiBit < 32; ++uiBit) {
        Parts stWanted{0, 0, 0, 0};
        if (uiBit < 12) {
            stWanted.usConnIns = static_cast<uint16_t>(1u << uiBit);
        } else if (uiBit < 20) {
            stWanted.ucConnDev = static_cast<uint8_t>(1u << (uiBit - 12));
        } else if (uiBit < 28) {
            stWanted.ucWanDev = static_cast<uint8_t>(1u << (uiBit - 20));
        } else {
            stWanted.uiKind = 1u << (uiBit - 28);
        }
        EXPECT_EQ(PartsOf(1u << uiBit), stWanted) << uiBit;
    }
}

TEST_F(WanNameTest, OutputsThatNobodyWantsAreSkipped) {
    Parts stParts;
    VT_API_ParseWanIndex(0x20102003, nullptr, nullptr, nullptr, nullptr);
    VT_API_ParseWanIndex(0x20102003, &stParts.uiKind, nullptr, nullptr, nullptr);
    EXPECT_EQ(stParts, (Parts{2, 0xAA, 0xAA, 0xAAAA}));
    VT_API_ParseWanIndex(0x20102003, nullptr, &stParts.ucWanDev, nullptr, &stParts.usConnIns);
    EXPECT_EQ(stParts, (Parts{2, 1, 0xAA, 3}));
    VT_API_ParseWanIndex(0x20102003, nullptr, nullptr, &stParts.ucConnDev, nullptr);
    EXPECT_EQ(stParts, (Parts{2, 1, 2, 3}));
}

TEST_F(WanNameTest, PartsAsWordsOfARecord) {
    EXPECT_EQ(BytesOf(SplitWanIndex(0xFABCDEF9)), Word(15) + Word(0xAB) + Word(0xCD) + Word(0xEF9));
    EXPECT_EQ(PackWanIndex(15, 0xAB, 0xCD, 0xEF9), 0xFABCDEF9u);
    EXPECT_EQ(PackWanIndex(1, 1, 1, 1), kIpWan);
    EXPECT_EQ(PackWanIndex(0xF2, 0x301, 0x502, 0x7003), kPppWan);
}

TEST_F(WanNameTest, NamesOfIpAndPppConnections) {
    EXPECT_EQ(NameOf(0x10101001), "wan1.1.ip1");
    EXPECT_EQ(NameOf(0x20102003), "wan1.2.ppp3");
    EXPECT_EQ(NameOf(0x10000000), "wan0.0.ip0");
    EXPECT_EQ(NameOf(0x2FFFFFFF), "wan255.255.ppp4095");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanNameTest, OtherKindsHaveNoName) {
    for (uint32_t uiKind = 0; uiKind < 16; ++uiKind) {
        if (uiKind != 1 && uiKind != 2) {
            EXPECT_EQ(NameOf(uiKind << 28 | 0x00101001, 1), std::string(40, '~')) << uiKind;
        }
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanNameTest, NameWithoutABufferIsRecorded) {
    EXPECT_EQ(VT_API_GetWanIfName(kIpWan, nullptr), 1u);
    EXPECT_EQ(Recorded(kListFile, 1), (Records{{kIpWan, 0, 0, 0}}));
}

}  // namespace
}  // namespace wap::test
