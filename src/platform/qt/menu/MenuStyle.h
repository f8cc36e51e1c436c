#pragma once

#include <QProxyStyle>

class QMenu;

namespace platform::qt {

/// The toolkit's plain style with more room in menus, and with separators that are seen on a dark
/// one. A style that the desktop brings itself is left alone.
class MenuStyle final : public QProxyStyle {
  public:
    /// To be called before the menu is shown for the first time.
    static void giveTo(QMenu& menu);

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* more) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

  private:
    using QProxyStyle::QProxyStyle;
};

} // namespace platform::qt
