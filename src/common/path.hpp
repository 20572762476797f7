// Fixed device paths ("/home/nvram/...", "/etc/...", "/var/tmp/...", "/sys/...") live under a root
// directory taken from the environment variable ZT4_ROOT at each use, so that tests, the
// command-line tool and image builders can work on a copy of a device. Paths that a caller passes
// are used as given and never go through here.
#pragma once

#include <string>

namespace zt4 {

// The device path `absolutePath` under the current root: ZT4_ROOT + absolutePath, or
// absolutePath itself when ZT4_ROOT is unset or empty.
std::string resolvePath(const char* absolutePath);

}  // namespace zt4
