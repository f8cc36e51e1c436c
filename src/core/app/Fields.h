#pragma once

#include "app/State.h"

namespace palisor {

template <class Visitor>
void AppState::visitFields(Visitor&& field) const {
    field("proKeys", proKeys);
    field("flagriopenInfo", flagriopenInfo);
    field("keycombo", keycombo);
    field("inHotArea", inHotArea);
    field("helperAppBundleIdentifier", helperAppBundleIdentifier);
    field("assertionID", assertionID);
    field("MIN_X", MIN_X);
    field("MAX_X", MAX_X);
    field("MIN_Y", MIN_Y);
    field("MAX_Y", MAX_Y);
    field("MAX_W", MAX_W);
    field("MAX_H", MAX_H);
    field("screenMax", screenMax);
    field("screenMaxH", screenMaxH);
    field("switchedScreen", switchedScreen);
    field("switchedScreenRect", switchedScreenRect);
    field("cordmouse", cordmouse);
    field("oldcordmouse", oldcordmouse);
    field("oldoldcordmouse", oldoldcordmouse);
    field("savedcoordsMD", savedcoordsMD);
    field("lastCoord", lastCoord);
    field("JUST_MY_MOVE", JUST_MY_MOVE);
    field("cursorMustToBeHidden", cursorMustToBeHidden);
    field("combo", combo);
    field("timerRetardHide", timerRetardHide);
    field("timerCursorMustToBeHidden", timerCursorMustToBeHidden);
    field("timerSchedule", timerSchedule);
    field("TFBounds", TFBounds);
    field("countanimation", countanimation);
    field("timerAnimBorders", timerAnimBorders);
    field("AWindowsDark", AWindowsDark);
    field("aWindowCursorX", aWindowCursorX);
    field("event_1", event_1);
    field("event_2", event_2);
    field("active_1", active_1);
    field("active_2", active_2);
    field("otherApps", otherApps);
    field("allowRate", allowRate);
    field("customDefaultEventTimer", customDefaultEventTimer);
}

} // namespace palisor
