#include "util/MacUtils.h"

#include "app/Keys.h"

// A window with a web page, which comes up where the user left it.

namespace palisor {

using platform::Dictionary;
using platform::Rect;
using platform::Value;

namespace {

constexpr double contentWidth = 1040;
constexpr double contentHeight = 800;
constexpr double minimumWidth = 200;
constexpr double minimumHeight = 100;

Value valueOf(const Rect& frame) {
    const auto number = [](double length) { return Value{static_cast<std::int64_t>(length)}; };
    return {Dictionary{{"x", number(frame.x)},
                       {"y", number(frame.y)},
                       {"width", number(frame.width)},
                       {"height", number(frame.height)}}};
}

std::optional<Rect> frameOf(const Value* value) {
    const auto* members = value == nullptr ? nullptr : std::get_if<Dictionary>(&value->held);
    if (members == nullptr) return std::nullopt;
    const auto number = [members](std::string_view name) {
        const auto member = members->find(name);
        return member == members->end() ? 0.0 : platform::intValue(member->second);
    };
    const Rect frame{number("x"), number("y"), number("width"), number("height")};
    if (frame.width <= 0 || frame.height <= 0) return std::nullopt;
    return frame;
}

} // namespace

std::unique_ptr<platform::WebWindow>
MacUtils::createSimpleWindowWebView_title_URL(const platform::Platform& services,
                                              const std::string& autosaveName,
                                              const std::string& title, const std::string& URL) {
    using namespace platform::style;
    auto window =
        services.web.open({.title = title,
                           .url = URL,
                           .width = contentWidth,
                           .height = contentHeight,
                           .minimumWidth = minimumWidth,
                           .minimumHeight = minimumHeight,
                           .styleMask = titled | closable | resizable | fullSizeContentView,
                           .light = true});
    if (!window) return nullptr;
    auto& settings = services.settings;
    const std::string key = std::string(keys::windowFrame) + autosaveName;
    if (const auto frame = frameOf(settings.object(key))) window->setFrame(*frame);
    window->onFrameChange([&settings, key](Rect frame) {
        settings.set(key, valueOf(frame));
        settings.synchronize();
    });
    return window;
}

} // namespace palisor
