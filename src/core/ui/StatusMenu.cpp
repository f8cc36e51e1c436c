#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "ui/SliderTexts.h"
#include "ui/TAMBERLO.h"

#include <algorithm>

// The status item's menu: which entries it has, in which order, and which of them react. The order
// of calls in updateMenuItems is the order of entries.

namespace palisor {

namespace {

constexpr double longestTime = 30;
constexpr double strongestPush = 100;
constexpr std::size_t blanksBeforeShortcut = 32;

std::shared_ptr<Menu> makeMenu(std::string_view title) {
    auto menu = std::make_shared<Menu>();
    menu->title = title;
    return menu;
}

MenuItem& add(Menu& menu, MenuItem item) {
    return *menu.items.emplace_back(std::make_unique<MenuItem>(std::move(item)));
}

void addSeparator(Menu& menu) {
    MenuItem separator;
    separator.separator = true;
    add(menu, std::move(separator));
}

Slider makeSlider(double minimum, double maximum, double value, int tickMarks,
                  std::string_view action) {
    return {.minimum = minimum,
            .maximum = maximum,
            .value = std::clamp(value, minimum, maximum),
            .tickMarks = tickMarks,
            .action = std::string(action)};
}

std::shared_ptr<Label> makeLabel(std::string_view name) {
    return std::make_shared<Label>(Label{.name = std::string(name), .text = {}});
}

const Slider& sliderOf(const Menu& menu) {
    return std::get<platform::SliderView>(menu.items.front()->view).slider;
}

/// `texts` must outlive the menu.
MenuItem sliderItem(const platform::Bundle& texts, Slider slider, std::shared_ptr<Label> label,
                    TextOfValue text) {
    MenuItem item;
    item.view =
        platform::SliderView{.slider = std::move(slider),
                             .label = std::move(label),
                             .text = [&texts, text](double value) { return text(texts, value); }};
    return item;
}

} // namespace

void AppDelegate::createBarStatusItem() {
    mainMenu = makeMenu("mainMenu");
    timeSubMenu = makeMenu("");
    boundsSubMenu = makeMenu("");
    velocitySubMenu = makeMenu("");
    services.statusItem.create(*mainMenu, *this);
}

void AppDelegate::updateMenuItems() {
    if (!mainMenu) return;
    for (Menu* menu :
         {timeSubMenu.get(), boundsSubMenu.get(), velocitySubMenu.get(), mainMenu.get()})
        menu->items.clear();
    itemHotBorders = nullptr;
    menuitemForBoundsView = nullptr;

    const int variant = IDApp();
    const bool hider = variant == variants::cursorHider;
    const bool switcher = variant == variants::desktopSwitcher;
    const bool wrapper = variant == variants::wrapAround;
    const bool barrier = variant == variants::barrier;

    addEnableEntry();
    add(*mainMenu, localizedItem("SHORTCUT", "showShortcutPopup"));
    addSeparator(*mainMenu);
    tv = makeLabel("tv");
    if (barrier) addDarkLevelEntry();
    if (hider) {
        add(*mainMenu, switchItem("STAY_HIDDEN", "stayHiddenDidChanged:", keys::STAY_HIDDEN));
        addTimeSlider();
        itemHotBorders = &add(*mainMenu, localizedItem("Hot Borders Mode", "pressHotBorders:"));
    }
    if (switcher || wrapper) addBoundsEntry();
    if (switcher || wrapper || barrier) addVelocityEntry();
    if (wrapper) addBreakEntry();
    if (hider) addTimeModeEntry();
    addModifierEntry();
    if (hider) addScrollEntry();
    addSeparator(*mainMenu);
    addTAMBERLOItemsToHelpMenu(*mainMenu);
    if (otherApps) addPromotion();
    addSeparator(*mainMenu);
    add(*mainMenu, switchItem("AVVIA_AL_LOGIN", "pressAvviaAlLogin", keys::CHECK_1));
    add(*mainMenu, localizedItem("QUIT", "quit"));
    tellWhatIsWatched();
    tellChanged();
}

MenuItem AppDelegate::localizedItem(std::string_view key, std::string_view action) const {
    MenuItem item;
    item.title = key;
    item.text = services.bundle.localizedString(key);
    item.action = action;
    item.madeWithAction = !action.empty();
    return item;
}

/// Its mark shows the setting.
MenuItem AppDelegate::switchItem(std::string_view key, std::string_view action,
                                 std::string_view setting) const {
    MenuItem item = localizedItem(key, action);
    item.state = services.settings.boolForKey(setting) ? 1 : 0;
    item.isToggle = true;
    return item;
}

void AppDelegate::addEnableEntry() {
    const bool active = isActive();
    MenuItem entry = localizedItem(active ? "DISABILITA" : "ABILITA", "enableDisable");
    entry.image = "OnOff";
    entry.imageIsTemplate = true;
    if (hasUsableShortcut()) entry.text += std::string(blanksBeforeShortcut, ' ') + shortcutText();
    add(*mainMenu, std::move(entry));

    std::string image = active ? "icon_statusbar_on" : "icon_statusbar_off";
    image += std::to_string(IDApp());
    if (IDApp() == variants::cursorHider)
        image = active ? "statusIconVellumor" : "statusIconVellumorOff";
    services.statusItem.setImage(image, true);
    services.statusItem.setToolTip(
        services.bundle.displayName() + ": " +
        services.bundle.localizedString(active ? "STATE_ON" : "STATE_OFF"));
}

void AppDelegate::addDarkLevelEntry() {
    const Slider slider =
        makeSlider(0, keys::darkestLevel, services.settings.integerForKey(keys::OTHERS_DARK),
                   keys::darkestLevel + 1, "sliderDidMove:");
    updateTV(slider);
    MenuItem item = sliderItem(services.bundle, slider, tv, darknessText);
    std::get<platform::SliderView>(item.view).labelStep = 100.0 / keys::darkestLevel; // per cent
    add(*timeSubMenu, std::move(item));
    MenuItem entry = localizedItem("DARK_LEVEL");
    entry.submenu = timeSubMenu;
    entry.enabled = isActive();
    add(*mainMenu, std::move(entry));
    sliderDidMove(sliderOf(*timeSubMenu));
}

void AppDelegate::addTimeSlider() {
    const Slider slider =
        makeSlider(0, longestTime, services.settings.integerForKey(keys::SCHEDULE),
                   static_cast<int>(longestTime) + 1, "sliderDidMove:");
    MenuItem item = sliderItem(services.bundle, slider, tv, timeText);
    sliderDidMove(slider);
    add(*timeSubMenu, std::move(item));
}

void AppDelegate::addBoundsEntry() {
    add(*boundsSubMenu, boundsViewItem());
    MenuItem entry = localizedItem("BORDI_ATTIVI");
    entry.submenu = boundsSubMenu;
    entry.enabled = isActive();
    add(*mainMenu, std::move(entry));
}

void AppDelegate::addVelocityEntry() {
    tvVelocity = makeLabel("tvVelocity");
    const Slider slider =
        makeSlider(1, strongestPush, services.settings.integerForKey(keys::VELOCITY),
                   static_cast<int>(strongestPush) / 10 + 1, "velocitySliderDidMove:");
    MenuItem entry = localizedItem("VELOCITYText", "pressVelocity:");
    velocitySubMenu = makeMenu("");
    add(*velocitySubMenu, sliderItem(services.bundle, slider, tvVelocity, sensibilityText));
    std::get<platform::SliderView>(velocitySubMenu->items.front()->view).ends = {
        services.bundle.localizedString("LESS"), services.bundle.localizedString("MORE")};
    entry.isToggle = true;
    entry.enabled = isActive();
    if (services.settings.boolForKey(keys::VELOCITY_OPTION)) {
        entry.state = 1;
        entry.submenu = velocitySubMenu;
    }
    if (!isActive()) entry.action.clear();
    add(*mainMenu, std::move(entry));
    velocitySliderDidMove(slider);
}

void AppDelegate::addBreakEntry() {
    MenuItem entry =
        switchItem("BREAK_AFTER_SWITCHText", "freezeCursorAfterSwitch:", keys::BREAK_AFTER_SWITCH);
    if (!isActive()) entry.action.clear();
    entry.enabled = isActive();
    add(*mainMenu, std::move(entry));
}

/// The two modes of the cursor hider exclude each other: hot borders grey the time entry.
void AppDelegate::addTimeModeEntry() {
    menuitemForBoundsView = &add(*boundsSubMenu, boundsViewItem());
    const bool hotBorders = settingIsOne(keys::HOT_BOUNDS);
    MenuItem time = localizedItem("TEMPO", "pressTimeMode:");
    const bool timeMode = services.settings.boolForKey(keys::TIME_MODE);
    if (timeMode) time.submenu = timeSubMenu;
    time.state = timeMode ? 1 : 0;
    time.isToggle = itemHotBorders->isToggle = true;
    time.enabled = isActive() && !hotBorders;
    itemHotBorders->enabled = isActive();
    if (hotBorders) {
        itemHotBorders->submenu = boundsSubMenu;
        itemHotBorders->state = 1;
    }
    if (services.settings.boolForKey(keys::STAY_HIDDEN) || !isActive()) {
        time.action.clear();
        itemHotBorders->action.clear();
    }
    add(*mainMenu, std::move(time));
}

void AppDelegate::addModifierEntry() {
    const bool hider = IDApp() == variants::cursorHider;
    MenuItem entry = switchItem(hider ? "CTRLALTCMDTextVellumor" : "CTRLALTCMDText",
                                "CTRLALTCMDDidChanged:", keys::CTRLALTCMD);
    if (!isActive() || (hider && services.settings.boolForKey(keys::STAY_HIDDEN)))
        entry.action.clear();
    entry.enabled = isActive();
    add(*mainMenu, std::move(entry));
}

void AppDelegate::addScrollEntry() {
    MenuItem entry = switchItem("SHOW_ON_SCROLL", "pressShowOnScroll", keys::SHOW_ON_SCROLL);
    if (!isActive() || services.settings.boolForKey(keys::STAY_HIDDEN)) entry.action.clear();
    // Who hides the cursor also shows it.
    if (services.cursor.hidesAtRest()) {
        entry.action.clear();
        entry.enabled = false;
    }
    add(*mainMenu, std::move(entry));
}

/// A product that has no page in the store advertises nothing.
void AppDelegate::addPromotion() {
    const auto ownId = variants::storeId(IDApp());
    if (ownId.empty()) return;
    addSeparator(*mainMenu);
    TAMBERLO::addOtherItemsToMenu_shortVersion_skippingAPP(services, *mainMenu, true, ownId);
}

MenuItem AppDelegate::boundsViewItem() {
    const auto& bundle = services.bundle;
    MenuItem item;
    item.view = platform::BoundsView{
        .corners = {{{"butangolo1", &butangolo1, bundle.localizedString("CORNER_TOP_LEFT")},
                     {"butangolo2", &butangolo2, bundle.localizedString("CORNER_TOP_RIGHT")},
                     {"butangolo3", &butangolo3, bundle.localizedString("CORNER_BOTTOM_RIGHT")},
                     {"butangolo4", &butangolo4, bundle.localizedString("CORNER_BOTTOM_LEFT")}}},
        .sides = {{{"butlato1", &butlato1, bundle.localizedString("SIDE_LEFT")},
                   {"butlato2", &butlato2, bundle.localizedString("SIDE_TOP")},
                   {"butlato3", &butlato3, bundle.localizedString("SIDE_RIGHT")},
                   {"butlato4", &butlato4, bundle.localizedString("SIDE_BOTTOM")}}},
        .explanation = TFBounds};
    return item;
}

} // namespace palisor
