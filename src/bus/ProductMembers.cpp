#include "bus/ProductMembers.h"

#include "app/AppDelegate.h"
#include "bus/Names.h"

#include <cmath>

namespace bus {

namespace {

namespace control = palisor::control;
using control::Refusal;
using palisor::AppDelegate;

ProductObject& object(void* own) {
    return *static_cast<ProductObject*>(own);
}

int done(sd_bus_message& call) {
    return sd_bus_reply_method_return(&call, "");
}

/// The one text argument, whose type has been checked.
std::string text(sd_bus_message& call) {
    const char* word = nullptr;
    return sd_bus_message_read(&call, "s", &word) > 0 ? word : "";
}

/// What the setting can be set to, in words that go on after its name.
std::string takenBy(const palisor::Setting& setting) {
    using Kind = palisor::Setting::Kind;
    using Unit = palisor::Setting::Unit;
    switch (setting.kind) {
    case Kind::flag:
        return "on or off";
    case Kind::number: {
        const auto [least, most] = setting.range();
        const char* const unit = setting.unit == Unit::percent   ? " percent"
                                 : setting.unit == Unit::seconds ? " seconds"
                                                                 : "";
        return "a whole number in the range from " + std::to_string(least) + " to " +
               std::to_string(most) + unit;
    }
    case Kind::text:
        return "a text";
    case Kind::shortcut:
        return "a combination such as Ctrl+Super+K";
    }
    return {};
}

int refuse(sd_bus_message& call, Refusal why, const std::string& setting) {
    struct Words {
        const char* error;
        std::string_view sentence; ///< with the setting's name for the "%s"
    };
    static constexpr Words words[] = {
        {nullptr, {}},
        {errors::unknownSetting, "There is no setting \"%s\"."},
        {errors::wrongType, "\"%s\" takes "},
        {errors::outOfRange, "\"%s\" takes "},
        {errors::notOfThisProduct, "Another product of the family has the setting \"%s\"."},
        {errors::notPossible, "A shortcut for \"%s\" takes Ctrl, Alt or Super."},
        {errors::notPossible, "The combination for \"%s\" is in use already."},
        {errors::notPossible, "This product needs the shortcut that \"%s\" is."}};
    const Words& chosen = words[static_cast<std::size_t>(why)];
    // Whole: of a text that ends amid a letter the library makes no answer.
    std::string sentence(chosen.sentence);
    sentence.replace(sentence.find("%s"), 2, setting);
    if (const auto* known = palisor::findSetting(setting); known && sentence.ends_with(' '))
        sentence += takenBy(*known) + ".";
    return sd_bus_reply_method_errorf(&call, chosen.error, "%s", sentence.c_str());
}

int answer(sd_bus_message& call, Refusal why, const std::string& setting) {
    return why == Refusal::none ? done(call) : refuse(call, why, setting);
}

/// Why a setting that cannot be read is none of this product's.
Refusal reasonWithout(const std::string& setting) {
    return palisor::findSetting(setting) ? Refusal::notOfThisProduct : Refusal::unknownKey;
}

const char* nameOf(palisor::Setting::Kind kind) {
    static constexpr const char* names[] = {"flag", "number", "text", "shortcut"};
    return names[static_cast<std::size_t>(kind)];
}

int rounded(double pixels) {
    return static_cast<int>(std::lround(pixels));
}

} // namespace

#define PROPERTY(name)                                                                             \
    int ProductMembers::name(sd_bus*, const char*, const char*, const char*,                       \
                             sd_bus_message* reply, void* own,                                     \
                             [[maybe_unused]] sd_bus_error* error)
#define METHOD(name) int ProductMembers::name(sd_bus_message* call, void* own, sd_bus_error*)

PROPERTY(active) {
    return sd_bus_message_append(reply, "b", object(own).state().active ? 1 : 0);
}

// `reply` is the value here. The caller is answered at once; what it asks for is done before the
// next message.
PROPERTY(setActive) {
    int on = 0;
    if (const int read = sd_bus_message_read(reply, "b", &on); read < 0) return read;
    ProductObject& self = object(own);
    const AppDelegate* const started = self.program.delegate();
    if (!started) return sd_bus_error_set(error, errors::starting, startingText);
    if (on != 0 && !control::canSwitchOn(*started))
        return sd_bus_error_set(error, errors::notPossible, oneMonitorText);
    self.link.afterMessage([&self, on] {
        if (AppDelegate* const delegate = self.program.delegate())
            control::setActive(*delegate, on != 0);
    });
    return 0;
}

PROPERTY(held) {
    return sd_bus_message_append(reply, "s", object(own).state().held.c_str());
}

PROPERTY(freed) {
    return sd_bus_message_append(reply, "u", static_cast<unsigned>(object(own).state().freed));
}

PROPERTY(monitors) {
    int result = sd_bus_message_open_container(reply, 'a', "(s(iiii)dbbb)");
    for (const control::Monitor& monitor : object(own).state().monitors) {
        if (result < 0) return result;
        const platform::Rect& frame = monitor.frame;
        result = sd_bus_message_append(
            reply, "(s(iiii)dbbb)", monitor.name.c_str(), rounded(frame.x), rounded(frame.y),
            rounded(frame.width), rounded(frame.height), monitor.scale, monitor.primary ? 1 : 0,
            monitor.held ? 1 : 0, monitor.dark ? 1 : 0);
    }
    return result < 0 ? result : sd_bus_message_close_container(reply);
}

PROPERTY(shortcut) {
    return sd_bus_message_append(reply, "s", object(own).state().shortcut.c_str());
}

PROPERTY(capabilities) {
    int result = sd_bus_message_open_container(reply, 'a', "(sbs)");
    for (const platform::Capability& capability : object(own).program.capabilities()) {
        if (result < 0) return result;
        result = sd_bus_message_append(reply, "(sbs)", capability.id.c_str(),
                                       capability.available ? 1 : 0, capability.reason.c_str());
    }
    return result < 0 ? result : sd_bus_message_close_container(reply);
}

PROPERTY(version) {
    return sd_bus_message_append(reply, "s", object(own).program.version.c_str());
}

METHOD(toggle) {
    return object(own).whenStarted(*call, [](sd_bus_message& message, AppDelegate& delegate) {
        const bool on = !control::state(delegate).active;
        // The alert that the menu's entry shows would keep the caller waiting.
        if (on && !control::canSwitchOn(delegate))
            return sd_bus_reply_method_errorf(&message, errors::notPossible, "%s", oneMonitorText);
        control::setActive(delegate, on);
        return sd_bus_reply_method_return(&message, "b", control::state(delegate).active ? 1 : 0);
    });
}

METHOD(free) {
    unsigned seconds = 0;
    if (const int read = sd_bus_message_read(call, "u", &seconds); read < 0) return read;
    if (seconds > longestFreeing)
        return sd_bus_reply_method_errorf(
            call, errors::outOfRange, "It can be freed for %u seconds at most.", longestFreeing);
    return object(own).whenStarted(
        *call, [seconds](sd_bus_message& message, AppDelegate& delegate) {
            if (seconds > 0 && !control::state(delegate).active)
                return sd_bus_reply_method_errorf(&message, errors::notPossible,
                                                  "It is switched off, and free already.");
            control::free(delegate, seconds);
            return done(message);
        });
}

METHOD(crossTo) {
    return object(own).whenStarted(
        *call, [monitor = text(*call)](sd_bus_message& message, AppDelegate& delegate) {
            if (control::crossTo(delegate, monitor)) return done(message);
            return sd_bus_reply_method_errorf(&message, errors::unknownMonitor,
                                              "There is no monitor \"%s\".", monitor.c_str());
        });
}

METHOD(showMenu) {
    ProductObject& self = object(own);
    return self.whenStarted(*call, [&self](sd_bus_message& message, AppDelegate&) {
        self.program.showMenu();
        return done(message);
    });
}

// Also before it has started, which an alert may keep it from.
METHOD(quit) {
    ProductObject& self = object(own);
    self.link.afterMessage([&self] { self.program.quit(); });
    return done(*call);
}

METHOD(listSettings) {
    return object(own).whenStarted(*call, [](sd_bus_message& message, AppDelegate& delegate) {
        sd_bus_message* made = nullptr;
        if (const int result = sd_bus_message_new_method_return(&message, &made); result < 0)
            return result;
        const Message reply(made);
        int result = sd_bus_message_open_container(made, 'a', "(ssssbs)");
        for (const control::SettingState& state : control::settings(delegate)) {
            if (result < 0) return result;
            const palisor::Setting& setting = *state.setting;
            result = sd_bus_message_append(made, "(ssssbs)", std::string(setting.key).c_str(),
                                           std::string(setting.name).c_str(), nameOf(setting.kind),
                                           state.value.c_str(), state.isDefault ? 1 : 0,
                                           std::string(setting.meaning).c_str());
        }
        if (result >= 0) result = sd_bus_message_close_container(made);
        return result < 0 ? result : sd_bus_send(nullptr, made, nullptr);
    });
}

METHOD(getSetting) {
    return object(own).whenStarted(
        *call, [name = text(*call)](sd_bus_message& message, AppDelegate& delegate) {
            const auto found = control::setting(delegate, name);
            if (!found) return refuse(message, reasonWithout(name), name);
            return sd_bus_reply_method_return(&message, "s", found->value.c_str());
        });
}

METHOD(setSetting) {
    std::string name = text(*call);
    std::string value = text(*call);
    return object(own).whenStarted(
        *call, [name, value](sd_bus_message& message, AppDelegate& delegate) {
            return answer(message, control::setSetting(delegate, name, value), name);
        });
}

METHOD(resetSetting) {
    return object(own).whenStarted(
        *call, [name = text(*call)](sd_bus_message& message, AppDelegate& delegate) {
            return answer(message, control::resetSetting(delegate, name), name);
        });
}

METHOD(report) {
    ProductObject& self = object(own);
    self.program.report(
        [&self, message = std::shared_ptr<sd_bus_message>(sd_bus_message_ref(call), Release())](
            const ProductObject::Report& report) {
            if (report.text)
                (void)sd_bus_reply_method_return(message.get(), "s", report.text->c_str());
            else
                (void)sd_bus_reply_method_errorf(message.get(), errors::noReport, "%s",
                                                 report.why.c_str());
            self.link.settle();
        });
    return 1;
}

#undef PROPERTY
#undef METHOD

} // namespace bus
