#pragma once

// The library's headers use what they themselves call old.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#pragma GCC diagnostic ignored "-Wpedantic"
#include <libecal/libecal.h>
#pragma GCC diagnostic pop

#include <memory>
#include <string>
#include <utility>
#include <vector>

// Owners for what GLib hands out.

namespace platform::calendar {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
/// Owns one reference.
template <class T>
using Ref = std::unique_ptr<T, Unref>;

using Component = Ref<ICalComponent>;

template <class T>
Ref<T> own(T* object) {
    return Ref<T>(object);
}
template <class T>
Ref<T> share(T* object) {
    return Ref<T>(static_cast<T*>(g_object_ref(object)));
}
inline Component copyOf(ICalComponent* component) {
    return own(i_cal_component_clone(component));
}

/// As they are now: each may be taken out while the list is walked.
inline std::vector<Component> componentsOf(ICalComponent* whole, ICalComponentKind kind) {
    std::vector<Component> parts;
    for (auto part = own(i_cal_component_get_first_component(whole, kind)); part;
         part = own(i_cal_component_get_next_component(whole, kind)))
        parts.push_back(std::move(part));
    return parts;
}
inline std::vector<Ref<ICalProperty>> propertiesOf(ICalComponent* whole, ICalPropertyKind kind) {
    std::vector<Ref<ICalProperty>> properties;
    for (auto one = own(i_cal_component_get_first_property(whole, kind)); one;
         one = own(i_cal_component_get_next_property(whole, kind)))
        properties.push_back(std::move(one));
    return properties;
}

/// Frees the text.
inline std::string take(gchar* text) {
    std::string copy = text == nullptr ? "" : text;
    g_free(text);
    return copy;
}
inline std::string textOr(const gchar* text, const char* otherwise) {
    return text == nullptr ? otherwise : text;
}
inline std::string textOf(ICalComponent* component) {
    return take(i_cal_component_as_ical_string(component));
}

/// What a call that failed left behind.
class Failure {
  public:
    Failure() = default;
    ~Failure() { g_clear_error(&error); }
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    /// For the next call; what was there is forgotten.
    GError** place() {
        g_clear_error(&error);
        return &error;
    }
    /// Whether the other side has gone, or cannot be reached.
    bool isLoss() const {
        return error != nullptr &&
               (error->domain == G_DBUS_ERROR || error->domain == G_IO_ERROR ||
                g_error_matches(error, E_CLIENT_ERROR, E_CLIENT_ERROR_DBUS_ERROR) != FALSE);
    }
    bool isAbsence() const {
        return g_error_matches(error, E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND) !=
               FALSE;
    }
    std::string text() const { return error == nullptr ? "no reason was told" : error->message; }

  private:
    GError* error = nullptr;
};

} // namespace platform::calendar
