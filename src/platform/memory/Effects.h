#pragma once

#include "platform/json/Writer.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace platform::memory {

using json::Member;
using json::orNull;

/// Virtual time since the start, in whole nanoseconds. The run loop sets it.
struct Clock {
    std::int64_t nanoseconds = 0;
};

/// Something that reached the platform. The views live as long as the call that hands it over.
struct Effect {
    std::int64_t nanoseconds = 0; ///< when, since the start
    std::string_view name;
    std::string_view members; ///< JSON members, without the braces
};

/// The effect as one JSON object, without a line end.
std::string lineOf(const Effect& effect);

/// Everything that reaches the memory platform, in order. With nobody listening nothing is
/// formatted and nothing is allocated, so that a measurement sees the core alone.
class Effects {
  public:
    using Sink = std::function<void(const Effect&)>;

    explicit Effects(const Clock& virtualClock) : clock(virtualClock) {}

    /// Hands each effect to `newSink` as it happens; an empty one for nobody.
    void setSink(Sink newSink) { sink = std::move(newSink); }

    /// Keeps the effects from now on.
    void keep() { keeping = true; }

    /// What was kept, one text an effect, such as `warp {"to":[1919,500]}` or
    /// `showCursor {}`; of the effects named only, where names are given.
    std::vector<std::string> lines(std::initializer_list<std::string_view> names = {}) const;

    /// The same as whole JSON objects, with their time.
    std::vector<std::string> timedLines(std::initializer_list<std::string_view> names = {}) const;

    /// As `lines`; forgets everything that was kept.
    std::vector<std::string> take(std::initializer_list<std::string_view> names = {});

    void clear() { kept.clear(); }

    /// `effects.emit("warp", Member{"to", point})`
    template <class... T>
    void emit(std::string_view name, const Member<T>&... members) {
        if (sink || keeping) deliver(name, json::members(members...));
    }

  private:
    struct Kept {
        std::int64_t nanoseconds;
        std::string name;
        std::string members;
    };

    void deliver(std::string_view name, std::string members);

    const Clock& clock;
    Sink sink;
    bool keeping = false;
    std::vector<Kept> kept;
};

} // namespace platform::memory
