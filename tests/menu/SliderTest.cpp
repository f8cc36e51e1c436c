#include "Stage.h"

#include <QApplication>
#include <QLabel>
#include <QSlider>
#include <algorithm>
#include <map>

using namespace menutests;
namespace key = support::key;

namespace {

using Lines = std::vector<std::string>;

constexpr xcb_keysym_t home = 0xff50, end = 0xff57;

class MenuSlider : public MenuTest {
  protected:
    MenuSlider() { setUp({}); }

    void setUp(const SliderData& data) {
        menu.items.clear();
        addEntry(menu, "Above", "above");
        submenu = sliderMenu(data);
        addEntry(menu, "Sliding").submenu = submenu;
    }

    /// Opens the submenu and has the user act on the slider; what the target heard of it.
    Lines slide(const std::function<void(QRect slider)>& user) {
        whileOpen([&] {
            openSubmenuOf("Sliding");
            user(widget("QSlider"));
        });
        auto lines = target.lines();
        std::erase(lines, "open leftDown/0");
        return lines;
    }

    /// The centre of the handle at a share of the way.
    static QPoint spot(const QRect& slider, double share) {
        constexpr int halfHandle = 7;
        return {slider.x() + halfHandle + qRound(share * (slider.width() - 2 * halfHandle)),
                slider.bottom() - 9};
    }

    void press(QPoint at) {
        hand.moveTo(at.x(), at.y());
        hand.pressButton();
    }
    void releaseAt(QPoint at) {
        hand.moveTo(at.x(), at.y());
        hand.releaseButton();
    }

    /// A key that is handled after all that was done before.
    void settle() {
        hand.type(key::escape);
        EXPECT_TRUE(waitUntil([] { return openMenus() == 1; }));
    }

    std::shared_ptr<Menu> submenu;
};

} // namespace

TEST_F(MenuSlider, HasTheSizeThatTheModelGivesIt) {
    slide([](QRect slider) {
        EXPECT_EQ(slider.size(), QSize(200, 30));
        const auto sizes = ask<std::vector<QRect>>([] {
            for (QWidget* each : QApplication::allWidgets())
                if (each->isVisible() && each->inherits("QSlider")) {
                    QWidget* const panel = each->parentWidget();
                    return std::vector<QRect>{panel->rect(), each->geometry(),
                                              panel->findChild<QLabel*>()->geometry()};
                }
            return std::vector<QRect>{};
        });
        EXPECT_EQ(sizes, (std::vector<QRect>{{0, 0, 210, 50}, {5, 20, 200, 30}, {0, 0, 210, 20}}));
    });
}

TEST_F(MenuSlider, HasItsEndsNamedAboveThem) {
    auto& view = std::get<platform::SliderView>(submenu->items.front()->view);
    view.ends = {.least = "less", .most = "more"};
    slide([](QRect) {
        const auto sides = ask<std::map<QString, std::pair<int, int>>>([] {
            std::map<QString, std::pair<int, int>> found;
            for (QWidget* each : QApplication::allWidgets())
                if (auto* label = dynamic_cast<QLabel*>(each); label && label->isVisible())
                    found[label->text()] = {label->geometry().left(),
                                            label->geometry().right() +
                                                (label->alignment() & Qt::AlignRight ? 0 : 1000)};
            return found;
        });
        EXPECT_EQ(sides.at("less").first, 5) << "the slider's left end";
        EXPECT_EQ(sides.at("more").second, 204) << "its right end, to which it is aligned";
    });
}

TEST_F(MenuSlider, HasAsManyTickMarksAsTheModel) {
    struct Row {
        double minimum, maximum;
        int ticks;
    };
    for (const Row row : {Row{0, 20, 21}, {0, 30, 31}, {1, 100, 11}}) {
        setUp({row.minimum, row.maximum, row.minimum, row.ticks});
        slide([&](QRect) {
            const auto shown = ask<std::vector<int>>([] {
                for (QWidget* each : QApplication::allWidgets())
                    if (const auto* slider = dynamic_cast<QSlider*>(each);
                        slider != nullptr && slider->isVisible())
                        return std::vector<int>{slider->maximum() % slider->tickInterval(),
                                                slider->maximum() / slider->tickInterval() + 1,
                                                slider->tickPosition() == QSlider::TicksAbove};
                return std::vector<int>{};
            });
            EXPECT_EQ(shown, (std::vector<int>{0, row.ticks, 1}));
        });
    }
}

TEST_F(MenuSlider, SendsEachStepOfADragAndItsEnd) {
    EXPECT_EQ(slide([&](QRect slider) {
                  press(spot(slider, 0.5));
                  hand.moveTo(spot(slider, 0.55).x(), slider.center().y());
                  EXPECT_TRUE(target.waitFor("moved 11 leftDragged/0"));
                  hand.moveTo(spot(slider, 0.70).x(), slider.center().y());
                  EXPECT_TRUE(target.waitFor("moved 14 leftDragged/0"));
                  releaseAt(spot(slider, 0.70));
                  EXPECT_TRUE(target.waitFor("moved 14 leftUp/0"));
              }),
              (Lines{"moved 11 leftDragged/0", "moved 14 leftDragged/0", "moved 14 leftUp/0"}));
    EXPECT_EQ(sliderIn(*submenu).value, 14);
    EXPECT_EQ(application.currentEvent().type, platform::EventType::mouseMoved);
}

