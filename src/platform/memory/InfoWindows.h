#pragma once

#include "platform/InfoWindow.h"
#include "platform/memory/Windows.h"
#include "platform/memory/Workspace.h"

#include <map>
#include <string>
#include <string_view>

namespace platform::memory {

class MemoryInfoWindow;

class InfoWindows final : public platform::InfoWindows {
  public:
    /// What is lent must outlive the windows made.
    InfoWindows(Windows& windowList, Workspace& desktop)
        : windows(windowList), workspace(desktop) {}

    std::unique_ptr<InfoWindow> create(InfoTarget& target) override;

    /// Every letter is half as wide as its size, a line a quarter higher, and lines are broken at
    /// blanks.
    double textHeight(const std::string& text, double width, double fontSize) const override;

    /// 64 by 64 where nothing else was said.
    Size imageSize(const std::string& name) const override;

    void setImageSize(const std::string& name, Size size) { sizes[name] = size; }

    // What a person does with the window made last, on screen or not. False where it holds no such
    // view.
    bool press(std::string_view action);
    bool click(int tag, int state);
    bool followLink(std::string_view text, const std::string& link);

    /// The title and the views of that window; empty where there is none.
    std::string title() const;
    std::vector<InfoView> views() const;

  private:
    friend class MemoryInfoWindow;

    Windows& windows;
    Workspace& workspace;
    std::map<std::string, Size, std::less<>> sizes;
    MemoryInfoWindow* last = nullptr;
};

} // namespace platform::memory
