#include "testing/eye/Framebuffer.h"

#include "testing/Child.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>

namespace support {

namespace {

// The header of an XWD file: fields of four bytes, the highest first.
enum Field : std::size_t {
    headerSize = 0,
    pixmapWidth = 4,
    pixmapHeight = 5,
    bitsPerPixel = 11,
    lineBytes = 12,
    colourCount = 19
};
constexpr std::size_t colourSize = 12;

} // namespace

Framebuffer::Framebuffer(const std::filesystem::path& folder) {
    const Descriptor file(open((folder / "Xvfb_screen0").c_str(), O_RDONLY | O_CLOEXEC));
    struct stat facts {};
    if (file.get() < 0 || fstat(file.get(), &facts) != 0)
        throw std::runtime_error("no framebuffer in " + folder.string());
    const auto size = static_cast<std::size_t>(facts.st_size);
    void* memory = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) throw std::runtime_error("the framebuffer cannot be mapped");
    bytes = {static_cast<const unsigned char*>(memory), size};
    if (headerField(bitsPerPixel) != 32) throw std::runtime_error("not 32 bits a pixel");
    firstPixel = headerField(headerSize) + headerField(colourCount) * colourSize;
    bytesPerLine = headerField(lineBytes);
    width = static_cast<int>(headerField(pixmapWidth));
    height = static_cast<int>(headerField(pixmapHeight));
}

Framebuffer::~Framebuffer() {
    munmap(const_cast<unsigned char*>(bytes.data()), bytes.size());
}

std::size_t Framebuffer::headerField(std::size_t index) const {
    std::size_t value = 0;
    for (const unsigned char byte : bytes.subspan(index * 4, 4))
        value = value << 8 | byte;
    return value;
}

Picture Framebuffer::picture(const Area& wanted) const {
    Picture seen;
    const int right = std::min(wanted.x + wanted.width, width);
    const int bottom = std::min(wanted.y + wanted.height, height);
    const int left = std::max(wanted.x, 0);
    const int top = std::max(wanted.y, 0);
    seen.area = {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            std::uint32_t pixel = 0; // in the machine's order, as the server writes it
            std::memcpy(&pixel,
                        bytes.data() + firstPixel + static_cast<std::size_t>(y) * bytesPerLine +
                            static_cast<std::size_t>(x) * sizeof pixel,
                        sizeof pixel);
            seen.pixels.push_back({static_cast<std::uint8_t>(pixel >> 16),
                                   static_cast<std::uint8_t>(pixel >> 8),
                                   static_cast<std::uint8_t>(pixel)});
        }
    }
    return seen;
}

} // namespace support
