#pragma once

#include "bus/Link.h"
#include "platform/layershell/keys/Bindings.h"

#include <optional>

namespace platform::layershell::portal {

/// Keys by the desktop's portal, where it has shortcuts for programs. The program proposes a key;
/// which one it is the desktop decides, or the user does there. The portal forgets them when the
/// connection ends. Main thread.
class Shortcuts final : public Bindings, private bus::Link::User {
  public:
    struct Program {
        std::string identifier; ///< that of its desktop file
        std::string command;    ///< what the user sees that a key does
    };

    /// `told` is called from the run loop with whether the portal binds keys, when that is known
    /// and whenever it changes. What is lent must outlive the object.
    Shortcuts(Descriptors& descriptors, Log& log, Program program, std::function<void(bool)> told);
    ~Shortcuts() override;
    Shortcuts(const Shortcuts&) = delete;
    Shortcuts& operator=(const Shortcuts&) = delete;

    void hear(const std::vector<Binding>& wanted) override;
    /// No portal tells of held keys.
    void hearHeldModifiers(std::function<void()>) override {}

  private:
    void attach(sd_bus& bus) override;
    void up() override;
    void turn() override;

    bus::Message begin(const char* member) const;
    /// Sends it with a token of its own in its options, which come last, and hears what the
    /// portal answers to the request.
    void request(bus::Message message, void (Shortcuts::*answered)(sd_bus_message&));
    void created(sd_bus_message& answered);
    void bound(sd_bus_message& answered);
    void bind();
    void closeSession();
    void appendShortcuts(sd_bus_message& message) const;
    void activated(sd_bus_message& signal);
    void tell(bool binds);

    bus::Link link;
    const Program program;
    std::function<void(bool)> toldHandler;
    std::optional<bool> told;
    bool isNews = false; ///< `told` is to be told
    std::vector<Binding> wanted;
    std::vector<Shortcut> asked; ///< those of the session
    std::string session;         ///< its path; empty where there is none
    bool isAsking = false;       ///< a session is being made
    unsigned tokens = 0;
    void (Shortcuts::*heard)(sd_bus_message&) = nullptr; ///< what takes the answer to a request
    bus::Slot signals, response, reply;
};

/// A combination as the portal wants it: "LOGO+F9"; empty for a key that it has no plain name for.
std::string triggerOf(const Shortcut& shortcut);

} // namespace platform::layershell::portal
