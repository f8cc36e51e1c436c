#pragma once

#include <QColor>
#include <QImage>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class QSvgRenderer;

namespace platform::qt {

/// The pictures of the program: "<name>.svg" in the first of some folders that has it. A file is
/// read once, and drawn anew at each size. Main thread.
class TemplateImages {
  public:
    explicit TemplateImages(std::vector<std::string> folders);
    ~TemplateImages();
    TemplateImages(const TemplateImages&) = delete;
    TemplateImages& operator=(const TemplateImages&) = delete;

    /// In its own colours, `size` device pixels square, premultiplied, the drawing in the middle in
    /// its proportions. Null where there is no such picture.
    QImage drawn(std::string_view name, int size) const;

    /// As a template: its opacity in one colour.
    QImage tinted(std::string_view name, int size, const QColor& colour) const;

    /// The files of all pictures by name.
    std::map<std::string, std::string> files() const;

  private:
    QSvgRenderer* renderer(std::string_view name) const;

    std::vector<std::string> folders;
    mutable std::map<std::string, std::unique_ptr<QSvgRenderer>, std::less<>> renderers;
};

} // namespace platform::qt
