#include "platform/linux/system/StartAgain.h"

#include "platform/linux/system/QuitSignals.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace platform::linux {

void startAgain(const std::string& option) {
    std::error_code error;
    std::string own = std::filesystem::read_symlink("/proc/self/exe", error);
    // The kernel's word for one that has been replaced.
    constexpr std::string_view replaced = " (deleted)";
    if (own.ends_with(replaced)) own.resize(own.size() - replaced.size());

    std::vector<std::string> words;
    std::ifstream line("/proc/self/cmdline");
    for (std::string word; std::getline(line, word, '\0');)
        words.push_back(word);
    if (words.empty() || words.back() != option) words.push_back(option);
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    endAfter(never);
    ::execv(own.c_str(), arguments.data());
}

} // namespace platform::linux
