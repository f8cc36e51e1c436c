#include "platform/memory/Images.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace platform::memory {

namespace {

constexpr int samplesASide = 4; // of each pixel
constexpr int largestSide = 0x4000;

/// Whether a point of the frame lies inside its rounded corners; x and y from the frame's corner.
bool isInside(double x, double y, const Drawing& drawing) {
    const Rect& frame = drawing.frame;
    if (x < 0 || y < 0 || x >= frame.width || y >= frame.height) return false;
    const double radiusX = std::min(drawing.radiusX, frame.width / 2);
    const double radiusY = std::min(drawing.radiusY, frame.height / 2);
    if (radiusX <= 0 || radiusY <= 0) return true;
    const double beyondX = std::max(radiusX - std::min(x, frame.width - x), 0.0) / radiusX;
    const double beyondY = std::max(radiusY - std::min(y, frame.height - y), 0.0) / radiusY;
    return beyondX * beyondX + beyondY * beyondY <= 1;
}

std::uint32_t sampleAt(const Image& source, const Rect& frame, double x, double y) {
    const auto index = [](double at, double length, int count) {
        return std::min(static_cast<int>(at / length * count), count - 1);
    };
    const auto column = index(x, frame.width, source.size.width);
    const auto row = index(y, frame.height, source.size.height);
    return source
        .pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(source.size.width) +
                static_cast<std::size_t>(column)];
}

std::uint32_t averagePixel(const Image& source, const Drawing& drawing, int column, int row) {
    constexpr int samples = samplesASide * samplesASide;
    std::array<unsigned, 4> sums{};
    for (int sample = 0; sample < samples; ++sample) {
        const int right = sample % samplesASide;
        const int down = sample / samplesASide;
        const double x = column + (right + 0.5) / samplesASide - drawing.frame.x;
        const double y = row + (down + 0.5) / samplesASide - drawing.frame.y;
        if (!isInside(x, y, drawing)) continue;
        const std::uint32_t pixel = sampleAt(source, drawing.frame, x, y);
        for (unsigned channel = 0; channel < sums.size(); ++channel)
            sums[channel] += pixel >> (8 * channel) & 0xff;
    }
    std::uint32_t average = 0;
    for (unsigned channel = 0; channel < sums.size(); ++channel)
        average |= (sums[channel] + samples / 2) / samples << (8 * channel);
    return average;
}

} // namespace

Image Images::load(const std::string& path) {
    std::istringstream file(reader(path).value_or(std::string{}));
    std::string format;
    int width = 0, height = 0, levels = 0;
    file >> format >> width >> height >> levels;
    file.get();
    if (!file || format != "P6" || levels != 255 || width > largestSide || height > largestSide)
        return {};
    Image image = Image::ofSize({width, height});
    for (std::uint32_t& pixel : image.pixels) {
        std::array<char, 3> bytes{};
        if (!file.read(bytes.data(), bytes.size())) return {};
        pixel = 0xff;
        for (const char byte : bytes)
            pixel = pixel << 8 | static_cast<unsigned char>(byte);
    }
    return image;
}

Image Images::drawn(const Image& source, const Drawing& drawing) {
    if (!source.isValid()) return {};
    Image result = Image::ofSize(drawing.canvas);
    std::size_t index = 0;
    for (int row = 0; row < result.size.height; ++row)
        for (int column = 0; column < result.size.width; ++column)
            result.pixels[index++] = averagePixel(source, drawing, column, row);
    return result;
}

} // namespace platform::memory
