#include "strings/Tables.h"

namespace strings {

namespace {

constexpr Text texts[] = {
    {"0_DARK_LEVEL", "Not darkened"},
    {"0_SECONDI", "As soon as the mouse rests"},
    {"ABILITA", "Switch On"},
    {"BORDI_ATTIVI", "Active Borders"},
    {"BOUNDS_MESSAGE", "Tick the sides and corners at which the cursor acts."},
    {"BOUNDS_MESSAGE_VELLUMOR_ADDICT", " At a ticked side the cursor hides at once."},
    {"BREAK_AFTER_SWITCHText", "Pause Briefly After Wrapping"},
    {"CTRLALTCMDText", "Hold Left Ctrl+Alt+Super to Override"},
    {"CTRLALTCMDTextVellumor", "Left Ctrl+Alt+Super Hides the Cursor"},
    {"DARK_LEVEL", "Darken Other Monitors"},
    {"DISABILITA", "Switch Off"},
    {"Hot Borders Mode", "Hot Borders"},
    {"N_SECONDI", "After %d s without movement"},
    {"N_SENSIBILITY", "Push strength: %d"},
    {"OK", "OK"},
    {"QUIT", "Quit"},
    {"SHOW_ON_SCROLL", "Show the Cursor When Scrolling"},
    {"STAY_HIDDEN", "Keep the Cursor Hidden"},
    {"STAY_HIDDEN_WARNING_TEXT",
     "Record a shortcut first. Without one there would be no way to bring the cursor back."},
    {"STAY_HIDDEN_WARNING_TITLE", "A shortcut is needed"},
    {"TEMPO", "Hide When the Mouse Rests"},
    {"VELOCITYText", "Push Hard to Cross"},
    {"WARNING", "One monitor only"},
};

} // namespace

const std::span<const Text> english = texts;

} // namespace strings
