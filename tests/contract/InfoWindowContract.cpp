#include "platform/memory/MemoryPlatform.h"
#include "platform/qt/info/QtInfoWindows.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QWidget>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

// What every information window promises, and what a user's clicks lead to.

namespace {

using platform::InfoButton;
using platform::InfoCheckBox;
using platform::InfoText;
using Lines = std::vector<std::string>;

struct Hearer final : platform::InfoTarget {
    void pressed(const InfoButton& button) override { heard.push_back(button.action); }
    void clicked(platform::CheckBox& box) override {
        heard.push_back(std::to_string(box.tag) + "=" + std::to_string(box.state));
    }
    bool clickedOnLink(const InfoText& view, const std::string& link) override {
        heard.push_back(view.name + ":" + link);
        return dealsWithLinks;
    }
    Lines heard;
    bool dealsWithLinks = true;
};

struct InMemory {
    platform::memory::MemoryPlatform desktop;
    InMemory() { desktop.effects.keep(); }

    platform::InfoWindows& service() { return desktop.infoWindows; }
    bool press(const InfoButton& view) { return desktop.infoWindows.press(view.action); }
    bool click(const InfoCheckBox& view, int state) {
        return desktop.infoWindows.click(view.box.tag, state);
    }
    bool follow(const InfoText& view) {
        return desktop.infoWindows.followLink(view.name, view.text.link);
    }
    Lines opened() {
        Lines urls;
        for (const std::string& line : desktop.effects.lines({"openURL"}))
            urls.push_back(line.substr(16, line.size() - 18)); // of openURL {"url":"…"}
        return urls;
    }
};

std::string withSome(const testing_support::TempFolder& folder) {
    folder.write("some.svg",
                 R"(<svg xmlns="http://www.w3.org/2000/svg" width="160" height="112"></svg>)");
    folder.write("small.svg",
                 R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64"></svg>)");
    return folder.path();
}

struct OfTheToolkit {
    testing_support::TempFolder folder;
    testing_support::KeptLog log;
    Lines urls;
    platform::qt::Pictures pictures{{withSome(folder)}, log};
    platform::qt::QtInfoWindows windows{pictures, "",
                                        [this](const std::string& url) { urls.push_back(url); },
                                        [this](const std::string& link) { return link == dead; }};
    std::string dead; ///< the address that leads nowhere

    platform::InfoWindows& service() { return windows; }
    template <class Widget, class Fits>
    static Widget* find(const Fits& fits) {
        for (QWidget* widget : QApplication::allWidgets())
            if (auto* found = qobject_cast<Widget*>(widget); found && fits(*found)) return found;
        return nullptr;
    }
    static QAbstractButton* titled(const std::string& title) {
        return find<QAbstractButton>([&](const QAbstractButton& button) {
            return button.text() == QString::fromStdString(title);
        });
    }
    bool press(const InfoButton& view) {
        if (auto* button = titled(view.title)) return button->click(), true;
        return false;
    }
    bool click(const InfoCheckBox& view, int state) {
        auto* box = titled(view.title);
        if (box == nullptr || box->isChecked() == (state != 0)) return false;
        box->click();
        return true;
    }
    bool follow(const InfoText& view) {
        auto* label = find<QLabel>([&](const QLabel& each) {
            return each.text().contains(QString::fromStdString(view.text.text));
        });
        return label != nullptr &&
               QMetaObject::invokeMethod(label, "linkActivated",
                                         Q_ARG(QString, QString::fromStdString(view.text.link)));
    }
    Lines opened() { return urls; }
};

template <class Platform>
class InfoWindowContract : public testing::Test {
  protected:
    std::unique_ptr<platform::InfoWindow> shown() {
        auto window = platform.service().create(target);
        window->setViews({done, box, contact, web});
        window->setFrame({100, 50, 400, 300});
        window->makeKeyAndOrderFront();
        return window;
    }

    Hearer target;
    Platform platform;
    const InfoButton done{
        .frame = {150, 20, 100, 40}, .title = "Done", .action = "done", .closes = true};
    const InfoCheckBox box{.frame = {41, 80, 300, 18}, .title = "Box", .box = {.tag = 7}};
    const InfoText contact{.name = "contact",
                           .frame = {20, 150, 360, 20},
                           .text = {.text = "write", .link = "mail:a&b"},
                           .asksTarget = true};
    const InfoText web{.name = "web",
                       .frame = {20, 180, 360, 20},
                       .text = {.text = "look", .link = "https://a?b&c"}};
};

using Platforms = testing::Types<InMemory, OfTheToolkit>;
TYPED_TEST_SUITE(InfoWindowContract, Platforms);

TYPED_TEST(InfoWindowContract, IsVisibleFromTheCallThatShowsItToTheOneThatHidesIt) {
    const auto window = this->platform.service().create(this->target);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->frame(), platform::Rect{});
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible()) << "even before it has a size";
    window->setFrame({1, 2, 400, 300});
    EXPECT_EQ(window->frame(), (platform::Rect{1, 2, 400, 300}));
    window->orderOut();
    EXPECT_FALSE(window->isVisible());
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible());
}

