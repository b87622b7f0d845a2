// Moved; goes away when nobody includes it here any more.
#ifndef WAP_TESTS_UNIT_DEVICE_EXPECT_H
#define WAP_TESTS_UNIT_DEVICE_EXPECT_H
#include "support/expect.h"
#endif
