#include "manual/Console.h"

#include "program/Products.h"

#include <fnmatch.h>
#include <fstream>
#include <stdexcept>

namespace manual {

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

} // namespace

Texts blocks(const std::filesystem::path& document, const std::string& language) {
    std::ifstream file(document);
    Texts found;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        const bool fence = line.starts_with("```");
        if (fence && line == "```" + language && !inside)
            found.emplace_back();
        else if (inside && !fence)
            found.back() += replaced(replaced(line, "eDP-1", "DUMMY0"), "HDMI-1", "DUMMY1") + "\n";
        inside = fence ? !inside && line == "```" + language : inside;
    }
    if (found.empty())
        throw std::runtime_error("no block of " + language + " in " + document.string());
    return found;
}

std::vector<Step> stepsOf(const std::string& block) {
    std::vector<Step> steps;
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("$ "))
            steps.push_back({line.substr(2), {}});
        else
            steps.at(steps.size() - 1).shown += line + "\n";
    }
    return steps;
}

bool isAsShown(const std::string& text, const std::string& shown) {
    std::string pattern;
    for (const char letter : shown) {
        if (std::string("*?[\\").find(letter) != std::string::npos) pattern += '\\';
        pattern += letter;
    }
    return ::fnmatch(replaced(pattern, "…", "*").c_str(), text.c_str(), 0) == 0;
}

Console::Console() {
    using namespace desktop;
    startBusWithServices();
    for (const auto product : products::names)
        std::ofstream(desktop.configFolder() / ("com.tamberlo." + std::string(product) + ".plist"))
            << propertyList(pastTheFirstStart());
    moveToMiddle(0);
}

std::unique_ptr<support::ChildProcess> Console::shell(const std::string& line) const {
    return desktop.spawn("sh", {"-c", "PATH=" + desktop::programs() + ":$PATH\n" + line});
}

std::string Console::typed(const std::string& line) const {
    const auto child = shell("{ " + line + "\n} 2>&1");
    EXPECT_TRUE(child->wait()) << line;
    return child->output();
}

} // namespace manual
