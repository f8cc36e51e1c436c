#include "strings/Strings.h"

#include <algorithm>

namespace strings {

namespace {

constexpr std::string_view everyProduct;

/// What the program says where it finds a single screen, to people who have it from a store.
constexpr std::string_view oneMonitor =
    "As described on the Mac App Store, the app is useful for multi monitor users only and without "
    "Mirror Displays mode.";

// The labels of sliders say the value and no more, as that of the darkness does: what it is the
// value of stands in the entry. The products without a description of their own have it in the text
// that is appended to one.
constexpr Wording english[] = {
    {everyProduct,
     {oneMonitor, "It needs two or more monitors that show different pictures. Connect another "
                  "one, or switch mirroring off, and start it again."}},
    {everyProduct, {"0_SECONDI", "At once"}},
    {everyProduct, {"N_SECONDI", "%d s"}},
    {everyProduct, {"N_SENSIBILITY", "%d%"}},
    {"calendar-alerts", {"CTRLALTCMDText", "Left Ctrl+Alt+Super (No Effect Here)"}},
    {"calendar-alerts",
     {"TESTO_AGGIUNTO",
      "Calendar Alerts gives every event of the coming hour one reminder, at its start and with a "
      "sound, as long as it is switched on.\n\nEverything is in the panel’s icon: click it for the "
      "menu, right-click it to switch on and off."}},
    {"crosshair", {"CTRLALTCMDText", "Left Ctrl+Alt+Super (No Effect Here)"}},
    {"crosshair",
     {"TESTO_AGGIUNTO",
      "Crosshair draws two lines across your monitors that meet where the cursor is, in place of "
      "the cursor itself.\n\nEverything is in the panel’s icon: click it for the menu, right-click "
      "it to switch on and off."}},
    {"orbisant", {"CTRLALTCMDText", "Hold Left Ctrl+Alt+Super to Wrap, Release to Stop"}},
    {"palisor", {"CTRLALTCMDText", "Hold Left Ctrl+Alt+Super to Lift the Barrier"}},
    {"quenlow", {"CTRLALTCMDText", "Hold Left Ctrl+Alt+Super to Change Desktops, Release to Stop"}},
    {"stay-awake", {"CTRLALTCMDText", "Left Ctrl+Alt+Super (No Effect Here)"}},
    {"stay-awake",
     {"TESTO_AGGIUNTO",
      "Stay Awake keeps your monitors lit as long as it is switched on: no screen saver, no power "
      "saving.\n\nEverything is in the panel’s icon: click it for the menu, right-click it to "
      "switch on and off."}},
};

constexpr Wording italian[] = {
    {everyProduct,
     {oneMonitor, "Servono due o più monitor che mostrano immagini diverse. Collegane un altro, o "
                  "disattiva la duplicazione, e riavvia il programma."}},
    {everyProduct, {"0_SECONDI", "Subito"}},
    {everyProduct, {"N_SECONDI", "%d s"}},
    {everyProduct, {"N_SENSIBILITY", "%d%"}},
    {"calendar-alerts", {"CTRLALTCMDText", "Ctrl+Alt+Super a sinistra (qui senza effetto)"}},
    {"calendar-alerts",
     {"TESTO_AGGIUNTO",
      "Calendar Alerts dà a ogni evento della prossima ora un solo promemoria, all’inizio e con un "
      "suono, finché è attivo.\n\nTrovi tutto nell’icona del pannello: fai clic per aprire il "
      "menu, "
      "clic destro per attivare e disattivare."}},
    {"crosshair", {"CTRLALTCMDText", "Ctrl+Alt+Super a sinistra (qui senza effetto)"}},
    {"crosshair",
     {"TESTO_AGGIUNTO",
      "Crosshair disegna sui monitor due linee che si incrociano dove si trova il cursore, al "
      "posto "
      "del cursore stesso.\n\nTrovi tutto nell’icona del pannello: fai clic per aprire il menu, "
      "clic destro per attivare e disattivare."}},
    {"orbisant",
     {"CTRLALTCMDText", "Tieni premuti Ctrl+Alt+Super a sinistra per passare, rilascia per "
                        "smettere"}},
    {"palisor",
     {"CTRLALTCMDText", "Tieni premuti Ctrl+Alt+Super a sinistra per togliere la barriera"}},
    {"quenlow",
     {"CTRLALTCMDText", "Tieni premuti Ctrl+Alt+Super a sinistra per cambiare spazio, rilascia per "
                        "smettere"}},
    {"stay-awake", {"CTRLALTCMDText", "Ctrl+Alt+Super a sinistra (qui senza effetto)"}},
    {"stay-awake",
     {"TESTO_AGGIUNTO",
      "Stay Awake tiene accesi i monitor finché è attivo: niente salvaschermo, niente risparmio "
      "energetico.\n\nTrovi tutto nell’icona del pannello: fai clic per aprire il menu, clic "
      "destro "
      "per attivare e disattivare."}},
};

/// The texts that tell in their last paragraph of the panel's icon.
constexpr std::string_view tellOfIcon[] = {"TESTO_PALISOR", "TESTO_AGGIUNTO"};
constexpr std::string_view paragraph = "\n\n";

constexpr Text tellOfSwitch[] = {
    {"en",
     "It is a switch in the quick settings, which open at the end of the top bar: click it to "
     "switch on and off, and the arrow beside it for the menu."},
    {"it", "È un interruttore nelle impostazioni rapide, che si aprono in fondo alla barra "
           "superiore: fai clic per attivare e disattivare, e sulla freccia accanto per aprire il "
           "menu."},
};

} // namespace

std::span<const Wording> wordings(std::string_view language) {
    if (language == "en") return english;
    if (language == "it") return italian;
    return {};
}

std::string_view wordingOf(std::string_view product, std::string_view language,
                           std::string_view key) {
    const auto all = wordings(language);
    const auto found = std::ranges::find_if(all, [&](const Wording& each) {
        return each.text.key == key && (each.product.empty() || each.product == product);
    });
    return found == all.end() ? lookUp(language, key) : found->text.text;
}

std::optional<std::string> wordingWithSwitch(std::string_view product, std::string_view language,
                                             std::string_view key) {
    const auto* const told = std::ranges::find(tellOfSwitch, language, &Text::key);
    if (told == std::end(tellOfSwitch) ||
        std::ranges::find(tellOfIcon, key) == std::end(tellOfIcon))
        return std::nullopt;
    const std::string_view text = wordingOf(product, language, key);
    return std::string(text.substr(0, text.rfind(paragraph) + paragraph.size())) +
           std::string(told->text);
}

} // namespace strings
