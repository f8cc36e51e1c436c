#include "strings/Strings.h"
#include "unit/MenuEntries.h"

#include <gmock/gmock.h>
#include <set>

// The whole menu of every product, in both languages, with and without the other products.

namespace palisor {
namespace {

using Variants = std::set<int>;

struct Row {
    const char* english; ///< "---" for a separator
    const char* italian;
    const char* action;
    Variants only{};          ///< the products that have it; every product where there is none
    const char* storeId = ""; ///< of an entry of the promotion, "-1" for its heading
};

constexpr const char* separator = "---";
const Variants promoted{1, 5, 8};

// Where a product advertises another one, it is one of the other two.
const Row table[] = {
    {"Switch Off", "Disattiva", "enableDisable"},
    {"Keyboard Shortcut…", "Scorciatoia da tastiera…", "showShortcutPopup"},
    {separator, separator, ""},
    {"Darken Other Monitors", "Oscura gli altri monitor", "", {8}},
    {"Keep the Cursor Hidden", "Tieni nascosto il cursore", "stayHiddenDidChanged:", {1}},
    {"Hot Borders", "Bordi caldi", "pressHotBorders:", {1}},
    {"Active Borders", "Bordi attivi", "", {2, 5}},
    {"Push Hard to Cross", "Spingi forte per passare", "pressVelocity:", {2, 5, 8}},
    {"Pause Briefly After Wrapping",
     "Breve pausa dopo il passaggio",
     "freezeCursorAfterSwitch:",
     {5}},
    {"Hide When the Mouse Rests", "Nascondi quando il mouse è fermo", "pressTimeMode:", {1}},
    {"Left Ctrl+Alt+Super Hides the Cursor",
     "Ctrl+Alt+Super a sinistra nasconde il cursore",
     "CTRLALTCMDDidChanged:",
     {1}},
    {"Hold Left Ctrl+Alt+Super to Override",
     "Tieni premuti Ctrl+Alt+Super a sinistra per sospendere",
     "CTRLALTCMDDidChanged:",
     {0, 2, 3, 4, 5, 6, 7, 8, 9}},
    {"Show the Cursor When Scrolling", "Mostra il cursore quando scorri", "pressShowOnScroll", {1}},
    {separator, separator, ""},
    {"Product Page", "Pagina del prodotto", "openMacAppStorePage"},
    {"Follow Us", "Seguici", "openFB"},
    {"Get Help", "Assistenza", "openSupport"},
    {separator, separator, "", promoted, "-1"},
    {"Others", "Others", "", promoted, "-1"},
    {"Skelder - Browser", "Skelder - Browser", "openApp:", promoted, "1200000418"},
    {"Vellumor", "Vellumor", "openApp:", {5, 8}, "611203457"},
    {"Orbisant", "Orbisant", "openApp:", {1, 8}, "611203458"},
    {"Brantemere", "Brantemere", "openApp:", {1, 5}, "1200000417"},
    {"Thrumbleton", "Thrumbleton", "openApp:", promoted, "1200000419"},
    {"KORVADIN (iOS)", "KORVADIN (iOS)", "openApp:", promoted, "611203459"},
    {nullptr, "Ostrelle", "openApp:", promoted, "611203460"},
    {separator, separator, ""},
    {"Start at Login", "Avvia al login", "pressAvviaAlLogin"},
    {"Quit", "Esci", "quit"},
};

/// "text | action | tool tip | image".
std::string line(const std::string& text, const std::string& action, const std::string& toolTip,
                 const std::string& image) {
    return text + " | " + action + " | " + toolTip + " | " + image;
}

Lines expected(int variant, bool italian, bool otherApps) {
    Lines lines;
    for (const Row& row : table) {
        const char* const text = italian ? row.italian : row.english;
        const std::string id = row.storeId;
        if (text == nullptr || (!row.only.empty() && !row.only.contains(variant))) continue;
        if (!id.empty() && !otherApps) continue;
        if (text == std::string(separator)) {
            lines.emplace_back(separator);
            continue;
        }
        std::string image = id.empty() || id == "-1" ? "" : "miniicon_" + id;
        if (lines.empty()) image = "OnOff";
        lines.push_back(line(text, row.action, id, image));
    }
    return lines;
}

Lines shown(const Program& program) {
    Lines lines;
    for (const auto& item : program.app.mainMenu->items)
        lines.push_back(item->separator
                            ? separator
                            : line(item->text, item->action, item->toolTip, item->image));
    return lines;
}

TEST(WholeMenu, OfEveryProductHasItsRowsInOrderInBothLanguages) {
    for (int variant = 0; variant <= 9; ++variant)
        for (const bool italian : {false, true})
            for (const bool otherApps : {false, true}) {
                Program program(variant);
                program.platform.setLanguages({italian ? "it" : "en"});
                program.platform.bundle.setStrings(strings::lookUp);
                program.launched();
                // The first entry would show it.
                program.setting(keys::customShortcutEnabled, platform::Value{false});
                program.app.otherApps = otherApps;
                program.app.updateMenuItems();
                EXPECT_EQ(shown(program), expected(variant, italian, otherApps))
                    << variant << (italian ? " in Italian" : " in English")
                    << (otherApps ? " with the others" : "");
            }
}

TEST(WholeMenu, OfAProductWithoutStorePageAdvertisesNothingAndHasNoSeparatorForIt) {
    for (const int variant : {0, 2, 3, 4, 6, 7, 9}) {
        Program program(variant);
        program.launched();
        const Lines before = shown(program);
        program.app.otherApps = true;
        program.app.updateMenuItems();
        EXPECT_EQ(shown(program), before) << variant;
    }
}

TEST(WholeMenu, GreysTheHeadingOfThePromotionAndNothingElseOfIt) {
    Program program(variants::barrier);
    program.launched();
    program.app.otherApps = true;
    program.app.updateMenuItems();
    for (const auto& item : program.app.mainMenu->items) {
        if (item->toolTip.empty() || item->separator) continue;
        EXPECT_EQ(item->greyed(), item->title == "Others") << item->title;
    }
}

} // namespace
} // namespace palisor
