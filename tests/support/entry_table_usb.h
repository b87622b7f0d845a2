// The entries of the USB serial devices and the storage volumes.
#ifndef WAP_TESTS_SUPPORT_ENTRY_TABLE_USB_H
#define WAP_TESTS_SUPPORT_ENTRY_TABLE_USB_H

#include <vector>

#include "support/entry_table.h"

namespace wap::test {

/// With FurnishUsb.
std::vector<Entry> UsbEntries();

}  // namespace wap::test

#endif
