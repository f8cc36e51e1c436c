#pragma once

#include "platform/Menu.h"
#include "platform/qt/menu/MenuPanel.h"

#include <functional>
#include <vector>

class QCheckBox;
class QLabel;

namespace platform::qt {

/// A picture of a monitor with a check box at each corner and side, and a text below it.
class BoundsPanel final : public MenuPanel {
  public:
    /// Called when a box has its new state.
    using Clicked = std::function<void(CheckBox& box)>;

    /// The boxes must outlive the object.
    BoundsPanel(const BoundsView& view, Clicked clicked);

    void nameAfter(const QString& entry) override { setAccessibleName(entry); }
    bool handleKey(const QKeyEvent& key) override;
    void setActive(bool active) override;

    /// Whether the keys are for that box.
    bool isAt(const QCheckBox& box) const { return active && boxes[marked] == &box; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    struct Place {
        double x, y; ///< share of the screen's inside, 0 to 1
    };

    void add(const BoundsView::Named& named, Place place);
    void layOut();
    QRect monitor() const;
    void moveMark(int by);

    Clicked clicked;
    std::vector<QCheckBox*> boxes; ///< clockwise from the top left
    std::vector<Place> places;     ///< of the boxes
    QLabel* explanation;
    std::size_t marked = 0; ///< the box that the keyboard is at
    bool active = false;
};

} // namespace platform::qt