TYPED_TEST(InfoWindowContract, TellsOfItsButtons) {
    const auto window = this->shown();
    ASSERT_TRUE(this->platform.press(this->done));
    EXPECT_EQ(this->target.heard, Lines{"done"});
    EXPECT_TRUE(window->isVisible()) << "closing is the hearer's";
}

TYPED_TEST(InfoWindowContract, KeepsTheStateOfItsBoxesWhileItIsHidden) {
    const auto window = this->shown();
    ASSERT_TRUE(this->platform.click(this->box, 1));
    window->orderOut();
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(this->platform.click(this->box, 0));
    EXPECT_EQ(this->target.heard, (Lines{"7=1", "7=0"}));
}

TYPED_TEST(InfoWindowContract, OpensTheLinksThatNobodyDealsWith) {
    const auto window = this->shown();
    ASSERT_TRUE(this->platform.follow(this->contact));
    EXPECT_EQ(this->platform.opened(), Lines{});
    ASSERT_TRUE(this->platform.follow(this->web));
    EXPECT_EQ(this->platform.opened(), Lines{"https://a?b&c"});
    this->target.dealsWithLinks = false;
    ASSERT_TRUE(this->platform.follow(this->contact));
    EXPECT_EQ(this->platform.opened(), (Lines{"https://a?b&c", "mail:a&b"}));
    EXPECT_EQ(this->target.heard, (Lines{"contact:mail:a&b", "contact:mail:a&b"}));
}

TYPED_TEST(InfoWindowContract, HoldsTheViewsGivenLast) {
    const auto window = this->shown();
    window->setViews({this->done});
    EXPECT_FALSE(this->platform.click(this->box, 1));
    EXPECT_TRUE(this->platform.press(this->done));
}

TYPED_TEST(InfoWindowContract, MeasuresTextsInLines) {
    const auto height = [this](const std::string& text, double width = 360, double size = 12) {
        return this->platform.service().textHeight(text, width, size);
    };
    const double line = height("a");
    EXPECT_GT(line, 8);
    EXPECT_EQ(height(""), line);
    EXPECT_NEAR(height("a\n\nb"), 3 * line, 2) << "whole lines, rounded up once";
    std::string longText = "some words";
    for (int times = 0; times < 5; ++times)
        longText += " " + longText;
    EXPECT_GT(height(longText), 4 * line);
    EXPECT_GT(height(longText, 180), height(longText));
    EXPECT_GT(height("a", 360, 24), 1.5 * line);
}

TEST(InfoWindowsOfTheToolkit, TellTheNaturalSizeOfAnImageAndLogOnceWhatIsMissing) {
    OfTheToolkit toolkit;
    EXPECT_EQ(toolkit.windows.imageSize("some").width, 160);
    EXPECT_EQ(toolkit.windows.imageSize("some").height, 112);
    for (int times = 0; times < 2; ++times)
        EXPECT_EQ(toolkit.windows.imageSize("none").width, 0);
    EXPECT_EQ(toolkit.log.lines.size(), 1U);
}

struct ShownByTheToolkit : testing::Test {
    /// As the application lays them out: from the bottom upwards, by frames.
    std::unique_ptr<platform::InfoWindow> show(const std::string& title = "Tell others") {
        auto window = toolkit.windows.create(target);
        const auto text = [](const std::string& words, const std::string& link) {
            return platform::AttributedText{.text = words, .link = link};
        };
        window->setViews(
            {InfoButton{.frame = {150, 20, 100, 40}, .title = "Done", .closes = true},
             InfoCheckBox{.frame = {41, 80, 300, 18}, .title = "Box"},
             InfoButton{.frame = {130, 122, 64, 64}, .image = "small"},
             InfoText{.frame = {20, 190, 360, 15}, .text = text("mail", "email:m@x.y")},
             InfoButton{.frame = {20, 140, 100, 40}, .title = title},
             InfoText{.frame = {20, 205, 360, 15}, .text = text("site", "https://x.y")},
             InfoText{.frame = {20, 220, 360, 45}, .text = text("about", "")},
             InfoButton{.frame = {120, 280, 160, 112}, .image = "some"}});
        window->setFrame({0, 0, 400, 432});
        window->makeKeyAndOrderFront();
        QApplication::processEvents();
        panel = OfTheToolkit::titled("Done")->window();
        return window;
    }
    QRect place(const QWidget* widget) const {
        return QRect(widget->mapTo(panel, QPoint()), widget->size());
    }
    static QWidget* showing(const std::string& words) {
        return OfTheToolkit::find<QLabel>([&](const QLabel& each) {
            return each.isVisible() && each.text().contains(QString::fromStdString(words));
        });
    }
    std::vector<QWidget*> pictures() const {
        std::vector<QWidget*> found;
        for (auto* each : panel->findChildren<QAbstractButton*>())
            if (each->text().isEmpty()) found.push_back(each);
        std::ranges::sort(found, {}, [this](const QWidget* each) { return place(each).top(); });
        return found;
    }

