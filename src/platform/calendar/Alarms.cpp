#include "platform/calendar/Alarms.h"

#include <cmath>
#include <optional>
#include <string_view>

namespace platform::calendar {

namespace {

// "Default", a number. Calendars that come from elsewhere carry the second, a truth value.
constexpr const char* defaultProperty = "X-DEFAULT-ALARM";
constexpr const char* importedDefaultProperty = "X-APPLE-DEFAULT-ALARM";

std::vector<Component> alarmComponents(ICalComponent* event) {
    return componentsOf(event, I_CAL_VALARM_COMPONENT);
}

Ref<ICalProperty> first(ICalComponent* alarm, ICalPropertyKind kind) {
    return own(i_cal_component_get_first_property(alarm, kind));
}

void removeAll(ICalComponent* alarm, ICalPropertyKind kind) {
    for (const auto& property : propertiesOf(alarm, kind))
        i_cal_component_remove_property(alarm, property.get());
}

std::optional<std::string> extensionOf(ICalComponent* alarm, std::string_view name) {
    for (const auto& property : propertiesOf(alarm, I_CAL_X_PROPERTY))
        if (textOr(i_cal_property_get_x_name(property.get()), "") == name)
            return take(i_cal_property_get_value_as_string(property.get()));
    return std::nullopt;
}

bool isDefault(ICalComponent* alarm) {
    if (const auto number = extensionOf(alarm, defaultProperty))
        return std::strtod(number->c_str(), nullptr) == 1;
    return extensionOf(alarm, importedDefaultProperty) == "TRUE";
}

/// The name of a sound, which is the file's where it is one.
std::string soundOf(ICalComponent* alarm) {
    const auto property = first(alarm, I_CAL_ATTACH_PROPERTY);
    if (!property) return {};
    const auto attached = own(i_cal_property_get_attach(property.get()));
    if (!attached || !i_cal_attach_get_is_url(attached.get())) return {};
    return textOr(i_cal_attach_get_url(attached.get()), "");
}

bool countsFromTheEnd(ICalProperty* trigger) {
    const auto related = own(i_cal_property_get_first_parameter(trigger, I_CAL_RELATED_PARAMETER));
    return related && i_cal_parameter_get_related(related.get()) == I_CAL_RELATED_END;
}

struct When {
    bool fromStart = false;
    double offset = 0;
};

When whenOf(ICalComponent* alarm, std::time_t start, std::time_t end) {
    const auto property = first(alarm, I_CAL_TRIGGER_PROPERTY);
    if (!property) return {};
    const auto trigger = own(i_cal_property_get_trigger(property.get()));
    const auto time = own(i_cal_trigger_get_time(trigger.get()));
    if (time && !i_cal_time_is_null_time(time.get()))
        return {false, static_cast<double>(i_cal_time_as_timet(time.get()) - start)};
    const auto duration = own(i_cal_trigger_get_duration(trigger.get()));
    const double offset = duration ? i_cal_duration_as_int(duration.get()) : 0;
    if (countsFromTheEnd(property.get())) return {false, offset + static_cast<double>(end - start)};
    return {true, offset};
}

bool showsOrSounds(ICalComponent* alarm) {
    const auto property = first(alarm, I_CAL_ACTION_PROPERTY);
    if (!property) return false;
    const auto action = i_cal_property_get_action(property.get());
    return action == I_CAL_ACTION_DISPLAY || action == I_CAL_ACTION_AUDIO;
}

bool isAlready(ICalComponent* alarm, const CalendarAlarm& wanted) {
    const When when = whenOf(alarm, 0, 0);
    return when.fromStart && when.offset == std::round(wanted.offset) &&
           soundOf(alarm) == wanted.sound && isDefault(alarm) == wanted.isDefault &&
           showsOrSounds(alarm) && !first(alarm, I_CAL_REPEAT_PROPERTY);
}

void setDefault(ICalComponent* alarm, bool value) {
    if (isDefault(alarm) == value) return;
    for (const auto& property : propertiesOf(alarm, I_CAL_X_PROPERTY)) {
        const std::string name = textOr(i_cal_property_get_x_name(property.get()), "");
        if (name == defaultProperty || name == importedDefaultProperty)
            i_cal_component_remove_property(alarm, property.get());
    }
    if (!value) return;
    ICalProperty* const made = i_cal_property_new_x("1");
    i_cal_property_set_x_name(made, defaultProperty);
    i_cal_component_take_property(alarm, made);
}

void setAction(ICalComponent* alarm, ICalComponent* event) {
    // The desktop's reminders show what is to be displayed, and only beep for what is to be heard.
    // So an alarm is one that is shown, with its sound beside it.
    if (!showsOrSounds(alarm)) {
        removeAll(alarm, I_CAL_ACTION_PROPERTY);
        removeAll(alarm, I_CAL_ATTENDEE_PROPERTY);
        i_cal_component_take_property(alarm, i_cal_property_new_action(I_CAL_ACTION_DISPLAY));
    }
    if (!first(alarm, I_CAL_DESCRIPTION_PROPERTY)) {
        const std::string summary = textOr(i_cal_component_get_summary(event), "");
        i_cal_component_take_property(alarm, i_cal_property_new_description(summary.c_str()));
    }
}

void change(ICalComponent* alarm, const CalendarAlarm& wanted, ICalComponent* event) {
    if (isAlready(alarm, wanted)) return;
    setAction(alarm, event);
    removeAll(alarm, I_CAL_TRIGGER_PROPERTY);
    const auto trigger =
        own(i_cal_trigger_new_from_int(static_cast<int>(std::lround(wanted.offset))));
    i_cal_component_take_property(alarm, i_cal_property_new_trigger(trigger.get()));
    // It would go off again at times that nobody has asked for.
    removeAll(alarm, I_CAL_REPEAT_PROPERTY);
    removeAll(alarm, I_CAL_DURATION_PROPERTY);
    removeAll(alarm, I_CAL_ATTACH_PROPERTY);
    if (!wanted.sound.empty()) {
        const auto attached = own(i_cal_attach_new_from_url(wanted.sound.c_str()));
        i_cal_component_take_property(alarm, i_cal_property_new_attach(attached.get()));
    }
    setDefault(alarm, wanted.isDefault);
}

} // namespace

std::vector<CalendarAlarm> alarmsOf(ICalComponent* event, std::time_t start, std::time_t end) {
    std::vector<CalendarAlarm> alarms;
    for (const Component& alarm : alarmComponents(event))
        alarms.push_back({.id = std::to_string(alarms.size()),
                          .offset = whenOf(alarm.get(), start, end).offset,
                          .sound = soundOf(alarm.get()),
                          .isDefault = isDefault(alarm.get())});
    return alarms;
}

bool hasAlarms(ICalComponent* event, const std::vector<CalendarAlarm>& wanted) {
    const auto present = alarmComponents(event);
    if (present.size() != wanted.size()) return false;
    for (std::size_t index = 0; index < present.size(); ++index)
        if (wanted[index].id != std::to_string(index) ||
            !isAlready(present[index].get(), wanted[index]))
            return false;
    return true;
}

void setAlarms(ICalComponent* event, const std::vector<CalendarAlarm>& wanted) {
    const auto present = alarmComponents(event);
    for (const Component& alarm : present)
        i_cal_component_remove_component(event, alarm.get());
    for (const CalendarAlarm& alarm : wanted) {
        Component made = own(i_cal_component_new_valarm());
        for (std::size_t index = 0; index < present.size(); ++index)
            if (alarm.id == std::to_string(index)) made = copyOf(present[index].get());
        change(made.get(), alarm, event);
        i_cal_component_take_component(event, made.release());
    }
}

std::string alarmsText(ICalComponent* event) {
    std::string text;
    for (const Component& alarm : alarmComponents(event))
        text += textOf(alarm.get());
    return text;
}

} // namespace platform::calendar
