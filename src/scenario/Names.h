#pragma once

#include "app/Keys.h"
#include "platform/InputEvents.h"
#include "platform/Menu.h"

#include <algorithm>
#include <array>

// What a scenario calls things, for whoever writes one and for whoever plays it.

namespace scenario {

namespace names {

// The steps that a session is written down in.
inline constexpr std::string_view advance = "advance", bundle = "bundle", button = "button",
                                  choose = "choose", defaults = "defaults",
                                  flagsChanged = "flagsChanged", launch = "launch",
                                  pointer = "pointer", screens = "screens", shortcut = "shortcut",
                                  slider = "slider", statusClick = "statusClick";

// Their members; a step of the same name is one too.
inline constexpr std::string_view step = "do", at = "at", clear = "clear", event = "event",
                                  frames = "frames", info = "info", keyCode = "keyCode",
                                  main = "main", modifierFlags = "modifierFlags", name = "name",
                                  seconds = "seconds", set = "set", state = "state",
                                  title = "title", type = "type", value = "value";

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
    return sliders[slider.tickMarks == palisor::keys::darkestLevel + 1 ? 0 : 1];
}

/// A check box of the bounds panel. Its tag counts the corners from 1 and the sides from 11.
inline std::string_view nameOf(const platform::CheckBox& box) {
    return buttons.at(static_cast<std::size_t>(box.tag > 10 ? box.tag - 11 : box.tag + 3));
}

} // namespace scenario
