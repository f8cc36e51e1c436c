#pragma once

#include "platform/Log.h"
#include "platform/TrayWindow.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/qt/pictures/SymbolicIcons.h"
#include "platform/qt/tray/MenuPlace.h"
#include "platform/qt/tray/StatusNotifierItem.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform::qt {

/// A picture by its name; a template takes the colour of the panel.
struct TrayImage {
    std::string name;
    bool isTemplate = true;

    bool operator==(const TrayImage&) const = default;
};

/// The program's icon in the tray: in the window system's own where one is managed, else as a
/// status notifier item where somebody watches for those. It follows whatever comes, goes and comes
/// back; with neither, that is logged once. Main thread.
class TrayIcon final : public QObject {
    Q_OBJECT

  public:
    struct Identity {
        std::string id;    ///< the same in every run, such as the bundle's identifier
        std::string title; ///< UTF-8
    };

    /// Needs a QApplication. `window` is null where the window system has no tray; it has the
    /// icon's handlers from `show` on. What is lent must outlive the object.
    TrayIcon(TrayWindow* window, const Pictures& images, Identity identity, Log& log);
    ~TrayIcon() override;

    /// Comes into the tray. `clicked` is told of a button (0 left, 1 right, 2 middle) that was
    /// pressed and released, from the run loop; a menu may run its own loop inside. Some hosts pass
    /// on only some of the buttons, and those are offered the menu, if there is one; it must
    /// outlive this object. Once.
    void show(std::function<void(int button)> clicked, ExportedMenu* menu = nullptr);

    /// What a menu of the icon hangs from: the icon in the window system's tray, an item at the
    /// place that it was last clicked at, or else the end of a panel. Nothing where there is no
    /// tray, or no panel is known. Waits for the window system.
    std::optional<MenuAnchor> menuAnchor() const;

    /// Called once, from the run loop, when for a while there has been no tray at all.
    void onMissing(std::function<void()> handler) { missing = std::move(handler); }

    /// Called from the run loop when `isInTray` answers otherwise than before.
    void onPlaceChange(std::function<void()> handler) { placeChanged = std::move(handler); }

    /// Has the shell open the menu where its own tray has the icon; false elsewhere.
    bool showMenuAtHost() const;

    /// Whether there is a place for the icon at the moment.
    bool isInTray() const { return hasTray(); }

    /// The icon's name and what the program is doing, shown as a tool tip; UTF-8. Told by the run
    /// loop, and only where it is another one by then.
    void setToolTip(const std::string& text);

    /// The same of its picture. A name without a picture shows none.
    void setImage(TrayImage image);

  private Q_SLOTS:
    void askForHosts();

  private:
    struct ItemFace {
        TrayImage image;
        QColor tint; ///< of a template

        bool operator==(const ItemFace&) const = default;
    };

    std::vector<std::uint32_t> drawn(int size, std::optional<TrayColour> panel) const;
    void watchBus();
    void settle();
    void report();
    bool isInWindow() const { return window != nullptr && window->hasHost(); }
    bool hasTray() const { return isInWindow() || hostIsThere; }
    void watcherAnswers(const QString& name, bool hasHost);
    void hovered(bool on);
    void showToolTip();
    void makeItem();
    void itemClicked(int button, std::optional<QPoint> place);
    QList<QRect> panels() const;
    QImage picture(int size, const QColor& tint) const;
    StatusNotifierItem::Face face() const;
    ItemFace wantedFace() const;
    void showSoon();
    void showNow();
    void lookAgain();
    void measurePanel();
    QColor itemTint() const;
    bool eventFilter(QObject* watched, QEvent* event) override;

    TrayWindow* window;
    const Pictures& images;
    Identity identity;
    Log& log;
    TrayImage image;
    ItemFace told;                   ///< to the hosts of the item
    std::optional<QColor> panelText; ///< what is read on the panels
    std::string shownTitle;
    bool isToBeShown = false;
    std::function<void(int)> clicked;
    std::function<void()> missing, placeChanged;
    ExportedMenu* menu = nullptr;
    QTimer toolTipDelay;
    QHash<QString, bool> hosts; ///< by the watchers' names, as far as they have answered
    QString itemWatcher;        ///< the one that the item is for
    bool busAnswered = false, hostIsThere = false, reported = false, hadTray = false;
    std::optional<SymbolicIcons> symbolicIcons; ///< not before there is an item
    std::unique_ptr<StatusNotifierItem> item;
    std::optional<QPoint> itemPlace; ///< where it was last clicked, in the toolkit's coordinates
};

} // namespace platform::qt
