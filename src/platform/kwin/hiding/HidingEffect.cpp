#include "platform/kwin/hiding/HidingEffect.h"

#include "platform/kwin/hiding/ConfigGroup.h"
#include "platform/linux/files/AtomicFile.h"

#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace platform::kwin {

namespace {

constexpr const char* effect = "hidecursor";
constexpr const char* group = "Effect-hidecursor";
constexpr std::uint64_t patience = 1'000'000; // microseconds

std::string configurationFile() {
    const char* const folder = std::getenv("XDG_CONFIG_HOME");
    if (folder && *folder) return std::string(folder) + "/kwinrc";
    const char* const home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.config/kwinrc";
}

/// What was another one for a moment, and has been killed in it.
void restore(const std::string& record) {
    using State = linux::FileRead::State;
    const auto kept = linux::readFile(record), now = linux::readFile(configurationFile());
    if (kept.state != State::read) return;
    if (now.state == State::read)
        (void)linux::replaceFileOfOthers(configurationFile(),
                                         withGroupOf(now.text, group, kept.text));
    ::unlink(record.c_str());
}

} // namespace

HidingEffect::HidingEffect(Script& inside, bus::Link& x, Log& writer, const std::string& folder)
    : script(inside), link(x), log(writer), record(folder + "/kwinrc-before") {
    restore(record);
}

void HidingEffect::set(std::optional<int> seconds) {
    if (std::exchange(wanted, seconds) != seconds && script.isLoaded()) apply();
}

void HidingEffect::again() {
    isOn = false;
    if (wanted) apply();
}

// Before the effect is changed the script knows how to take that back.
void HidingEffect::apply() {
    if (!wanted) {
        if (std::exchange(isOn, false)) script.run("effect", {std::string()});
        return;
    }
    bool isLoaded = false;
    bool isDone = isOn || call("isEffectLoaded", &isLoaded);
    if (isDone && !isOn) {
        isOurs = !isLoaded;
        script.run("effect", {std::string(isOurs ? "unloadEffect" : "reconfigureEffect")});
        bool hasLoaded = true;
        isDone = !isOurs || (call("loadEffect", &hasLoaded) && hasLoaded);
    }
    isOn = isDone && reconfigure(isOurs);
    if (!isOn && !std::exchange(hasFailed, true))
        log.write("the compositor does not hide the cursor: it has no effect that does");
}

bool HidingEffect::call(const char* method, bool* answer) {
    if (!link.bus()) return false;
    sd_bus_message* reply = nullptr;
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(link.bus(), &made, "org.kde.KWin", "/Effects",
                                       "org.kde.kwin.Effects", method) < 0)
        return false;
    const bus::Message asked(made);
    if (sd_bus_message_append(made, "s", effect) < 0) return false;
    const int result = sd_bus_call(link.bus(), made, patience, nullptr, &reply);
    const bus::Message owner(reply);
    link.settle();
    int flag = 0;
    if (result < 0 || (answer && sd_bus_message_read(reply, "b", &flag) < 0)) return false;
    if (answer) *answer = flag != 0;
    return true;
}

// The compositor reads the user's file when it is told to, and keeps what it has read. What was
// loaded for the program alone does nothing else that it could do.
bool HidingEffect::reconfigure(bool isForProgram) {
    using State = linux::FileRead::State;
    const std::string file = configurationFile();
    const auto users = linux::readFile(file);
    if (users.state != State::read && users.state != State::absent) return false;
    std::map<std::string, std::string> values{{"InactivityDuration", std::to_string(*wanted)}};
    if (isForProgram) values.emplace("HideOnTyping", "false");
    const std::string ours = withValues(users.text, group, values);
    if (linux::replaceFile(record, users.text).failure) return false;
    const bool isDone =
        !linux::replaceFileOfOthers(file, ours).failure && call("reconfigureEffect");
    const auto now = linux::readFile(file);
    if (users.state == State::absent && now.text == ours)
        ::unlink(file.c_str());
    else
        (void)linux::replaceFileOfOthers(
            file, now.text == ours ? users.text : withGroupOf(now.text, group, users.text));
    ::unlink(record.c_str());
    return isDone;
}

} // namespace platform::kwin
