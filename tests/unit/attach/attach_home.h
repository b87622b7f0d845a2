// The processes that attach control talks to, as far as it needs them: they keep the list, make the
// changes, and can be told to refuse. What they are sent is compared byte for byte.
#ifndef WAP_TESTS_UNIT_ATTACH_HOME_H
#define WAP_TESTS_UNIT_ATTACH_HOME_H

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {

inline constexpr uint32_t kListId = 0x47307034;
inline constexpr uint32_t kRecordId = 0x47307030;
inline constexpr uint32_t kAddId = 0x47209096;
inline constexpr uint32_t kSetId = 0x47209097;
inline constexpr uint32_t kFilterModeId = 0x47307000;

inline constexpr const char *kWorkerFile = "jni_attach_control.cpp";

inline constexpr const char *kMacA = "02:00:00:00:00:0A";
inline constexpr const char *kMacB = "02:00:00:00:00:0B";
inline constexpr const char *kMacC = "02:00:00:00:00:0C";
inline constexpr const char *kMacD = "02:00:00:00:00:0D";

/// One host's record. The values are odd enough to be told apart.
struct Record {
    uint32_t uiInst = 0;
    std::string sMac;
    uint32_t uiInternet = 1;
    uint32_t uiStorage = 1;
    uint32_t uiUp = 0;
    uint32_t uiDown = 0;
    uint32_t uiUsGarantee = 0;
    uint32_t uiDsGarantee = 0;
    uint32_t uiUnused = 0;

    bool operator==(const Record &) const = default;
    /// The 64 bytes, with this as the last word.
    std::string Bytes(uint32_t uiLast) const;
};
std::ostream &operator<<(std::ostream &stOut, const Record &stRecord);

/// A request as it was sent: all that a receiver sees of it but the fixed header fields.
struct Asked {
    std::string sReceiver;
    uint32_t uiSender;
    uint32_t uiRpcId;
    std::string sRequest;
    uint32_t uiRspCap;
    bool operator==(const Asked &) const = default;
};
std::ostream &operator<<(std::ostream &stOut, const Asked &stAsked);
using Requests = std::vector<Asked>;

// ---- the requests, by hand ----
/// The filter's mode, its wired entries and its empty wireless table.
Requests FilterRequests(uint32_t uiEntries = 0);
Requests ListRequests(const std::vector<uint32_t> &auiInsts);
Requests AddRequest(const Record &stRecord, uint8_t ucMask);
/// The record with the instance id in front and as its last word.
Requests SetRequest(const Record &stRecord, uint8_t ucMask);
Requests operator+(Requests astFirst, const Requests &astMore);

/// The gateway. Put its answers into a platform with AnswerFor.
class AttachHome {
  public:
    std::vector<Record> astRecords;
    uint32_t uiMode = 0;
    std::vector<std::string> asFilterMacs;
    /// A status other than 0 refuses the request, which then does nothing.
    std::function<uint32_t(const RpcRecord &)> fnRefuse;
    uint32_t uiNextInst = 900;

    std::optional<Reply> AnswerTo(const RpcRecord &stRpc);
    /// Makes the platform answer as this home does, as long as both live.
    void AnswerFor(Platform &stPlatform);
    /// Refuses the uiAt-th request of that id, counted from now, from 1.
    void RefuseAt(uint32_t uiRpcId, uint32_t uiAt);

  private:
    std::string Add(const std::string &sRequest);
    std::string Set(const std::string &sRequest);
};

class AttachTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        stHome.AnswerFor(stPlatform);
    }

    /// What was asked since the last call; checks the rest of each header, and the time-out.
    Requests Sent();
    /// Expects these requests and no fault, and the last of them once more as bytes that no helper
    /// has written.
    void ExpectSent(const Requests &astWanted, const std::string &sLastBytes);
    /// The texts of the traces that start like this.
    std::vector<std::string> Traces(const std::string &sStart) const;

    AttachHome stHome;
};

/// A table of texts as the workers take them.
class MacTexts {
  public:
    MacTexts(std::initializer_list<const char *> apcTexts) : apcMacs(apcTexts) {}
    explicit MacTexts(const std::vector<std::string> &asTexts);
    const char *const *Table() const { return apcMacs.data(); }
    uint32_t Count() const { return static_cast<uint32_t>(apcMacs.size()); }

  private:
    std::vector<const char *> apcMacs;
};

/// So many MACs that differ.
std::vector<std::string> ManyMacs(uint32_t uiCount);

}  // namespace wap::test

#endif
