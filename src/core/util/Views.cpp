#include "util/MacUtils.h"

// Questions to windows and views, and the text of a field.

namespace palisor {

bool MacUtils::isFullScreen(const platform::FramedWindow& window) {
    return (window.styleMask() & platform::style::fullScreen) != 0;
}

bool MacUtils::isMouseOverView(const platform::Platform& services, const platform::View& view) {
    const auto point = view.fromDesktop(services.pointer.location());
    return point && view.bounds().contains(*point);
}

void MacUtils::underlineTextfiledText(platform::TextField& field) {
    auto text = field.attributedText();
    text.underlined = true;
    field.setAttributedText(text);
}

} // namespace palisor
