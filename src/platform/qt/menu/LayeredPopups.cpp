#include "platform/qt/menu/LayeredPopups.h"

#include "platform/HotKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <utility>

namespace platform::qt {

namespace {

constexpr std::chrono::milliseconds untilRepetition{400}, betweenRepetitions{40};
constexpr int wheelNotch = 120; // the toolkit's

/// X's names of the keys that type nothing, as far as a menu needs them.
constexpr std::pair<std::uint32_t, Qt::Key> keys[] = {
    {0xff08, Qt::Key_Backspace}, {0xff09, Qt::Key_Tab},    {0xfe20, Qt::Key_Backtab},
    {0xff0d, Qt::Key_Return},    {0xff8d, Qt::Key_Enter},  {0xff1b, Qt::Key_Escape},
    {0xff50, Qt::Key_Home},      {0xff51, Qt::Key_Left},   {0xff52, Qt::Key_Up},
    {0xff53, Qt::Key_Right},     {0xff54, Qt::Key_Down},   {0xff55, Qt::Key_PageUp},
    {0xff56, Qt::Key_PageDown},  {0xff57, Qt::Key_End},    {0xff95, Qt::Key_Home},
    {0xff96, Qt::Key_Left},      {0xff97, Qt::Key_Up},     {0xff98, Qt::Key_Right},
    {0xff99, Qt::Key_Down},      {0xff9a, Qt::Key_PageUp}, {0xff9b, Qt::Key_PageDown},
    {0xff9c, Qt::Key_End},       {0xffff, Qt::Key_Delete}};

int keyOf(const PopupLayer::Key& key, const QString& text) {
    for (const auto& [symbol, named] : keys)
        if (symbol == key.symbol) return named;
    return text.size() == 1 ? text[0].toUpper().unicode() : static_cast<int>(Qt::Key_unknown);
}

Qt::KeyboardModifiers modifiersOf(std::uint32_t flags) {
    Qt::KeyboardModifiers result;
    for (const auto& [flag, modifier] : {std::pair(Shortcut::shift, Qt::ShiftModifier),
                                         std::pair(Shortcut::control, Qt::ControlModifier),
                                         std::pair(Shortcut::option, Qt::AltModifier),
                                         std::pair(Shortcut::command, Qt::MetaModifier)})
        result.setFlag(modifier, (flags & flag) != 0);
    return result;
}

bool isLayered(const QWidget& widget) {
    return widget.isWindow() && widget.testAttribute(Qt::WA_DontShowOnScreen);
}

} // namespace

LayeredPopups::LayeredPopups(PopupLayer& below, MenuPopup& shownMenu)
    : layer(below), menu(shownMenu) {
    menu.setAttribute(Qt::WA_DontShowOnScreen);
    for (QMenu* const submenu : menu.findChildren<QMenu*>())
        submenu->setAttribute(Qt::WA_DontShowOnScreen);
    nextDrawing.setSingleShot(true);
    connect(&nextDrawing, &QTimer::timeout, this, [this] { draw(); });
    connect(&repetition, &QTimer::timeout, this, [this] {
        repetition.start(betweenRepetitions);
        sendKey(QEvent::KeyPress, true);
    });
    qApp->installEventFilter(this);
    const auto place =
        layer.open({.moved = [this](Point to) { moved(to); },
                    .clicked = [this](int button, bool isDown) { clicked(button, isDown); },
                    .scrolled = [this](double notches) { scrolled(notches); },
                    .pressed = [this](const PopupLayer::Key& key) { pressed(key); },
                    .released = [this] { released(); },
                    .disturbed = [this] { menu.dismiss(); }});
    if (!place) return;
    pointer.emplace(place->x, place->y);
    const Rect left = layer.roomAt(*place);
    room = QRectF(left.x, left.y, left.width, left.height).toAlignedRect();
}

LayeredPopups::~LayeredPopups() {
    layer.close();
}

QPoint LayeredPopups::place() const {
    const QPoint at = pointerPlace();
    if (room.isEmpty()) return at;
    return {std::clamp(at.x(), room.left(), room.right() + 1),
            std::clamp(at.y(), room.top(), room.bottom() + 1)};
}

QPoint LayeredPopups::pointerPlace() const {
    if (pointer) return pointer->toPoint();
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? QPoint() : screen->geometry().center();
}

bool LayeredPopups::eventFilter(QObject* watched, QEvent* event) {
    if (isDrawing || !watched->isWidgetType()) return false;
    auto& widget = *static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::Polish: // of a tool tip, before it is shown
        if (widget.windowType() == Qt::ToolTip) widget.setAttribute(Qt::WA_DontShowOnScreen);
        break;
    case QEvent::Show:
        if (!isLayered(widget)) break;
        keepOnScreen(widget);
        shown.push_back({&widget, ++lastNumber, {}});
        [[fallthrough]];
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Paint:
    case QEvent::UpdateRequest:
        if (isLayered(*widget.window()) && !nextDrawing.isActive()) nextDrawing.start(0);
        break;
    default:
        break;
    }
    return false;
}

