#pragma once

#include "platform/Log.h"
#include "platform/Picture.h"

#include <set>

namespace platform::qt {

/// The images of the bundle: the SVG files of one folder, by their names without the ending. No
/// application object is needed. Main thread.
class Pictures {
  public:
    Pictures(std::string folder, Log& log);

    /// Null, and logged once a name, when the file is missing or is no SVG, or the size is empty.
    std::unique_ptr<Picture> picture(const std::string& name, int width, int height);

  private:
    std::string folder;
    Log& log;
    std::set<std::string> told;
};

} // namespace platform::qt
