#include "program/Notices.h"

#include "util/Format.h"

void Notices::tell(std::string_view title, std::string_view text, std::string_view about) {
    if (!told.emplace(title, about).second) return;
    notifications.deliver({.title = palisor::formatted(bundle.localizedString(title), about),
                           .text = palisor::formatted(bundle.localizedString(text), about),
                           .identifier = std::string(title)});
}
