#pragma once

#include "testing/eye/Picture.h"

#include <cstddef>
#include <span>

namespace support {

/// The memory that Xvfb paints into, shared by its option -fbdir. The cursor is painted there like
/// everything else, and nothing else tells whether a hidden one is drawn: pictures that are asked
/// from the server come without the cursor, and its image is told alike in both cases.
class Framebuffer {
  public:
    /// `folder` as given to -fbdir. Throws std::runtime_error.
    explicit Framebuffer(const std::filesystem::path& folder);
    ~Framebuffer();
    Framebuffer(const Framebuffer&) = delete;
    Framebuffer& operator=(const Framebuffer&) = delete;

    /// What is painted now. A server that works at the moment may be half done.
    Picture picture(const Area& area) const;

  private:
    std::size_t headerField(std::size_t index) const;

    std::span<const unsigned char> bytes;
    std::size_t firstPixel = 0, bytesPerLine = 0;
    int width = 0, height = 0;
};

} // namespace support
