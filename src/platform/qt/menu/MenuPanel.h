#pragma once

#include <QWidget>

class QKeyEvent;

namespace platform::qt {

/// The contents of a menu entry that is more than a text. It never takes the keyboard from the
/// menu, which passes on the keys while the entry is the active one.
class MenuPanel : public QWidget {
  public:
    /// The text of the entry that leads to it, for those who do not see where it opens.
    virtual void nameAfter(const QString& entry) = 0;

    /// True when the key is used up.
    virtual bool handleKey(const QKeyEvent& key) = 0;

    /// Whether the keys go to this entry.
    virtual void setActive(bool active) = 0;
};

} // namespace platform::qt
