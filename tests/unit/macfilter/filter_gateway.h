// A MAC filter behind the scripted platform: it understands the bridge's requests byte by byte,
// keeps both tables, and can refuse any request.
#ifndef WAP_TESTS_UNIT_MACFILTER_FILTER_GATEWAY_H
#define WAP_TESTS_UNIT_MACFILTER_FILTER_GATEWAY_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "access/jni_macflter.h"
#include "support/entries.h"
#include "support/expect.h"
#include "support/furnish_macfilter.h"

namespace wap::test {

using Asked = std::vector<std::string>;
using Macs = std::vector<const char *>;

class FilterGateway {
  public:
    struct LanRow {
        uint32_t uiId;
        std::string sMac;
    };
    struct WlanRow {
        uint32_t uiId;
        std::string sSsidName;
        std::string sMac;
    };

    /// Answers the platform's requests for as long as both live.
    explicit FilterGateway(Platform &stPlatform);
    FilterGateway(const FilterGateway &) = delete;
    FilterGateway &operator=(const FilterGateway &) = delete;

    /// What is listed, without ids and in the order of the alphabet.
    std::string State() const;
    /// Gives and forgets what was asked.
    Asked TakeAsked() { return std::exchange(asAsked, {}); }

    uint32_t uiMode = 0;
    uint32_t uiStatus = 1;
    std::vector<LanRow> astLan;
    std::vector<WlanRow> astWlan;
    std::vector<uint32_t> auiSsids;
    std::set<uint32_t> setExcluded;
    uint32_t uiNextId = 100;
    bool bAnySender = false;  ///< the name of the asking process is not looked at

    /// Requests, as they are written in asAsked, that are refused, and with which code.
    std::map<std::string, uint32_t> mapRefused;
    /// Requests that are answered with other bytes, and nothing else done.
    std::map<std::string, std::string> mapBytes;
    /// The request, counted from 1, that is refused with kRefused; 0 for none.
    uint32_t uiRefusedAt = 0;
    uint32_t uiCount = 0;
    Asked asAsked;
    std::vector<std::string> asStates;  ///< before each request

    static constexpr uint32_t kRefused = 0x00C0FFEE;

  private:
    Reply Answer(const RpcRecord &stRpc);
    std::string Understand(const RpcRecord &stRpc) const;
    std::string Perform(const RpcRecord &stRpc);
};

/// A bridge, and the gateway above.
class MacFltTest : public BridgeTest {
  protected:
    /// Two wireless networks, and two addresses that are filtered on the wire and on both.
    void ListTwo();
    /// Whether a text was traced by the entries' module.
    size_t Traced(const std::string &sText) const;
    /// Whether a code was recorded in a source file.
    bool Recorded(const std::string &sFile, uint32_t uiCode) const;

    FilterGateway stGateway{stPlatform};
    Asked TakeAsked() { return stGateway.TakeAsked(); }
};

inline constexpr uint32_t kSomeCode = 0x00001234;

}  // namespace wap::test

#endif
