#include "platform/linux/system/SystemLog.h"

#include <algorithm>
#include <cstdio>

namespace platform::linux {

void SystemLog::write(std::string_view text) {
    std::string line = name + ": ";
    line += text;
    std::ranges::replace(line, '\n', ' ');
    line += '\n';
    // One call: lines of several threads do not mix.
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace platform::linux
