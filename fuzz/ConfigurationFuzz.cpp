#include "platform/sway/connection/UserConfiguration.h"

#include <cstdint>
#include <cstdlib>
#include <map>

// A user's configuration that is the input: its files, with a zero between, of which the first is
// the main one and the others are called "1", "2" and so on. What comes of it is commands that can
// be run, a line each.

namespace {

using namespace platform::sway;

void mustHold(bool condition) {
    if (!condition) std::abort();
}

std::vector<std::string> filesIn(std::string_view text) {
    std::vector<std::string> files{""};
    for (const char letter : text) {
        if (letter == '\0')
            files.emplace_back();
        else
            files.back() += letter;
    }
    return files;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto files = filesIn({reinterpret_cast<const char*>(data), size});
    std::size_t commands = 0;
    const FindIncluded find = [&files](const std::string& pattern, const std::string& folder) {
        mustHold(folder == "/all");
        std::vector<ConfigurationFile> found;
        for (std::size_t i = 1; i < files.size(); ++i)
            if (pattern == "*" || pattern == std::to_string(i))
                found.push_back({"/all/" + std::to_string(i), files[i]});
        return found;
    };
    const ConfigurationFile main{"/all/config", files[0]};
    eachCommand(main, find, [&commands](const Words& words) {
        ++commands;
        mustHold(!words.empty());
        for (const std::string& word : words)
            mustHold(word.find('\n') == std::string::npos);
    });
    mustHold(commands <= size);

    const UserConfiguration users(main, find);
    const std::string mapping = users.mappingOf("type:pointer", "map_to_output *");
    mustHold(mapping.starts_with("input ") && mapping.find('\n') == std::string::npos);
    const std::string hiding = users.cursorHiding();
    mustHold(hiding.starts_with("seat ") && hiding.find('\n') == std::string::npos);
    for (const Binding& one : users.bindings())
        mustHold(!one.keys.empty());
    return 0;
}
