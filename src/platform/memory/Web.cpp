#include "platform/memory/Web.h"

#include <algorithm>
#include <utility>

namespace platform::memory {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::pair<std::string_view, std::string_view> split(std::string_view text, char separator) {
    const auto at = text.find(separator);
    if (at == text.npos) return {text, {}};
    return {text.substr(0, at), text.substr(at + 1)};
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

/// The value of an attribute, empty when the cookie lacks it.
std::string attribute(std::string_view cookie, std::string_view name) {
    for (auto rest = split(cookie, ';').second; !rest.empty();) {
        const auto [part, next] = split(rest, ';');
        const auto [key, value] = split(part, '=');
        if (lowerCase(trimmed(key)) == name) return std::string(trimmed(value));
        rest = next;
    }
    return {};
}

} // namespace

WebWindow::WebWindow(WebWindowDescription description, const Displays& desktop)
    : made(std::move(description)), displays(desktop), place{0, 0, made.width, made.height} {
    if (displays.screens().empty()) return;
    const Rect screen = displays.screens().front().frame;
    place.x = screen.x + (screen.width - place.width) / 2;
    place.y = screen.y + (screen.height - place.height) / 2;
}

void WebWindow::setFrame(Rect frame) {
    frame.width = std::max(frame.width, made.minimumWidth);
    frame.height = std::max(frame.height, made.minimumHeight);
    const Point top{frame.x + frame.width / 2, frame.y + frame.height - 1};
    for (const Screen& screen : displays.screens())
        if (screen.frame.contains(top)) place = frame;
}

void WebWindow::userMoves(Rect frame) {
    place = frame;
    if (tell) tell(frame);
}

void Web::cookies(std::function<void(const std::vector<Cookie>&)> done) {
    if (!hasEngine) return;
    runLoop.performOnMainThread(
        [this, tell = std::move(done)] {
            std::vector<Cookie> all;
            for (const auto& [identity, cookie] : jar)
                all.push_back(cookie);
            tell(all);
        },
        false);
}

void Web::setCookie(const Cookie& cookie) {
    const auto nameAndValue = split(cookie, ';').first;
    const auto name = trimmed(split(nameAndValue, '=').first);
    const std::string domain = attribute(cookie, "domain");
    if (!hasEngine || name.empty() || nameAndValue.find('=') == nameAndValue.npos || domain.empty())
        return;
    jar[{domain, attribute(cookie, "path"), std::string(name)}] = cookie;
}

void Web::removeAllData() {
    if (!hasEngine) return;
    jar.clear();
    stored = 0;
}

std::unique_ptr<platform::WebWindow> Web::open(const WebWindowDescription& description) {
    return hasEngine ? std::make_unique<WebWindow>(description, displays) : nullptr;
}

} // namespace platform::memory
