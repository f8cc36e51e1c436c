#include "platform/qt/pictures/TemplateImages.h"

#include <QPainter>
#include <QSvgRenderer>
#include <filesystem>

namespace platform::qt {

TemplateImages::TemplateImages(std::vector<std::string> where) : folders(std::move(where)) {}

TemplateImages::~TemplateImages() = default;

QImage TemplateImages::drawn(std::string_view name, int size) const {
    QSvgRenderer* svg = renderer(name);
    if (!svg || size <= 0) return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    svg->render(&painter, QRectF(0, 0, size, size));
    return image;
}

QImage TemplateImages::tinted(std::string_view name, int size, const QColor& colour) const {
    QImage image = drawn(name, size);
    if (image.isNull()) return image;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

std::map<std::string, std::string> TemplateImages::files() const {
    std::map<std::string, std::string> found;
    for (const std::string& folder : folders) {
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(folder, none))
            if (entry.path().extension() == ".svg")
                found.emplace(entry.path().stem().string(), entry.path().string());
    }
    return found;
}

QSvgRenderer* TemplateImages::renderer(std::string_view name) const {
    const auto known = renderers.find(name);
    if (known != renderers.end()) return known->second.get();
    std::unique_ptr<QSvgRenderer> made;
    for (const std::string& folder : folders) {
        const std::filesystem::path path = folder + "/" + std::string(name) + ".svg";
        std::error_code none;
        if (!std::filesystem::is_regular_file(path, none)) continue;
        made = std::make_unique<QSvgRenderer>(QString::fromStdString(path.string()));
        made->setAspectRatioMode(Qt::KeepAspectRatio);
        if (!made->isValid()) made.reset();
        break;
    }
    return renderers.emplace(name, std::move(made)).first->second.get();
}

} // namespace platform::qt
