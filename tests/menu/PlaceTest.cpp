#include "Stage.h"

#include "platform/qt/tray/TrayIcon.h"
#include "testing/KeptLog.h"

#include <QApplication>

using namespace menutests;
using platform::PixelArea;
using support::Area;

namespace {

/// An icon in a panel that is nowhere to be seen.
class Tray final : public platform::TrayWindow {
  public:
    void show(Handlers) override {}
    bool hasHost() const override { return true; }
    std::optional<platform::TrayColour> panelText() override { return {}; }
    std::optional<Place> place() override { return where; }
    std::vector<PixelArea> panels() override { return {}; }
    void setTitle(const std::string&) override {}
    void repaint() override {}

    std::optional<Place> where;
};

/// What has to be there before the item is made.
struct Lent {
    Tray window;
    testing_support::KeptLog log;
    platform::qt::Pictures pictures{{}, log};
    platform::qt::TrayIcon icon{&window, pictures, {"org.example.place", "Place"}, log};
};

struct MenuPlace : Lent, MenuTest {
    MenuPlace() : MenuTest(nullptr, &icon) { addEntry(menu, "First of the entries", "first"); }
    ~MenuPlace() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    Area menuFrom(const Tray::Place& place) {
        window.where = place;
        Area seen;
        whileOpen([&] {
            seen = ask<Area>([] {
                for (const QWidget* shown : QApplication::topLevelWidgets())
                    if (shown->isVisible() && shown->inherits("QMenu"))
                        return Area{shown->x(), shown->y(), shown->width(), shown->height()};
                return Area{};
            });
        });
        return seen;
    }
};

constexpr PixelArea topOfTheLeftOne{0, 0, 1280, 30}, bottomOfTheRightOne{1280, 754, 1024, 30};

} // namespace

TEST_F(MenuPlace, IsInLineWithTheIconOnItsMonitorWhereverTheCursorIs) {
    Area seen = menuFrom({{600, 4, 22, 22}, topOfTheLeftOne});
    EXPECT_EQ(seen, (Area{600, 30, seen.width, seen.height}));
    seen = menuFrom({{1500, 758, 22, 22}, bottomOfTheRightOne});
    EXPECT_EQ(seen, (Area{1500, 754 - seen.height, seen.width, seen.height}));
}

TEST_F(MenuPlace, EndsInLineWithTheIconWhereTextRunsToTheLeft) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    Area seen = menuFrom({{600, 4, 22, 22}, topOfTheLeftOne});
    EXPECT_EQ(seen, (Area{622 - seen.width, 30, seen.width, seen.height}));
    seen = menuFrom({{1500, 758, 22, 22}, bottomOfTheRightOne});
    EXPECT_EQ(seen, (Area{1522 - seen.width, 754 - seen.height, seen.width, seen.height}));
}

TEST_F(MenuPlace, IsTheCursorsWhileTheIconIsNotSeen) {
    window.where.reset();
    EXPECT_FALSE(icon.menuAnchor());
}
