#pragma once

#include "app/Keys.h"
#include "app/State.h"
#include "platform/Platform.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

// The application object: all run-time state and every named operation of the program. It is
// declared here once; each section below names the folder, and the line above a group the file,
// that implements it. Everything runs on the main thread. No operation reports an error to its
// caller: what can fail is logged by the platform and otherwise ignored.
//
// Settings and the variant number are read from their stores at each use and never kept.

namespace palisor {

struct AlarmPass;
class DecisionObserver;
namespace control {
class Watcher;
}

class AppDelegate : public AppState, private platform::MenuTarget, private platform::InfoTarget {
  public:
    /// The platform's services must outlive the object, which is the one of its process.
    explicit AppDelegate(const platform::Platform& services);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The application object of this process; null when there is none.
    static AppDelegate* shared() { return sharedInstance; }

    /// The product's number in the family, 0 when the information dictionary has none.
    int IDApp() const { return services.bundle.integer(dictionary::IDApp); }

    // ---- app/ -------------------------------------------------------------------------------

    // Launch.cpp
    void applicationDidFinishLaunching();
    void start();

    // Defaults.cpp
    void initiailValuesForUserDefaults();
    /// Opens the menu of its own accord, on the very first run.
    void firstTime();

    // Enable.cpp
    void enableDisable();
    /// Whether the product does what it is for: the user has it on, and it is not freed.
    bool isActive() const;
    /// Switches off for that long, a day at most, and on again. The settings stay. Nothing where
    /// the product is off; zero or less ends it.
    void freeFor(double seconds);
    bool isFreed() const { return freedUntil.has_value(); }
    /// Seconds that are left; 0 while not freed, and while an alert keeps it so beyond its time.
    double freedFor() const;
    void quit();
    void killapp();

    // Control.cpp
    /// Who is told of what can be seen from outside, one at most; null for nobody.
    void watch(control::Watcher* newWatcher) { watcher = newWatcher; }

    // OutsideEdit.cpp
    /// Another program has changed what these settings read as: the screen follows, the menu once
    /// it is closed. Before the start nothing, since that reads them all.
    void settingsEdited(const std::set<std::string, std::less<>>& edited);
    /// Stores a value of the right type, takes the key out for nothing, and has the change take
    /// effect as an edit does. False, and nothing is changed, where the product needs a shortcut.
    bool changeSetting(std::string_view key, std::optional<platform::Value> value);

    // DisplaySleep.cpp
    void noSleep();
    void readyToSleep();

    // LoginItem.cpp
    void setHelperAppBundleIdentifier();
    void autoLogin(bool on);
    void enableLoginItem();
    void disableLoginItem();
    void killHelperIfActive();
    void pressAvviaAlLogin();
    void recommendAutologinOnAtFirstCloseInfo();
    void alertDidEnd2(int returnCode);

    // ---- engine/ ----------------------------------------------------------------------------

    // Screens.cpp
    void updateScreensSize();
    void detectCurrentScreen();
    Rect topLeftFrame(const platform::Screen& screen) const;
    void noSecondaryMonitor();
    void applicationDidChangeScreenParameters();

    // Intake.cpp
    void createMouseEvent();
    void globalMonitorHandler(const platform::InputEvent& event);
    void eventTapCallback(const platform::InputEvent& event);
    /// Top-left coordinates.
    Point getCurrentMouseLocation();

    // Barrier.cpp
    /// P in top-left coordinates.
    void onMouseMovedOrClicked(Point P);
    /// Who is told why the cursor was held or let through, one at most; null for nobody.
    void explainTo(DecisionObserver* observer) { decisions = observer; }

    // Crossing.cpp; directions are 0 left, 1 right, 2 top, 3 bottom
    /// The length in pixels beyond which one step is a push.
    float calculatedSettedDistance() const;
    bool distanceBewteenCGPoint_andCGPoint_distanceMax(Point A, Point B, double D) const;
    void runForDirection(int direction);
    void runForRightLeft(int direction);
    void runForUpDown(int direction);

    // Placement.cpp; points in top-left coordinates
    /// Into the middle of an attached screen, where the barrier then holds the cursor.
    void crossToScreen(const platform::Screen& screen);
    void forceMouseToPoint(Point P);
    void forceMouseInCalculatedPoint();
    Rect restrictRect_aboutPixel(Rect rect, float pixels) const;
    /// The centre in the screen list's own bottom-left coordinates; (0, 0) for no screen.
    Point getCenterPointOfScreen(ScreenId screen) const;
    void moveCursorOnScreen(ScreenId screen);
    void moveCursorOnMainScreen();
    void rimettiCursoreSulleGiusteCoordinate();
    void updateCustomCursorPosition();
    void playTheSound();

