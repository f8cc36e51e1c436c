#pragma once

#include <string_view>

// The vocabulary of stored settings. Values of the first group are strings ("0", "1" or a decimal
// number), all others are typed; the two forms are never mixed for one key.

namespace palisor::keys {

using Key = std::string_view;

constexpr Key PRIMOACCESSO = "PRIMOACCESSO"; ///< the first run is over
constexpr Key PRIMOACCESSOCONSLIDER = "PRIMOACCESSOCONSLIDER";
constexpr Key CHECK_0 = "CHECK_0";
constexpr Key CHECK_1 = "CHECK_1";       ///< start at login
constexpr Key SCHEDULE = "SCHEDULE";     ///< whole seconds
constexpr Key HOT_BOUNDS = "HOT_BOUNDS"; ///< hot-borders mode

constexpr Key ATTIVO = "ATTIVO"; ///< the product is switched on
constexpr Key SHOW_ON_SCROLL = "SHOW_ON_SCROLL";
constexpr Key CTRLALTCMD = "CTRLALTCMD";           ///< the key combination is honoured
constexpr Key VELOCITY_OPTION = "VELOCITY_OPTION"; ///< crossings need a push
constexpr Key VELOCITY = "VELOCITY";
constexpr Key BREAK_AFTER_SWITCH = "BREAK_AFTER_SWITCH";
constexpr Key OFFSET = "OFFSET";
constexpr Key ALARM_SOUND = "ALARM_SOUND";
constexpr Key TIME_MODE = "TIME_MODE";
constexpr Key STAY_HIDDEN = "STAY_HIDDEN";
constexpr Key OTHERS_DARK = "OTHERS_DARK"; ///< 0 to darkestLevel
constexpr int darkestLevel = 20;
constexpr Key BUTLATO1 = "BUTLATO1";
constexpr Key BUTLATO2 = "BUTLATO2";
constexpr Key BUTLATO3 = "BUTLATO3";
constexpr Key BUTLATO4 = "BUTLATO4";
constexpr Key BUTANGOLO1 = "BUTANGOLO1";
constexpr Key BUTANGOLO2 = "BUTANGOLO2";
constexpr Key BUTANGOLO3 = "BUTANGOLO3";
constexpr Key BUTANGOLO4 = "BUTANGOLO4";

constexpr Key customShortcut = "customShortcut"; ///< a dictionary: keyCode and modifierFlags
constexpr Key customShortcutEnabled = "customShortcutEnabled";
constexpr Key hardcodedShortcutEnabled = "hardcodedShortcutEnabled";
constexpr Key RECOMMENDAUTOLOGIN = "RECOMMENDAUTOLOGIN"; ///< a string, as the first group

constexpr Key cookies = "cookies";           ///< data, one line a cookie
constexpr Key windowFrame = "Window Frame "; ///< begins the key of each remembered window

constexpr Key qwe = "qwe"; ///< a probe that is written and taken away again

} // namespace palisor::keys

// Keys of the information dictionary that more than one file reads.
namespace palisor::dictionary {

constexpr std::string_view IDApp = "IDApp"; ///< the product's number
constexpr std::string_view makerSite = "MakerSite";
constexpr std::string_view supportMail = "SupportMail";

} // namespace palisor::dictionary

namespace palisor::accessories {

constexpr std::string_view shortcutRecorder = "customShortcutView"; ///< of an alert

} // namespace palisor::accessories

/// The tags of check boxes. That of a box without a name here is the number of a corner; CHECK_,
/// BUTANGOLO and BUTLATO go before such a number to make a key.
namespace palisor::tags {

constexpr int hideInfoWindow = 0;
constexpr int startAtLogin = 1;
constexpr int side = 10; ///< added to the number of a side

} // namespace palisor::tags
