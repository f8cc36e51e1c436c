#include "platform/memory/MemoryPlatform.h"
#include "platform/qt/info/QtInfoWindows.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QWidget>
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
    return folder.path();
}

struct OfTheToolkit {
    testing_support::TempFolder folder;
    testing_support::KeptLog log;
    Lines urls;
    platform::qt::Pictures pictures{{withSome(folder)}, log};
    platform::qt::QtInfoWindows windows{pictures, "",
                                        [this](const std::string& url) { urls.push_back(url); }};

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

TEST(InfoWindowsOfTheToolkit, MakeATitleFitThatIsWiderThanItsPlace) {
    OfTheToolkit toolkit;
    Hearer target;
    const auto window = toolkit.windows.create(target);
    const std::string title = "A title that is far too long for its button";
    window->setViews({InfoButton{.frame = {0, 0, 200, 40}, .title = title}});
    window->setFrame({0, 0, 400, 300});
    window->makeKeyAndOrderFront();
    const auto* button = OfTheToolkit::titled(title);
    ASSERT_NE(button, nullptr);
    EXPECT_LE(button->sizeHint().width(), 200);
    EXPECT_EQ(button->geometry(), QRect(0, 260, 200, 40));
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