    // Keyboard.cpp
    void onKeyPressed(std::uint16_t keyCode);
    void comboPressedReleased(bool held);

    // Hiding.cpp
    void hidecursor();
    void hidecursor2();
    void showcursor();
    void showcursor2();
    void hidecursorwithRetard();
    void killTimer();

    // ---- ui/ --------------------------------------------------------------------------------

    // StatusMenu.cpp
    void createBarStatusItem();
    /// Empties the menu and builds it again from the settings, the ticks included.
    void updateMenuItems();

    // MenuOpening.cpp
    void menuWillOpen(Menu& menu) override;
    void enableMainMenu();
    void openMenu();
    void dismissFocus();

    // MenuActions.cpp; an item or a box is the sender, valid until the menu is rebuilt
    void pressTimeMode();
    void pressHotBorders();
    void pressVelocity();
    void pressShowOnScroll();
    void CTRLALTCMDDidChanged(MenuItem& item);
    void freezeCursorAfterSwitch(MenuItem& item);
    void stayHiddenDidChanged(MenuItem& item);
    void presscheck(const CheckBox& box);
    void valueChange(const CheckBox& box);
    void showStayHiddenWarning();

    // Sliders.cpp
    void updateTV(const Slider& slider);
    void sliderDidMove(const Slider& slider);
    void velocitySliderDidMove(const Slider& slider);

    // HotBorders.cpp
    void highLightBoders(int shown);
    void initWindowBorders();
    void appari();
    void scompari();

    // Darkening.cpp
    void updatePalisor();
    void otherMonitorsDark();
    void otherMonitorsLight();
    void updateShadow();
    /// Of the monitors that are darkened, 0 to 1.
    float darkness() const;
    /// Whether a window darkens it now.
    bool isDark(const platform::Screen& screen) const;

    // Markers.cpp
    /// A new marker window over the whole screen, on screen already.
    std::unique_ptr<platform::Window> initwindowCursor2(const platform::Screen& screen);
    void initwindowCursor(platform::Window& window);

    // Shortcut.cpp
    void initGlobalShortCutForEnableDisable();
    void observeValueForKeyPath(std::string_view keyPath);
    void setCustomShortcutEnabled(bool enabled);
    void setHardcodedShortcutEnabled(bool enabled);
    void showShortcutPopup();
    bool hasUsableShortcut() const;
    std::string shortcutText() const;

    // InfoWindow.cpp
    void createViewInfo();
    void openInfo();
    void closeInfo();
    void openConsigli();
    platform::AttributedText hyperlinkFromString_withURL(std::string_view string,
                                                         std::string_view url) const;
    /// Always true: a click on a link of that view is dealt with.
    bool textView_clickedOnLink(std::string_view textView, std::string_view link);

    // HelpMenu.cpp
    void addTAMBERLOItemsToHelpMenu(Menu& menu) const;
    /// An entry of the promotion list; its tool tip says which product.
    void openApp(MenuItem& item);
    void openMacAppStorePage();
    void openFB();
    void openSupport();
    void opentamberloosx();
    void openGenericMailToTamberlo();
    void sendEmailTo_Subject_Body(std::string_view recipient, std::string_view subject,
                                  std::string_view body);
    std::string URLEncodedString(std::string_view text) const;

    // ---- remote/ ----------------------------------------------------------------------------

    // Rating.cpp
    void ratefunc();
    /// The alert and the context are not looked at.
    void alertDidEnd_returnCode_contextInfo(const platform::Alert* alert, int returnCode,
                                            const void* contextInfo);
    /// The setting that says whether the running version has been rated.
    std::string getCurrentRateString() const;

    // ActionService.cpp
    /// Asks the maker's service what to do and has the main thread do it. On a thread of its own.
    void callActionWebService();
    void responseActionWebService(const platform::JsonValue& reply);
    void alertDidEnd3_returnCode_contextInfo(const platform::Alert* alert, int returnCode,
                                             const void* contextInfo);
    bool isValidInfo(const std::optional<std::string>& text) const;

