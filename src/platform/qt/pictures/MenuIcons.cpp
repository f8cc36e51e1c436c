#include "platform/qt/pictures/MenuIcons.h"

#include <QApplication>
#include <QPalette>

namespace platform::qt {

namespace {

constexpr int sizes[] = {16, 24, 32, 48}; // the toolkit enlarges none at up to three times

} // namespace

QIcon MenuIcons::icon(const std::string& name, bool isTemplate) {
    if (const qint64 palette = QApplication::palette("QMenu").cacheKey();
        palette != paletteOfKnown) {
        known.clear();
        paletteOfKnown = palette;
    }
    const auto [place, isNew] = known.try_emplace({name, isTemplate});
    if (isNew) place->second = isTemplate ? tinted(name) : inItsColours(name);
    return place->second;
}

QIcon MenuIcons::inItsColours(const std::string& name) const {
    QIcon result;
    for (const int size : sizes) {
        const QImage image = images.drawn(name, size);
        if (image.isNull()) return {};
        result.addPixmap(QPixmap::fromImage(image));
    }
    return result;
}

QIcon MenuIcons::tinted(const std::string& name) const {
    struct Look {
        QIcon::Mode mode;
        QPalette::ColorGroup group;
        QPalette::ColorRole role;
    };
    constexpr Look looks[] = {{QIcon::Normal, QPalette::Active, QPalette::Text},
                              {QIcon::Active, QPalette::Active, QPalette::HighlightedText},
                              {QIcon::Disabled, QPalette::Disabled, QPalette::Text}};
    const QPalette palette = QApplication::palette("QMenu");
    QIcon result;
    for (const Look& look : looks)
        for (const int size : sizes) {
            const QImage image = images.tinted(name, size, palette.color(look.group, look.role));
            if (image.isNull()) return {};
            result.addPixmap(QPixmap::fromImage(image), look.mode);
        }
    return result;
}

} // namespace platform::qt
