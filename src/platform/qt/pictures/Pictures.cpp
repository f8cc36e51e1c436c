#include "platform/qt/pictures/Pictures.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>

namespace platform::qt {

namespace {

class SvgPicture final : public Picture {
  public:
    SvgPicture(const QString& path, int widthWanted, int heightWanted)
        : renderer(path), width(widthWanted), height(heightWanted) {
        renderer.setAspectRatioMode(Qt::IgnoreAspectRatio);
    }

    bool isValid() const { return renderer.isValid() && width > 0 && height > 0; }

    void draw(int firstRow, std::span<std::uint32_t> pixels) override {
        std::fill(pixels.begin(), pixels.end(), 0u);
        const int rows = static_cast<int>(pixels.size()) / width;
        QImage strip(reinterpret_cast<uchar*>(pixels.data()), width, rows, qsizetype{4} * width,
                     QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&strip);
        renderer.render(&painter, QRectF(0, -firstRow, width, height));
    }

  private:
    QSvgRenderer renderer;
    int width, height;
};

} // namespace

Pictures::Pictures(std::string imageFolder, Log& writer)
    : folder(std::move(imageFolder)), log(writer) {}

std::unique_ptr<Picture> Pictures::picture(const std::string& name, int width, int height) {
    const std::string path = folder + "/" + name + ".svg";
    // The renderer would write about a missing file itself.
    if (const QString file = QString::fromStdString(path); QFileInfo::exists(file)) {
        auto made = std::make_unique<SvgPicture>(file, width, height);
        if (made->isValid()) return made;
    }
    if (told.insert(name).second) log.write("cannot read the image " + path);
    return nullptr;
}

} // namespace platform::qt
