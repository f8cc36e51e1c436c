#include "util/MacUtils.h"

#include <algorithm>

// Pictures, and views as pictures.

namespace palisor {

using platform::Image;
using platform::ImageSize;

std::optional<Image>
MacUtils::imageByScalingProportionallyToSize_image(const platform::Platform& services,
                                                   ImageSize size, Image image) {
    if (!image.isValid()) return std::nullopt;
    if (image.size == size) return image;
    const double scale = std::min(static_cast<double>(size.width) / image.size.width,
                                  static_cast<double>(size.height) / image.size.height);
    const double width = image.size.width * scale;
    const double height = image.size.height * scale;
    return services.images.drawn(
        image, {.canvas = size,
                .frame = {(size.width - width) / 2, (size.height - height) / 2, width, height}});
}

Image MacUtils::roundCorners_isCircle(const platform::Platform& services, const Image& image,
                                      bool isCircle) {
    const double share = isCircle ? 0.5 : 0.25;
    const double width = image.size.width;
    const double height = image.size.height;
    return services.images.drawn(image, {.canvas = image.size,
                                         .frame = {0, 0, width, height},
                                         .radiusX = width * share,
                                         .radiusY = height * share});
}

Image MacUtils::snapshotForView(platform::View& view) {
    return view.display();
}

Image MacUtils::imageRepresentation(platform::View& view) {
    const bool hidden = view.isHidden();
    const bool layer = view.wantsLayer();
    view.setHidden(false);
    view.setWantsLayer(true);
    Image image = view.layerContents();
    view.setWantsLayer(layer);
    view.setHidden(hidden);
    return image;
}

std::optional<Image> MacUtils::fromBase64ToImage(const platform::Platform& services,
                                                 std::string_view base64) {
    const auto file = fromBase64ToImageFile(services, base64);
    if (!file) return std::nullopt;
    Image image = services.images.load(*file);
    if (!image.isValid()) return std::nullopt;
    return image;
}

} // namespace palisor
