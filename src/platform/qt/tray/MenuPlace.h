#pragma once

#include <QRect>

// All of it in the toolkit's coordinates.

namespace platform::qt {

/// What a menu hangs from.
struct MenuAnchor {
    QRect item;              ///< one pixel where no more is known
    QRect panel;             ///< that has it, or the item again
    bool isVertical = false; ///< the panel, where its shape and place leave that open
};

/// The end of a panel at which trays are: the right one, or the left one where text runs to the
/// left, and the lower one.
MenuAnchor endOf(const QRect& panel, Qt::LayoutDirection direction);

/// The top left corner of a menu of that size: beside the panel, towards the middle of the screen,
/// where text begins in line with the item, and moved as far as it takes to be whole on the screen.
QPoint menuCorner(const QSize& menu, const MenuAnchor& anchor, const QRect& screen,
                  Qt::LayoutDirection direction);

/// What the window system tells in device pixels, from the top left corner of all monitors. On no
/// monitor it stays as it is.
QPoint fromDevicePixels(const QPoint& point);
QRect fromDevicePixels(const QRect& area);

} // namespace platform::qt
