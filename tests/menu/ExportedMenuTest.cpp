#include "platform/qt/tray/ExportedMenu.h"
#include "Models.h"
#include "platform/qt/tray/StatusNotifierItem.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <gtest/gtest.h>

// The menu as hosts see it that open it themselves, over a real bus.

using namespace menutests;
using platform::qt::ExportedMenu;
using platform::qt::MenuEntryId;
using platform::qt::StatusNotifierItem;

namespace {

constexpr const char* menuInterface = "com.canonical.dbusmenu";

/// What a host gets of one entry.
struct Seen {
    int id = 0;
    QVariantMap properties;
    std::vector<Seen> children;

    QString label() const { return properties.value("label").toString(); }
    bool marked() const { return properties.value("toggle-state").toInt() == 1; }
};

Seen readNode(const QDBusArgument& argument) {
    Seen node;
    argument.beginStructure();
    argument >> node.id >> node.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        node.children.push_back(readNode(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return node;
}

struct MenuThatIsExported : testing::Test {
    MenuThatIsExported() {
        addEntry(menu, "Switch Off" + std::string(32, ' ') + "Super+F2", "first");
        addSeparator(menu);
        addEntry(menu, "Greyed", "greyed").action.clear();
        MenuItem& push = addEntry(menu, "Push_hard", "push");
        push.state = 1;
        push.submenu = sliderMenu({.minimum = 0, .maximum = 20, .value = 7, .ticks = 21});
        std::get<platform::SliderView>(push.submenu->items[0]->view).text = [](double value) {
            return std::to_string(static_cast<int>(value) * 5) + "%";
        };
        addEntry(menu, "Borders").submenu = boundsMenu(boxes);
        addEntry(menu, "Empty", "empty").isToggle = true;
        auto& view = std::get<platform::BoundsView>(menu.items[4]->submenu->items[0]->view);
        view.corners[0].text = "Top left corner";
    }

    QVariantList call(const char* path, const char* interface, const char* member,
                      const QVariantList& arguments) {
        const QString owner = QDBusConnection("menu-test-status-item").baseService();
        auto message = QDBusMessage::createMethodCall(owner, path, interface, member);
        message.setArguments(arguments);
        const QDBusPendingCall answer = QDBusConnection::sessionBus().asyncCall(message);
        QEventLoop untilAnswered;
        const QDBusPendingCallWatcher watcher(answer);
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &untilAnswered,
                         &QEventLoop::quit);
        untilAnswered.exec();
        EXPECT_FALSE(answer.isError()) << answer.error().message().toStdString();
        return answer.reply().arguments();
    }

    Seen layout() {
        const auto reply =
            call(ExportedMenu::path, menuInterface, "GetLayout", {0, -1, QStringList()});
        revision = reply.value(0).toUInt();
        return readNode(reply.value(1).value<QDBusArgument>());
    }

    void clickOn(const Seen& node) {
        call(ExportedMenu::path, menuInterface, "Event",
             {node.id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
        QApplication::processEvents();
    }

    Menu menu;
    std::array<CheckBox, 8> boxes;
    std::vector<std::string> heard;
    uint revision = 0;
    ExportedMenu exported{
        menu,
        {.chosen = [this](const MenuEntryId& entry) { heard.push_back("chosen " + entry.action); },
         .moved =
             [this](const MenuEntryId& entry, double value) {
                 heard.push_back(entry.action + " " + std::to_string(static_cast<int>(value)));
             },
         .clicked =
             [this](CheckBox& box) {
                 heard.push_back("box " + std::to_string(box.tag) + "=" +
                                 std::to_string(box.state));
             }}};
    StatusNotifierItem item{{"menu-test", "Test", {}}, {}, [](int, auto) {}, &exported};
};

} // namespace

// This program is none of the panels that are known to pass clicks on.
TEST_F(MenuThatIsExported, IsOfferedToHostsThatAreNotKnownToPassClicksOn) {
    const auto reply = call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                            {"org.kde.StatusNotifierItem", "Menu"});
    EXPECT_EQ(reply.value(0).value<QDBusVariant>().variant().value<QDBusObjectPath>().path(),
              ExportedMenu::path);
}

TEST_F(MenuThatIsExported, HasTheSameEntries) {
    const Seen root = layout();
    ASSERT_EQ(root.children.size(), 6U);
    EXPECT_EQ(root.children[0].label(), "Switch Off (Super+F2)");
    EXPECT_EQ(root.children[1].properties.value("type"), "separator");
    EXPECT_EQ(root.children[2].properties.value("enabled"), false);
    EXPECT_EQ(root.children[3].label(), "Push__hard") << "no mnemonic";
    EXPECT_TRUE(root.children[3].marked());
    EXPECT_EQ(root.children[3].properties.value("children-display"), "submenu");
    EXPECT_EQ(root.children[5].properties.value("toggle-type"), "checkmark");
    EXPECT_FALSE(root.children[5].marked());
    clickOn(root.children[0]);
    clickOn(root.children[2]);
    EXPECT_EQ(heard, std::vector<std::string>{"chosen first"});
}

TEST_F(MenuThatIsExported, HasASliderAsAMenuOfItsTicks) {
    const Seen push = layout().children[3];
    ASSERT_EQ(push.children.size(), 2U + 21U) << "itself, a line and the ticks";
    for (std::size_t tick = 0; tick <= 20; ++tick) {
        const Seen& seen = push.children[2 + tick];
        EXPECT_EQ(seen.label(), QString::number(5 * tick) + '%');
        EXPECT_EQ(seen.marked(), tick == 7) << tick;
    }
    clickOn(push.children[2 + 12]);
    clickOn(push.children[0]);
    EXPECT_EQ(heard, (std::vector<std::string>{"slide 12", "chosen push"}));
}

TEST_F(MenuThatIsExported, SaysWhereAKnobBetweenTwoTicksStands) {
    menu.items[3]->submenu = sliderMenu({.minimum = 1, .maximum = 100, .value = 50, .ticks = 12});
    std::get<platform::SliderView>(menu.items[3]->submenu->items[0]->view).text = [](double value) {
        return std::to_string(static_cast<int>(value)) + "%";
    };
    exported.changed();
    const Seen push = layout().children[3];
    const Seen& chosen = push.children[2 + 5];
    EXPECT_TRUE(chosen.marked());
    EXPECT_EQ(chosen.label(), "50%") << "and not 46%, where the tick is";
    clickOn(chosen);
    EXPECT_EQ(heard, std::vector<std::string>{"slide 50"}) << "and it stays there";
    EXPECT_EQ(push.children[2 + 6].label(), "55%");
}

TEST_F(MenuThatIsExported, HasTheBordersAsBoxesToTick) {
    const Seen borders = layout().children[4];
    ASSERT_EQ(borders.children.size(), 8U);
    EXPECT_EQ(borders.children[0].label(), "Top left corner");
    EXPECT_FALSE(borders.children[0].marked());
    clickOn(borders.children[0]);
    EXPECT_EQ(heard, std::vector<std::string>{"box 1=1"});
    EXPECT_TRUE(layout().children[4].children[0].marked());
}

TEST_F(MenuThatIsExported, IsReadAnewWhenItHasChangedWithTheSameNumbersForTheSameEntries) {
    const Seen before = layout();
    const uint first = revision;
    exported.changed();
    layout();
    EXPECT_EQ(revision, first) << "nothing is different";
    menu.items[0]->text = "Switch On";
    sliderIn(*menu.items[3]->submenu).value = 8;
    exported.changed();
    const Seen after = layout();
    EXPECT_GT(revision, first);
    EXPECT_EQ(after.children[0].label(), "Switch On");
    EXPECT_EQ(after.children[0].id, before.children[0].id);
    EXPECT_TRUE(after.children[3].children[2 + 8].marked());
}
