#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace support {

/// How often the threads of a process gave the core away and got it back later, up to now.
inline long wakeups(pid_t process) {
    long sum = 0;
    const std::string tasks = "/proc/" + std::to_string(process) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        std::ifstream status(task.path() / "status");
        constexpr std::string_view name = "voluntary_ctxt_switches:";
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(name)) sum += std::stol(line.substr(name.size()));
    }
    return sum;
}

} // namespace support
