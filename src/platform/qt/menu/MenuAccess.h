#pragma once

class QWidget;

namespace platform::qt {

/// Has screen readers find the menus' entries, sliders and check boxes from now on, in the words
/// and numbers that are shown. Since the keyboard never leaves the menu, the toolkit would tell of
/// none of what is inside an entry. Needs a QApplication; again makes no difference.
void describeMenus();

/// The keyboard is at this part of a menu now, or at the entry with that number in it.
void tellFocus(QWidget& part, int entry = -1);

} // namespace platform::qt
