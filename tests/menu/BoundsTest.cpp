#include "Stage.h"
#include "platform/qt/pictures/ColourScheme.h"

#include <QApplication>
#include <QLabel>
#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace menutests;
namespace key = support::key;

namespace {

using Lines = std::vector<std::string>;

class MenuBounds : public MenuTest {
  protected:
    MenuBounds() { addEntry(menu, "Borders").submenu = boundsMenu(boxes); }

    Lines act(const std::function<void()>& user) {
        whileOpen([&] {
            openSubmenuOf("Borders");
            user();
            EXPECT_EQ(openMenus(), 2) << "the menu stays open";
        });
        auto lines = target.lines();
        lines.erase(lines.begin());
        return lines;
    }

    /// Boxes are numbered clockwise from the top left.
    static QRect box(int number) { return widget("QCheckBox", number); }

    std::array<CheckBox, 8> boxes;
};

} // namespace

TEST_F(MenuBounds, PutEachBoxAtItsCornerOrSide) {
    act([] {
        const QRect first = box(0), last = box(4);
        const QPoint middle = (first.center() + last.center()) / 2;
        EXPECT_LT(first.right(), middle.x());
        EXPECT_LT(first.bottom(), middle.y());
        const int left = first.x(), right = last.x(), top = first.y(), bottom = last.y();
        const QPoint places[] = {{left, top},         {middle.x(), top}, {right, top},
                                 {right, middle.y()}, {right, bottom},   {middle.x(), bottom},
                                 {left, bottom},      {left, middle.y()}};
        for (int number = 0; number < 8; ++number) {
            const QPoint off = places[number] - box(number).topLeft();
            EXPECT_LT(std::abs(off.x()), 12) << number;
            EXPECT_LT(std::abs(off.y()), 12) << number;
        }
    });
}

TEST_F(MenuBounds, SetTheBoxThatIsClicked) {
    EXPECT_EQ(act([&] {
                  const char* const heard[] = {"box 1=1 leftUp/0", "box 12=1 leftUp/0",
                                               "box 2=1 leftUp/0", "box 13=1 leftUp/0",
                                               "box 3=1 leftUp/0", "box 14=1 leftUp/0",
                                               "box 4=1 leftUp/0", "box 11=1 leftUp/0"};
                  for (int number = 0; number < 8; ++number) {
                      click(box(number));
                      EXPECT_TRUE(target.waitFor(heard[number])) << heard[number];
                  }
                  click(box(0));
                  EXPECT_TRUE(target.waitFor("box 1=0 leftUp/0"));
              }).size(),
              9U);
    EXPECT_EQ(boxes[0].state, 0);
    EXPECT_EQ(boxes[7].state, 1);
}

TEST_F(MenuBounds, LeaveADisabledBoxAlone) {
    boxes[0].enabled = false;
    boxes[0].alpha = 0.5;
    EXPECT_EQ(act([&] {
                  click(box(0));
                  click(box(2));
                  EXPECT_TRUE(target.waitFor("box 2=1 leftUp/0"));
              }),
              Lines{"box 2=1 leftUp/0"});
    EXPECT_EQ(boxes[0].state, 0);
}

TEST_F(MenuBounds, ShowADisabledBoxFainter) {
    const auto contrast = [&](const QRect& where) {
        const auto picture = eye.picture({where.x(), where.y(), where.width(), where.height()});
        int darkest = 255;
        for (const auto& pixel : picture.pixels)
            darkest = std::min<int>(darkest, pixel.green);
        return 255 - darkest;
    };
    boxes[0].state = boxes[2].state = 1;
    boxes[0].enabled = false;
    boxes[0].alpha = 0.5;
    act([&] {
        EXPECT_TRUE(waitUntil([&] { return contrast(box(4)) > 0; }));
        EXPECT_LT(contrast(box(0)), contrast(box(4)));
    });
}

// Three to one is what a control needs for eyes that see little.
TEST_F(MenuBounds, HaveOutlinesThatStandOut) {
    constexpr double enough = 3;
    const QPalette usual = QApplication::palette();
    const auto luminance = [](const support::Colour& colour) {
        const auto linear = [](int channel) { return std::pow(channel / 255.0, 2.2); };
        return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
               0.0722 * linear(colour.blue);
    };
    const auto contrast = [&](const QRect& where) {
        const auto picture = eye.picture({where.x(), where.y(), where.width(), where.height()});
        const auto [darkest, lightest] = std::ranges::minmax(picture.pixels, {}, luminance);
        return (luminance(lightest) + 0.05) / (luminance(darkest) + 0.05);
    };
    for (const bool dark : {false, true}) {
        SCOPED_TRACE(dark ? "in dark" : "in light");
        platform::qt::ColourScheme scheme;
        scheme.windowSystemWishes(dark);
        boxes[2].state = 0;
        act([&] {
            EXPECT_TRUE(waitUntil([&] { return contrast(box(2)) >= enough; })) << contrast(box(2));
        });
    }
    QApplication::setPalette(usual);
}

// As a platform theme does while the program runs.
TEST_F(MenuBounds, FollowThePaletteOfTheDesktop) {
    const QPalette usual = QApplication::palette(),
                   dark = platform::qt::ColourScheme::darkPalette();
    {
        const platform::qt::ColourScheme scheme;
        for (const QPalette& given : {dark, usual}) {
            QApplication::setPalette(given);
            for (const char* shown : {"QMenu", "QCheckBox", "QSlider"})
                for (const auto role : {QPalette::Base, QPalette::Text, QPalette::Highlight})
                    EXPECT_EQ(QApplication::palette(shown).color(role), given.color(role)) << shown;
        }
    }
    QApplication::setPalette(usual);
}

TEST_F(MenuBounds, CutNothingInALargeFont) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(18);
    QApplication::setFont(large);
    act([&] {
        const auto fits = [] {
            for (QWidget* widget : QApplication::allWidgets()) {
                const auto* label = qobject_cast<QLabel*>(widget);
                if (label == nullptr || !label->isVisible() || !label->wordWrap()) continue;
                const QRect needed = label->fontMetrics().boundingRect(
                    label->contentsRect(), Qt::TextWordWrap, label->text());
                const int lines = needed.height() / label->fontMetrics().lineSpacing();
                return label->rect().contains(needed.translated(-needed.topLeft())) &&
                       label->parentWidget()->rect().contains(label->geometry()) && lines <= 3;
            }
            return false;
        };
        EXPECT_TRUE(ask<bool>(fits));
        if (const char* pictures = std::getenv("PALISOR_PICTURES"))
            eye.screenshot(std::string(pictures) + "/bounds-large.png");
    });
    QApplication::setFont(usual);
}

TEST_F(MenuBounds, CanBeSetByKeys) {
    whileOpen([&] {
        hand.type(key::down);
        hand.type(key::right);
        EXPECT_TRUE(waitUntil([] { return openMenus() == 2; }));
        hand.type(key::right);
        hand.type(key::space);
        EXPECT_TRUE(target.waitFor("box 12=1 leftUp/0"));
        hand.type(key::escape);
        EXPECT_TRUE(waitUntil([] { return openMenus() == 1; }));
    });
}
