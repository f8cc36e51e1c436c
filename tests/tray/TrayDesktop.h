#pragma once

#include "Hosts.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace traytests {

/// A desktop on which hosts and the program come and go.
class TrayDesktop {
  public:
    explicit TrayDesktop(int depth = 24);

    void startHost(Host host, Look look = {});
    /// The panel as its package ships it, in one of the package's own themes.
    void startShippedLxqtPanel(const std::string& theme);
    void startShippedTint2(const std::string& configuration);
    /// A plain tray beside the host, at the top of the screen.
    std::unique_ptr<support::ChildProcess> startPlainTray(Look look = {});
    /// Kills it, as a crash would.
    void killHost();
    void startProgram();
    support::ChildProcess& program() { return *programProcess; }

    std::filesystem::path picturesFolder() const { return desktop.home() / "pictures"; }

    /// As the eye's, and on after a fault of the server's.
    bool waitUntilSeen(const std::function<bool()>& expected);

    /// Where the square of the program's picture is on the screen.
    std::optional<support::Area> pictureArea() const;
    /// The same when it is there and whole; empty when the time is up.
    std::optional<support::Area> waitForPicture();
    bool waitForNoPicture();

    /// Clicks there, and waits until the program has printed that button.
    bool clickArrives(const support::Area& icon, int xButton, int printedButton);

    /// Clicks there with the left button, again while nothing arrives: a panel that has just
    /// started may take the icon in once more.
    bool clicksComeToArrive(const support::Area& icon);

    /// Waits until the template stands out against its background: its cross is in the middle, its
    /// corners are free.
    bool waitForTemplate(const support::Area& icon);

    int brightnessInTheMiddle(const support::Area& icon) const; ///< 0 to 255

    /// A picture for a person to look at, where the variable PALISOR_PICTURES names a folder.
    void keepPicture(const std::string& name) const;

    support::PrivateDesktop desktop;
    std::unique_ptr<support::Eye> eye = std::make_unique<support::Eye>(desktop.display());
    support::Hand hand{desktop.display()};

  private:
    long clicksSoFar() const;

    std::unique_ptr<support::ChildProcess> hostProcess, programProcess;
};

} // namespace traytests
