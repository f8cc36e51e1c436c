#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// From the launch callback to the running program.

namespace palisor {

namespace {

constexpr double screenRefreshPeriod = 3.0;
constexpr double screenRefreshPeriodOfCrossHair = 0.1;
constexpr double markerHidePeriod = 0.01;
constexpr double focusReleaseDelay = 0.5;
constexpr double secondsPerMinute = 60;

} // namespace

void AppDelegate::applicationDidFinishLaunching() {
    if (IDApp() != variants::calendarAlerts) updateScreensSize();
    setHelperAppBundleIdentifier();
    services.runLoop.detachNewThread([this] { callActionWebService(); });
}

void AppDelegate::start() {
    proKeys.clear();
    initiailValuesForUserDefaults();
    flagriopenInfo = false;
    keycombo = 0;

    initGlobalShortCutForEnableDisable();
    if (IDApp() == variants::barrier && !hasUsableShortcut()) showShortcutPopup();

    TFBounds = services.bundle.localizedString("BOUNDS_MESSAGE");
    if (IDApp() == variants::cursorHider)
        TFBounds += services.bundle.localizedString("BOUNDS_MESSAGE_VELLUMOR_ADDICT");
    setUpHotBorderButtons(IDApp());

    if (IDApp() == variants::cursorHider || IDApp() == variants::crossHair)
        services.cursor.setConnectionProperty("SetsCursorInBackground", true);

    appoggio = std::make_unique<Appoggio>();
    inHotArea = false;

    updateScreensSize();
    schedule<&AppDelegate::updateScreensSize>(
        IDApp() == variants::crossHair ? screenRefreshPeriodOfCrossHair : screenRefreshPeriod, true,
        "updateScreensSize");
    services.displays.onChange([this] { applicationDidChangeScreenParameters(); });

    createBarStatusItem();
    updateMenuItems();

    if (IDApp() != variants::calendarAlerts) installEventIntake();
    scheduleRating();
    killHelperIfActive();
    takeFirstActions();
    createViewInfo();
    schedule<&AppDelegate::dismissFocus>(focusReleaseDelay, false, "dismissFocus");
}

void AppDelegate::takeFirstActions() {
    if (IDApp() == variants::crossHair) {
        createMarkers();
        timerCursorMustToBeHidden =
            schedule<&AppDelegate::hidecursor2>(markerHidePeriod, true, "hidecursor2");
    } else if (IDApp() == variants::keepAwake && isActive()) {
        noSleep();
    }
    if (IDApp() == variants::barrier) {
        if (services.displays.screens().size() < 2)
            noSecondaryMonitor();
        else
            updatePalisor();
    }
    if (IDApp() == variants::cursorHider && isActive()) {
        if (services.settings.boolForKey(keys::STAY_HIDDEN))
            hidecursor();
        else if (settingIsOne(keys::HOT_BOUNDS))
            highLightBoders(services.settings.integerForKey(keys::HOT_BOUNDS));
    }
    if (IDApp() == variants::calendarAlerts) {
        store = &services.calendar;
        if (isActive()) turnOnCustomDefaultAlert();
    }
}

void AppDelegate::setUpHotBorderButtons(int variant) {
    if (variant != variants::desktopSwitcher && variant != variants::wrapAround &&
        variant != variants::cursorHider)
        return;
    const auto setUp = [this](CheckBox& button, int tag, std::string_view key) {
        button.state = services.settings.boolForKey(key) ? 1 : 0;
        button.tag = tag;
        AButtonBounds.push_back(&button);
    };
    AButtonBounds.clear();
    setUp(butangolo1, 1, keys::BUTANGOLO1);
    setUp(butangolo2, 2, keys::BUTANGOLO2);
    setUp(butangolo3, 3, keys::BUTANGOLO3);
    setUp(butangolo4, 4, keys::BUTANGOLO4);
    setUp(butlato1, tags::side + 1, keys::BUTLATO1);
    setUp(butlato2, tags::side + 2, keys::BUTLATO2);
    setUp(butlato3, tags::side + 3, keys::BUTLATO3);
    setUp(butlato4, tags::side + 4, keys::BUTLATO4);
    for (CheckBox* button : AButtonBounds)
        button->action = "valueChange:";

    // Desktops lie side by side, so the upper and the lower edge lead nowhere.
    if (variant == variants::desktopSwitcher) {
        for (CheckBox* button : {&butlato2, &butlato4}) {
            button->enabled = false;
            button->alpha = 0.5;
        }
    }
}

void AppDelegate::scheduleRating() {
    const bool isRated = services.settings.boolForKey(getCurrentRateString());
    if (isRated || IDApp() == variants::desktopSwitcher || allowRate == 0) return;
    schedule<&AppDelegate::ratefunc>(allowRate * secondsPerMinute, false, "ratefunc");
}

} // namespace palisor
