#pragma once

#include "platform/Views.h"

namespace platform::memory {

/// A view of one picture.
class View final : public platform::View {
  public:
    /// `origin`: of the view's top left corner, in the desktop's top-left coordinates; nothing for
    /// a view in no window.
    View(std::optional<Point> origin, Image picture) : place(origin), shown(std::move(picture)) {}

    Rect bounds() const override {
        return {0, 0, static_cast<double>(shown.size.width),
                static_cast<double>(shown.size.height)};
    }
    std::optional<Point> fromDesktop(Point point) const override {
        if (!place) return std::nullopt;
        return Point{point.x - place->x, point.y - place->y};
    }
    bool isHidden() const override { return hidden; }
    void setHidden(bool value) override { hidden = value; }
    bool wantsLayer() const override { return layer; }
    void setWantsLayer(bool wanted) override { layer = wanted; }
    Image display() override { return shown; }
    Image layerContents() override { return hidden || !layer ? Image::ofSize(shown.size) : shown; }

  private:
    std::optional<Point> place;
    Image shown;
    bool hidden = false;
    bool layer = false;
};

class TextField final : public platform::TextField {
  public:
    explicit TextField(std::string text) : content{std::move(text)} {}

    AttributedText attributedText() const override { return content; }
    void setAttributedText(const AttributedText& text) override { content = text; }

  private:
    AttributedText content;
};

} // namespace platform::memory
