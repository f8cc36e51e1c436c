#include "platform/qt/tray/TrayIcon.h"

#include <QApplication>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPalette>
#include <QScreen>
#include <QTimer>
#include <QToolTip>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <utility>

namespace platform::qt {

namespace {

constexpr std::chrono::seconds timeForThePanel{3};
/// A slow login takes its time, and a notice that was wrong would come at each.
constexpr std::chrono::seconds timeForASlowLogin{10};
constexpr std::chrono::milliseconds restBeforeToolTip{700};
constexpr int toolTipGap = 4; ///< from the panel

/// A panel that has just come paints itself, and so does a compositor, after the icon is there: its
/// tint is told anew when they have.
constexpr std::chrono::milliseconds timesToLookAgain[] = {std::chrono::milliseconds(500),
                                                          std::chrono::milliseconds(3000)};

constexpr int itemSizes[] = {16, 22, 24, 32, 44, 48, 64}; // of panels at 100, 150 and 200 %

QRect toRect(const PixelArea& area) {
    return {area.left, area.top, area.width, area.height};
}

const QRect* panelAt(const QList<QRect>& panels, const std::optional<QPoint>& place) {
    const auto found = std::ranges::find_if(
        panels, [&](const QRect& panel) { return place && panel.contains(*place); });
    return found == panels.end() ? nullptr : &*found;
}

/// The largest on the primary monitor; of none there, any.
QRect usualPanel(const QList<QRect>& panels) {
    const QScreen* const primary = QGuiApplication::primaryScreen();
    const auto sizeOnIt = [&](const QRect& panel) {
        const QRect part = primary == nullptr ? panel : panel & primary->geometry();
        return part.isEmpty() ? 0 : part.width() * part.height();
    };
    return *std::ranges::max_element(panels, {}, sizeOnIt);
}

QColor textColour() {
    return QGuiApplication::palette().color(QPalette::WindowText);
}

// In this order: the shell's own, where the program's extension is, knows sliders.
constexpr const char* watchers[] = {"com.tamberlo.Shell", StatusNotifierItem::watcherName};

} // namespace

TrayIcon::TrayIcon(TrayWindow* ofTheWindowSystem, const Pictures& pictures, Identity whose,
                   Log& logger)
    : window(ofTheWindowSystem),
      images(pictures),
      identity(std::move(whose)),
      log(logger),
      shownTitle(identity.title) {
    toolTipDelay.setSingleShot(true);
    toolTipDelay.setInterval(restBeforeToolTip);
    connect(&toolTipDelay, &QTimer::timeout, this, [this] { showToolTip(); });
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::show(std::function<void(int)> handler, ExportedMenu* exported) {
    clicked = std::move(handler);
    menu = exported;
    if (window != nullptr)
        window->show({.draw = [this](int size, auto panel) { return drawn(size, panel); },
                      .clicked =
                          [this](int button) {
                              hovered(false);
                              clicked(button);
                          },
                      .hovered = [this](bool on) { hovered(on); },
                      .hostChanged =
                          [this] {
                              settle();
                              lookAgain();
                          }});
    lookAgain();
    qApp->installEventFilter(this);
    watchBus();
}

void TrayIcon::hovered(bool on) {
    if (on) return toolTipDelay.start();
    toolTipDelay.stop();
    QToolTip::hideText();
}

// Left to itself the toolkit puts it over an icon that is at the lower edge of a screen.
void TrayIcon::showToolTip() {
    QToolTip::showText(QCursor::pos(), QString::fromStdString(identity.title));
    auto anchor = menuAnchor();
    const QScreen* const screen =
        anchor ? QGuiApplication::screenAt(anchor->item.center()) : nullptr;
    const auto windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(windows, [](const QWidget* each) {
        return each->windowType() == Qt::ToolTip && each->isVisible();
    });
    if (screen == nullptr || tip == windows.end()) return;
    anchor->panel.adjust(-toolTipGap, -toolTipGap, toolTipGap, toolTipGap);
    (*tip)->move(menuCorner((*tip)->size(), *anchor, screen->geometry(),
                            QGuiApplication::layoutDirection()));
}

void TrayIcon::setToolTip(const std::string& text) {
    identity.title = text;
    showSoon();
}

void TrayIcon::lookAgain() {
    for (const auto time : timesToLookAgain)
        QTimer::singleShot(time, this, [this] {
            if (item) measurePanel();
            setImage(image);
        });
}

void TrayIcon::measurePanel() {
    const auto colour = window != nullptr ? window->panelText() : std::nullopt;
    panelText.reset();
    if (colour) panelText = QColor(colour->red, colour->green, colour->blue);
}

/// Of the pictures of an item, which does not know where it is shown.
QColor TrayIcon::itemTint() const {
    return panelText.value_or(textColour());
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp) {
        setImage(image);
        lookAgain();
    }
    return false;
}

QImage TrayIcon::picture(int size, const QColor& tint) const {
    return image.isTemplate ? images.tinted(image.name, size, tint)
                            : images.drawn(image.name, size);
}

std::vector<std::uint32_t> TrayIcon::drawn(int size, std::optional<TrayColour> panel) const {
    const QImage drawing =
        picture(size, panel ? QColor(panel->red, panel->green, panel->blue) : textColour());
    std::vector<std::uint32_t> pixels;
    for (int row = 0; row < drawing.height(); ++row) {
        const auto* line = reinterpret_cast<const std::uint32_t*>(drawing.constScanLine(row));
        pixels.insert(pixels.end(), line, line + drawing.width());
    }
    return pixels;
}

void TrayIcon::watchBus() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        busAnswered = true;
        settle();
        return;
    }
    for (const char* const name : watchers) {
        auto* owners =
            new QDBusServiceWatcher(name, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
        connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString& changed, const QString&, const QString& owner) {
                    // Another watcher has to be told of the item anew.
                    if (changed == itemWatcher) item.reset();
                    watcherAnswers(changed, false);
                    if (!owner.isEmpty()) askForHosts();
                });
        for (const char* change :
             {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            QDBusConnection(bus).connect(name, {}, StatusNotifierItem::watcherName, change, this,
                                         SLOT(askForHosts()));
    }
    askForHosts();
}

