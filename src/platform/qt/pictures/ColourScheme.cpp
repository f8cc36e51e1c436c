#include "platform/qt/pictures/ColourScheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QSettings>
#include <QStandardPaths>
#include <QStyle>
#include <string_view>

namespace platform::qt {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsName = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colourKey = "color-scheme";

constexpr uint prefersDark = 1;
constexpr const char* plainStyle = "fusion";
constexpr QColor lightOutlines(0xb4, 0xb4, 0xb4), darkOutlines(0x84, 0x84, 0x84);
constexpr QColor lightHandle(0xc8, 0xc8, 0xc8), lightHighlight(0x6c, 0xa8, 0xf0);
constexpr int middleLightness = 128;

// The portal wraps the value in one variant or, in its older call, in two.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

// Where no portal and no window system tells, as in sway, the user says it in the file that GTK
// reads itself.
std::optional<bool> wishInFiles() {
    for (const char* file : {"gtk-4.0/settings.ini", "gtk-3.0/settings.ini"}) {
        const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, file);
        if (path.isEmpty()) continue;
        QSettings settings(path, QSettings::IniFormat);
        settings.beginGroup("Settings");
        const QString prefers =
            settings.value("gtk-application-prefer-dark-theme").toString().toLower();
        const QString theme = settings.value("gtk-theme-name").toString().toLower();
        if (prefers.isEmpty() && theme.isEmpty()) continue;
        return prefers == "1" || prefers == "true" || theme.endsWith("-dark") ||
               theme.endsWith(":dark");
    }
    return {};
}

bool isFaint(const QPalette& palette) {
    return QApplication::style()->name() == plainStyle &&
           palette.color(QPalette::Base).lightness() >= middleLightness &&
           palette.color(QPalette::Window).lightness() > lightOutlines.lightness();
}

} // namespace

ColourScheme::ColourScheme() : given(QApplication::palette()), ofFiles(wishInFiles()) {
    QDBusConnection::sessionBus().connect(portalName, portalPath, settingsName, "SettingChanged",
                                          this, SLOT(settingChanged(QDBusMessage)));
    showOutlines();
    follow();
    refresh();
}

void ColourScheme::settingChanged(const QDBusMessage& signal) {
    const QVariantList told = signal.arguments(); // a group, a key of it, and the value
    if (told.size() != 3 || told[0] != appearance || told[1] != colourKey) return;
    ofPortal = unwrapped(told[2]).toUInt() == prefersDark;
    follow();
}

void ColourScheme::windowSystemWishes(std::optional<bool> dark) {
    ofWindowSystem = dark;
    follow();
}

void ColourScheme::follow() {
    apply(ofPortal ? *ofPortal : ofWindowSystem ? *ofWindowSystem : ofFiles.value_or(false));
}

void ColourScheme::refresh() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (asking || !bus.isConnected()) return;
    asking = true;
    auto call = QDBusMessage::createMethodCall(portalName, portalPath, settingsName, "Read");
    call << appearance << colourKey;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        asking = false;
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isValid()) return;
        ofPortal = unwrapped(reply.value().variant()).toUInt() == prefersDark;
        follow();
    });
}

void ColourScheme::apply(bool dark) {
    if (dark == darkened) return;
    if (dark && given.color(QPalette::Window).lightness() < middleLightness) return;
    darkened = dark;
    QApplication::setPalette(dark ? darkPalette() : given);
    showOutlines();
}

// The plain style draws outlines and tick marks a shade darker than a window, which cannot be seen
// on the dark base of a menu, and hardly on a white one.
void ColourScheme::showOutlines() {
    for (const char* drawnOnBase : {"QMenu", "QCheckBox", "QSlider"}) {
        QPalette palette = darkened ? darkPalette() : QApplication::palette(drawnOnBase);
        if (!darkened && !isFaint(palette)) continue;
        palette.setColor(QPalette::Window, darkened ? darkOutlines : lightOutlines);
        // The handle has the colour of a button, and where it is at work its outline and the tick
        // marks have a shade of the highlight.
        if (darkened && drawnOnBase == std::string_view("QSlider")) {
            palette.setColor(QPalette::Button, lightHandle);
            palette.setColor(QPalette::Highlight, lightHighlight);
        }
        QApplication::setPalette(palette, drawnOnBase);
    }
}

QPalette ColourScheme::darkPalette() {
    const QColor window(0x2b, 0x2b, 0x2b);
    const QColor base(0x1e, 0x1e, 0x1e);
    const QColor button(0x3a, 0x3a, 0x3a);
    const QColor text(0xee, 0xee, 0xee);
    const QColor faint(0x83, 0x83, 0x83);
    const QColor highlight(0x2f, 0x72, 0xc4);
    QPalette palette(button, window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xa8, 0xf0));
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, button);
    return palette;
}

} // namespace platform::qt
