#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QPalette>
#include <optional>

namespace platform::qt {

/// The user's wish for dark windows, from the desktop portal's appearance settings, and from the
/// window system's own where no portal tells it, or else from GTK's settings file, for sessions
/// whose own platform theme does not bring it. It is followed while the object lives. A palette
/// that is dark already stays as it is.
class ColourScheme final : public QObject {
    Q_OBJECT

  public:
    /// Without a portal, or without a session bus, it goes by the others.
    ColourScheme();

    /// The wish in the window system's settings, as often as it changes; none where they have none.
    void windowSystemWishes(std::optional<bool> dark);

    /// Asks without waiting; the palette changes when the answer comes.
    void refresh();

    static QPalette darkPalette();

  private Q_SLOTS:
    void settingChanged(const QDBusMessage& signal);

  private:
    void follow();
    void apply(bool dark);
    void showOutlines();

    QPalette given;                    ///< what the platform theme gave
    const std::optional<bool> ofFiles; ///< as they were at the start
    std::optional<bool> ofPortal, ofWindowSystem;
    bool darkened = false;
    bool asking = false;
};

} // namespace platform::qt
