#pragma once

#include "platform/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace platform {

/// In pixels.
struct ImageSize {
    int width = 0;
    int height = 0;
    bool operator==(const ImageSize&) const = default;
};

/// An image as a value: whole rows from the top left, premultiplied 0xAARRGGBB.
struct Image {
    ImageSize size{};
    std::vector<std::uint32_t> pixels{};

    /// A transparent image; one without pixels when a side is not positive.
    static Image ofSize(ImageSize size) {
        if (size.width <= 0 || size.height <= 0) return {};
        return {size, std::vector<std::uint32_t>(static_cast<std::size_t>(size.width) *
                                                 static_cast<std::size_t>(size.height))};
    }

    /// Whether there is anything to draw.
    bool isValid() const { return !pixels.empty(); }

    bool operator==(const Image&) const = default;
};

/// Where and how an image is drawn into a transparent one.
struct Drawing {
    ImageSize canvas{}; ///< of the new image
    Rect frame{};       ///< what the source is stretched over, from the top left of the canvas
    double radiusX = 0; ///< of the frame's rounded corners, beyond which nothing is drawn: held
    double radiusY = 0; ///< at half the frame's sides; 0 for square ones
};

/// Operations on images that a library knows how to do well. Main thread.
class Images {
  public:
    virtual ~Images() = default;

    /// The image file, whatever its ending says. An image that is not valid when there is no such
    /// file or it cannot be read.
    virtual Image load(const std::string& path) = 0;

    /// A new image with the source drawn smoothly, at full opacity. Without a valid source or
    /// canvas it is not valid.
    virtual Image drawn(const Image& source, const Drawing& drawing) = 0;
};

} // namespace platform
