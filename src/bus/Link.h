#pragma once

#include "bus/Callers.h"
#include "bus/Handles.h"
#include "platform/Descriptors.h"
#include "platform/Log.h"

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace bus {

/// The process's own connection to the session bus, and another one when the bus has gone and come
/// back at the same address. Nothing here waits but `wait` and whoever makes a call of its own; a
/// turn of the run loop takes a few messages, so that whatever else is due goes in between. Calls
/// are heard from the session's user alone. Main thread.
class Link {
  public:
    /// Something that lives on the connection.
    class User {
      public:
        virtual ~User() = default;
        /// A new connection, before anything is read from it: the place for objects and matches.
        /// Slots of the one before are no longer of use.
        virtual void attach(sd_bus& bus) = 0;
        /// The bus has answered.
        virtual void up() {}
        /// Called from the run loop after `callSoon`, never while a message is handled.
        virtual void turn() {}
    };

    enum class State { absent, silent, up };

    /// Looks for the bus at once. What is lent must outlive the object.
    Link(platform::Descriptors& descriptors, platform::Log& log);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Gives a bus that long to answer for the first time; one that is absent takes no time. What
    /// keeps the process from using the session bus is logged.
    State wait(std::chrono::milliseconds limit = std::chrono::seconds(2));

    /// From now on the run loop reads, and looks for a bus that has gone every two seconds. Calls
    /// that came before are answered then.
    void start();

    /// The user must outlive the object, or be removed. One that is removed frees its slots itself.
    void add(User& user);
    void remove(User& user) { std::erase(users, &user); }

    /// Null where there is none, or none that has answered.
    sd_bus* bus() const { return isUp ? connection.get() : nullptr; }

    /// Has `work` done when the message has been handled, before the next one is: what it does may
    /// run a loop of its own.
    void afterMessage(std::function<void()> work) { pending.push_back(std::move(work)); }

    /// Has every user's `turn` called; neither waits nor allocates.
    void callSoon();

    /// To be called after something was sent outside of a message's handling.
    void settle();

  private:
    static constexpr std::uint64_t never = ~std::uint64_t{0};

    void connect();
    void lost();
    void ready();
    bool handleOne();
    void doPending();
    void noteUp();
    void wakeAt(std::uint64_t microseconds);

    platform::Descriptors& descriptors;
    platform::Log& log;
    std::string address; ///< empty where nothing names one
    int together = -1;   ///< the connection and the alarm, for one watch
    int alarm = -1;
    std::uint64_t wakesAt = never;
    int watched = -1; ///< the connection's descriptor
    std::uint32_t watchedFor = 0;
    Connection connection;
    Callers callers;
    std::vector<User*> users;
    std::deque<std::function<void()>> pending;
    std::uint64_t patience = 1'000'000; ///< microseconds, half of what the first one gets
    std::uint64_t givesUpAt = never;    ///< as long as it has not answered
    bool isUp = false, isHandling = false, isCalled = false, isStarted = false;
};

} // namespace bus
