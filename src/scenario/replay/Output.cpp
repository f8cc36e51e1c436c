#include "scenario/replay/Output.h"

#include <cerrno>
#include <cstring>

namespace palisor::replay {

Output::Output(std::FILE* stream, std::set<std::string, std::less<>> only)
    : file(stream), wanted(std::move(only)) {}

void Output::effect(const platform::memory::Effect& effect) {
    if (wanted.empty() || wanted.contains(effect.name)) print(platform::memory::lineOf(effect));
}

void Output::print(std::string line) {
    line += '\n';
    if (std::fwrite(line.data(), 1, line.size(), file) != line.size() || std::fflush(file) != 0)
        throw OutputError(std::strerror(errno));
}

} // namespace palisor::replay
