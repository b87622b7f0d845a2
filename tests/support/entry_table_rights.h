// The entries of the FTP, Samba and web accounts and rights.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_RIGHTS_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_RIGHTS_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

// What "osgi_proxy" writes; none of it means anything to the bridge. A gateway may tell the
// accounts' passwords in it, so these are watched as well.
inline constexpr const char *kListedPassword = "listed-password-#/+*!?%&$";
inline constexpr const char *kFtpRightText =
    R"({"Result":0, "List":["ftp accounts", "listed-password-#/+*!?%&$"]})";
inline constexpr const char *kSambaRightText =
    R"({"Result":0, "List":["samba accounts", "listed-password-#/+*!?%&$"]})";
inline constexpr const char *kHttpRightText = R"({"Result":0, "Right":1})";

inline constexpr const char *kShareUser = "share-user";
// What nobody must see.
inline constexpr const char *kFtpPassword = "ftp-password-0123456789";
inline constexpr const char *kSambaPassword = "samba-password-ABCDEFGHIJ";
inline constexpr const char *kHttpPassword = "http-password-abcdefghij";

/// The entries of the accounts and rights. The good answers are those to FurnishRights, the failing
/// ones those to requests that all fail.
std::vector<Entry> RightsEntries();

}  // namespace wap::test

#endif
