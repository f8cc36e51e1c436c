#include "platform/kwin/script/Script.h"

#include "platform/json/Parser.h"
#include "platform/json/Writer.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <utility>

// A script can call the bus and cannot be called. So it asks for commands, and is answered when
// there are some. Its next question has the number of the last command that it has carried out. A
// question that waits for long is asked anew.

namespace platform::kwin {

namespace {

constexpr const char* service = "org.kde.KWin";
constexpr const char* scripting = "org.kde.kwin.Scripting";
constexpr const char* ownInterface = "com.tamberlo.Script1";

// A script that runs asks every 20 seconds at least.
constexpr std::chrono::seconds longestSilence{30};

bus::Slot slotOf(sd_bus_slot* slot) {
    return bus::Slot(slot);
}

} // namespace

std::vector<double> numbersOf(const JsonValue::List& words) {
    std::vector<double> numbers;
    for (const JsonValue& word : words) {
        if (const auto* whole = std::get_if<std::int64_t>(&word.held))
            numbers.push_back(static_cast<double>(*whole));
        else if (const auto* real = std::get_if<double>(&word.held))
            numbers.push_back(*real);
        else
            return {};
    }
    return numbers;
}

Script::Script(bus::Link& x, Descriptors& descriptors, Log& writer, Source given)
    : link(x),
      log(writer),
      source(std::move(given)),
      path("/session/" + source.name),
      copy(source.folder + "/kwin-" + source.name + "-" + std::to_string(getpid()) + ".js"),
      silence(
          descriptors,
          [this] {
              forget();
              if (!compositor.empty()) load();
          },
          longestSilence) {
    link.add(*this);
    if (link.bus()) up();
}

Script::~Script() {
    end();
    link.remove(*this);
    ::unlink(copy.c_str());
}

void Script::attach(sd_bus& bus) {
    forget();
    compositor.clear();
    sd_bus_slot* made = nullptr;
    (void)sd_bus_add_object(&bus, &made, path.c_str(), called, this);
    object = slotOf(made);
    const std::string rule = "type='signal',sender='org.freedesktop.DBus',"
                             "member='NameOwnerChanged',arg0='" +
                             std::string(service) + "'";
    made = nullptr;
    (void)sd_bus_add_match_async(&bus, &made, rule.c_str(), ownerChanged, nullptr, this);
    watch = slotOf(made);
}

void Script::up() {
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, "org.freedesktop.DBus",
                                   "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner",
                                   ownerTold, this, "s", service);
    question = slotOf(made);
    link.settle();
}

int Script::ownerTold(sd_bus_message* reply, void* own, sd_bus_error*) {
    const char* owner = nullptr;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "s", &owner) >= 0)
        static_cast<Script*>(own)->follow(owner);
    return 0;
}

int Script::ownerChanged(sd_bus_message* message, void* own, sd_bus_error*) {
    const char *name = nullptr, *before = nullptr, *now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) >= 0)
        static_cast<Script*>(own)->follow(now);
    return 0;
}

void Script::follow(const std::string& owner) {
    if (compositor == owner) return;
    forget();
    compositor = owner;
    if (!compositor.empty()) load();
}

// Nobody reads the answer to what is told, and each wakes the compositor. It asks for commands more
// often than the bus gives up a call.
void Script::acknowledgeLater(sd_bus_message& message) {
    constexpr std::size_t most = 64;
    unanswered.push_back(bus::keep(&message));
    if (unanswered.size() >= most) acknowledge();
}

void Script::acknowledge() {
    for (const bus::Message& one : unanswered)
        (void)sd_bus_reply_method_return(one.get(), "");
    unanswered.clear();
}

// One that has not asked yet is told when it does.
void Script::end() {
    run("end");
    answer(unsent());
    forget();
    loadedAs.clear();
}

void Script::setNeeded(bool on) {
    if (std::exchange(source.isNeeded, on) == on) return;
    if (!on)
        end();
    else if (!compositor.empty())
        load();
}

void Script::forget() {
    isRunning = false;
    asked.reset();
    unanswered.clear();
    commands.clear();
    silence.stop();
}

bool Script::writeCopy() {
    std::ifstream file(source.file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const char* unique = nullptr;
    if (text.empty() || sd_bus_get_unique_name(link.bus(), &unique) < 0) return false;
    std::ofstream made(copy, std::ios::binary | std::ios::trunc);
    made << "const program = \"" << unique << "\", path = \"" << path << "\", script = \""
         << loadedAs << "\";\n"
         << text;
    made.close();
    return made.good();
}

// A name that the compositor has seen in this run is refused.
void Script::load() {
    if (!link.bus() || !source.isNeeded) return;
    loadedAs = source.name + "-" + std::to_string(getpid()) + "-" + std::to_string(++loads);
    if (!writeCopy()) return fail("the script for the compositor cannot be written to " + copy);
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, compositor.c_str(), "/Scripting", scripting,
                                   "loadScript", loaded, this, "ss", copy.c_str(),
                                   loadedAs.c_str());
    loading = slotOf(made);
    silence.start();
    link.settle();
}

