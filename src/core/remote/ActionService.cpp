#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "remote/ReplyValue.h"
#include "util/Format.h"
#include "util/Languages.h"
#include "util/MacUtils.h"

// The exchange with the maker's service, which comes before the start: what it asks for, what the
// reply may do, and how the program goes on in every case.

namespace palisor {

namespace {

constexpr double exchangeTimeout = 10.0;

/// A value that there is none of shows itself.
std::string orNull(const std::optional<std::string>& text) {
    return text.value_or("(null)");
}

/// The values stand in it as they are.
std::string actionAddress(const platform::Platform& services, std::size_t monitors) {
    const std::string address = "https://" + std::string(services.bundle.string("MakerHost")) +
                                "/app/mac_utilities/action.php";
    return address + "?app=" + std::to_string(services.bundle.integer(dictionary::IDApp)) +
           "&ver=" + services.bundle.version() + "&device=" + MacUtils::machineModel(services) +
           "&lingua=" + preferredLanguage(services.system) +
           "&uniqueID=" + orNull(MacUtils::getSystemUUID(services)) +
           "&univoke=" + MacUtils::univokeDate(services) + "&OS=" + MacUtils::OSVersion(services) +
           "&monitors=" + std::to_string(monitors) +
           "&locale=" + orNull(services.system.countryCode());
}

} // namespace

bool AppDelegate::isValidInfo(const std::optional<std::string>& text) const {
    return text && MacUtils::isValidInfo(*text);
}

/// The application object may go while the reply is awaited, with the process about to end. Its
/// services stay, and what the main thread is asked to do then never happens.
void AppDelegate::callActionWebService() {
    const platform::Platform lent = services;
    std::size_t monitors = 0;
    lent.runLoop.performOnMainThread([&] { monitors = lent.displays.screens().size(); }, true);
    const auto reply =
        lent.http.get({.url = actionAddress(lent, monitors),
                       .timeout = exchangeTimeout,
                       .cachePolicy = platform::Http::reloadIgnoringLocalAndRemoteCacheData,
                       .authority = std::string(lent.bundle.string("MakerAuthority"))});
    std::optional<platform::JsonValue> said;
    if (!reply.error && MacUtils::isValidInfo(reply.body)) said = lent.json.parse(reply.body);
    lent.runLoop.performOnMainThread(
        [&] {
            if (said)
                responseActionWebService(*said);
            else
                start();
        },
        true);
}

void AppDelegate::responseActionWebService(const platform::JsonValue& reply) {
    const auto question = replyText(reply.member("question"));
    if (const auto* flag = reply.member("otherApps"); isValidInfo(replyText(flag)))
        otherApps = replyBool(flag);
    if (const auto* minutes = reply.member("allowRate"); isValidInfo(replyText(minutes)))
        allowRate = static_cast<signed char>(replyInt(minutes));
    if (!isValidInfo(question)) {
        start();
        return;
    }
    const auto validText = [&](std::string_view name) {
        auto text = replyText(reply.member(name));
        return isValidInfo(text) ? text : std::nullopt;
    };
    active_1 = replyBool(reply.member("active_1"));
    active_2 = replyBool(reply.member("active_2"));
    event_1 = validText("event_1");
    event_2 = validText("event_2");

    platform::Alert alert{
        .message = services.bundle.displayName() + " " + services.bundle.version(),
        .informative = formatted(formatted(*question, "aaaaa"), "bbbbbb"),
        .buttons = {validText("answer_1").value_or(services.bundle.localizedString("OK"))}};
    if (auto answer = validText("answer_2")) alert.buttons.push_back(std::move(*answer));
    // Who closes a question has answered nothing: nothing must be opened, removed or ended by it.
    using Closing = platform::Alert::Closing;
    const bool secondOnlyStarts = active_2 && !event_2;
    const bool firstOnlyStarts = active_1 && !event_1;
    if (!secondOnlyStarts) alert.closing = firstOnlyStarts ? Closing::defaultButton : Closing::none;
    alertDidEnd3_returnCode_contextInfo(&alert, services.alerts.runModal(alert), nullptr);
}

/// The alert has been taken down when its run returns, so that none is left to be stopped.
void AppDelegate::alertDidEnd3_returnCode_contextInfo(const platform::Alert*, int returnCode,
                                                      const void*) {
    using platform::Alerts;
    const bool isDefault = returnCode == Alerts::defaultButton;
    if (!isDefault && returnCode != Alerts::alternateButton) return;
    const auto& event = isDefault ? event_1 : event_2;
    if (isValidInfo(event)) services.workspace.openURL(*event);
    if (isDefault ? active_1 : active_2) {
        start();
    } else {
        autoLogin(false);
        quit();
    }
}

} // namespace palisor