// A watcher only keeps a list: without a host nobody shows what is on it.
void TrayIcon::askForHosts() {
    for (const char* const name : watchers) {
        auto question = QDBusMessage::createMethodCall(name, "/StatusNotifierWatcher",
                                                       "org.freedesktop.DBus.Properties", "Get");
        question << StatusNotifierItem::watcherName << "IsStatusNotifierHostRegistered";
        // Nobody is started for it.
        question.setAutoStartService(false);
        auto* answer =
            new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, name] {
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            answer->deleteLater();
            watcherAnswers(name, reply.isValid() && reply.value().variant().toBool());
        });
    }
}

void TrayIcon::watcherAnswers(const QString& name, bool hasHost) {
    hosts[name] = hasHost;
    busAnswered = hosts.size() == static_cast<int>(std::size(watchers));
    const auto* const first = std::ranges::find_if(
        watchers, [this](const char* each) { return hosts.value(each, false); });
    hostIsThere = first != std::end(watchers);
    const QString best = hostIsThere ? *first : "";
    // The item moves to the better one.
    if (item && best != itemWatcher) item.reset();
    itemWatcher = best;
    settle();
}

bool TrayIcon::showMenuAtHost() const {
    if (!item || itemWatcher != watchers[0]) return false;
    item->showMenuAtHost();
    return true;
}

void TrayIcon::settle() {
    const bool useItem = !isInWindow() && hostIsThere;
    if (!useItem) {
        item.reset();
    } else if (!item) {
        makeItem();
        lookAgain();
    }
    if (std::exchange(hadTray, hasTray()) != hasTray() && placeChanged) placeChanged();
    if (hasTray() || !busAnswered || std::exchange(reported, true)) return;
    // At login the program and the panel start together, and either may be first.
    QTimer::singleShot(timeForThePanel, this, [this] { report(); });
    QTimer::singleShot(timeForASlowLogin, this, [this] {
        if (!hasTray() && missing) missing();
    });
}

