#include "platform/qt/pictures/Pictures.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <algorithm>
#include <filesystem>

namespace platform::qt {

namespace {

constexpr double edgeOpacity = 0.5;
constexpr int usualGrid = 16, otherGrid = 22;
constexpr int windowIconSizes[] = {16, 32, 64, 128};
constexpr int menuIconSizes[] = {16, 24, 32, 48}; // the toolkit enlarges none at up to three times

class Stretched final : public Picture {
  public:
    Stretched(const Pictures& owner, std::string called, QSize pixels)
        : pictures(owner), name(std::move(called)), size(pixels) {}

    void draw(int firstRow, std::span<std::uint32_t> pixels) override {
        std::ranges::fill(pixels, 0u);
        const int width = size.width();
        const int rows = static_cast<int>(pixels.size()) / width;
        QImage strip(reinterpret_cast<uchar*>(pixels.data()), width, rows, qsizetype{4} * width,
                     QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&strip);
        pictures.paint(painter, name, QRectF(QPointF(0, -firstRow), size));
    }

  private:
    const Pictures& pictures;
    std::string name;
    QSize size;
};

} // namespace

Pictures::Pictures(const std::vector<std::string>& folders, Log& writer) : log(writer) {
    for (const std::string& folder : folders) {
        std::error_code none;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none))
            if (entry.path().extension() == ".svg")
                paths.emplace(entry.path().stem().string(), entry.path().string());
    }
}

Pictures::~Pictures() = default;

QSvgRenderer* Pictures::renderer(std::string_view name) const {
    if (const auto known = renderers.find(name); known != renderers.end())
        return known->second.get();
    auto& made = renderers.emplace(name, nullptr).first->second;
    // The renderer would write about a missing file itself.
    if (const auto path = paths.find(name); path != paths.end())
        made = std::make_unique<QSvgRenderer>(QString::fromStdString(path->second));
    if (made && !made->isValid()) made.reset();
    if (!made && !name.empty()) log.write("cannot read the image " + std::string(name));
    return made.get();
}

void Pictures::render(QPainter& painter, std::string_view name, const QRectF& area,
                      Qt::AspectRatioMode mode) const {
    QSvgRenderer* const svg = renderer(name);
    if (svg == nullptr) return;
    svg->setAspectRatioMode(mode);
    svg->render(&painter, area);
}

// Icons are drawn on a grid of 16 pixels. Panels want 22 and 24, in which that has its edges
// between the pixels, and as icons for 22 usually are these have a border of one in 24.
bool Pictures::drawnFor22(QPainter& painter, std::string_view name, int size) const {
    const int scale = size / otherGrid;
    const int border = (size - scale * otherGrid) / 2;
    if (size % usualGrid == 0 || border > scale) return false;
    const std::string other = std::string(name) + "-22";
    if (!paths.contains(other)) return false;
    const int length = scale * otherGrid;
    render(painter, other, QRect(border, border, length, length), Qt::KeepAspectRatio);
    return true;
}

QImage Pictures::drawn(std::string_view name, int size) const {
    if (size <= 0 || renderer(name) == nullptr) return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    if (!drawnFor22(painter, name, size)) render(painter, name, image.rect(), Qt::KeepAspectRatio);
    return image;
}

QImage Pictures::tinted(std::string_view name, int size, const QColor& colour) const {
    QImage image = drawn(name, size);
    if (image.isNull()) return image;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

QImage Pictures::outlined(std::string_view name, int size) const {
    const QImage dark = tinted(name, size, Qt::black);
    QImage edges = dark;
    if (edges.isNull()) return edges;
    const int width = std::max(1, size / usualGrid);
    QPainter around(&edges);
    for (const int x : {-width, 0, width})
        for (const int y : {-width, 0, width})
            around.drawImage(x, y, dark);
    around.end();
    QImage image(edges.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(edgeOpacity);
    painter.drawImage(0, 0, edges);
    painter.setOpacity(1);
    painter.drawImage(0, 0, tinted(name, size, Qt::white));
    return image;
}

void Pictures::paint(QPainter& painter, std::string_view name, const QRectF& area) const {
    render(painter, name, area, Qt::IgnoreAspectRatio);
}

std::unique_ptr<Picture> Pictures::picture(const std::string& name, int width, int height) const {
    const QSize size(width, height);
    if (size.isEmpty() || renderer(name) == nullptr) return nullptr;
    return std::make_unique<Stretched>(*this, name, size);
}

QSize Pictures::naturalSize(std::string_view name) const {
    const QSvgRenderer* const svg = renderer(name);
    return svg == nullptr ? QSize(0, 0) : svg->defaultSize();
}

QIcon Pictures::windowIcon(std::string_view name) const {
    QIcon icon;
    for (const int size : windowIconSizes)
        icon.addPixmap(QPixmap::fromImage(drawn(name, size)));
    return icon;
}

QIcon Pictures::menuIcon(const std::string& name, bool isTemplate) const {
    const QPalette palette = QApplication::palette("QMenu");
    if (palette.cacheKey() != paletteOfMenuIcons) menuIcons.clear();
    paletteOfMenuIcons = palette.cacheKey();
    const auto [place, isNew] = menuIcons.try_emplace({name, isTemplate});
    QIcon& icon = place->second;
    if (!isNew) return icon;
    for (const int size : menuIconSizes) {
        const auto add = [&](QIcon::Mode mode, QPalette::ColorGroup group, auto role) {
            const QImage image = tinted(name, size, palette.color(group, role));
            icon.addPixmap(QPixmap::fromImage(image), mode);
        };
        if (!isTemplate) {
            icon.addPixmap(QPixmap::fromImage(drawn(name, size)));
            continue;
        }
        add(QIcon::Normal, QPalette::Active, QPalette::Text);
        add(QIcon::Active, QPalette::Active, QPalette::HighlightedText);
        add(QIcon::Disabled, QPalette::Disabled, QPalette::Text);
    }
    return icon;
}

} // namespace platform::qt
