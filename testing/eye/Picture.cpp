#include "testing/eye/Picture.h"

#include <png.h>
#include <stdexcept>

namespace support {

const Colour& Picture::at(int x, int y) const {
    if (!area.contains(x, y)) throw std::out_of_range("a point outside the picture");
    return pixels.at(static_cast<std::size_t>(y - area.y) * static_cast<std::size_t>(area.width) +
                     static_cast<std::size_t>(x - area.x));
}

double Picture::brightness() const {
    double sum = 0;
    for (const Colour& pixel : pixels)
        sum += pixel.red + pixel.green + pixel.blue;
    return pixels.empty() ? 0 : sum / (3.0 * static_cast<double>(pixels.size()));
}

void Picture::writePng(const std::filesystem::path& path) const {
    static_assert(sizeof(Colour) == 3);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(area.width);
    image.height = static_cast<png_uint_32>(area.height);
    image.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&image, path.c_str(), 0, pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write " + path.string() + ": " + image.message);
}

Picture Picture::readPng(const std::filesystem::path& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error("cannot read " + path.string() + ": " + image.message);
    image.format = PNG_FORMAT_RGB;
    Picture picture{{0, 0, static_cast<int>(image.width), static_cast<int>(image.height)}, {}};
    picture.pixels.resize(std::size_t{image.width} * image.height);
    if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot read " + path.string() + ": " + image.message);
    return picture;
}

} // namespace support
