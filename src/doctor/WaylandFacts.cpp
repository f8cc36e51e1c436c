#include "doctor/WaylandFacts.h"

#include "program/session/WaylandModule.h"

#include <utility>

namespace doctor {

namespace {

/// Nothing comes later for who leaves at once.
class NoLoop final : public platform::Descriptors {
  public:
    void watchReadable(int, std::function<void()>) override {}
    void unwatch(int) override {}
};

class NoLog final : public platform::Log {
  public:
    void write(std::string_view) override {}
};

} // namespace

WaylandFacts askCompositor() {
    NoLoop loop;
    NoLog log;
    const auto opened = openThroughModule(loop, log, [] {});
    WaylandFacts facts{.isJoined = opened.desktop != nullptr, .refusal = opened.error};
    if (!facts.isJoined) return facts;
    facts.compositor = opened.desktop->compositorName();
    const auto screens = std::as_const(*opened.desktop).displays().screens();
    facts.screens.assign(screens.begin(), screens.end());
    return facts;
}

} // namespace doctor
