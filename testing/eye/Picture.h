#pragma once

#include "testing/desktop/Layout.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace support {

struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    bool operator==(const Colour&) const = default;
};

/// What was on the screen in an area, row after row.
struct Picture {
    Area area; ///< X root coordinates
    std::vector<Colour> pixels;

    /// At a point of the root window that lies in the area. Throws std::out_of_range.
    const Colour& at(int x, int y) const;
    /// The mean of the three channels over the whole picture, 0 to 255.
    double brightness() const;
    /// Throws std::runtime_error when the file cannot be written.
    void writePng(const std::filesystem::path& path) const;
    /// At the origin. Throws std::runtime_error when the file cannot be read.
    static Picture readPng(const std::filesystem::path& path);
};

} // namespace support
