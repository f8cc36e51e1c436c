#pragma once

#include "app/AppDelegate.h"

#include <type_traits>

namespace palisor {

/// Calls `visit(selector, operation)` for each operation that can be sent by its selector, in the
/// order in which the header declares them, until one call answers true; whether one did.
template <class Visitor>
bool visitOperations(Visitor&& visit) {
    using App = AppDelegate;
    return visit("applicationDidFinishLaunching:", &App::applicationDidFinishLaunching) ||
           visit("start", &App::start) ||
           visit("initiailValuesForUserDefaults", &App::initiailValuesForUserDefaults) ||
           visit("enableDisable", &App::enableDisable) || visit("quit", &App::quit) ||
           visit("killapp", &App::killapp) || visit("updateScreensSize", &App::updateScreensSize) ||
           visit("detectCurrentScreen", &App::detectCurrentScreen) ||
           visit("noSecondaryMonitor", &App::noSecondaryMonitor) ||
           visit("applicationDidChangeScreenParameters:",
                 &App::applicationDidChangeScreenParameters) ||
           visit("createMouseEvent", &App::createMouseEvent) ||
           visit("getCurrentMouseLocation", &App::getCurrentMouseLocation) ||
           visit("onMouseMovedOrClicked:", &App::onMouseMovedOrClicked) ||
           visit("calculatedSettedDistance", &App::calculatedSettedDistance) ||
           visit("distanceBewteenCGPoint:andCGPoint:distanceMax:",
                 &App::distanceBewteenCGPoint_andCGPoint_distanceMax) ||
           visit("runForDirection:", &App::runForDirection) ||
           visit("runForRightLeft:", &App::runForRightLeft) ||
           visit("runForUpDown:", &App::runForUpDown) ||
           visit("forceMouseToPoint:", &App::forceMouseToPoint) ||
           visit("forceMouseInCalculatedPoint", &App::forceMouseInCalculatedPoint) ||
           visit("restrictRect:aboutPixel:", &App::restrictRect_aboutPixel) ||
           visit("getCenterPointOfScreen:", &App::getCenterPointOfScreen) ||
           visit("moveCursorOnScreen:", &App::moveCursorOnScreen) ||
           visit("moveCursorOnMainScreen", &App::moveCursorOnMainScreen) ||
           visit("rimettiCursoreSulleGiusteCoordinate",
                 &App::rimettiCursoreSulleGiusteCoordinate) ||
           visit("updateCustomCursorPosition", &App::updateCustomCursorPosition) ||
           visit("playTheSound", &App::playTheSound) ||
           visit("onKeyPressed:", &App::onKeyPressed) ||
           visit("comboPressedReleased:", &App::comboPressedReleased) ||
           visit("hidecursor", &App::hidecursor) || visit("hidecursor2", &App::hidecursor2) ||
           visit("showcursor", &App::showcursor) || visit("showcursor2", &App::showcursor2) ||
           visit("hidecursorwithRetard", &App::hidecursorwithRetard) ||
           visit("killTimer", &App::killTimer) || visit("updatePalisor", &App::updatePalisor) ||
           visit("otherMonitorsDark", &App::otherMonitorsDark) ||
           visit("otherMonitorsLight", &App::otherMonitorsLight) ||
           visit("updateShadow", &App::updateShadow) || visit("firstTime", &App::firstTime) ||
           visit("createBarStatusItem", &App::createBarStatusItem) ||
           visit("updateMenuItems", &App::updateMenuItems) ||
           visit("enableMainMenu", &App::enableMainMenu) || visit("openMenu", &App::openMenu) ||
           visit("dismissFocus", &App::dismissFocus) ||
           visit("pressTimeMode:", &App::pressTimeMode) ||
           visit("pressHotBorders:", &App::pressHotBorders) ||
           visit("pressVelocity:", &App::pressVelocity) ||
           visit("pressShowOnScroll", &App::pressShowOnScroll) ||
           visit("CTRLALTCMDDidChanged:", &App::CTRLALTCMDDidChanged) ||
           visit("freezeCursorAfterSwitch:", &App::freezeCursorAfterSwitch) ||
           visit("stayHiddenDidChanged:", &App::stayHiddenDidChanged) ||
           visit("presscheck:", &App::presscheck) || visit("valueChange:", &App::valueChange) ||
           visit("showStayHiddenWarning", &App::showStayHiddenWarning) ||
           visit("sliderDidMove:", &App::sliderDidMove) ||
           visit("velocitySliderDidMove:", &App::velocitySliderDidMove) ||
           visit("highLightBoders:", &App::highLightBoders) ||
           visit("initWindowBorders", &App::initWindowBorders) || visit("appari", &App::appari) ||
           visit("scompari", &App::scompari) || visit("noSleep", &App::noSleep) ||
           visit("readyToSleep", &App::readyToSleep) ||
           visit("initGlobalShortCutForEnableDisable", &App::initGlobalShortCutForEnableDisable) ||
           visit("setCustomShortcutEnabled:", &App::setCustomShortcutEnabled) ||
           visit("setHardcodedShortcutEnabled:", &App::setHardcodedShortcutEnabled) ||
           visit("showShortcutPopup", &App::showShortcutPopup) ||
           visit("turnOnCustomDefaultAlert", &App::turnOnCustomDefaultAlert) ||
           visit("ReplaceDefaultEvents", &App::ReplaceDefaultEvents) ||
           visit("setHelperAppBundleIdentifier", &App::setHelperAppBundleIdentifier) ||
           visit("autoLogin:", &App::autoLogin) ||
           visit("killHelperIfActive", &App::killHelperIfActive) ||
           visit("pressAvviaAlLogin", &App::pressAvviaAlLogin) ||
           visit("recommendAutologinOnAtFirstCloseInfo",
                 &App::recommendAutologinOnAtFirstCloseInfo) ||
           visit("createViewInfo", &App::createViewInfo) || visit("openInfo", &App::openInfo) ||
           visit("closeInfo", &App::closeInfo) || visit("openConsigli", &App::openConsigli) ||
           visit("textView:clickedOnLink:", &App::textView_clickedOnLink) ||
           visit("ratefunc", &App::ratefunc) ||
           visit("alertDidEnd:returnCode:contextInfo:", &App::alertDidEnd_returnCode_contextInfo) ||
           visit("getCurrentRateString", &App::getCurrentRateString) ||
           visit("openApp:", &App::openApp) ||
           visit("openMacAppStorePage", &App::openMacAppStorePage) ||
           visit("openFB", &App::openFB) || visit("openSupport", &App::openSupport) ||
           visit("opentamberloosx", &App::opentamberloosx) ||
           visit("openGenericMailToTamberlo", &App::openGenericMailToTamberlo) ||
           visit("sendEmailTo:Subject:Body:", &App::sendEmailTo_Subject_Body) ||
           visit("URLEncodedString:", &App::URLEncodedString) ||
           visit("callActionWebService", &App::callActionWebService) ||
           visit("responseActionWebService:", &App::responseActionWebService) ||
           visit("alertDidEnd3:returnCode:contextInfo:",
                 &App::alertDidEnd3_returnCode_contextInfo) ||
           visit("isValidInfo:", &App::isValidInfo);
}

/// Sends the operation of that selector, with its sender where it takes one. Nothing for a selector
/// that is empty or unknown. The sender may be gone afterwards.
template <class Sender>
void sendAction(AppDelegate& app, std::string_view action, Sender& sender) {
    visitOperations([&](std::string_view selector, auto operation) {
        if (selector != action) return false;
        if constexpr (std::is_invocable_v<decltype(operation), AppDelegate&, Sender&>)
            (app.*operation)(sender);
        else if constexpr (std::is_invocable_v<decltype(operation), AppDelegate&>)
            (app.*operation)();
        return true;
    });
}

} // namespace palisor
