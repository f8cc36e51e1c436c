#include "platform/kwin/hiding/HidingEffect.h"

#include "platform/kwin/hiding/ConfigFile.h"
#include "platform/kwin/hiding/ConfigGroup.h"

#include <cstdlib>
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

/// What was another one for a moment, and who made it so was killed in that.
void restore(const std::string& record) {
    const auto kept = textOf(record), now = textOf(configurationFile());
    if (!kept) return;
    if (now) (void)replace(configurationFile(), withGroupOf(*now, group, *kept));
    (void)replace(record, std::nullopt);
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
    stage = Stage::off;
    isLeaving = false;
    if (wanted) apply();
}

// Before the effect is changed the script knows how to take that back. A command is on its way only
// when the program waits for events again, and a kill before would leave the effect: so the change
// waits until the script has said that it knows.
void HidingEffect::apply() {
    if (!wanted) {
        if (std::exchange(stage, Stage::off) == Stage::off) return;
        isLeaving = true;
        script.run("effect", {std::string()}, [this, number = announced] {
            if (number == announced) isLeaving = false;
        });
        return;
    }
    if (stage == Stage::announced) return; // with what is wanted by then
    if (stage == Stage::on) return change();
    bool isLoaded = false;
    if (!isLeaving && !call("isEffectLoaded", &isLoaded)) return fail();
    if (!isLeaving) isOurs = !isLoaded;
    stage = Stage::announced;
    script.run("effect", {std::string(isOurs ? "unloadEffect" : "reconfigureEffect")},
               [this, number = ++announced] {
                   if (number == announced && stage == Stage::announced) change();
               });
}

void HidingEffect::change() {
    bool hasLoaded = true;
    const bool isThere =
        stage == Stage::on || !isOurs || (call("loadEffect", &hasLoaded) && hasLoaded);
    stage = isThere && reconfigure(isOurs) ? Stage::on : Stage::off;
    if (stage == Stage::off) fail();
}

void HidingEffect::fail() {
    if (!std::exchange(hasFailed, true))
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
    const std::string file = configurationFile();
    const auto users = textOf(file);
    const std::string before = users.value_or("");
    std::map<std::string, std::string> values{{"InactivityDuration", std::to_string(*wanted)}};
    if (isForProgram) values.emplace("HideOnTyping", "false");
    const std::string ours = withValues(before, group, values);
    if (!replace(record, before)) return false;
    const bool isDone = replace(file, ours) && call("reconfigureEffect");
    const std::string now = textOf(file).value_or("");
    if (now != ours)
        (void)replace(file, withGroupOf(now, group, before));
    else
        (void)replace(file, users);
    (void)replace(record, std::nullopt);
    return isDone;
}

} // namespace platform::kwin
