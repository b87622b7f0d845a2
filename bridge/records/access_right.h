// Requests and replies about who may log in: the accounts and rights of the FTP and Samba services,
// and the web service's right and password, as they travel.
#ifndef WAP_RECORDS_ACCESS_RIGHT_H
#define WAP_RECORDS_ACCESS_RIGHT_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// Served by "tarn". The request is an AccountsRequest, the reply an AccountCount.
inline constexpr uint32_t kRpcCountFtpAccounts = 0x47201064;
// Served by "usb_mngt", likewise.
inline constexpr uint32_t kRpcCountSambaAccounts = 0x48200114;

// RPC ids served by "osgi_proxy". Every reply is a word, but for that of kRpcGetHttpRight.
/// Writes the accounts and their rights, a text, into the segment of kFtpRightKey.
inline constexpr uint32_t kRpcFillFtpRight = 0x47209038;       // RightFill
inline constexpr uint32_t kRpcSetFtpRight = 0x47209039;        // RightSet
inline constexpr uint32_t kRpcAddFtpAccount = 0x4720903A;      // FtpAccountAdd
inline constexpr uint32_t kRpcDeleteFtpAccount = 0x4720903B;   // AccountDelete
inline constexpr uint32_t kRpcDeleteFtpAccounts = 0x4720903C;  // AccountsRequest
/// Writes the accounts and their rights, a text, into the segment of kSambaRightKey.
inline constexpr uint32_t kRpcFillSambaRight = 0x4720903D;       // RightFill
inline constexpr uint32_t kRpcSetSambaRight = 0x4720903E;        // RightSet
inline constexpr uint32_t kRpcAddSambaAccount = 0x4720903F;      // SambaAccountAdd
inline constexpr uint32_t kRpcDeleteSambaAccount = 0x47209040;   // AccountDelete
inline constexpr uint32_t kRpcDeleteSambaAccounts = 0x47209041;  // AccountsRequest
inline constexpr uint32_t kRpcGetHttpRight = 0x47209042;         // AccountsRequest
inline constexpr uint32_t kRpcSetHttpRight = 0x47209043;         // HttpRightSet
inline constexpr uint32_t kRpcSetHttpPassword = 0x47209044;      // HttpPasswordSet

// The System V segments in which the right information comes: the asking side makes one under the
// service's key, of kRightSegmentSpare bytes and so many more for each account, and "osgi_proxy"
// writes a text with its zero into it.
inline constexpr int32_t kFtpRightKey = 0xD2036;
inline constexpr int32_t kSambaRightKey = 0xD2038;
inline constexpr uint32_t kFtpRightBytes = 514;
inline constexpr uint32_t kSambaRightBytes = 322;
inline constexpr uint32_t kRightSegmentSpare = 128;

// Characters that a text may have.
inline constexpr uint32_t kAccountUserMax = 256;
inline constexpr uint32_t kFtpPasswordMax = 256;
inline constexpr uint32_t kSambaPasswordMax = 64;
inline constexpr uint32_t kHttpPasswordMax = 127;

/// How long the web service's right information may be, its zero included.
inline constexpr uint32_t kHttpRightSize = 256;

// Which fields of a change of rights count.
inline constexpr uint8_t kRightMaskOff = 0x03;   ///< the enable word and the value
inline constexpr uint8_t kRightMaskAll = 0x0F;   ///< these and both flags
inline constexpr uint8_t kRightMaskHttp = 0x03;  ///< both flags

#pragma pack(push, 1)

/// The request of what needs no words: one that holds 0.
struct AccountsRequest {
    uint32_t uiZero;
};
static_assert(sizeof(AccountsRequest) == 4);

/// Reply to a count; only the first word says something.
struct AccountCount {
    uint32_t uiCount;
    uint8_t aucUnused[1016];
};
static_assert(offsetof(AccountCount, uiCount) == 0);
static_assert(offsetof(AccountCount, aucUnused) == 4);
static_assert(sizeof(AccountCount) == 1020);

/// Reply of the changes, which says nothing.
struct RightReply {
    uint32_t uiUnused;
};
static_assert(sizeof(RightReply) == 4);

/// Request of kRpcFillFtpRight and kRpcFillSambaRight.
struct RightFill {
    uint32_t uiSize;  ///< of the segment, in bytes
};
static_assert(sizeof(RightFill) == 4);

/// Request of kRpcSetFtpRight and kRpcSetSambaRight.
struct RightSet {
    uint32_t uiEnable;  ///< 1 unless the right is 0
    uint32_t uiValue;   ///< the caller's, as it is
    uint32_t uiFirst;   ///< first access flag
    uint32_t uiSecond;  ///< second access flag
    uint8_t ucMask;     ///< kRightMaskOff or kRightMaskAll
    uint8_t aucUnused[3];
};
static_assert(offsetof(RightSet, uiEnable) == 0);
static_assert(offsetof(RightSet, uiValue) == 4);
static_assert(offsetof(RightSet, uiFirst) == 8);
static_assert(offsetof(RightSet, uiSecond) == 12);
static_assert(offsetof(RightSet, ucMask) == 16);
static_assert(offsetof(RightSet, aucUnused) == 17);
static_assert(sizeof(RightSet) == 20);

/// Request of kRpcAddFtpAccount.
struct FtpAccountAdd {
    char acUser[257];
    char acPassword[257];  ///< @secret
    uint8_t aucUnused[10];
};
static_assert(offsetof(FtpAccountAdd, acUser) == 0);
static_assert(offsetof(FtpAccountAdd, acPassword) == 257);
static_assert(offsetof(FtpAccountAdd, aucUnused) == 514);
static_assert(sizeof(FtpAccountAdd) == 524);

/// Request of kRpcAddSambaAccount.
struct SambaAccountAdd {
    char acUser[257];
    char acPassword[65];  ///< @secret
    uint8_t aucUnused[10];
};
static_assert(offsetof(SambaAccountAdd, acUser) == 0);
static_assert(offsetof(SambaAccountAdd, acPassword) == 257);
static_assert(offsetof(SambaAccountAdd, aucUnused) == 322);
static_assert(sizeof(SambaAccountAdd) == 332);

/// Request of kRpcDeleteFtpAccount and kRpcDeleteSambaAccount.
struct AccountDelete {
    char acUser[257];
};
static_assert(sizeof(AccountDelete) == 257);

/// Reply of kRpcGetHttpRight. The method fails on a text without a zero.
struct HttpRightReply {
    char acText[kHttpRightSize];
};
static_assert(sizeof(HttpRightReply) == 256);

/// Request of kRpcSetHttpRight.
struct HttpRightSet {
    uint32_t uiFirst;   ///< first access flag
    uint32_t uiSecond;  ///< second access flag
    uint8_t aucUnused8[128];
    uint8_t ucMask;  ///< kRightMaskHttp
    uint8_t aucUnused137[3];
};
static_assert(offsetof(HttpRightSet, uiFirst) == 0);
static_assert(offsetof(HttpRightSet, uiSecond) == 4);
static_assert(offsetof(HttpRightSet, aucUnused8) == 8);
static_assert(offsetof(HttpRightSet, ucMask) == 136);
static_assert(offsetof(HttpRightSet, aucUnused137) == 137);
static_assert(sizeof(HttpRightSet) == 140);

/// Request of kRpcSetHttpPassword.
struct HttpPasswordSet {
    char acPassword[128];  ///< @secret
};
static_assert(sizeof(HttpPasswordSet) == 128);

#pragma pack(pop)

}  // namespace wap

#endif
