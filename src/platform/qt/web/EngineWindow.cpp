#include "platform/qt/web/EngineWindow.h"

#include "platform/qt/info/WindowStyle.h"

#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace platform::qt {

namespace {

constexpr int restMilliseconds = 300;

int points(double length) {
    return static_cast<int>(std::lround(length));
}

/// Where bottom-left coordinates have their origin.
QPoint origin() {
    const QRect primary = QGuiApplication::primaryScreen()->geometry();
    return {primary.x(), primary.y() + primary.height()};
}

QPalette lightPalette() {
    QPalette palette(QColor(0xf0, 0xf0, 0xf0));
    palette.setColor(QPalette::Base, Qt::white);
    return palette;
}

Qt::WindowFlags flagsOf(std::uint32_t styleMask) {
    Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint;
    if ((styleMask & style::titled) != 0)
        flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    else
        flags |= Qt::FramelessWindowHint;
    if ((styleMask & style::closable) != 0) flags |= Qt::WindowCloseButtonHint;
    if ((styleMask & style::resizable) != 0) flags |= Qt::WindowMinMaxButtonsHint;
    return flags;
}

} // namespace

EngineWindow::EngineWindow(const WebWindowDescription& description,
                           std::shared_ptr<WebProfile> storage)
    : QWidget(nullptr, flagsOf(description.styleMask)),
      profile(std::move(storage)),
      ownStyle(description.styleMask) {
    setWindowTitle(QString::fromStdString(description.title));
    if (description.light) setPalette(lightPalette());
    setMinimumSize(points(description.minimumWidth), points(description.minimumHeight));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(&view);
    const QSize size(points(description.width), points(description.height));
    if ((description.styleMask & style::resizable) == 0) setFixedSize(size);
    QRect place({}, size);
    place.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    setGeometry(place);
    view.resize(size); // the page is laid out before the window is shown
    known = EngineWindow::frame();

    atRest.setSingleShot(true);
    atRest.setInterval(restMilliseconds);
    connect(&atRest, &QTimer::timeout, this, &EngineWindow::tellFrame);

    view.setPage(&page);
    if (const QUrl url(QString::fromStdString(description.url)); url.isValid()) page.load(url);
}

// A desktop has no contents below the title, so that this bit changes nothing here.
std::uint32_t EngineWindow::styleMask() const {
    return styleOf(*this) | (ownStyle & style::fullSizeContentView);
}

void EngineWindow::makeKeyAndOrderFront() {
    show();
    raise();
    activateWindow();
}

Rect EngineWindow::frame() const {
    const QRect place = geometry();
    return {static_cast<double>(place.x() - origin().x()),
            static_cast<double>(origin().y() - place.y() - place.height()),
            static_cast<double>(place.width()), static_cast<double>(place.height())};
}

void EngineWindow::setFrame(Rect frame) {
    const QSize size = QSize(points(frame.width), points(frame.height)).expandedTo(minimumSize());
    const QRect place(QPoint(origin().x() + points(frame.x),
                             origin().y() - points(frame.y) - points(frame.height)),
                      size);
    if (QGuiApplication::screenAt({place.center().x(), place.top()}) == nullptr) return;
    setGeometry(place);
    known = EngineWindow::frame();
}

// While a window manager puts the window up it may come by several places.
void EngineWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (QWidget::isVisible()) atRest.start();
}

void EngineWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (QWidget::isVisible()) atRest.start();
}

void EngineWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (atRest.isActive()) tellFrame();
}

void EngineWindow::tellFrame() {
    atRest.stop();
    const Rect now = frame();
    if (isFullScreen() || isMaximized() || now == known) return;
    known = now;
    if (tell) tell(now);
}

} // namespace platform::qt