TEST_F(MenuSlider, GoesWhereItsGrooveIsClicked) {
    EXPECT_EQ(slide([&](QRect slider) {
                  press(spot(slider, 0.1));
                  hand.releaseButton();
                  EXPECT_TRUE(target.waitFor("moved 2 leftUp/0"));
              }),
              (Lines{"moved 2 leftDragged/0", "moved 2 leftUp/0"}));
}

TEST_F(MenuSlider, StopsAtItsEnds) {
    setUp({.minimum = 1, .maximum = 100, .value = 50, .ticks = 11});
    slide([&](QRect slider) {
        press(spot(slider, 0.5));
        reach({leftMonitor.x + 1, slider.center().y()});
        reach({leftMonitor.x, slider.center().y()});
        EXPECT_TRUE(target.waitFor("moved 1 leftDragged/0"));
        releaseAt({leftMonitor.width - 1, slider.center().y()});
        EXPECT_TRUE(target.waitFor("moved 100 leftUp/0"));
    });
}

TEST_F(MenuSlider, ShowsAValueOutOfRangeAtTheNearerEnd) {
    for (const double silly : {-7.0, 4000.0}) {
        setUp({.value = silly});
        const auto lines = slide([&](QRect slider) {
            hover(slider);
            hand.type(silly < 0 ? key::left : key::right);
            settle();
        });
        EXPECT_EQ(lines.back(), silly < 0 ? "moved 0 leftUp/0" : "moved 20 leftUp/0");
    }
}

TEST_F(MenuSlider, IsNotMovedByBeingShown) {
    EXPECT_EQ(slide([&](QRect slider) {
                  hover(slider);
                  settle();
              }),
              Lines{});
}

TEST_F(MenuSlider, ObeysTheKeysThatAreStoredLikeARelease) {
    EXPECT_EQ(slide([&](QRect slider) {
                  hover(slider);
                  for (const auto pressed : {key::right, key::right, key::left, home, end})
                      hand.type(pressed);
                  settle();
              }),
              (Lines{"moved 11 leftUp/0", "moved 12 leftUp/0", "moved 11 leftUp/0",
                     "moved 0 leftUp/0", "moved 20 leftUp/0"}));
}

TEST_F(MenuSlider, ObeysTheKeysWhenItWasReachedByThem) {
    whileOpen([&] {
        hand.type(key::down);
        hand.type(key::down);
        hand.type(key::right);
        EXPECT_TRUE(waitUntil([] { return openMenus() == 2; }));
        hand.type(key::right);
        EXPECT_TRUE(target.waitFor("moved 11 leftUp/0"));
    });
}

TEST_F(MenuSlider, ObeysTheWheel) {
    EXPECT_EQ(slide([&](QRect slider) {
                  hover(slider);
                  hand.click(4);
                  hand.click(4);
                  hand.click(5);
                  settle();
              }),
              (Lines{"moved 11 leftUp/0", "moved 12 leftUp/0", "moved 11 leftUp/0"}));
}

TEST_F(MenuSlider, LeavesTheKeyboardToTheMenuWhenItIsReleased) {
    slide([&](QRect slider) {
        press(spot(slider, 0.2));
        hand.releaseButton();
        EXPECT_TRUE(target.waitFor("moved 4 leftUp/0"));
        hand.type(key::escape);
        EXPECT_TRUE(waitUntil([] { return openMenus() == 1; }));
        hand.type(key::up); // from the slider's entry to the first
        hand.type(key::enter);
        EXPECT_TRUE(target.waitFor("chosen above leftDown/0"));
    });
}

TEST_F(MenuSlider, ShowsTheLabelThatTheTargetSetsAtOnce) {
    target.onMoved = [this](platform::Slider& slider) {
        auto& label = *std::get<platform::SliderView>(submenu->items.front()->view).label;
        label.text = "now " + std::to_string(static_cast<int>(slider.value));
        item.labelChanged(label);
        item.labelChanged({"another", "wrong"});
    };
    slide([&](QRect slider) {
        press(spot(slider, 0.1));
        EXPECT_TRUE(target.waitFor("moved 2 leftDragged/0"));
        EXPECT_EQ(ask<std::string>([] {
                      for (QWidget* each : QApplication::allWidgets())
                          if (const auto* label = dynamic_cast<QLabel*>(each);
                              label != nullptr && label->isVisible())
                              return label->text().toStdString();
                      return std::string();
                  }),
                  "now 2");
        hand.releaseButton();
    });
}

TEST_F(MenuSlider, MayHaveTheMenuRebuiltInTheMiddleOfADrag) {
    target.onMoved = [this](platform::Slider& slider) {
        const double value = slider.value;
        setUp({.value = value});
    };
    slide([&](QRect slider) {
        press(spot(slider, 0.1));
        EXPECT_TRUE(target.waitFor("moved 2 leftDragged/0"));
        releaseAt(spot(slider, 0.9));
        EXPECT_TRUE(target.waitFor("moved 18 leftUp/0"));
    });
    EXPECT_EQ(sliderIn(*submenu).value, 18);
}
