#include "scenario/replay/Operations.h"

#include "scenario/replay/Player.h"
#include "util/MacUtils.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>

namespace palisor::replay {

namespace {

using platform::memory::Member;

// ---- an argument of each type -----------------------------------------------------------------

template <class T>
T argument(const Player& player, const Json& value, const std::string& what) {
    (void)player;
    if constexpr (std::is_same_v<T, Point>) {
        return toPoint(value, what);
    } else if constexpr (std::is_same_v<T, Rect>) {
        return toRect(value, what);
    } else if constexpr (std::is_same_v<T, std::string>) {
        return toText(value, what);
    } else if constexpr (std::is_pointer_v<T>) {
        if (!value.is_null()) throw StepError(what + " must be null");
        return nullptr;
    } else if constexpr (std::is_same_v<T, bool>) {
        if (value.is_number_integer()) {
            const std::int64_t number = toInteger(value, what);
            if (number == 0 || number == 1) return number == 1;
        }
        return toBoolean(value, what);
    } else if constexpr (std::is_same_v<T, ScreenId>) {
        const auto screens = player.platform.displays.screens();
        if (value.is_null()) return ScreenId::none;
        const std::int64_t index = toInteger(value, what);
        if (index < 0 || index >= std::ssize(screens))
            throw StepError(what + " must be null or the index of a screen");
        return screens[static_cast<std::size_t>(index)].id;
    } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        if (value.is_null()) return std::nullopt;
        return toText(value, what);
    } else if constexpr (std::is_same_v<T, platform::JsonValue>) {
        // Only what a reply can be reaches the operation that takes one.
        auto reply = player.platform.json.parse(value.dump());
        if (!reply) throw StepError(what + " must be an object or a list");
        return *std::move(reply);
    } else if constexpr (std::is_pointer_v<T>) {
        if (!value.is_null()) throw StepError(what + " must be null");
        return nullptr;
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(toNumber(value, what));
    } else {
        static_assert(std::is_integral_v<T>);
        const std::int64_t number = toInteger(value, what);
        if (!std::in_range<T>(number)) throw StepError(what + " is out of range");
        return static_cast<T>(number);
    }
}

template <class... T, std::size_t... index>
std::tuple<T...> argumentsOf(const Player& player, const Json& list,
                             std::index_sequence<index...>) {
    if (list.size() != sizeof...(T))
        throw StepError("the operation takes " + std::to_string(sizeof...(T)) + " arguments, not " +
                        std::to_string(list.size()));
    return {argument<T>(player, list[index], "argument " + std::to_string(index + 1))...};
}

/// What an argument is kept as until the call.
template <class T>
using Kept = std::conditional_t<std::is_same_v<std::decay_t<T>, std::string_view>, std::string,
                                std::decay_t<T>>;

// ---- operations ---------------------------------------------------------------------------------

template <class Send>
void sendAndPrint(Player& player, Send&& send) {
    if constexpr (std::is_void_v<std::invoke_result_t<Send>>)
        send();
    else
        player.platform.effects.emit("result", Member{"value", send()});
}

template <auto operation, class... T>
Action prepare(Player& player, const Json& list) {
    auto arguments = argumentsOf<Kept<T>...>(player, list, std::index_sequence_for<T...>{});
    return [&player, arguments] {
        std::apply(
            [&player](const auto&... each) {
                sendAndPrint(player,
                             [&]() -> decltype(auto) { return (player.app.*operation)(each...); });
            },
            arguments);
    };
}

using Prepare = Action (*)(Player&, const Json&);

template <auto operation, class R, class... T>
constexpr Prepare prepareFor(R (AppDelegate::*)(T...)) {
    return prepare<operation, T...>;
}

template <auto operation, class R, class... T>
constexpr Prepare prepareFor(R (AppDelegate::*)(T...) const) {
    return prepare<operation, T...>;
}

/// The class operations of MacUtils take the services themselves.
template <void (*operation)(const platform::Platform&)>
Action prepareClassOperation(Player& player, const Json& list) {
    argumentsOf<>(player, list, std::index_sequence<>{});
    return [&player] { operation(player.services); };
}

struct Operation {
    std::string_view selector;
    Prepare prepare;
};

template <auto operation>
constexpr Operation named(std::string_view selector) {
    return {selector, prepareFor<operation>(operation)};
}

constexpr Operation operations[] = {
    named<&AppDelegate::applicationDidFinishLaunching>("applicationDidFinishLaunching:"),
    named<&AppDelegate::start>("start"),
    named<&AppDelegate::initiailValuesForUserDefaults>("initiailValuesForUserDefaults"),
    named<&AppDelegate::enableDisable>("enableDisable"),
    named<&AppDelegate::quit>("quit"),
    named<&AppDelegate::killapp>("killapp"),
    named<&AppDelegate::updateScreensSize>("updateScreensSize"),
    named<&AppDelegate::detectCurrentScreen>("detectCurrentScreen"),
    named<&AppDelegate::noSecondaryMonitor>("noSecondaryMonitor"),
    named<&AppDelegate::applicationDidChangeScreenParameters>(
        "applicationDidChangeScreenParameters:"),
    named<&AppDelegate::createMouseEvent>("createMouseEvent"),
    named<&AppDelegate::getCurrentMouseLocation>("getCurrentMouseLocation"),
    named<&AppDelegate::onMouseMovedOrClicked>("onMouseMovedOrClicked:"),
    named<&AppDelegate::calculatedSettedDistance>("calculatedSettedDistance"),
    named<&AppDelegate::distanceBewteenCGPoint_andCGPoint_distanceMax>(
        "distanceBewteenCGPoint:andCGPoint:distanceMax:"),
    named<&AppDelegate::runForDirection>("runForDirection:"),
    named<&AppDelegate::runForRightLeft>("runForRightLeft:"),
    named<&AppDelegate::runForUpDown>("runForUpDown:"),
    named<&AppDelegate::forceMouseToPoint>("forceMouseToPoint:"),
    named<&AppDelegate::forceMouseInCalculatedPoint>("forceMouseInCalculatedPoint"),
    named<&AppDelegate::restrictRect_aboutPixel>("restrictRect:aboutPixel:"),
    named<&AppDelegate::getCenterPointOfScreen>("getCenterPointOfScreen:"),
    named<&AppDelegate::moveCursorOnScreen>("moveCursorOnScreen:"),
    named<&AppDelegate::moveCursorOnMainScreen>("moveCursorOnMainScreen"),
    named<&AppDelegate::rimettiCursoreSulleGiusteCoordinate>("rimettiCursoreSulleGiusteCoordinate"),
    named<&AppDelegate::updateCustomCursorPosition>("updateCustomCursorPosition"),
    named<&AppDelegate::playTheSound>("playTheSound"),
    named<&AppDelegate::onKeyPressed>("onKeyPressed:"),
    named<&AppDelegate::comboPressedReleased>("comboPressedReleased:"),
    named<&AppDelegate::hidecursor>("hidecursor"),
    named<&AppDelegate::hidecursor2>("hidecursor2"),
    named<&AppDelegate::showcursor>("showcursor"),
    named<&AppDelegate::showcursor2>("showcursor2"),
    named<&AppDelegate::hidecursorwithRetard>("hidecursorwithRetard"),
    named<&AppDelegate::killTimer>("killTimer"),
    named<&AppDelegate::updatePalisor>("updatePalisor"),
    named<&AppDelegate::otherMonitorsDark>("otherMonitorsDark"),
    named<&AppDelegate::otherMonitorsLight>("otherMonitorsLight"),
    named<&AppDelegate::updateShadow>("updateShadow"),
    named<&AppDelegate::firstTime>("firstTime"),
    named<&AppDelegate::createBarStatusItem>("createBarStatusItem"),
    named<&AppDelegate::updateMenuItems>("updateMenuItems"),
    named<&AppDelegate::enableMainMenu>("enableMainMenu"),
    named<&AppDelegate::openMenu>("openMenu"),
    named<&AppDelegate::dismissFocus>("dismissFocus"),
    named<&AppDelegate::pressTimeMode>("pressTimeMode:"),
    named<&AppDelegate::pressHotBorders>("pressHotBorders:"),
    named<&AppDelegate::pressVelocity>("pressVelocity:"),
    named<&AppDelegate::pressShowOnScroll>("pressShowOnScroll"),
    named<&AppDelegate::showStayHiddenWarning>("showStayHiddenWarning"),
    named<&AppDelegate::highLightBoders>("highLightBoders:"),
    named<&AppDelegate::initWindowBorders>("initWindowBorders"),
    named<&AppDelegate::appari>("appari"),
    named<&AppDelegate::scompari>("scompari"),
    named<&AppDelegate::noSleep>("noSleep"),
    named<&AppDelegate::readyToSleep>("readyToSleep"),
    named<&AppDelegate::initGlobalShortCutForEnableDisable>("initGlobalShortCutForEnableDisable"),
    named<&AppDelegate::setCustomShortcutEnabled>("setCustomShortcutEnabled:"),
    named<&AppDelegate::setHardcodedShortcutEnabled>("setHardcodedShortcutEnabled:"),
    named<&AppDelegate::showShortcutPopup>("showShortcutPopup"),
    named<&AppDelegate::turnOnCustomDefaultAlert>("turnOnCustomDefaultAlert"),
    named<&AppDelegate::ReplaceDefaultEvents>("ReplaceDefaultEvents"),
    named<&AppDelegate::setHelperAppBundleIdentifier>("setHelperAppBundleIdentifier"),
    named<&AppDelegate::autoLogin>("autoLogin:"),
    named<&AppDelegate::killHelperIfActive>("killHelperIfActive"),
    named<&AppDelegate::pressAvviaAlLogin>("pressAvviaAlLogin"),
    named<&AppDelegate::recommendAutologinOnAtFirstCloseInfo>(
        "recommendAutologinOnAtFirstCloseInfo"),
    named<&AppDelegate::createViewInfo>("createViewInfo"),
    named<&AppDelegate::openInfo>("openInfo"),
    named<&AppDelegate::closeInfo>("closeInfo"),
    named<&AppDelegate::openConsigli>("openConsigli"),
    named<&AppDelegate::textView_clickedOnLink>("textView:clickedOnLink:"),
    named<&AppDelegate::ratefunc>("ratefunc"),
    named<&AppDelegate::alertDidEnd_returnCode_contextInfo>("alertDidEnd:returnCode:contextInfo:"),
    named<&AppDelegate::getCurrentRateString>("getCurrentRateString"),
    named<&AppDelegate::openMacAppStorePage>("openMacAppStorePage"),
    named<&AppDelegate::openFB>("openFB"),
    named<&AppDelegate::openSupport>("openSupport"),
    named<&AppDelegate::opentamberloosx>("opentamberloosx"),
    named<&AppDelegate::openGenericMailToTamberlo>("openGenericMailToTamberlo"),
    named<&AppDelegate::sendEmailTo_Subject_Body>("sendEmailTo:Subject:Body:"),
    named<&AppDelegate::URLEncodedString>("URLEncodedString:"),
    named<&AppDelegate::callActionWebService>("callActionWebService"),
    named<&AppDelegate::responseActionWebService>("responseActionWebService:"),
    named<&AppDelegate::alertDidEnd3_returnCode_contextInfo>(
        "alertDidEnd3:returnCode:contextInfo:"),
    named<&AppDelegate::isValidInfo>("isValidInfo:"),
    {"fixDefaultsIfNeeded", prepareClassOperation<&MacUtils::fixDefaultsIfNeeded>},
    {"deleteAllSavedUserDefaults", prepareClassOperation<&MacUtils::deleteAllSavedUserDefaults>},
};

/// The name in the source: the parts of the selector joined by underscores.
std::string sourceName(std::string_view selector) {
    std::string name(selector.substr(0, selector.find_last_not_of(':') + 1));
    std::ranges::replace(name, ':', '_');
    return name;
}

} // namespace

Action prepareCall(Player& player, const std::string& operation, const Json& arguments) {
    const auto found = std::ranges::find_if(operations, [&operation](const Operation& known) {
        return known.selector == operation || sourceName(known.selector) == operation;
    });
    if (found == std::end(operations)) throw StepError("unknown operation " + inQuotes(operation));
    return found->prepare(player, arguments);
}

} // namespace palisor::replay
