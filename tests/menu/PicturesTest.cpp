#include "platform/qt/pictures/Pictures.h"
#include "Stage.h"
#include "platform/qt/menu/EntryText.h"
#include "platform/qt/pictures/ColourScheme.h"
#include "strings/Strings.h"
#include "testing/KeptLog.h"
#include "unit/Program.h"

#include <QApplication>
#include <algorithm>
#include <cstdlib>

// The pictures beside the entries of the whole menu, as the toolkit shows them.

using namespace menutests;
using support::Colour;

namespace {

constexpr const char* products[] = {"Skelder - Browser", "Vellumor",       "Orbisant",
                                    "Thrumbleton",       "KORVADIN (iOS)", "Ostrelle"};

struct Icons {
    testing_support::KeptLog log;
    platform::qt::Pictures pictures{{IMAGES}, log};
};

class MenuPictures : Icons, public MenuTest {
  protected:
    MenuPictures() : MenuTest(&pictures), usual(QApplication::palette()) {
        program.platform.bundle.setStrings(strings::lookUp);
    }
    ~MenuPictures() override { QApplication::setPalette(usual); }

    void build(const std::string& language) {
        program.platform.setLanguages({language});
        program.launched();
        program.app.otherApps = true;
        program.app.updateMenuItems();
        item.create(*program.app.mainMenu, target);
    }

    /// The pixels beside the text of an entry.
    std::vector<Colour> besideText(const std::string& text) {
        const QRect at = entry(text);
        return eye.picture({at.x(), at.y(), 32, at.height()}).pixels;
    }

    static long colourful(const std::vector<Colour>& pixels) {
        return std::count_if(pixels.begin(), pixels.end(), [](const Colour& pixel) {
            const auto [least, most] = std::minmax({pixel.red, pixel.green, pixel.blue});
            return most - least > 40;
        });
    }

    void keepPicture(const std::string& name) {
        if (const char* folder = std::getenv("PALISOR_PICTURES"))
            eye.screenshot(std::string(folder) + "/" + name + ".png");
    }

    palisor::Program program{palisor::variants::barrier};
    QPalette usual;
};

} // namespace

TEST_F(MenuPictures, OfTheProductsAreInTheirOwnColoursInLightAndInDark) {
    build("it");
    for (const bool dark : {false, true}) {
        if (dark) QApplication::setPalette(platform::qt::ColourScheme::darkPalette());
        whileOpen([&] {
            for (const char* text : products)
                EXPECT_TRUE(waitUntil([&] { return colourful(besideText(text)) > 100; }))
                    << text << (dark ? " in dark" : " in light");
            keepPicture(dark ? "menu-promotion-dark" : "menu-promotion-light");
        });
    }
}

TEST_F(MenuPictures, OfTemplatesHaveTheColourOfTheText) {
    build("en");
    for (const bool dark : {false, true}) {
        if (dark) QApplication::setPalette(platform::qt::ColourScheme::darkPalette());
        const int text = QApplication::palette("QMenu").color(QPalette::Text).lightness();
        whileOpen([&] {
            EXPECT_TRUE(waitUntil([&] {
                const auto pixels = besideText(ask<std::string>([&] {
                    const auto [label, shortcut] =
                        platform::qt::entryText(*program.app.mainMenu->items.front());
                    return (label + '\t' + shortcut).toStdString();
                }));
                return std::any_of(pixels.begin(), pixels.end(), [&](const Colour& pixel) {
                    return std::abs(pixel.green - text) < 16;
                });
            })) << (dark ? "in dark" : "in light");
            keepPicture(dark ? "menu-dark" : "menu-light");
        });
    }
}