    OfTheToolkit toolkit;
    Hearer target;
    QWidget* panel = nullptr;
};

TEST_F(ShownByTheToolkit, StandOnOneGrid) {
    const auto window = show();
    const QRect about = place(showing("about")), site = place(showing("site")),
                mail = place(showing("mail")), box = place(OfTheToolkit::titled("Box")),
                done = place(OfTheToolkit::titled("Done")),
                other = place(OfTheToolkit::titled("Tell others"));
    const QRect top = place(pictures()[0]), small = place(pictures()[1]);
    const int left = about.left(), right = panel->width() - left;
    for (const QRect& edge : {site, box, small})
        EXPECT_EQ(edge.left(), left);
    EXPECT_EQ(done.right() + 1, right);
    EXPECT_NEAR(top.center().x(), panel->width() / 2, 1);
    EXPECT_EQ(mail.top(), site.top()) << "one row of links";
    EXPECT_GT(mail.left(), site.right());
    EXPECT_EQ(done.size(), other.size());
    EXPECT_EQ(done.top(), other.top());
    EXPECT_NEAR(small.center().y(), done.center().y(), 1);
    const int gap = about.top() - top.bottom();
    for (const auto& [above, below] : {std::pair{about, site}, {site, box}, {box, small}})
        EXPECT_EQ(below.top() - above.bottom(), gap);
    EXPECT_EQ(panel->height() - small.bottom(), left + 1) << "the margin";
}

TEST_F(ShownByTheToolkit, AreReachedByTheKeyboardAsTheyAreRead) {
    const auto window = show();
    const QWidget* next = OfTheToolkit::titled("Done");
    const QWidget* const order[] = {pictures()[0],
                                    showing("site"),
                                    showing("mail"),
                                    OfTheToolkit::titled("Box"),
                                    pictures()[1],
                                    OfTheToolkit::titled("Tell others"),
                                    OfTheToolkit::titled("Done")};
    for (const QWidget* expected : order) {
        do
            next = next->nextInFocusChain();
        while ((next->focusPolicy() & Qt::TabFocus) == 0);
        EXPECT_EQ(next, expected);
    }
    EXPECT_EQ(panel->focusWidget(), OfTheToolkit::titled("Done"));
}

TEST_F(ShownByTheToolkit, ShowOnEveryButtonThatItHasTheKeyboard) {
    const auto window = show();
    panel->activateWindow();
    for (QWidget* each :
         {pictures()[0], pictures()[1], static_cast<QWidget*>(OfTheToolkit::titled("Tell others")),
          static_cast<QWidget*>(OfTheToolkit::titled("Done")),
          static_cast<QWidget*>(OfTheToolkit::titled("Box"))}) {
        QWidget* const other = each == pictures()[0] ? pictures()[1] : pictures()[0];
        other->setFocus(Qt::TabFocusReason);
        const QImage without = each->grab().toImage();
        each->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(each->hasFocus());
        EXPECT_NE(each->grab().toImage(), without) << each->y();
    }
}

TEST_F(ShownByTheToolkit, OfferNoLinkThatLeadsNowhere) {
    toolkit.dead = "email:m@x.y";
    const auto window = show();
    EXPECT_TRUE(showing("site")->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(showing("mail")->focusPolicy() & Qt::TabFocus);
    EXPECT_EQ(qobject_cast<QLabel*>(showing("mail"))->text(), "mail");
}

TEST_F(ShownByTheToolkit, HaveATitleWithoutAFrameOfTheWindowManagers) {
    const auto window = show();
    window->setTitle("Product 1.0");
    EXPECT_TRUE(panel->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_NE(showing("Product 1.0"), nullptr);
}

TEST_F(ShownByTheToolkit, FitATitleThatIsWiderThanItsPlace) {
    const std::string title = "A title that is far too long for its button";
    const auto window = show(title);
    const auto* button = OfTheToolkit::titled(title);
    ASSERT_NE(button, nullptr);
    EXPECT_LE(button->sizeHint().width(), button->width());
    EXPECT_LT(place(button).right(), panel->width());
    EXPECT_GT(place(button).left(), place(pictures()[1]).right());
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