void TrayIcon::report() {
    if (hasTray()) return;
    const char* const trays = window != nullptr ? "such as trayer" : "such as waybar with its tray";
    log.write(std::string("no tray: there is nowhere to show the icon; add a notification area to "
                          "the panel, or start one ") +
              trays + "; the icon will come by itself");
}

void TrayIcon::makeItem() {
    measurePanel();
    told = wantedFace();
    if (!symbolicIcons) symbolicIcons.emplace(images, identity.id);
    item = std::make_unique<StatusNotifierItem>(
        StatusNotifierItem::Identity{QString::fromStdString(identity.id),
                                     QString::fromStdString(identity.title),
                                     symbolicIcons->folder(), itemWatcher},
        face(), [this](int button, std::optional<QPoint> place) { itemClicked(button, place); },
        menu);
}

// A host that tells no place, or one on its own window, passes on what a pointer did: then that is
// still on the panel.
void TrayIcon::itemClicked(int button, std::optional<QPoint> place) {
    const QList<QRect> known = panels();
    if (place) place = fromDevicePixels(*place);
    if (!panelAt(known, place)) place = QCursor::pos();
    if (panelAt(known, place)) itemPlace = place;
    clicked(button);
}

QList<QRect> TrayIcon::panels() const {
    QList<QRect> result;
    if (window != nullptr)
        for (const PixelArea& area : window->panels())
            result += fromDevicePixels(toRect(area));
    return result;
}

std::optional<MenuAnchor> TrayIcon::menuAnchor() const {
    if (!hasTray()) return {};
    if (const auto place = isInWindow() ? window->place() : std::nullopt)
        return MenuAnchor{fromDevicePixels(toRect(place->icon)),
                          fromDevicePixels(toRect(place->panel)), place->isVertical};
    const QList<QRect> known = panels();
    if (const QRect* const panel = panelAt(known, itemPlace))
        return MenuAnchor{QRect(*itemPlace, QSize(1, 1)), *panel, panel->height() > panel->width()};
    if (known.isEmpty()) return {};
    return endOf(usualPanel(known), QGuiApplication::layoutDirection());
}

void TrayIcon::setImage(TrayImage wanted) {
    image = std::move(wanted);
    showSoon();
}

// Drawing it for the hosts of items takes milliseconds and files, and there may be a pointer event
// to answer first. A crossing switches off and on again, after which the same picture and title are
// wanted: a host that was told of either would ask for all there is.
void TrayIcon::showSoon() {
    if (std::exchange(isToBeShown, true)) return;
    QMetaObject::invokeMethod(this, &TrayIcon::showNow, Qt::QueuedConnection);
}

void TrayIcon::showNow() {
    isToBeShown = false;
    if (std::exchange(shownTitle, identity.title) != identity.title) {
        if (window != nullptr) window->setTitle(identity.title);
        if (item) item->setTitle(QString::fromStdString(identity.title));
    }
    if (window != nullptr) window->repaint();
    const ItemFace wanted = wantedFace();
    if (!item || told == wanted) return;
    told = wanted;
    item->setFace(face());
}

TrayIcon::ItemFace TrayIcon::wantedFace() const {
    return {image, image.isTemplate ? itemTint() : QColor()};
}

StatusNotifierItem::Face TrayIcon::face() const {
    StatusNotifierItem::Face result;
    for (const int size : itemSizes) {
        const QImage drawing = picture(size, itemTint());
        if (drawing.isNull()) continue;
        result.pictures += drawing;
        result.outlined += image.isTemplate ? images.outlined(image.name, size) : drawing;
    }
    if (image.isTemplate) result.iconName = symbolicIcons->nameOf(image.name);
    return result;
}

} // namespace platform::qt
