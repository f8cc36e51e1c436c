#pragma once

#include "platform/qt/menu/MenuPanel.h"
#include "platform/qt/menu/MenuSlider.h"

class QLabel;

namespace platform::qt {

/// A slider with its label above it, in the size that the model gives them.
class SliderPanel final : public MenuPanel {
  public:
    SliderPanel(const SliderView& view, MenuSlider::Moved moved);

    /// Nothing when the label is another one.
    void showLabel(const Label& label);

    void nameAfter(const QString& entry) override;
    bool handleKey(const QKeyEvent& key) override;
    void setActive(bool active) override;

  private:
    void say(const std::string& words);
    void nameEnd(const std::string& name, Qt::AlignmentFlag side);

    std::string labelName;
    QLabel* text;
    MenuSlider* slider;
};

} // namespace platform::qt
