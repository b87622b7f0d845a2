// A gateway with a Java runtime, lights and telephone ports.
#ifndef WAP_TESTS_SUPPORT_FURNISH_RUNTIME_H
#define WAP_TESTS_SUPPORT_FURNISH_RUNTIME_H

#include <string>

#include "support/world.h"

namespace wap::test {

/// Where the Java runtime's words go.
inline constexpr const char *kVersionPath = "/var/osgi/java_version.pipe";

/// What a Java runtime says about itself.
inline constexpr const char *kVersionText =
    "openjdk version \"1.8.0_212\"\n"
    "OpenJDK Runtime Environment (build 1.8.0)\n"
    "OpenJDK Client VM (build 25.212-b04, mixed mode)\n";

/// The runtime says that when it is run, and every request is answered.
void FurnishRuntime(World &stWorld);

}  // namespace wap::test

#endif
