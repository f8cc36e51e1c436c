#include "engine/Appoggio.h"

#include "app/AppDelegate.h"

namespace palisor {

void Appoggio::onMouseMovedOrClicked(platform::Point location) {
    if (AppDelegate* delegate = AppDelegate::shared()) delegate->onMouseMovedOrClicked(location);
}

void Appoggio::onKeyPressed(std::uint16_t keyCode) {
    if (AppDelegate* delegate = AppDelegate::shared()) delegate->onKeyPressed(keyCode);
}

} // namespace palisor
