#pragma once

#include "platform/InfoWindow.h"
#include "platform/Log.h"

#include <functional>
#include <set>
#include <string>

namespace platform::qt {

/// Information windows of the toolkit. Needs a QApplication. Main thread.
class QtInfoWindows final : public InfoWindows {
  public:
    /// Images are "<name>.svg" in the folder, `icon` the picture of the window's title bar;
    /// `openURL` opens an address that a link leads to.
    QtInfoWindows(std::string imagesFolder, std::string icon,
                  std::function<void(const std::string& url)> openURL, Log& log);

    std::unique_ptr<InfoWindow> create(InfoTarget& target) override;
    double textHeight(const std::string& text, double width, double fontSize) const override;
    Size imageSize(const std::string& name) const override;

  private:
    std::string folder;
    std::string icon;
    std::function<void(const std::string& url)> openURL;
    Log& log;
    mutable std::set<std::string> told;
};

} // namespace platform::qt
