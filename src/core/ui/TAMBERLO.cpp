#include "ui/TAMBERLO.h"

#include "app/Keys.h"
#include "util/Format.h"
#include "util/Languages.h"
#include "util/MacUtils.h"

#include <memory>

namespace palisor {

namespace {

constexpr std::string_view headingId = "-1";
constexpr std::string_view withoutStorePage = "123456789"; ///< stands for no id
constexpr std::string_view forTelephones = "611203459";

enum class Shown { always, inShort, inLong, inItalian };
enum class Kind { heading, product, separator };

struct Slot {
    std::string_view title;
    std::string_view id = headingId;
    Shown shown = Shown::always;
    Kind kind = Kind::product;
    std::string_view format = "%@";
};

constexpr Slot slots[] = {
    {.title = "Others", .shown = Shown::inShort, .kind = Kind::heading},
    {.title = "OSX", .shown = Shown::inLong, .kind = Kind::heading},
    {.title = "Skelder - Browser", .id = "1200000418"},
    {.title = "utilities", .shown = Shown::inLong, .kind = Kind::heading},
    {.title = "Vellumor", .id = "611203457"},
    {.title = "Orbisant", .id = "611203458"},
    {.title = "Quenlow", .id = withoutStorePage, .shown = Shown::inLong},
    {.title = "Brantemere", .id = "1200000417"},
    {.title = "Thrumbleton", .id = "1200000419"},
    {.title = "", .shown = Shown::inLong, .kind = Kind::separator},
    {.title = "iOS", .shown = Shown::inLong, .kind = Kind::heading},
    {.title = "KORVADIN", .id = forTelephones, .shown = Shown::inShort, .format = "%@ (iOS)"},
    {.title = "KORVADIN", .id = forTelephones, .shown = Shown::inLong},
    {.title = "Ostrelle", .id = "611203460", .shown = Shown::inItalian},
};

std::unique_ptr<platform::MenuItem> itemOf(const platform::Platform& services, const Slot& slot) {
    auto item = std::make_unique<platform::MenuItem>();
    item->toolTip = slot.id;
    if (slot.kind == Kind::separator) {
        item->separator = true;
        return item;
    }
    item->title = formatted(std::string(slot.format), slot.title);
    item->text = item->title;
    if (slot.kind == Kind::heading) return item;
    item->hint = item->title;
    item->action = "openApp:";
    item->madeWithAction = true;
    item->image = "miniicon_" + std::string(slot.id);
    const auto page = slot.id == withoutStorePage ? dictionary::makerSite : "StoreWebPage";
    item->leadsNowhere =
        !services.workspace.leadsSomewhere(std::string(services.bundle.string(page)));
    return item;
}

} // namespace

void TAMBERLO::addOtherItemsToMenu_shortVersion_skippingAPP(const platform::Platform& services,
                                                            platform::Menu& menu, bool shortVersion,
                                                            std::string_view skippedId) {
    const bool italian = preferredLanguage(services.system) == "it";
    for (const Slot& slot : slots) {
        const bool shown = slot.shown == Shown::always ||
                           (slot.shown == Shown::inShort && shortVersion) ||
                           (slot.shown == Shown::inLong && !shortVersion) ||
                           (slot.shown == Shown::inItalian && italian);
        if (shown && slot.id != skippedId) menu.items.push_back(itemOf(services, slot));
    }
}

void TAMBERLO::openApp(const platform::Platform& services, const platform::MenuItem& item) {
    const std::string& id = item.toolTip;
    if (id == withoutStorePage) {
        services.workspace.openURL(
            std::string(services.bundle.string(dictionary::makerSite)) +
            "/app/quenlow/index.php?lingua=" + preferredLanguage(services.system));
        return;
    }
    // Compared with a product's name, which no id equals: its page is asked for as a computer's.
    const bool osx = id != forTelephones && id != "Ostrelle";
    MacUtils::openStorePageWithID_osx(services, id, osx);
}

} // namespace palisor
