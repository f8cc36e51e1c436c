#include "platform/qt/menu/SliderPanel.h"

#include <QKeyEvent>
#include <QLabel>
#include <algorithm>

namespace platform::qt {

SliderPanel::SliderPanel(const SliderView& view, MenuSlider::Moved moved)
    : text(new QLabel(this)),
      slider(new MenuSlider(view.slider, view.labelStep, std::move(moved))) {
    constexpr int inset = static_cast<int>(SliderView::sliderInset);
    constexpr int sliderHeight = static_cast<int>(SliderView::height - SliderView::labelHeight);
    // As the model has it, unless the font is too large for that.
    const QFontMetrics font = text->fontMetrics();
    int textWidth = 0;
    const auto leaveRoomFor = [&](const std::string& words) {
        textWidth = std::max(textWidth, font.horizontalAdvance(QString::fromStdString(words)));
    };
    if (view.label) leaveRoomFor(view.label->text);
    const int ticks = std::max(view.slider.tickMarks, 2);
    const double step = (view.slider.maximum - view.slider.minimum) / (ticks - 1);
    for (int tick = 0; view.text && tick < ticks; ++tick)
        leaveRoomFor(view.text(view.slider.minimum + tick * step));
    const int width = std::max(static_cast<int>(SliderView::width), textWidth + 2 * inset);
    const int labelHeight = std::max(static_cast<int>(SliderView::labelHeight), font.height());
    const int height = labelHeight + sliderHeight;
    setFixedSize(width, height);
    text->setGeometry(0, 0, width, labelHeight);
    text->setAlignment(Qt::AlignCenter);
    text->setTextFormat(Qt::PlainText);
    slider->setParent(this);
    slider->setGeometry(inset, labelHeight, width - 2 * inset, height - labelHeight);
    for (const auto& [end, side] :
         {std::pair(view.ends.least, Qt::AlignLeading), {view.ends.most, Qt::AlignTrailing}})
        if (!end.empty()) nameEnd(end, side);
    if (view.label) {
        labelName = view.label->name;
        say(view.label->text);
    }
}

void SliderPanel::nameAfter(const QString& entry) {
    slider->setAccessibleName(entry);
}

void SliderPanel::say(const std::string& words) {
    text->setText(QString::fromStdString(words));
    slider->setAccessibleDescription(text->text());
}

/// Above the slider, on the label's line.
void SliderPanel::nameEnd(const std::string& name, Qt::AlignmentFlag side) {
    constexpr double smaller = 0.85;
    auto* end = new QLabel(QString::fromStdString(name), this);
    end->setTextFormat(Qt::PlainText);
    end->setAlignment(side | Qt::AlignVCenter);
    QFont font = end->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * smaller);
    else
        font.setPixelSize(qRound(font.pixelSize() * smaller));
    end->setFont(font);
    end->setGeometry(slider->x(), 0, slider->width(), text->height());
}

void SliderPanel::showLabel(const Label& label) {
    if (label.name == labelName) say(label.text);
}

bool SliderPanel::handleKey(const QKeyEvent& key) {
    const int forwards = isRightToLeft() ? -1 : 1;
    switch (key.key()) {
    case Qt::Key_Left:
        slider->step(-forwards);
        return true;
    case Qt::Key_Right:
        slider->step(forwards);
        return true;
    case Qt::Key_PageDown:
        slider->step(-slider->pageSteps());
        return true;
    case Qt::Key_PageUp:
        slider->step(slider->pageSteps());
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        slider->stepToEnd(key.key() == Qt::Key_End);
        return true;
    default:
        return false;
    }
}

void SliderPanel::setActive(bool active) {
    slider->showActive(active);
}

} // namespace platform::qt
