#include "app/Keys.h"
#include "app/Operations.h"
#include "app/Variants.h"
#include "util/Format.h"

// The window that welcomes the user and tells about the product. Its contents are laid out from the
// bottom upwards, as high as the pictures and the texts need.

namespace palisor {

using platform::AttributedText;
using platform::InfoButton;
using platform::InfoCheckBox;
using platform::InfoText;
using platform::InfoView;

namespace {

constexpr double windowWidth = 400;
constexpr double belowMiddle = 300; ///< of the screen's height
constexpr double textLeft = 20;
constexpr double textWidth = 360;
constexpr double buttonWidth = 100;
constexpr double buttonHeight = 40;
constexpr double gap = 19;       ///< above the description and the product's picture
constexpr double topMargin = 20; ///< above that
constexpr double logoGap = 24;
constexpr double logoInset = 9; ///< of its right edge from the middle
constexpr double recommendGap = 10;
constexpr double descriptionSlack = 5;

constexpr std::uint32_t moveToActiveSpace = 2;

struct Content {
    std::string_view description; ///< a key; empty for none
    std::string picture;
};

Content contentOf(int variant) {
    switch (variant) {
    case variants::cursorHider:
        return {"TESTO_VELLUMOR", "Vellumor"};
    case variants::desktopSwitcher:
        return {"TESTO_QUENLOW", "Quenlow"};
    case variants::wrapAround:
        return {"TESTO_ORBISANT", "Orbisant"};
    case variants::barrier:
        return {"TESTO_PALISOR", "Palisor"};
    default:
        return {{}, formatted("icon_%d", variant)};
    }
}

double topOf(const Rect& frame) {
    return frame.y + frame.height;
}

/// A picture in its natural size that leads to the maker's site.
InfoButton pictureButton(const platform::Bundle& bundle, const std::string& image, Rect frame) {
    return {.frame = frame,
            .image = image,
            .says = bundle.localizedString("OPEN_SITE"),
            .link = std::string(bundle.string(dictionary::makerSite)),
            .action = "opentamberloosx"};
}

} // namespace

void AppDelegate::createViewInfo() {
    const auto& bundle = services.bundle;
    windowInfo->setTitle(bundle.displayName() + " " + bundle.version());
    windowInfo->setFrame({});
    if (settingIsOne(keys::CHECK_0))
        closeInfo();
    else
        openInfo();

    std::vector<InfoView> views;
    const double height = stackInfoViews(views);
    windowInfo->setViews(std::move(views));

    const Rect screen = services.displays.frame(services.displays.mainScreen()).value_or(Rect{});
    windowInfo->setFrame(
        {screen.width / 2 - windowWidth / 2, screen.height / 2 - belowMiddle, windowWidth, height});
}

/// Appends the contents and returns their height.
double AppDelegate::stackInfoViews(std::vector<InfoView>& views) const {
    const auto& bundle = services.bundle;
    const Rect checkBox{41, 80, 18 + 400, 18}; // the box, and room for its title
    views.push_back(InfoButton{.frame = {150, 20, buttonWidth, buttonHeight},
                               .title = bundle.localizedString("DONE"),
                               .action = "closeInfo",
                               .closes = true});
    const int checked = services.settings.stringForKey(keys::CHECK_0) == "0" ? 0 : 1;
    views.push_back(InfoCheckBox{
        .frame = checkBox,
        .title = bundle.localizedString("NON_MOSTRARE_FINESTRA"),
        .box = {.tag = tags::hideInfoWindow, .state = checked, .action = "presscheck:"}});

    const auto logo = services.infoWindows.imageSize("logo");
    const Rect logoFrame{windowWidth / 2 - logoInset - logo.width, topOf(checkBox) + logoGap,
                         logo.width, logo.height};
    views.push_back(pictureButton(bundle, "logo", logoFrame));

    const std::string mail(bundle.string(dictionary::supportMail));
    const InfoText contact =
        textView("contact", topOf(logoFrame), hyperlinkFromString_withURL(mail, "email:" + mail));
    views.push_back(contact);
    views.push_back(InfoButton{.frame = {textLeft, contact.frame.y - buttonHeight - recommendGap,
                                         buttonWidth, buttonHeight},
                               .title = bundle.localizedString("CONSIGLIA"),
                               .link = "mailto:" + mail,
                               .action = "openConsigli"});

    const std::string site(bundle.string(dictionary::makerSite));
    const InfoText web =
        textView("web", topOf(contact.frame), hyperlinkFromString_withURL(site, site));
    views.push_back(web);

    InfoText description = textView("description", topOf(web.frame), {.text = infoDescription()});
    description.frame.height += descriptionSlack;
    views.push_back(description);

    const std::string picture = contentOf(IDApp()).picture;
    const auto size = services.infoWindows.imageSize(picture);
    const Rect pictureFrame{windowWidth / 2 - size.width / 2, topOf(description.frame) + gap,
                            size.width, size.height};
    views.push_back(pictureButton(bundle, picture, pictureFrame));
    return topOf(pictureFrame) + gap + topMargin;
}

/// As high as its text. A click on the contact's link is told, others open their address.
InfoText AppDelegate::textView(std::string_view name, double y, AttributedText text) const {
    InfoText view{.name = std::string(name),
                  .frame = {textLeft, y, textWidth, 0},
                  .text = std::move(text),
                  .asksTarget = name == "contact"};
    view.frame.height = services.infoWindows.textHeight(view.text.text, textWidth, view.fontSize);
    return view;
}

std::string AppDelegate::infoDescription() const {
    const auto& bundle = services.bundle;
    const auto key = contentOf(IDApp()).description;
    std::string text = key.empty() ? std::string() : bundle.localizedString(key);
    if (IDApp() != variants::barrier) text += bundle.localizedString("TESTO_AGGIUNTO");
    return text;
}

void AppDelegate::openInfo() {
    windowInfo->makeKeyAndOrderFront();
    services.application.activateIgnoringOtherApps();
    windowInfo->setCollectionBehaviour(moveToActiveSpace);
}

void AppDelegate::closeInfo() {
    windowInfo->orderOut();
    recommendAutologinOnAtFirstCloseInfo();
}

void AppDelegate::openConsigli() {
    const auto& bundle = services.bundle;
    sendEmailTo_Subject_Body(
        bundle.string(dictionary::supportMail), bundle.localizedString("CONSIGLIA"),
        formatted(bundle.localizedString("MAIL_BOTTOM"), bundle.displayName()));
}

AttributedText AppDelegate::hyperlinkFromString_withURL(std::string_view string,
                                                        std::string_view url) const {
    return {.text = std::string(string),
            .link = std::string(url),
            .colour = platform::TextColour::blue,
            .underlined = true};
}

bool AppDelegate::textView_clickedOnLink(std::string_view, std::string_view link) {
    if (link == "email:" + std::string(services.bundle.string(dictionary::supportMail)))
        openGenericMailToTamberlo();
    return true;
}

void AppDelegate::pressed(const InfoButton& button) {
    sendAction(*this, button.action, button);
}

bool AppDelegate::clickedOnLink(const InfoText& view, const std::string& link) {
    return textView_clickedOnLink(view.name, link);
}

} // namespace palisor
