#pragma once

#include "platform/Log.h"
#include "platform/Picture.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QSvgRenderer;

namespace platform::qt {

/// The pictures of the program: the SVG files in some folders, and in the folders within those, by
/// their names without the ending; of two with one name the earlier folder's. The folders are
/// listed once, and a file is read once, when it is first asked for. One that is missing or no SVG
/// is logged then. Nothing but icons needs an application object. Main thread.
class Pictures final : public PictureSource {
  public:
    Pictures(const std::vector<std::string>& folders, Log& log);
    ~Pictures() override;
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

    /// In its own colours, `size` device pixels square, premultiplied, the drawing in the middle in
    /// its proportions. Null where there is no such picture. One that has a second drawing for 22
    /// pixels, named with "-22" behind it, is taken from that where its edges then lie on whole
    /// pixels and the first one's would not.
    QImage drawn(std::string_view name, int size) const;

    /// As a template: its opacity in one colour.
    QImage tinted(std::string_view name, int size, const QColor& colour) const;

    /// As a template on a ground of unknown colour: white, with a dark edge.
    QImage outlined(std::string_view name, int size) const;

    /// Stretched over an area; nothing where there is no such picture.
    void paint(QPainter& painter, std::string_view name, const QRectF& area) const;

    /// Stretched to a size in pixels; null where there is no such picture, or the size is empty. It
    /// must go before this object does.
    std::unique_ptr<Picture> picture(const std::string& name, int width, int height) const override;

    /// In points; empty where there is no such picture.
    QSize naturalSize(std::string_view name) const;

    /// For a window's title bar; null where there is no such picture.
    QIcon windowIcon(std::string_view name) const;

    /// For beside a menu's text, a template in the colours of the menus' palette as it is now; null
    /// where there is no such picture.
    QIcon menuIcon(const std::string& name, bool isTemplate) const;

    /// The paths of all pictures by name.
    const std::map<std::string, std::string, std::less<>>& files() const { return paths; }

  private:
    QSvgRenderer* renderer(std::string_view name) const;
    bool drawnFor22(QPainter& painter, std::string_view name, int size) const;
    void render(QPainter& painter, std::string_view name, const QRectF& area,
                Qt::AspectRatioMode mode) const;

    std::map<std::string, std::string, std::less<>> paths;
    Log& log;
    mutable std::map<std::string, std::unique_ptr<QSvgRenderer>, std::less<>> renderers;
    mutable std::map<std::pair<std::string, bool>, QIcon> menuIcons;
    mutable qint64 paletteOfMenuIcons = 0;
};

} // namespace platform::qt