    // CalendarAlarms.cpp
    void turnOnCustomDefaultAlert();
    /// One pass over the events of the coming hour. Nothing while one is under way.
    void ReplaceDefaultEvents();

    /// What it was made with.
    const platform::Platform services;

  private:
    bool settingIsOne(std::string_view key) const;
    void setAndSynchronize(std::string_view key, platform::Value value);
    /// The operation is a template argument so that the callback holds one pointer and fits its
    /// function object: scheduling happens for every pointer event of a cursor hider.
    template <void (AppDelegate::*operation)()>
    TimerId schedule(double seconds, bool repeats, std::string_view selector) {
        return services.runLoop.schedule(seconds, repeats, selector,
                                         [this] { (this->*operation)(); });
    }
    void invalidate(TimerId timer) { services.runLoop.invalidate(timer); }

    void endFreeing();
    /// What follows from it is the caller's.
    void forgetFreeing();
    void activityChanged();
    void updateMenuSoon();
    void tellChanged() const;
    void tellCrossing(ScreenId from, ScreenId to) const;
    void holdOrRelease();
    void keepAwakeWhileActive();
    void lookAfterCalendarWhileActive();
    void resetCursor();
    void setUpHotBorderButtons(int variant);
    void takeFirstActions();
    void installEventIntake();
    void scheduleRating();
    Rect frameOf(ScreenId screen) const;

    bool wantsPointerEvent(platform::EventType type) const;
    void rearmHideTimer(double secondsWhenZero);
    void holdInsideScreen(Point P);
    void tellDecision(Point P, bool pushed) const;
    void moveCrossHair();
    void followHotEdges(Point P, int variant);
    int armedEdgeAt(Point P, int variant) const;
    void fireEdge(int direction, int variant);
    void postArrowKeystroke(std::uint16_t keyCode);
    void tellWhatIsWatched();
    platform::PointerWatch pointerWatch() const;
    void addHotStrips(platform::PointerWatch& watch, const Rect& screen) const;

    std::unique_ptr<platform::Window> coveringWindow(const platform::Screen& screen, int variant);
    void createMarkers();
    /// Lines of the cross-hair; bottom-left, with the cursor's place top-left.
    Rect lineAcross(const Rect& screen, Point cursor) const;
    Rect uprightLine(Point cursor) const;
    void letMarkersReplaceCursor();

    void chosen(MenuItem& item) override;
    void moved(Slider& slider) override;
    void clicked(CheckBox& box) override;
    MenuItem localizedItem(std::string_view key, std::string_view action = {}) const;
    MenuItem switchItem(std::string_view key, std::string_view action,
                        std::string_view setting) const;
    void addEnableEntry();
    void addDarkLevelEntry();
    void addTimeSlider();
    void addBoundsEntry();
    void addVelocityEntry();
    void addBreakEntry();
    void addTimeModeEntry();
    void addModifierEntry();
    void addScrollEntry();
    void addPromotion();
    double stackInfoViews(std::vector<platform::InfoView>& views) const;
    platform::InfoText textView(std::string_view name, double y,
                                platform::AttributedText text) const;
    std::string infoDescription() const;
    void pressed(const platform::InfoButton& button) override;
    bool clickedOnLink(const platform::InfoText& view, const std::string& link) override;

    MenuItem boundsViewItem();
    void setLabel(Label& label, std::string text);
    void toggleSetting(std::string_view key);
    void storeFlippedState(MenuItem& item, std::string_view key);
    void reopenMenu();

    void turnOffCustomDefaultAlert();
    void startAlarmPasses(bool granted);
    void rewriteAlarms(const std::shared_ptr<AlarmPass>& pass);
    platform::CalendarAlarm theOneAlarm(const std::vector<platform::CalendarAlarm>& alarms) const;
    void alarmsSaved(const std::shared_ptr<AlarmPass>& pass, const std::string& id,
                     const std::optional<std::string>& error);

    std::shared_ptr<AlarmPass> alarmPass; ///< while a pass is under way
    int accessRequest = 0;                ///< answers to earlier ones come too late

    control::Watcher* watcher = nullptr;
    DecisionObserver* decisions = nullptr;
    std::optional<double> freedUntil; ///< by the run loop's clock
    TimerId freeingTimer = TimerId::none;
    ScreenId heldScreen = ScreenId::none; ///< the one that was held last

    static AppDelegate* sharedInstance;
};

} // namespace palisor
