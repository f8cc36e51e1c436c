#include "scenario/record/Recorded.h"

#include "platform/Application.h"

namespace record {

using scenario::nameOf;

RecordedStatusItem::RecordedStatusItem(platform::StatusItem& realItem, ScenarioWriter& scenario,
                                       std::function<platform::CurrentEvent()> askCurrentEvent)
    : real(realItem), writer(scenario), currentEvent(std::move(askCurrentEvent)) {}

void RecordedStatusItem::create(platform::Menu& menu, platform::MenuTarget& newTarget) {
    target = &newTarget;
    real.create(menu, *this);
}

void RecordedStatusItem::menuWillOpen(platform::Menu& menu) {
    writer.step(names::statusClick, Member{names::button, currentEvent().buttonNumber});
    target->menuWillOpen(menu);
}

void RecordedStatusItem::chosen(platform::MenuItem& item) {
    writer.step(names::choose, Member{names::title, item.title});
    target->chosen(item);
}

void RecordedStatusItem::moved(platform::Slider& slider) {
    const bool up = currentEvent().type == platform::EventType::leftMouseUp;
    const auto moment = scenario::moments[up ? scenario::duringUp : scenario::duringDrag];
    writer.step(names::slider, Member{names::name, nameOf(slider)},
                Member{names::value, slider.value}, Member{names::event, moment});
    target->moved(slider);
}

void RecordedStatusItem::clicked(platform::CheckBox& box) {
    writer.step(names::button, Member{names::name, nameOf(box)}, Member{names::state, box.state});
    target->clicked(box);
}

} // namespace record
