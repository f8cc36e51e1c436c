#include "Stage.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

using namespace menutests;
namespace key = support::key;

namespace {

class MenuEntries : public MenuTest {
  protected:
    MenuEntries() {
        addEntry(menu, "Plain", "plain");
        addSeparator(menu);
        addEntry(menu, "Greyed", "greyed").action.clear();
        MenuItem& both = addEntry(menu, "Both", "both");
        both.submenu = sliderMenu();
        both.state = 1;
        addEntry(menu, "Only a submenu").submenu = sliderMenu();
        addEntry(menu, "Last & least", "last");
    }

    /// What the target hears of a menu in which the user does that; the opening is left out.
    std::vector<std::string> heard(const std::function<void()>& user) {
        whileOpen(user);
        auto lines = target.lines();
        lines.erase(lines.begin());
        return lines;
    }
};

using Lines = std::vector<std::string>;
const Lines nothing;

} // namespace

TEST_F(MenuEntries, SendTheActionOfTheEntryThatIsClicked) {
    EXPECT_EQ(heard([&] {
                  click(entry("Plain"));
                  EXPECT_TRUE(target.waitFor("chosen plain leftDown/0"));
              }),
              Lines{"chosen plain leftDown/0"});
}

TEST_F(MenuEntries, CanBeChosenWithTheButtonHeldDown) {
    heard([&] {
        hover(entry("Greyed"));
        hand.pressButton();
        hover(entry("Plain"));
        hand.releaseButton();
        EXPECT_TRUE(target.waitFor("chosen plain leftDown/0"));
    });
}

TEST_F(MenuEntries, SendWhenTheMenuHasClosed) {
    int open = -1;
    target.onChosen = [&](MenuItem&) {
        open = 0;
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->inherits("QMenu")) ++open;
    };
    heard([&] {
        click(entry("Plain"));
        EXPECT_TRUE(target.waitFor("chosen plain leftDown/0"));
    });
    EXPECT_EQ(open, 0);
}

TEST_F(MenuEntries, DoNothingWhenTheyAreGreyed) {
    EXPECT_EQ(heard([&] {
                  click(entry("Greyed"));
                  EXPECT_EQ(openMenus(), 1);
              }),
              nothing);
}

TEST_F(MenuEntries, SendTheirActionByAClickAlsoWithASubmenu) {
    EXPECT_EQ(heard([&] {
                  click(entry("Both"));
                  EXPECT_TRUE(target.waitFor("chosen both leftDown/0"));
              }),
              Lines{"chosen both leftDown/0"});
}

TEST_F(MenuEntries, SendTheirActionByAClickWhenTheSubmenuHasOpened) {
    heard([&] {
        openSubmenuOf("Both");
        click(entry("Both"));
        EXPECT_TRUE(target.waitFor("chosen both leftDown/0"));
    });
}

TEST_F(MenuEntries, OpenASubmenuByAClickWhenTheyHaveNoAction) {
    EXPECT_EQ(heard([&] {
                  click(entry("Only a submenu"));
                  EXPECT_TRUE(waitUntil([] { return openMenus() == 2; }));
              }),
              nothing);
}

TEST_F(MenuEntries, AreReachedByTheArrowKeys) {
    // The separator and the greyed entry are passed over.
    EXPECT_EQ(heard([&] {
                  hand.type(key::down);
                  hand.type(key::down);
                  hand.type(key::enter);
                  EXPECT_TRUE(target.waitFor("chosen both leftDown/0"));
              }),
              Lines{"chosen both leftDown/0"});
}

TEST_F(MenuEntries, OpenAndLeaveASubmenuByKeys) {
    EXPECT_EQ(heard([&] {
                  hand.type(key::down);
                  hand.type(key::down);
                  hand.type(key::right);
                  EXPECT_TRUE(waitUntil([] { return openMenus() == 2; }));
                  hand.type(key::escape);
                  EXPECT_TRUE(waitUntil([] { return openMenus() == 1; }));
                  hand.type(key::escape);
                  EXPECT_TRUE(waitUntil([] { return openMenus() == 0; }));
              }),
              nothing);
}

