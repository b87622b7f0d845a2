// StackKeeps sees what it is there to see: a check of the check.
#include <string>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "support/entries.h"
#include "support/secret_watch.h"

namespace wap::test {
namespace {

const std::string kSecret = "stack-secret-0123456789";

/// As large as the requests that carry passwords.
struct Request {
    char acUser[257];
    char acPassword[257];
};

/// Fills a request and does what workers do with it.
void Send(Request &stRequest) {
    PutField(stRequest.acPassword, kSecret.c_str());
    uint32_t uiReply = 0;
    const uint32_t uiResult = VT_KAVO_USB_JNI_RpcCall(0x12345678, &stRequest, sizeof(stRequest),
                                                      &uiReply, sizeof(uiReply));
    RecordFault(WAP_SPOT, uiResult, 2u, 3u);
    WAP_TRACE(kTraceEntries, "a trace of %u \r\n", 4u);
}

__attribute__((noinline)) void LeaveIt() {
    Request stRequest = {};
    Send(stRequest);
}

__attribute__((noinline)) void WipeIt() {
    Wiped<Request> stRequest;
    Send(stRequest.stRecord);
}

using StackKeepsTest = BridgeTest;

TEST_F(StackKeepsTest, SeesWhatARecordLeaves) {
    EXPECT_TRUE(StackKeeps(LeaveIt, {kSecret}));
    EXPECT_TRUE(StackKeeps(LeaveIt, {"some-other-secret-0123", kSecret}));
    EXPECT_FALSE(StackKeeps(LeaveIt, {"some-other-secret-0123"}));
    EXPECT_FALSE(StackKeeps(LeaveIt, {}));
}

TEST_F(StackKeepsTest, SeesNothingOfAWipedRecord) {
    EXPECT_FALSE(StackKeeps(WipeIt, {kSecret}));
}

// Wherever in the frames below it lies, the outermost included.
TEST_F(StackKeepsTest, SeesAnyPlace) {
    for (const size_t uiAt : {0u, 1u, 300u, 4000u, 4096u - 24}) {
        const auto fnLeave = [uiAt] {
            [[maybe_unused]] volatile char acFrame[4096];
            for (size_t i = 0; i < kSecret.size(); ++i) {
                acFrame[uiAt + i] = kSecret[i];
            }
        };
        EXPECT_TRUE(StackKeeps(fnLeave, {kSecret})) << uiAt;
    }
}

}  // namespace
}  // namespace wap::test
