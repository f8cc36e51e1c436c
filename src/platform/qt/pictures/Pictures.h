#pragma once

#include "platform/Log.h"
#include "platform/Picture.h"

#include <set>

namespace platform::qt {

/// The images of the bundle: the SVG files of one folder, by their names without the ending. No
/// application object is needed. Main thread.
class Pictures final : public PictureSource {
  public:
    Pictures(std::string folder, Log& log);

    /// Null when the file is missing or is no SVG, or the size is empty; logged once a name.
    std::unique_ptr<Picture> picture(const std::string& name, int width, int height) override;

  private:
    std::string folder;
    Log& log;
    std::set<std::string> told;
};

} // namespace platform::qt