// The toolkit leaves that to the compositor here. A submenu goes to the other
// side of its menu, and what hangs from the pointer above that.
void LayeredPopups::keepOnScreen(QWidget& popup) const {
    const QScreen* const screen = QGuiApplication::screenAt(pointerPlace());
    if (screen == nullptr) return;
    const QRect all = screen->geometry();
    QRect wanted = popup.geometry();
    const auto* const outer = qobject_cast<QMenu*>(popup.parentWidget());
    if (outer != nullptr && popup.windowType() == Qt::Popup) {
        if (wanted.right() > all.right()) wanted.moveRight(outer->x() - 1);
        if (wanted.left() < all.left()) wanted.moveLeft(outer->geometry().right() + 1);
    } else if (wanted.bottom() > all.bottom()) {
        // So that the pointer is on no entry.
        const QPoint from = popup.windowType() == Qt::Popup ? place() : pointerPlace();
        wanted.moveBottom(from.y() - 1);
    }
    wanted.moveRight(std::min(wanted.right(), all.right()));
    wanted.moveBottom(std::min(wanted.bottom(), all.bottom()));
    wanted.moveLeft(std::max(wanted.left(), all.left()));
    wanted.moveTop(std::max(wanted.top(), all.top()));
    popup.move(wanted.topLeft());
}

void LayeredPopups::draw() {
    isDrawing = true; // which paints the widgets
    for (Shown& one : shown)
        if (one.popup && one.popup->isVisible())
            draw(one);
        else
            layer.hide(one.number);
    std::erase_if(shown, [](const Shown& one) { return !one.popup || !one.popup->isVisible(); });
    isDrawing = false;
}

void LayeredPopups::draw(Shown& one) {
    QWidget& popup = *one.popup;
    const QScreen* const screen = QGuiApplication::screenAt(popup.geometry().center());
    const qreal scale = screen == nullptr ? 1 : screen->devicePixelRatio();
    QImage picture(popup.size() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    popup.render(&picture);
    picture.setOffset(popup.pos());
    const bool isSame = picture == one.picture && picture.offset() == one.picture.offset();
    if (isSame) return;
    one.picture = picture;
    const auto* const pixels = reinterpret_cast<const std::uint32_t*>(picture.constBits());
    layer.show(
        one.number,
        {.corner = {static_cast<double>(popup.x()), static_cast<double>(popup.y())},
         .width = picture.width(),
         .height = picture.height(),
         .scale = scale,
         .pixels = {pixels, static_cast<std::size_t>(picture.sizeInBytes()) / sizeof *pixels}});
}

/// The submenu that opened last, else the menu.
QWidget& LayeredPopups::innermost() const {
    const auto found = std::find_if(shown.rbegin(), shown.rend(), [](const Shown& one) {
        return one.popup && one.popup->isVisible() && one.popup->windowType() == Qt::Popup;
    });
    return found == shown.rend() ? menu : *found->popup;
}

// A menu passes on what is outside it to those that it was opened from. Some versions of the
// toolkit find the innermost one by themselves, others know of none that is not on the screen.
void LayeredPopups::send(QEvent&& event) {
    if (QWindow* const window = innermost().windowHandle())
        QCoreApplication::sendEvent(window, &event);
}

void LayeredPopups::sendMouse(QEvent::Type type, Qt::MouseButton button) {
    const QPointF global = pointer.value_or(QPointF());
    const QPointF local = global - innermost().pos();
    send(QMouseEvent(type, local, local, global, button, buttons,
                     modifiersOf(held ? held->flags : 0)));
}

// Until a pointer has gone some way a menu takes its clicks for the one that opened it. Where it
// was then the toolkit never learns here; so many motions convince it as well.
void LayeredPopups::moved(Point to) {
    constexpr int convincing = 7;
    pointer.emplace(to.x, to.y);
    const QWidget& inside = innermost();
    const bool enters = &inside != entered && inside.geometry().contains(pointer->toPoint());
    if (enters) entered = &inside;
    for (int sent = 0; sent < (enters ? convincing : 1); ++sent)
        sendMouse(QEvent::MouseMove, Qt::NoButton);
}

void LayeredPopups::clicked(int number, bool isDown) {
    constexpr Qt::MouseButton numbered[] = {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    const Qt::MouseButton button = numbered[number];
    buttons.setFlag(button, isDown);
    sendMouse(isDown ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, button);
}

void LayeredPopups::scrolled(double notches) {
    const QPointF global = pointer.value_or(QPointF());
    send(QWheelEvent(global - innermost().pos(), global, {}, {0, qRound(notches * wheelNotch)},
                     buttons, Qt::NoModifier, Qt::NoScrollPhase, false));
}

void LayeredPopups::pressed(const PopupLayer::Key& key) {
    held = key;
    repetition.start(untilRepetition);
    sendKey(QEvent::KeyPress, false);
}

void LayeredPopups::released() {
    repetition.stop();
    if (held) sendKey(QEvent::KeyRelease, false);
    held.reset();
}

void LayeredPopups::sendKey(QEvent::Type type, bool repeats) {
    const QString text = QString::fromStdString(held->text);
    send(QKeyEvent(type, keyOf(*held, text), modifiersOf(held->flags), text, repeats));
}

} // namespace platform::qt
