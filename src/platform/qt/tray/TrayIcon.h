#pragma once

#include "platform/Log.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/qt/pictures/SymbolicIcons.h"
#include "platform/qt/tray/StatusNotifierItem.h"
#include "platform/x11/tray/TrayWindow.h"

#include <QColor>
#include <QObject>
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

/// The program's icon in the tray, from its making on: in the X screen's own tray where one is
/// managed, else as a status notifier item where somebody watches for those. It follows whatever
/// comes, goes and comes back; with neither, that is logged once. Main thread.
class TrayIcon final : public QObject {
  public:
    struct Identity {
        std::string id;    ///< the same in every run, such as the bundle's identifier
        std::string title; ///< shown as a tool tip; UTF-8
    };

    /// Needs a QApplication. What is lent must outlive the object.
    TrayIcon(x11::Connection& connection, const Pictures& images, Identity identity, Log& log);
    ~TrayIcon() override;

    /// Drawn by the run loop, and for an item only where it is another one by then. A name without
    /// a picture shows none.
    void setImage(TrayImage image);

    /// Button 0 left, 1 right, 2 middle, pressed and released; where the cursor is, in pixels of
    /// the root window. Called from the run loop; a menu may run its own loop inside. Some hosts
    /// pass on only some of the buttons.
    void onClick(std::function<void(int button, int rootX, int rootY)> handler);

  private:
    x11::TrayWindow::Handlers windowHandlers();
    void watchBus();
    void settle();
    void report();
    bool hasTray() const { return window.hasHost() || watcherIsThere; }
    void makeItem();
    StatusNotifierItem::Face face() const;
    void showImage();
    void click(int button, x11::RootPoint place);

    x11::Connection& connection;
    const Pictures& images;
    Identity identity;
    Log& log;
    struct ItemFace {
        TrayImage image;
        QColor text; ///< the tint of a template

        bool operator==(const ItemFace&) const = default;
    };

    TrayImage image;
    ItemFace told; ///< to the hosts of the item
    bool isToBeShown = false;
    std::function<void(int, int, int)> clicked;
    bool busAnswered = false, watcherIsThere = false, reported = false;
    x11::TrayWindow window;
    std::optional<SymbolicIcons> symbolicIcons; ///< not before there is an item
    std::unique_ptr<StatusNotifierItem> item;
};

} // namespace platform::qt
