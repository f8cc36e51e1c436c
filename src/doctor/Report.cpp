#include "doctor/Report.h"

#include "platform/json/Writer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <unistd.h>

namespace doctor {

namespace {

namespace json = platform::json;

constexpr std::string_view levelName(Level level) {
    switch (level) {
    case Level::ok:
        return "ok";
    case Level::note:
        return "note";
    case Level::trouble:
        break;
    }
    return "trouble";
}

std::string lineOf(const Finding& finding, std::string_view mark) {
    std::string line = finding.key + ": " + std::string(mark) + finding.says + finding.privately;
    if (!finding.mend.empty()) line += ". To mend it: " + finding.mend;
    return line + "\n";
}

std::size_t troublesIn(const Report& report) {
    return static_cast<std::size_t>(
        std::ranges::count(report.findings, Level::trouble, &Finding::level));
}

bool isPartOfWord(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
}

/// Where it stands by itself, not where it is a part of another word.
void replaceWord(std::string& text, std::string_view word, std::string_view by) {
    if (word.empty()) return;
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
        const auto end = at + word.size();
        const bool begins = at == 0 || !isPartOfWord(text[at - 1]) || !isPartOfWord(word.front());
        const bool ends = end == text.size() || !isPartOfWord(text[end]);
        if (begins && ends) {
            text.replace(at, word.size(), by);
            at += by.size();
        } else {
            at = end;
        }
    }
}

/// A path beyond the system's own folders, home folders of whomever included, tells of the user:
/// only its last name stays.
void shortenPaths(std::string& text) {
    constexpr std::string_view systems[] = {"/usr/", "/opt/", "/bin/", "/lib", "/etc/"};
    constexpr std::string_view before = " ('\"";
    constexpr std::string_view behind = " ,;)'\"";
    for (auto at = text.find('/'); at != std::string::npos; at = text.find('/', at + 1)) {
        if (at > 0 && before.find(text[at - 1]) == std::string_view::npos) continue;
        const auto end = std::min(text.find_first_of(behind, at), text.size());
        const std::string path = text.substr(at, end - at);
        const bool isSystems = std::ranges::any_of(
            systems, [&path](std::string_view folder) { return path.starts_with(folder); });
        const std::string shorter = "..." + path.substr(path.find_last_of('/'));
        if (isSystems || path == "/") continue;
        text.replace(at, path.size(), shorter);
        at += shorter.size() - 1;
    }
}

std::string hostName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

} // namespace

bool isWell(const Report& report) {
    return troublesIn(report) == 0;
}

std::string asText(const Report& report) {
    std::string text;
    for (const Finding& finding : report.findings)
        text += lineOf(finding, finding.level == Level::ok     ? "OK, "
                                : finding.level == Level::note ? "note, "
                                                               : "TROUBLE, ");
    if (isWell(report))
        return text + "All is well: " + report.title + " can do all that it should here\n";
    const std::size_t troubles = troublesIn(report);
    return text + "Not well: " + std::to_string(troubles) +
           (troubles == 1 ? " trouble" : " troubles") + " for " + report.title + ", see above\n";
}

std::string asRescueText(const Report& report) {
    std::string text;
    for (const Finding& finding : report.findings)
        text += lineOf(finding, finding.level == Level::trouble ? "TROUBLE, " : "");
    return text.empty() ? "Nothing to rescue: nothing was left behind\n" : text;
}

std::string withoutPrivateThings(std::string text) {
    const passwd* const user = ::getpwuid(::geteuid());
    constexpr std::string_view root = "/";
    for (const std::string_view home :
         {variable("HOME"), std::string_view(user ? user->pw_dir : "")})
        if (home != root) replaceWord(text, home, "~");
    shortenPaths(text);
    for (const std::string_view name :
         {variable("USER"), variable("LOGNAME"), std::string_view(user ? user->pw_name : "")})
        replaceWord(text, name, "(user)");
    replaceWord(text, hostName(), "(host)");
    return text;
}

std::string asJson(const Report& report) {
    std::vector<json::Raw> checks;
    for (const Finding& finding : report.findings) {
        const std::string_view level = levelName(finding.level);
        const std::string says = withoutPrivateThings(finding.says);
        const std::string mend = withoutPrivateThings(finding.mend);
        checks.push_back(json::object(json::Member{"key", std::string_view(finding.key)},
                                      json::Member{"level", level},
                                      json::Member{"says", std::string_view(says)},
                                      json::Member{"mend", std::string_view(mend)}));
    }
    const bool well = isWell(report);
    return json::object(json::Member{"product", std::string_view(report.product)},
                        json::Member{"version", std::string_view(report.version)},
                        json::Member{"well", well}, json::Member{"checks", checks})
               .text +
           "\n";
}

} // namespace doctor