int Script::loaded(sd_bus_message* reply, void* own, sd_bus_error*) {
    auto& self = *static_cast<Script*>(own);
    int number = -1;
    if (sd_bus_message_is_method_error(reply, nullptr) != 0 ||
        sd_bus_message_read(reply, "i", &number) < 0 || number < 0) {
        self.fail("the compositor refuses the script");
        return 0;
    }
    // All that were loaded, as the number that was given may be another script's too.
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(self.link.bus(), &made, self.compositor.c_str(), "/Scripting",
                                   scripting, "start", started, &self, "");
    self.loading = slotOf(made);
    return 0;
}

int Script::started(sd_bus_message* reply, void* own, sd_bus_error*) {
    if (sd_bus_message_is_method_error(reply, nullptr) != 0)
        static_cast<Script*>(own)->fail("the compositor does not run the script");
    return 0;
}

void Script::fail(const std::string& what) {
    if (!std::exchange(hasFailed, true)) log.write(what);
}

void Script::reload() {
    if (compositor.empty()) return;
    end();
    load();
}

int Script::called(sd_bus_message* message, void* own, sd_bus_error*) {
    auto& self = *static_cast<Script*>(own);
    const char* const sender = sd_bus_message_get_sender(message);
    // Anybody of the user could ask otherwise, and take what the script does not get then.
    if (!sender || self.compositor != sender) return 0;
    if (sd_bus_message_is_method_call(message, ownInterface, "Poll") > 0) {
        self.polled(*message);
        return 1;
    }
    const char *name = nullptr, *text = nullptr;
    if (sd_bus_message_is_method_call(message, ownInterface, "Tell") <= 0 ||
        sd_bus_message_read(message, "ss", &name, &text) < 0)
        return 0;
    if (self.loadedAs == name) self.told(text);
    self.acknowledgeLater(*message);
    return 1;
}

void Script::polled(sd_bus_message& message) {
    const char *name = nullptr, *text = nullptr;
    if (sd_bus_message_read(&message, "ss", &name, &text) < 0) return;
    if (loadedAs != name) { // one that was to end and did not hear of it
        (void)sd_bus_reply_method_return(&message, "s", R"([[0,"end"]])");
        return;
    }
    const unsigned long number = std::strtoul(text, nullptr, 10);
    acknowledge();
    answer({});
    asked = bus::keep(&message);
    silence.stop();
    silence.start();
    if (!std::exchange(isRunning, true) && loadHandler) loadHandler();
    std::vector<Command> finished;
    const auto rest = std::ranges::find_if(
        commands, [number](const Command& one) { return one.number > number; });
    std::move(commands.begin(), rest, std::back_inserter(finished));
    commands.erase(commands.begin(), rest);
    for (const Command& one : finished)
        if (one.done) one.done();
    link.callSoon();
}

void Script::run(std::string name, std::vector<Word> words, std::function<void()> done) {
    if (!isRunning) return;
    commands.push_back({++lastNumber, std::move(name), std::move(words), std::move(done), false});
    link.callSoon();
}

std::string Script::unsent() {
    std::string text;
    for (Command& one : commands) {
        if (std::exchange(one.isSent, true)) continue;
        text += (text.empty() ? "[[" : ",[") + std::to_string(one.number) + ",";
        json::writeJson(text, std::string_view(one.name));
        for (const Word& word : one.words) {
            text += ',';
            std::visit(
                [&text]<class T>(const T& value) {
                    if constexpr (std::is_same_v<T, std::string>)
                        json::writeJson(text, std::string_view(value));
                    else
                        json::writeJson(text, value);
                },
                word);
        }
        text += ']';
    }
    return text.empty() ? text : text + "]";
}

void Script::turn() {
    if (!asked) return;
    const std::string text = unsent();
    if (!text.empty()) answer(text);
}

void Script::answer(const std::string& text) {
    if (!asked || !link.bus()) return;
    (void)sd_bus_reply_method_return(asked.get(), "s", text.empty() ? "[]" : text.c_str());
    asked.reset();
    link.settle();
}

void Script::told(const char* text) {
    const auto read = json::Parser().parse(text);
    const auto* words = read ? std::get_if<JsonValue::List>(&read->held) : nullptr;
    const auto* name =
        words && !words->empty() ? std::get_if<std::string>(&words->front().held) : nullptr;
    if (!name) return;
    const auto found = tellers.find(*name);
    if (found != tellers.end() && found->second) found->second({words->begin() + 1, words->end()});
}

} // namespace platform::kwin
