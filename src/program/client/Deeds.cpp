#include "program/client/Deeds.h"

#include "bus/Names.h"
#include "platform/json/Writer.h"
#include "program/client/Remote.h"
#include "program/client/Seen.h"
#include "program/client/Watch.h"

#include <charconv>
#include <cstdio>

namespace client {

namespace {

using platform::json::Member;

constexpr std::chrono::seconds startPatience{10};

struct SeenSetting {
    std::string key, name, kind, value;
    bool isDefault = false;
    std::string meaning;
};

Remote::Fill texts(const std::vector<std::string>& words) {
    return [words](sd_bus_message* question) {
        for (const std::string& word : words)
            if (const int result = sd_bus_message_append(question, "s", word.c_str()); result < 0)
                return result;
        return 0;
    };
}

Seen askAll(Remote& remote) {
    Seen seen;
    (void)seen.take(remote.getAll().get());
    return seen;
}

std::vector<SeenSetting> askSettings(Remote& remote) {
    const auto reply = remote.call("ListSettings");
    std::vector<SeenSetting> settings;
    if (sd_bus_message_enter_container(reply.get(), 'a', "(ssssbs)") < 0) return settings;
    const char *key, *name, *kind, *value, *meaning;
    int isDefault = 0;
    while (sd_bus_message_read(reply.get(), "(ssssbs)", &key, &name, &kind, &value, &isDefault,
                               &meaning) > 0)
        settings.push_back({key, name, kind, value, isDefault != 0, meaning});
    return settings;
}

/// On, whether or not it ran before.
void switchOn(Remote& remote) {
    remote.setActive(true, startPatience);
}

/// Returns whether it had to be started.
bool startWhereNeeded(Remote& remote) {
    if (remote.isRunning()) return false;
    remote.start();
    return true;
}

unsigned secondsOf(const Words& words) {
    if (words.arguments.empty()) return usualFreeing;
    const std::string& word = words.arguments[0];
    unsigned seconds = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), seconds);
    if (error != std::errc() || end != word.data() + word.size() || seconds > bus::longestFreeing)
        throw Failure{Exit::wrongUsage,
                      "free takes whole seconds from 0 to " + std::to_string(bus::longestFreeing)};
    return seconds;
}

void cross(Remote& remote, const std::string& monitor) {
    std::vector<std::string_view> names;
    const Seen seen = askAll(remote);
    for (const SeenMonitor& one : seen.monitors)
        names.push_back(one.name);
    if (std::ranges::count(names, monitor) == 0)
        throw Failure{Exit::refused, "there is no monitor \"" + monitor + "\"" +
                                         advice(monitor, names, "status lists them")};
    (void)remote.call("CrossTo", texts({monitor}));
}

void print(const std::string& text) {
    (void)std::fputs(text.c_str(), stdout);
}

void listSettings(Remote& remote, bool asJson) {
    const auto settings = askSettings(remote);
    std::vector<platform::json::Raw> raw;
    std::size_t width = 0;
    for (const SeenSetting& setting : settings)
        width = std::max(width, setting.name.size() + setting.value.size());
    for (const SeenSetting& setting : settings) {
        if (asJson)
            raw.push_back(object(Member{"key", std::string_view(setting.key)},
                                 Member{"name", std::string_view(setting.name)},
                                 Member{"kind", std::string_view(setting.kind)},
                                 Member{"value", std::string_view(setting.value)},
                                 Member{"isDefault", setting.isDefault},
                                 Member{"meaning", std::string_view(setting.meaning)}));
        else
            print(setting.name + " = " + setting.value +
                  std::string(width - setting.name.size() - setting.value.size() + 2, ' ') +
                  setting.meaning + (setting.isDefault ? "" : " (changed)") + "\n");
    }
    std::string text;
    if (asJson) writeJson(text, raw);
    if (asJson) print(text + "\n");
}

/// A mistyped name is told the nearest right one, before anything is done.
void checkName(Remote& remote, const std::string& wanted) {
    const auto settings = askSettings(remote);
    std::vector<std::string_view> names;
    for (const SeenSetting& setting : settings) {
        if (setting.key == wanted || setting.name == wanted) return;
        names.push_back(setting.name);
    }
    throw Failure{Exit::refused, "there is no setting \"" + wanted + "\" of this product" +
                                     advice(wanted, names, "settings lists them")};
}

void settings(Remote& remote, const Words& words) {
    const auto& given = words.arguments;
    if (given.empty() || given[0] == "list") return listSettings(remote, words.json);
    if (words.json && given[0] != "get")
        throw Failure{Exit::wrongUsage, "settings " + given[0] + " prints nothing: no --json"};
    checkName(remote, given[1]);
    if (given[0] == "set") {
        (void)remote.call("SetSetting", texts({given[1], given[2]}));
    } else if (given[0] == "reset") {
        (void)remote.call("ResetSetting", texts({given[1]}));
    } else {
        const auto reply = remote.call("GetSetting", texts({given[1]}));
        const char* value = nullptr;
        if (sd_bus_message_read(reply.get(), "s", &value) < 0) return;
        std::string text = value;
        if (words.json) {
            text.clear();
            platform::json::writeJson(text, std::string_view(value));
        }
        print(text + "\n");
    }
}

} // namespace

void carryOut(const Words& words) {
    const std::string_view name = words.command->name;
    const unsigned seconds = name == "free" ? secondsOf(words) : 0;
    Remote remote(words.product);
    const bool isNew = (name == "on" || name == "toggle") && startWhereNeeded(remote);
    remote.compareVersions();
    if (name == "on" || isNew) {
        switchOn(remote);
    } else if (name == "off") {
        remote.setActive(false, {});
    } else if (name == "toggle") {
        (void)remote.call("Toggle");
    } else if (name == "status") {
        const Seen seen = askAll(remote);
        print(words.json ? seen.json() + "\n" : seen.text());
    } else if (name == "free") {
        (void)remote.call("Free", [seconds](sd_bus_message* question) {
            return sd_bus_message_append(question, "u", seconds);
        });
    } else if (name == "cross") {
        cross(remote, words.arguments[0]);
    } else if (name == "menu") {
        (void)remote.call("ShowMenu");
    } else if (name == "settings") {
        settings(remote, words);
    } else if (name == "watch") {
        watch(remote, words.json);
    } else {
        (void)remote.call("Quit");
        remote.waitUntilGone();
    }
}

} // namespace client
