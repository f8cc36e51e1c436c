#include "platform/sway/connection/Compositor.h"

#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

constexpr std::chrono::seconds patience{1};

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
    : path(std::move(socketPath)), descriptors(watcher), log(writer) {}

std::unique_ptr<Compositor> Compositor::open(const std::string& socketPath,
                                             Descriptors& descriptors, Log& log) {
    std::unique_ptr<Compositor> made(new Compositor(socketPath, descriptors, log));
    return made->introduce() ? std::move(made) : nullptr;
}

bool Compositor::introduce() {
    commands = Ipc::open(path);
    events = Ipc::open(path);
    if (!commands || !events) return false;
    const auto deadline = Ipc::Clock::now() + patience;
    const auto told1 = commands->ask(Ipc::Type::version, "", deadline);
    if (!told1) return false;
    constexpr int nextMajor = 1000;
    version = static_cast<int>(numberOf(told1->member("minor")));
    if (numberOf(told1->member("major")) > 1) version += nextMajor;
    const auto config = commands->ask(Ipc::Type::configuration, "", deadline);
    if (config) configurationText = textOf(config->member("config"));
    if (!events->ask(Ipc::Type::subscribe, R"(["binding","window","workspace"])", deadline))
        return false;
    descriptors.watchReadable(commands->descriptor(), [this] { readReplies(); });
    descriptors.watchReadable(events->descriptor(), [this] { readEvents(); });
    return true;
}

Compositor::~Compositor() {
    for (const auto& one : {commands.get(), events.get()})
        if (one) descriptors.unwatch(one->descriptor());
}

void Compositor::run(std::string_view list) {
    commands->send(Ipc::Type::command, list);
}

void Compositor::askWorkspaces(std::function<void(const JsonValue&)> answered) {
    workspacesAnswered = std::move(answered);
    commands->send(Ipc::Type::workspaces, "");
}

void Compositor::runNow(std::string_view list) {
    const auto reply = commands->ask(Ipc::Type::command, list, Ipc::Clock::now() + patience);
    if (reply) tellFailure(*reply);
}

void Compositor::tellFailure(const JsonValue& reply) {
    const std::string failure = failureIn(reply);
    if (!failure.empty() && !std::exchange(told[failure], true))
        log.write("the compositor refuses a command: " + failure);
}

void Compositor::readReplies() {
    commands->transfer();
    while (const auto message = commands->next()) {
        if (message->type != static_cast<std::uint32_t>(Ipc::Type::workspaces))
            tellFailure(message->value);
        else if (const auto answered = std::exchange(workspacesAnswered, {}))
            answered(message->value);
    }
    // That the compositor has gone is told by the display's connection.
    if (commands->isBroken()) descriptors.unwatch(commands->descriptor());
}

void Compositor::readEvents() {
    events->transfer();
    while (const auto message = events->next())
        if (message->type & Ipc::eventBit) handle(message->value);
    if (events->isBroken()) descriptors.unwatch(events->descriptor());
}

void Compositor::handle(const JsonValue& event) {
    const std::string change = textOf(event.member("change"));
    if (change == "reload") {
        for (const auto& [owner, reloaded] : std::map(reloadHandlers))
            reloaded();
    } else if (change == "new") {
        const JsonValue* const window = event.member("container");
        if (ownWindowCame && window && numberOf(window->member("pid")) == getpid())
            ownWindowCame(numberOf(window->member("id")), textOf(window->member("name")));
    } else if (change == "run") {
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
    if (reloaded)
        reloadHandlers[owner] = std::move(reloaded);
    else
        reloadHandlers.erase(owner);
}

} // namespace platform::sway
