#pragma once

#include "platform/Web.h"
#include "platform/qt/web/PageOfWindow.h"
#include "platform/qt/web/WebProfile.h"

#include <QTimer>
#include <QWebEngineView>
#include <QWidget>

namespace platform::qt {

class EngineWindow final : public QWidget, public WebWindow {
  public:
    EngineWindow(const WebWindowDescription& description, std::shared_ptr<WebProfile> profile);

    std::uint32_t styleMask() const override;
    bool isVisible() const override { return QWidget::isVisible(); }
    void makeKeyAndOrderFront() override;
    void orderOut() override { hide(); }
    Rect frame() const override;
    void setFrame(Rect frame) override;
    void onFrameChange(std::function<void(Rect)> changed) override { tell = std::move(changed); }

  protected:
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void tellFrame();

    std::shared_ptr<WebProfile> profile;
    QWebEngineView view{this};
    PageOfWindow page{&profile->engine};
    QTimer atRest;
    Rect known;
    std::function<void(Rect)> tell;
    std::uint32_t ownStyle;
};

} // namespace platform::qt
