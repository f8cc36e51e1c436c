#include "images/Drawn.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>

namespace imagetests {

Pixels drawn(const std::string& name, int width, int height) {
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    const auto picture = pictures.picture(name, width, height);
    Pixels pixels;
    if (picture) {
        pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        picture->draw(0, pixels);
    }
    EXPECT_THAT(log.lines, testing::IsEmpty());
    return pixels;
}

unsigned alpha(std::uint32_t pixel) {
    return pixel >> 24;
}

int difference(std::uint32_t one, std::uint32_t other) {
    int most = 0;
    for (int shift = 0; shift < 32; shift += 8)
        most = std::max(most, std::abs(static_cast<int>(one >> shift & 0xff) -
                                       static_cast<int>(other >> shift & 0xff)));
    return most;
}

double cover(const Pixels& pixels) {
    const auto covered =
        std::count_if(pixels.begin(), pixels.end(), [](auto pixel) { return alpha(pixel) > 127; });
    return static_cast<double>(covered) / static_cast<double>(pixels.size());
}

} // namespace imagetests
