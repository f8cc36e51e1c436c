#pragma once

#include "platform/InputEvents.h"
#include "platform/Menu.h"

#include <algorithm>
#include <array>

// What a scenario calls things, for whoever writes one and for whoever plays it.

namespace scenario {

namespace names {

inline constexpr std::string_view step = "do";

// Steps that a session is written down in, and their members.
inline constexpr std::string_view advance = "advance";
inline constexpr std::string_view seconds = "seconds";
inline constexpr std::string_view bundle = "bundle";
inline constexpr std::string_view info = "info";
inline constexpr std::string_view button = "button"; // of the mouse too
inline constexpr std::string_view name = "name";
inline constexpr std::string_view state = "state";
inline constexpr std::string_view choose = "choose";
inline constexpr std::string_view title = "title";
inline constexpr std::string_view defaults = "defaults";
inline constexpr std::string_view set = "set";
inline constexpr std::string_view flagsChanged = "flagsChanged";
inline constexpr std::string_view launch = "launch";
inline constexpr std::string_view pointer = "pointer";
inline constexpr std::string_view at = "at";
inline constexpr std::string_view type = "type";
inline constexpr std::string_view screens = "screens";
inline constexpr std::string_view frames = "frames";
inline constexpr std::string_view main = "main";
inline constexpr std::string_view shortcut = "shortcut";
inline constexpr std::string_view clear = "clear";
inline constexpr std::string_view keyCode = "keyCode";
inline constexpr std::string_view modifierFlags = "modifierFlags";
inline constexpr std::string_view slider = "slider";
inline constexpr std::string_view event = "event";
inline constexpr std::string_view value = "value";
inline constexpr std::string_view statusClick = "statusClick";

} // namespace names

/// The types of `pointer`.
struct PointerType {
    std::string_view name;
    platform::EventType type;
};

inline constexpr std::array<PointerType, 15> pointerTypes{{
    {"leftMouseDown", platform::EventType::leftMouseDown},
    {"leftMouseUp", platform::EventType::leftMouseUp},
    {"rightMouseDown", platform::EventType::rightMouseDown},
    {"rightMouseUp", platform::EventType::rightMouseUp},
    {"mouseMoved", platform::EventType::mouseMoved},
    {"leftMouseDragged", platform::EventType::leftMouseDragged},
    {"rightMouseDragged", platform::EventType::rightMouseDragged},
    {"scrollWheel", platform::EventType::scrollWheel},
    {"tabletPoint", platform::EventType::tabletPoint},
    {"tabletProximity", platform::EventType::tabletProximity},
    {"otherMouseDown", platform::EventType::otherMouseDown},
    {"otherMouseUp", platform::EventType::otherMouseUp},
    {"otherMouseDragged", platform::EventType::otherMouseDragged},
    {"keyDown", platform::EventType::keyDown},
    {"keyUp", platform::EventType::keyUp},
}};

/// "mouseMoved" for a type that no `pointer` has.
inline std::string_view nameOf(platform::EventType type) {
    const auto found = std::ranges::find(pointerTypes, type, &PointerType::type);
    return found == pointerTypes.end() ? "mouseMoved" : found->name;
}

/// The values of `event`, in what a slider's move is part of.
inline constexpr std::array<std::string_view, 3> moments{"up", "drag", "none"};
inline constexpr std::size_t duringUp = 0;
inline constexpr std::size_t duringDrag = 1;

inline constexpr std::array<std::string_view, 3> sliders{"dark", "time", "velocity"};
inline constexpr std::array<std::string_view, 8> buttons{"butlato1",   "butlato2",   "butlato3",
                                                         "butlato4",   "butangolo1", "butangolo2",
                                                         "butangolo3", "butangolo4"};

/// What tells the sliders of the menu apart is what they do and how far they go.
inline std::string_view nameOf(const platform::Slider& slider) {
    if (slider.action == "velocitySliderDidMove:") return sliders[2];
    return sliders[slider.tickMarks == 21 ? 0 : 1];
}

/// A check box of the bounds panel. Its tag counts the corners from 1 and the sides from 11.
inline std::string_view nameOf(const platform::CheckBox& box) {
    return buttons.at(static_cast<std::size_t>(box.tag > 10 ? box.tag - 11 : box.tag + 3));
}

} // namespace scenario
