#pragma once

#include "platform/Geometry.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace palisor {

/// The bottom-left frames of a screen layout in X11 notation, such as
/// "1920x1080+0+0,1280x1024+1920+56": width, height, and the top-left corner with y growing
/// downwards ("+-1280" for a negative one). The first screen defines the origin. An empty text has
/// no screens.
inline std::vector<platform::Rect> screensFromLayout(std::string_view layout) {
    std::vector<platform::Rect> topLeft;
    while (!layout.empty()) {
        const std::string screen(layout.substr(0, layout.find(',')));
        layout.remove_prefix(std::min(layout.size(), screen.size() + 1));
        platform::Rect rect;
        int length = -1;
        const int read = std::sscanf(screen.c_str(), "%lfx%lf+%lf+%lf%n", &rect.width, &rect.height,
                                     &rect.x, &rect.y, &length);
        if (read != 4 || length != static_cast<int>(screen.size()))
            throw std::invalid_argument("not a screen: " + screen);
        topLeft.push_back(rect);
    }
    std::vector<platform::Rect> bottomLeft;
    for (const platform::Rect& rect : topLeft) {
        const platform::Rect& first = topLeft.front();
        bottomLeft.push_back({rect.x - first.x, first.y + first.height - rect.y - rect.height,
                              rect.width, rect.height});
    }
    return bottomLeft;
}

} // namespace palisor
