#pragma once

#include <QAbstractButton>
#include <QSvgRenderer>

namespace platform::qt {

/// A picture that can be clicked, sharp at every scale, without a frame.
class PictureButton final : public QAbstractButton {
  public:
    /// `file` is an SVG; without a valid one nothing is drawn.
    PictureButton(const QString& file, const QString& name, QWidget* parent);

    QSize sizeHint() const override { return renderer.defaultSize(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QSvgRenderer renderer;
};

} // namespace platform::qt
