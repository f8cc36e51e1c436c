#include "scenario/record/Recorded.h"

#include "platform/Application.h"

namespace record {

using platform::memory::Member;

namespace {

/// Which slider of the menu it is, by what tells them apart: what they do and how far they go.
std::string_view nameOf(const platform::Slider& slider) {
    if (slider.action == "velocitySliderDidMove:") return "velocity";
    return slider.tickMarks == 21 ? "dark" : "time";
}

std::string nameOf(const platform::CheckBox& box) {
    constexpr int firstSideTag = 10;
    return box.tag > firstSideTag ? "butlato" + std::to_string(box.tag - firstSideTag)
                                  : "butangolo" + std::to_string(box.tag);
}

} // namespace

RecordedStatusItem::RecordedStatusItem(platform::StatusItem& realItem, ScenarioWriter& scenario,
                                       std::function<platform::CurrentEvent()> askCurrentEvent)
    : real(realItem), writer(scenario), currentEvent(std::move(askCurrentEvent)) {}

void RecordedStatusItem::create(platform::Menu& menu, platform::MenuTarget& newTarget) {
    target = &newTarget;
    real.create(menu, *this);
}

void RecordedStatusItem::menuWillOpen(platform::Menu& menu) {
    writer.step("statusClick", Member{"button", currentEvent().buttonNumber});
    target->menuWillOpen(menu);
}

void RecordedStatusItem::chosen(platform::MenuItem& item) {
    writer.step("choose", Member{"title", item.title});
    target->chosen(item);
}

void RecordedStatusItem::moved(platform::Slider& slider) {
    const bool up = currentEvent().type == platform::EventType::leftMouseUp;
    writer.step("slider", Member{"name", nameOf(slider)}, Member{"value", slider.value},
                Member{"event", std::string_view(up ? "up" : "drag")});
    target->moved(slider);
}

void RecordedStatusItem::clicked(platform::CheckBox& box) {
    writer.step("button", Member{"name", nameOf(box)}, Member{"state", box.state});
    target->clicked(box);
}

} // namespace record
