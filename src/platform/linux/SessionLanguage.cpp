#include "platform/linux/SessionLanguage.h"

#include <cstdlib>

namespace platform::linux {

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view{} : value;
}

std::string_view bareCode(std::string_view locale) {
    return locale.substr(0, locale.find_first_of("_.@-"));
}

std::string_view sessionLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto value = variable(name); !value.empty()) return value;
    return "C";
}

} // namespace

std::string sessionLanguage(const std::function<bool(std::string_view)>& hasTexts) {
    const auto own = bareCode(sessionLocale());
    if (own == "C" || own == "POSIX") return "en";
    for (auto list = variable("LANGUAGE"); !list.empty();) {
        const auto code = bareCode(list.substr(0, list.find(':')));
        if (!code.empty() && hasTexts(code)) return std::string(code);
        const auto next = list.find(':');
        list = next == std::string_view::npos ? std::string_view{} : list.substr(next + 1);
    }
    return std::string(hasTexts(own) ? own : "en");
}

} // namespace platform::linux
