#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QPalette>

namespace platform::qt {

/// The user's wish for dark windows, from the desktop portal's appearance settings, for sessions
/// whose own platform theme does not bring it. It is followed while the object lives. A palette
/// that is dark already stays as it is.
class ColourScheme final : public QObject {
    Q_OBJECT

  public:
    /// Without a portal, or without a session bus, nothing changes.
    ColourScheme();

    /// Asks without waiting; the palette changes when the answer comes.
    void refresh();

    static QPalette darkPalette();

  private Q_SLOTS:
    void settingChanged(const QDBusMessage& signal);

  private:
    void apply(bool dark);

    QPalette given; ///< what the platform theme gave
    bool darkened = false;
    bool asking = false;
};

} // namespace platform::qt
