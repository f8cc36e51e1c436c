#include "platform/sway/connection/Compositor.h"

#include <utility>

namespace platform::sway {

namespace {

constexpr std::chrono::seconds longestQuestion{1}, longestSilence{2};

// The number of an event's kind.
enum : std::uint32_t { workspaceEvent, modeEvent = 2, bindingEvent = 5 };

std::string textOf(const JsonValue* value) {
    const auto* text = value ? std::get_if<std::string>(&value->held) : nullptr;
    return text ? *text : std::string();
}

std::int64_t numberOf(const JsonValue* value) {
    const auto* number = value ? std::get_if<std::int64_t>(&value->held) : nullptr;
    return number ? *number : 0;
}

} // namespace

Compositor::Compositor(std::string socketPath, Descriptors& watcher, Log& writer)
    : path(std::move(socketPath)),
      descriptors(watcher),
      log(writer),
      patience(
          watcher,
          [this] {
              patience.stop();
              if (!std::exchange(isSilent, true))
                  log.write("the compositor does not answer; what is asked of it comes later");
          },
          longestSilence) {}

std::unique_ptr<Compositor> Compositor::open(const std::string& socketPath,
                                             Descriptors& descriptors, Log& log) {
    std::unique_ptr<Compositor> made(new Compositor(socketPath, descriptors, log));
    return made->introduce() ? std::move(made) : nullptr;
}

bool Compositor::introduce() {
    commands = Ipc::open(path);
    events = Ipc::open(path);
    if (!commands || !events) return false;
    const auto deadline = Ipc::Clock::now() + longestQuestion;
    const auto told1 = commands->ask(Ipc::Type::version, "", deadline);
    if (!told1) return false;
    constexpr int nextMajor = 1000;
    version = static_cast<int>(numberOf(told1->member("minor")));
    if (numberOf(told1->member("major")) > 1) version += nextMajor;
    const std::string variant = textOf(told1->member("variant")); // of later releases
    ownName = (variant.empty() ? "sway" : variant) + " " + textOf(told1->member("human_readable"));
    configurationFile = textOf(told1->member("loaded_config_file_name"));
    const auto config = commands->ask(Ipc::Type::configuration, "", deadline);
    const auto state = commands->ask(Ipc::Type::bindingState, "", deadline);
    if (!config || !state) return false;
    take(*config);
    mode = textOf(state->member("name"));
    if (!events->ask(Ipc::Type::subscribe, R"(["binding","mode","workspace"])", deadline))
        return false;
    descriptors.watchReadable(commands->descriptor(), [this] { readReplies(); });
    descriptors.watchReadable(events->descriptor(), [this] { readEvents(); });
    return true;
}

Compositor::~Compositor() {
    for (const auto& one : {commands.get(), events.get()})
        if (one) descriptors.unwatch(one->descriptor());
}

// Those of what is included as they are by now, as nobody tells the compositor's own.
void Compositor::take(const JsonValue& configuration) {
    users = UserConfiguration({configurationFile, textOf(configuration.member("config"))});
}

void Compositor::send(Ipc::Type type, std::string_view payload) {
    commands->send(type, payload);
    if (!commands->isBroken()) patience.start();
}

void Compositor::run(const std::string& list) {
    send(Ipc::Type::command, inFirstMode(list, mode));
}

void Compositor::askWorkspaces(std::function<void(const JsonValue&)> answered) {
    workspacesAnswered = std::move(answered);
    send(Ipc::Type::workspaces, "");
}

bool Compositor::runNow(const std::string& list) {
    const auto reply = commands->ask(Ipc::Type::command, inFirstMode(list, mode),
                                     Ipc::Clock::now() + longestQuestion);
    if (reply) tellFailure(*reply);
    return reply.has_value();
}

void Compositor::tellFailure(const JsonValue& reply) {
    const std::string failure = failureIn(reply);
    if (!failure.empty() && !std::exchange(told[failure], true))
        log.write("the compositor refuses a command: " + failure);
}

void Compositor::take(const Message& reply) {
    if (reply.type == static_cast<std::uint32_t>(Ipc::Type::configuration)) {
        take(reply.value);
        for (std::size_t i = 0; i < reloadHandlers.size(); ++i)
            reloadHandlers[i].second();
    } else if (reply.type != static_cast<std::uint32_t>(Ipc::Type::workspaces)) {
        tellFailure(reply.value);
    } else if (const auto answered = std::exchange(workspacesAnswered, {})) {
        answered(reply.value);
    }
}

void Compositor::readReplies() {
    commands->transfer();
    while (const auto message = commands->next()) {
        take(*message);
    }
    patience.stop();
    if (commands->isWaiting())
        patience.start();
    else if (settled)
        settled();
    if (std::exchange(isSilent, false)) log.write("the compositor answers again");
    // That the compositor has gone is told by the display's connection.
    if (commands->isBroken()) descriptors.unwatch(commands->descriptor());
}

void Compositor::readEvents() {
    events->transfer();
    while (const auto message = events->next())
        if (message->type & Ipc::eventBit) handle(*message);
    if (events->isBroken()) descriptors.unwatch(events->descriptor());
}

void Compositor::handle(const Message& message) {
    const std::uint32_t kind = message.type & ~Ipc::eventBit;
    const JsonValue& event = message.value;
    const std::string change = textOf(event.member("change"));
    if (kind == workspaceEvent && change == "reload") {
        send(Ipc::Type::configuration, "");
    } else if (kind == modeEvent) {
        mode = change;
    } else if (kind == bindingEvent && change == "run") {
        const JsonValue* const binding = event.member("binding");
        const std::string command = binding ? textOf(binding->member("command")) : "";
        constexpr std::string_view nothing = "nop ";
        if (!command.starts_with(nothing)) return;
        const auto found = bindings.find(command.substr(nothing.size()));
        if (found == bindings.end()) return;
        const auto pressed = found->second; // which may forget itself
        pressed();
    }
}

void Compositor::onBinding(const std::string& name, std::function<void()> pressed) {
    bindings[name] = std::move(pressed);
}

void Compositor::onReload(const void* owner, std::function<void()> reloaded) {
    std::erase_if(reloadHandlers, [owner](const auto& one) { return one.first == owner; });
    if (reloaded) reloadHandlers.emplace_back(owner, std::move(reloaded));
}

} // namespace platform::sway
