#include "platform/linux/system/SessionLanguage.h"

#include <QByteArrayList>
#include <cstdlib>
#include <initializer_list>
#include <utility>

namespace platform::linux {

namespace {

std::string_view bareCode(std::string_view locale) {
    return locale.substr(0, locale.find_first_of("_.@-"));
}

std::string_view firstSet(std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (const char* value = std::getenv(name); value != nullptr && *value != 0) return value;
    return "C";
}

} // namespace

std::vector<std::string> sessionLanguages() {
    const auto own = bareCode(firstSet({"LC_ALL", "LC_MESSAGES", "LANG"}));
    if (own == "C" || own == "POSIX" || own.empty()) return {"en"};
    std::vector<std::string> languages;
    for (const QByteArray& each : qgetenv("LANGUAGE").split(':'))
        if (const auto code = bareCode(each.constData()); !code.empty())
            languages.emplace_back(code);
    languages.emplace_back(own);
    return languages;
}

std::string sessionLanguage(const std::function<bool(std::string_view)>& hasTexts) {
    for (auto& language : sessionLanguages())
        if (hasTexts(language)) return std::move(language);
    return "en";
}

std::optional<std::string> sessionCountry() {
    const auto locale = firstSet({"LC_ALL", "LC_ADDRESS", "LANG"});
    const auto start = locale.find('_');
    if (start == std::string_view::npos) return std::nullopt;
    const auto country = bareCode(locale.substr(start + 1));
    return country.empty() ? std::nullopt : std::optional<std::string>(country);
}

} // namespace platform::linux
