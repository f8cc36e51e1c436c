#pragma once

#include "platform/InfoWindow.h"
#include "platform/qt/pictures/Pictures.h"

#include <functional>
#include <string>

namespace platform::qt {

/// Information windows of the toolkit. Needs a QApplication. Main thread.
class QtInfoWindows final : public InfoWindows {
  public:
    /// The pictures must outlive the object and its windows. `icon` names that of the title bar;
    /// `openURL` opens an address that a link leads to.
    /// A link of which `leadsNowhere` is true is shown as a text; without it all are offered.
    QtInfoWindows(const Pictures& shown, std::string icon,
                  std::function<void(const std::string& url)> opener,
                  std::function<bool(const std::string& link)> leadsNowhere = {})
        : pictures(shown),
          iconName(std::move(icon)),
          openURL(std::move(opener)),
          isDead(std::move(leadsNowhere)) {}

    /// Whether the user sees one of its windows.
    bool isAnyShown() const { return shownCount > 0; }

    /// `hidden` is called after a window was hidden. One handler.
    void onHidden(std::function<void()> handler) { hidden = std::move(handler); }

    /// The next window that would come to the front stays away, once.
    void keepFirstAway() { firstStaysAway = true; }

    std::unique_ptr<InfoWindow> create(InfoTarget& target) override;
    double textHeight(const std::string& text, double width, double fontSize) const override;
    Size imageSize(const std::string& name) const override;

  private:
    const Pictures& pictures;
    std::string iconName;
    std::function<void(const std::string& url)> openURL;
    std::function<bool(const std::string& link)> isDead;
    std::function<void()> hidden;
    int shownCount = 0;
    bool firstStaysAway = false;
};

} // namespace platform::qt
