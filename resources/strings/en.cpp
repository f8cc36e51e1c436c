#include "strings/Tables.h"

namespace strings {

namespace {

constexpr Text texts[] = {
    {"0_DARK_LEVEL", "Not darkened"},
    {"0_SECONDI", "As soon as the mouse rests"},
    {"ABILITA", "Switch On"},
    {"AVVIA_AL_LOGIN", "Start at Login"},
    {"BORDI_ATTIVI", "Active Borders"},
    {"BOUNDS_MESSAGE", "Tick the sides and corners at which the cursor acts."},
    {"BOUNDS_MESSAGE_VELLUMOR_ADDICT", " At a ticked side the cursor hides at once."},
    {"BREAK_AFTER_SWITCHText", "Pause Briefly After Wrapping"},
    {"CALENDAR_NONE",
     "Create a calendar that can be changed in the desktop's calendar program, then "
     "switch Calendar Alerts off and on."},
    {"CALENDAR_NO_FOLDER", "The folder of calendar files cannot be read. The system log says why."},
    {"CALENDAR_NO_MODULE",
     "Install the package libecal-2.0-2, then switch Calendar Alerts off and on."},
    {"CALENDAR_NO_SERVER",
     "Install the package evolution-data-server, then switch Calendar Alerts off and on."},
    {"CALENDAR_UNAVAILABLE", "The calendars cannot be reached"},
    {"CONSIGLIA", "Recommend"},
    {"CORNER_BOTTOM_LEFT", "Bottom left corner"},
    {"CORNER_BOTTOM_RIGHT", "Bottom right corner"},
    {"CORNER_TOP_LEFT", "Top left corner"},
    {"CORNER_TOP_RIGHT", "Top right corner"},
    {"CTRLALTCMDText", "Hold Left Ctrl+Alt+Super to Override"},
    {"CTRLALTCMDTextVellumor", "Left Ctrl+Alt+Super Hides the Cursor"},
    {"DARK_LEVEL", "Darken Other Monitors"},
    {"DISABILITA", "Switch Off"},
    {"DONE", "Done"},
    {"FACEBOOK_PAGE", "Follow Us"},
    {"Hot Borders Mode", "Hot Borders"},
    {"LESS", "less"},
    {"LOGIN_HELPER", "%@ (helper at login)"},
    {"MAC_APP_STORE_PAGE", "Product Page"},
    {"MAIL_BOTTOM", "\n\nSent about %@"},
    {"MI_PIACE", "I Like It"},
    {"MORE", "more"},
    {"NO", "Not Now"},
    {"NON_MI_PIACE", "Not Really"},
    {"NON_MOSTRARE_FINESTRA", "Do not show this window at start"},
    {"NOTICE_LIMITED", "This desktop does not allow it all"},
    {"NOTICE_LIMITED_TEXT", "%@ It works in a session of X11, where the desktop has one."},
    {"NOTICE_NOT_AWAKE", "The displays may go to sleep"},
    {"NOTICE_NOT_AWAKE_TEXT",
     "Nothing in this session can keep them on. Start the desktop's power manager, for instance "
     "xfce4-power-manager, then switch Stay Awake off and on."},
    {"NOTICE_NOT_HELD", "The cursor is not held"},
    {"NOTICE_NOT_HELD_TEXT", "%@"},
    {"NOTICE_NO_OPENER", "The page or mail cannot be opened"},
    {"NOTICE_NO_OPENER_TEXT",
     "Install the package xdg-utils and a web browser, or a mail program, and choose it again."},
    {"NOTICE_SETTINGS_ASIDE", "The settings could not be read"},
    {"NOTICE_SETTINGS_ASIDE_TEXT",
     "They begin anew. What was there is now in %@: look through the menu, or quit, mend that file "
     "and give it back its name."},
    {"NOTICE_SHORTCUT_TAKEN", "%@ is used by another program"},
    {"NOTICE_SHORTCUT_TAKEN_TEXT",
     "%@ does nothing here. Record another shortcut in the menu, or free this one in the other "
     "program and start anew."},
    {"NO_TRAY", "No place for the icon"},
    {"NO_TRAY_TEXT",
     "Start %@ once more to open its menu: it runs, but this desktop has no tray. Or "
     "add a notification area to the panel."},
    {"N_SECONDI", "After %d s without movement"},
    {"N_SENSIBILITY", "Push strength: %d"},
    {"OK", "OK"},
    {"OPEN_SITE", "Open the makers’ page"},
    {"QUIT", "Quit"},
    {"RATE_THIS_APP", "Do you like it? A few words on its product page help us a lot."},
    {"RECOMMEND_STARTATLOGIN", "Start by itself when you log in?"},
    {"RECORDER_CLEAR", "Clear"},
    {"RECORDER_DISABLED", "Shortcuts are switched off in the settings file: set "
                          "customShortcutEnabled to true there."},
    {"RECORDER_EMPTY", "Click to record"},
    {"RECORDER_FIXED", "%@ is kept by this program for itself: press another."},
    {"RECORDER_HINT", "Hold Ctrl, Alt or Super and press a key. Esc cancels, Backspace clears."},
    {"RECORDER_KEYBOARD",
     "Another program has the keyboard: close its menu or window, then click here again."},
    {"RECORDER_MODIFIERS", "A key alone is not enough: hold Ctrl, Alt or Super as well."},
    {"RECORDER_NEEDED", "A shortcut is needed first: hold Ctrl, Alt or Super and press a key."},
    {"RECORDER_RECORDING", "Press the keys…"},
    {"RECORDER_SHIFT", "Shift alone is not enough: hold Ctrl, Alt or Super as well."},
    {"RECORDER_TAKEN", "%@ is used by another program: press another."},
    {"RECORDER_UNKNOWN_KEY", "This key cannot be used: press another."},
    {"SHORTCUT", "Keyboard Shortcut…"},
    {"SHORTCUT_INSTRUCTIONS", "Record a shortcut that switches %@ on and off, so that you can "
                              "always bring the cursor back."},
    {"SHORTCUT_INSTRUCTIONS_PALISOR",
     "Record a shortcut that switches %@ on and off, so that you can always free the cursor."},
    {"SHOW_ON_SCROLL", "Show the Cursor When Scrolling"},
    {"SI", "Yes"},
    {"SIDE_BOTTOM", "Bottom side"},
    {"SIDE_LEFT", "Left side"},
    {"SIDE_RIGHT", "Right side"},
    {"SIDE_TOP", "Top side"},
    {"STATE_OFF", "off"},
    {"STATE_ON", "on"},
    {"STAY_HIDDEN", "Keep the Cursor Hidden"},
    {"STAY_HIDDEN_WARNING_TEXT",
     "Record a shortcut first. Without one there would be no way to bring the cursor back."},
    {"STAY_HIDDEN_WARNING_TITLE", "A shortcut is needed"},
    {"SUPPORT", "Get Help"},
    {"TEMPO", "Hide When the Mouse Rests"},
    {"TESTO_AGGIUNTO", "\n\nEverything is in the panel’s icon: click it for the menu, right-click "
                       "it to switch on and off."},
    {"TESTO_ORBISANT", "Orbisant joins opposite edges of your desktop: push the cursor out on one "
                       "side and it comes back in on the other."},
    {"TESTO_PALISOR", "Palisor keeps the cursor on the monitor where you work and darkens the "
                      "others. Hold the left Ctrl, Alt and Super keys to cross, or switch on "
                      "pushing in the menu and give the mouse a quick push sideways.\n\nClick the "
                      "icon in the panel for the menu, right-click it to switch on and off."},
    {"TESTO_QUENLOW", "Quenlow changes desktops: push the cursor against the left or right edge of "
                      "the screen and you are on the next one."},
    {"TESTO_VELLUMOR", "Vellumor hides the cursor while you read or watch, and shows it again as "
                       "soon as you move the mouse."},
    {"VELOCITYText", "Push Hard to Cross"},
    {"WARNING", "One monitor only"},
};

} // namespace

const std::span<const Text> english = texts;

} // namespace strings