TEST_F(MenuEntries, ShowTheirTextAndTheirMark) {
    whileOpen([&] {
        // An ampersand is a text, not a mnemonic.
        EXPECT_TRUE(isOpen(entry("Last && least")));
        EXPECT_EQ(ask<int>([] {
                      int marked = 0;
                      for (QWidget* window : QApplication::topLevelWidgets())
                          for (const QAction* action : window->actions())
                              if (action->isChecked() && action->text() == "Both") ++marked;
                      return marked;
                  }),
                  1);
    });
}

TEST_F(MenuEntries, ShowAnEmptyBoxWhereTheyAreTogglesThatAreOff) {
    addEntry(menu, "Off", "off").isToggle = true;
    whileOpen([&] {
        EXPECT_TRUE(ask<bool>([] {
            for (QWidget* window : QApplication::topLevelWidgets())
                for (const QAction* action : window->actions())
                    if (action->text() == "Off")
                        return action->isCheckable() && !action->isChecked();
            return false;
        }));
    });
}

TEST_F(MenuEntries, HaveTheirShortcutInItsColumnAndAHintForATip) {
    MenuItem& both = addEntry(menu, "Switch Off" + std::string(32, ' ') + "Super+F2", "off");
    both.toolTip = "611203457";
    both.hint = "Vellumor";
    whileOpen([&] {
        EXPECT_TRUE(isOpen(entry("Switch Off\tSuper+F2")));
        EXPECT_EQ(ask<QString>([] {
                      for (QWidget* window : QApplication::topLevelWidgets())
                          for (const QAction* action : window->actions())
                              if (action->text().startsWith("Switch")) return action->toolTip();
                      return QString();
                  }),
                  "Vellumor");
    });
}

TEST_F(MenuEntries, AreChosenByTheirFirstLetter) {
    EXPECT_EQ(heard([&] {
                  hand.type('p');
                  EXPECT_TRUE(target.waitFor("chosen plain leftDown/0"));
              }),
              Lines{"chosen plain leftDown/0"});
}

TEST_F(MenuEntries, AreGoneThroughByALetterThatBeginsSeveral) {
    addEntry(menu, "Lost", "lost");
    EXPECT_EQ(heard([&] {
                  hand.type('l');
                  hand.type('l');
                  hand.type(key::enter);
                  EXPECT_TRUE(target.waitFor("chosen lost leftDown/0"));
              }),
              Lines{"chosen lost leftDown/0"});
}

TEST_F(MenuEntries, TakeSeveralSeparatorsTogether) {
    int before = 0;
    whileOpen([&] { before = entry("Greyed").y(); });
    menu.items.insert(menu.items.begin() + 1, std::make_unique<MenuItem>())->get()->separator =
        true;
    int after = 0;
    whileOpen([&] { after = entry("Greyed").y(); });
    EXPECT_EQ(after, before);
}

TEST_F(MenuEntries, AreFoundAgainWhenTheMenuIsRebuiltWhileItIsOpen) {
    EXPECT_EQ(heard([&] {
                  ask<bool>([&] {
                      menu.items.clear();
                      addEntry(menu, "New", "new");
                      addEntry(menu, "Plain", "plain");
                      return true;
                  });
                  click(entry("Plain"));
                  EXPECT_TRUE(target.waitFor("chosen plain leftDown/0"));
              }),
              Lines{"chosen plain leftDown/0"});
}

TEST_F(MenuEntries, DoNothingWhenTheyHaveGoneOrTurnedGreyMeanwhile) {
    for (const bool gone : {true, false}) {
        menu.items.clear();
        addEntry(menu, "Plain", "plain");
        whileOpen([&] {
            ask<bool>([&] {
                if (gone)
                    menu.items.clear();
                else
                    menu.items[0]->enabled = false;
                return true;
            });
            click(entry("Plain"));
            EXPECT_TRUE(waitUntil([] { return openMenus() == 0; }));
        });
    }
    EXPECT_EQ(target.lines(), (Lines{"open leftDown/0", "open leftDown/0"}));
}

TEST_F(MenuEntries, MayRebuildTheMenuWhenTheyAreChosen) {
    target.onChosen = [this](MenuItem&) {
        menu.items.clear();
        addEntry(menu, "New", "new");
    };
    whileOpen([&] {
        click(entry("Both"));
        EXPECT_TRUE(target.waitFor("chosen both leftDown/0"));
    });
    whileOpen([] { EXPECT_TRUE(isOpen(entry("New"))); });
}
