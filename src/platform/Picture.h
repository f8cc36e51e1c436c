#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace platform {

/// An image of the bundle, stretched to a size. It is drawn a strip at a time, so that nobody has
/// to hold all of it: over a 4K monitor that is 33 MB. Main thread.
class Picture {
  public:
    virtual ~Picture() = default;

    /// Draws whole rows from `firstRow` on, as many as fit into `pixels`: from the top left,
    /// premultiplied 0xAARRGGBB. What `pixels` held is overwritten.
    virtual void draw(int firstRow, std::span<std::uint32_t> pixels) = 0;
};

/// The images of the bundle. Main thread.
class PictureSource {
  public:
    virtual ~PictureSource() = default;

    /// The image at a width and height in pixels; null when there is none that can be read, which
    /// is logged.
    virtual std::unique_ptr<Picture> picture(const std::string& name, int width,
                                             int height) const = 0;
};

} // namespace platform
