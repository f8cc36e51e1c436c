#pragma once

#include "platform/Views.h"

#include <QWidget>

namespace platform::qt {

/// The style bits of a toolkit window as it is now.
inline std::uint32_t styleOf(const QWidget& window) {
    std::uint32_t mask = 0;
    if (!window.windowFlags().testFlag(Qt::FramelessWindowHint)) mask |= style::titled;
    if (window.windowFlags().testFlag(Qt::WindowCloseButtonHint)) mask |= style::closable;
    if (window.minimumSize() != window.maximumSize()) mask |= style::resizable;
    if (window.isFullScreen()) mask |= style::fullScreen;
    return mask;
}

} // namespace platform::qt
