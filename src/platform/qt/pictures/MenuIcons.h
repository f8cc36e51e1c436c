#pragma once

#include "platform/qt/pictures/TemplateImages.h"

#include <QIcon>
#include <map>
#include <string>
#include <utility>

namespace platform::qt {

/// The pictures beside the menu's texts. Of a template the shape is the picture's and the colour
/// the text's. Main thread.
class MenuIcons {
  public:
    /// The images must outlive the object.
    explicit MenuIcons(const TemplateImages& shapes) : images(shapes) {}

    /// A template in the colours of the palette as it is now; null when there is no such picture.
    QIcon icon(const std::string& name, bool isTemplate);

  private:
    QIcon tinted(const std::string& name) const;
    QIcon inItsColours(const std::string& name) const;

    const TemplateImages& images;
    std::map<std::pair<std::string, bool>, QIcon> known;
    qint64 paletteOfKnown = 0;
};

} // namespace platform::qt
