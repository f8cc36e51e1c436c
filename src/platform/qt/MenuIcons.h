#pragma once

#include "platform/qt/TemplateImages.h"

#include <QIcon>
#include <map>
#include <string>

namespace platform::qt {

/// The template pictures beside the menu's texts: the shape is the picture's, the colour the
/// text's. Main thread.
class MenuIcons {
  public:
    /// The images must outlive the object.
    explicit MenuIcons(const TemplateImages& shapes) : images(shapes) {}

    /// In the colours of the palette as it is now; null when there is no such picture.
    QIcon icon(const std::string& name);

  private:
    QIcon made(const std::string& name) const;

    const TemplateImages& images;
    std::map<std::string, QIcon> known;
    qint64 paletteOfKnown = 0;
};

} // namespace platform::qt
