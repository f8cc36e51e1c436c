#pragma once

#include "platform/Views.h"

class QLabel;
class QWidget;

namespace platform::qt {

/// A widget inside a window; it must outlive the object. The toolkit draws every widget the same
/// way, so a layer is only remembered.
class QtView final : public View {
  public:
    explicit QtView(QWidget& shown) : widget(shown) {}

    Rect bounds() const override;
    std::optional<Point> fromDesktop(Point point) const override;
    bool isHidden() const override;
    void setHidden(bool hidden) override;
    bool wantsLayer() const override { return layer; }
    void setWantsLayer(bool wanted) override { layer = wanted; }
    Image display() override;
    Image layerContents() override;

  private:
    QWidget& widget;
    bool layer = false;
};

/// A label; it must outlive the object.
class QtTextField final : public TextField {
  public:
    explicit QtTextField(QLabel& shown) : label(shown) {}

    AttributedText attributedText() const override;
    void setAttributedText(const AttributedText& text) override;

  private:
    QLabel& label;
};

} // namespace platform::qt
