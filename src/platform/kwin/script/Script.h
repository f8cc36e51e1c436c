#pragma once

#include "bus/Link.h"
#include "platform/Json.h"
#include "platform/Log.h"
#include "platform/session/Pace.h"

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace platform::kwin {

/// What a script tells, where it is numbers alone; else nothing.
std::vector<double> numbersOf(const JsonValue::List& words);

/// A script of the program's inside the compositor, loaded whenever it is needed and there is a
/// compositor on the bus, and the commands that it carries out. It takes back what it did when the
/// program is no more. Nothing here waits. Main thread.
class Script final : public bus::Link::User {
  public:
    struct Source {
        std::string file;     ///< the script's text
        std::string folder;   ///< for the copy that the compositor reads
        std::string name;     ///< what it is for, in small letters; unlike the program's others
        bool isNeeded = true; ///< as of `setNeeded`
    };

    /// What is lent must outlive the object.
    Script(bus::Link& link, Descriptors& descriptors, Log& log, Source source);
    /// The script takes back what it did.
    ~Script() override;
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    using Word = std::variant<double, std::string, std::vector<double>>;
    /// Has it carried out in the order of the calls, `done` is called from the run loop when it
    /// was. Without a script it is forgotten.
    void run(std::string name, std::vector<Word> words = {}, std::function<void()> done = {});
    /// Sends what was run at once, and not at the next turn of the run loop.
    void hurry() { turn(); }

    /// Called when a script has been loaded, which has nothing of what was run before. One handler.
    void onLoad(std::function<void()> loaded) { loadHandler = std::move(loaded); }
    /// Called when the script tells something: the words behind its name. One handler a name.
    void onTold(const std::string& name, std::function<void(const JsonValue::List&)> told) {
        tellers[name] = std::move(told);
    }
    /// Ends the script that runs and loads it anew.
    void reload();
    /// Whether there is to be one from now on.
    void setNeeded(bool on);

    /// Whether there is one that has asked for commands.
    bool isLoaded() const { return isRunning; }

  private:
    struct Command {
        unsigned long number;
        std::string name;
        std::vector<Word> words;
        std::function<void()> done;
        bool isSent;
    };

    void attach(sd_bus& bus) override;
    void up() override;
    void turn() override;

    static int called(sd_bus_message* message, void* own, sd_bus_error* error);
    static int ownerChanged(sd_bus_message* message, void* own, sd_bus_error* error);
    static int ownerTold(sd_bus_message* reply, void* own, sd_bus_error* error);
    static int loaded(sd_bus_message* reply, void* own, sd_bus_error* error);
    static int started(sd_bus_message* reply, void* own, sd_bus_error* error);

    void follow(const std::string& owner);
    void load();
    bool writeCopy();
    void forget();
    void polled(sd_bus_message& message);
    void answer(const std::string& text);
    void acknowledgeLater(sd_bus_message& message);
    void acknowledge();
    std::string unsent();
    void told(const char* text);
    void end();
    void fail(const std::string& what);

    bus::Link& link;
    Log& log;
    Source source;
    std::string path;       ///< of the object that the script calls
    std::string copy;       ///< the file that the compositor reads
    std::string compositor; ///< its unique name; empty for none
    std::string loadedAs;
    unsigned loads = 0;
    bool isRunning = false, hasFailed = false;
    std::vector<Command> commands; ///< that are not done
    unsigned long lastNumber = 0;
    bus::Message asked;                   ///< a call that waits for commands
    std::vector<bus::Message> unanswered; ///< that told something
    session::Pace silence;
    bus::Slot object, watch, question, loading;
    std::function<void()> loadHandler;
    std::map<std::string, std::function<void(const JsonValue::List&)>> tellers;
};

} // namespace platform::kwin
