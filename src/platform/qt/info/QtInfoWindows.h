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
    QtInfoWindows(const Pictures& shown, std::string icon,
                  std::function<void(const std::string& url)> opener)
        : pictures(shown), iconName(std::move(icon)), openURL(std::move(opener)) {}

    std::unique_ptr<InfoWindow> create(InfoTarget& target) override;
    double textHeight(const std::string& text, double width, double fontSize) const override;
    Size imageSize(const std::string& name) const override;

  private:
    const Pictures& pictures;
    std::string iconName;
    std::function<void(const std::string& url)> openURL;
};

} // namespace platform::qt
