#include "scenario/replay/MenuRecord.h"

#include "platform/memory/Json.h"

#include <map>

namespace palisor::replay {

namespace {

using platform::memory::orNull;
using platform::memory::writeMember;

std::string viewRecord(const platform::SliderView& view) {
    std::string slider;
    writeMember(slider, "min", view.slider.minimum);
    writeMember(slider, "max", view.slider.maximum);
    writeMember(slider, "value", view.slider.value);
    writeMember(slider, "ticks", view.slider.tickMarks);
    std::string members = "\"slider\":{" + slider + "}";
    writeMember(members, "label", view.label->text);
    return "{" + members + "}";
}

std::string viewRecord(const platform::BoundsView& view) {
    std::map<std::string_view, const platform::CheckBox*> boxes;
    for (const auto& group : {view.corners, view.sides})
        for (const auto& named : group)
            boxes[named.name] = named.box;
    std::string list;
    for (const auto& [name, box] : boxes) {
        std::string members;
        writeMember(members, "state", box->state);
        writeMember(members, "enabled", box->enabled);
        writeMember(members, "alpha", box->alpha);
        list += (list.empty() ? "\"" : ",\"") + std::string(name) + "\":{" + members + "}";
    }
    return "{\"bounds\":{" + list + "}}";
}

std::string viewRecord(std::monostate) {
    return "null";
}

std::string itemMembers(const platform::MenuItem& item) {
    std::string members;
    if (item.separator) {
        writeMember(members, "separator", true);
        return members;
    }
    writeMember(members, "title", item.title);
    writeMember(members, "text", item.text);
    writeMember(members, "action", orNull(item.action));
    writeMember(members, "state", item.state);
    writeMember(members, "enabled", item.enabled);
    writeMember(members, "greyed", item.greyed());
    writeMember(members, "toolTip", orNull(item.toolTip));
    writeMember(members, "image", orNull(item.image));
    members += ",\"submenu\":" + (item.submenu ? menuRecord(item.submenu.get()) : "null");
    members +=
        ",\"view\":" + std::visit([](const auto& view) { return viewRecord(view); }, item.view);
    return members;
}

} // namespace

std::string listOf(const std::vector<std::string>& objects) {
    std::string list;
    for (const std::string& members : objects)
        list += (list.empty() ? "[{" : ",{") + members + "}";
    return list.empty() ? "[]" : list + "]";
}

std::string menuRecord(const platform::Menu* menu) {
    std::vector<std::string> objects;
    if (menu != nullptr)
        for (const auto& item : menu->items)
            objects.push_back(itemMembers(*item));
    return listOf(objects);
}

} // namespace palisor::replay
