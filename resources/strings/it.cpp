#include "strings/Tables.h"

namespace strings {

namespace {

constexpr Text texts[] = {
    {"0_DARK_LEVEL", "Non oscurati"},
    {"0_SECONDI", "Appena il mouse si ferma"},
    {"ABILITA", "Attiva"},
    {"AVVIA_AL_LOGIN", "Avvia al login"},
    {"BORDI_ATTIVI", "Bordi attivi"},
    {"BOUNDS_MESSAGE", "Seleziona i lati e gli angoli in cui il cursore agisce."},
    {"BOUNDS_MESSAGE_VELLUMOR_ADDICT", " Su un lato selezionato il cursore si nasconde subito."},
    {"BREAK_AFTER_SWITCHText", "Breve pausa dopo il passaggio"},
    {"CALENDAR_NONE", "Crea un calendario modificabile nel programma calendario del desktop, poi "
                      "disattiva e riattiva Calendar Alerts."},
    {"CALENDAR_NO_FOLDER",
     "Impossibile leggere la cartella dei file di calendario. Il registro di sistema dice perché."},
    {"CALENDAR_NO_MODULE",
     "Installa il pacchetto libecal-2.0-2, poi disattiva e riattiva Calendar Alerts."},
    {"CALENDAR_NO_SERVER",
     "Installa il pacchetto evolution-data-server, poi disattiva e riattiva Calendar Alerts."},
    {"CALENDAR_UNAVAILABLE", "I calendari non sono raggiungibili"},
    {"CONSIGLIA", "Consiglia"},
    {"CORNER_BOTTOM_LEFT", "Angolo in basso a sinistra"},
    {"CORNER_BOTTOM_RIGHT", "Angolo in basso a destra"},
    {"CORNER_TOP_LEFT", "Angolo in alto a sinistra"},
    {"CORNER_TOP_RIGHT", "Angolo in alto a destra"},
    {"CTRLALTCMDText", "Tieni premuti Ctrl+Alt+Super a sinistra per sospendere"},
    {"CTRLALTCMDTextVellumor", "Ctrl+Alt+Super a sinistra nasconde il cursore"},
    {"DARK_LEVEL", "Oscura gli altri monitor"},
    {"DISABILITA", "Disattiva"},
    {"DONE", "Fatto"},
    {"FACEBOOK_PAGE", "Seguici"},
    {"Hot Borders Mode", "Bordi caldi"},
    {"LESS", "meno"},
    {"LOGIN_HELPER", "%@ (aiuto al login)"},
    {"MAC_APP_STORE_PAGE", "Pagina del prodotto"},
    {"MAIL_BOTTOM", "\n\nA proposito di %@"},
    {"MI_PIACE", "Mi piace"},
    {"MORE", "più"},
    {"NO", "Non ora"},
    {"NON_MI_PIACE", "Non molto"},
    {"NON_MOSTRARE_FINESTRA", "Non mostrare questa finestra all’avvio"},
    {"NOTICE_LIMITED", "Questo desktop non lo permette del tutto"},
    {"NOTICE_LIMITED_TEXT", "%@ Funziona in una sessione X11, dove il desktop ne ha una."},
    {"NOTICE_NOT_AWAKE", "Gli schermi potrebbero spegnersi"},
    {"NOTICE_NOT_AWAKE_TEXT",
     "Niente in questa sessione può tenerli accesi. Avvia il gestore energetico del desktop, per "
     "esempio xfce4-power-manager, poi disattiva e riattiva Stay Awake."},
    {"NOTICE_NOT_HELD", "Il cursore non è trattenuto"},
    {"NOTICE_NOT_HELD_TEXT", "%@"},
    {"NOTICE_NO_OPENER", "Impossibile aprire la pagina o il messaggio"},
    {"NOTICE_NO_OPENER_TEXT",
     "Installa il pacchetto xdg-utils e un browser, o un programma di posta, e scegli di nuovo."},
    {"NOTICE_SETTINGS_ASIDE", "Impossibile leggere le impostazioni"},
    {"NOTICE_SETTINGS_ASIDE_TEXT",
     "Ricominciano da capo. Quelle di prima sono ora in %@: scorri il menu, oppure esci, ripara "
     "quel file e ridagli il suo nome."},
    {"NOTICE_SHORTCUT_TAKEN", "%@ è usata da un altro programma"},
    {"NOTICE_SHORTCUT_TAKEN_TEXT",
     "%@ qui non fa nulla. Registra un’altra scorciatoia nel menu, oppure libera questa nell’altro "
     "programma e riavvia."},
    {"NO_TRAY", "Nessun posto per l’icona"},
    {"NO_TRAY_TEXT", "Avvia %@ ancora una volta per aprirne il menu: è in funzione, ma questo "
                     "desktop non ha un’area "
                     "di notifica. Oppure aggiungila al pannello."},
    {"N_SECONDI", "Dopo %d s senza movimento"},
    {"N_SENSIBILITY", "Forza della spinta: %d"},
    {"OK", "OK"},
    {"OPEN_SITE", "Apri la pagina degli autori"},
    {"QUIT", "Esci"},
    {"RATE_THIS_APP", "Ti piace? Due righe sulla pagina del prodotto ci aiutano molto."},
    {"RECOMMEND_STARTATLOGIN", "Vuoi che si avvii da solo quando accedi?"},
    {"RECORDER_CLEAR", "Cancella"},
    {"RECORDER_DISABLED", "Le scorciatoie sono disattivate nel file delle impostazioni: imposta lì "
                          "customShortcutEnabled su true."},
    {"RECORDER_EMPTY", "Fai clic per registrare"},
    {"RECORDER_FIXED", "%@ è riservata a questo programma: premine un’altra."},
    {"RECORDER_HINT",
     "Tieni premuto Ctrl, Alt o Super e premi un tasto. Esc annulla, Backspace cancella."},
    {"RECORDER_KEYBOARD", "Un altro programma occupa la tastiera: chiudi il suo menu o la sua "
                          "finestra, poi fai di nuovo clic qui."},
    {"RECORDER_MODIFIERS", "Un tasto da solo non basta: tieni premuto anche Ctrl, Alt o Super."},
    {"RECORDER_NEEDED",
     "Prima serve una scorciatoia: tieni premuto Ctrl, Alt o Super e premi un tasto."},
    {"RECORDER_RECORDING", "Premi i tasti…"},
    {"RECORDER_SHIFT", "Maiusc da solo non basta: tieni premuto anche Ctrl, Alt o Super."},
    {"RECORDER_TAKEN", "%@ è usata da un altro programma: premine un’altra."},
    {"RECORDER_UNKNOWN_KEY", "Questo tasto non si può usare: premine un altro."},
    {"SHORTCUT", "Scorciatoia da tastiera…"},
    {"SHORTCUT_INSTRUCTIONS", "Registra una scorciatoia che attiva e disattiva %@, così potrai "
                              "sempre far riapparire il cursore."},
    {"SHORTCUT_INSTRUCTIONS_PALISOR",
     "Registra una scorciatoia che attiva e disattiva %@, così potrai sempre liberare il cursore."},
    {"SHOW_ON_SCROLL", "Mostra il cursore quando scorri"},
    {"SI", "Sì"},
    {"SIDE_BOTTOM", "Lato inferiore"},
    {"SIDE_LEFT", "Lato sinistro"},
    {"SIDE_RIGHT", "Lato destro"},
    {"SIDE_TOP", "Lato superiore"},
    {"STATE_OFF", "non attivo"},
    {"STATE_ON", "attivo"},
    {"STAY_HIDDEN", "Tieni nascosto il cursore"},
    {"STAY_HIDDEN_WARNING_TEXT",
     "Registra prima una scorciatoia. Senza, non ci sarebbe modo di far riapparire il cursore."},
    {"STAY_HIDDEN_WARNING_TITLE", "Serve una scorciatoia"},
    {"SUPPORT", "Assistenza"},
    {"TEMPO", "Nascondi quando il mouse è fermo"},
    {"TESTO_AGGIUNTO", "\n\nTrovi tutto nell’icona del pannello: fai clic per aprire il menu, clic "
                       "destro per attivare e disattivare."},
    {"TESTO_ORBISANT", "Orbisant unisce i bordi opposti del desktop: spingi il cursore fuori da un "
                       "lato e rientra dall’altro."},
    {"TESTO_PALISOR",
     "Palisor tiene il cursore sul monitor su cui lavori e oscura gli altri. Per passare tieni "
     "premuti i tasti Ctrl, Alt e Super di sinistra, oppure attiva la spinta nel menu e muovi il "
     "mouse di scatto verso il lato.\n\nFai clic sull’icona nel pannello per aprire il menu, clic "
     "destro per attivare e disattivare."},
    {"TESTO_QUENLOW", "Quenlow cambia spazio di lavoro: spingi il cursore contro il bordo sinistro "
                      "o destro dello schermo e passi a quello accanto."},
    {"TESTO_VELLUMOR", "Vellumor nasconde il cursore mentre leggi o guardi, e lo mostra di nuovo "
                       "appena muovi il mouse."},
    {"VELOCITYText", "Spingi forte per passare"},
    {"WARNING", "Un solo monitor"},
};

} // namespace

const std::span<const Text> italian = texts;

} // namespace strings
