#pragma once

#include "platform/layershell/hyprland/Grammar.h"
#include "platform/layershell/hyprland/Ipc.h"
#include "platform/layershell/keys/Bindings.h"

#include <optional>

namespace platform::layershell::hyprland {

/// Keys that Hyprland binds while it runs. It forgets them when it reads its configuration anew,
/// and not when the program dies: what is left over then tells of a key that nobody hears, and goes
/// at the next start. A combination that the user has bound is left alone.
class Bindings final : public layershell::Bindings {
  public:
    /// Null where the compositor is not there. `refused` is called from the run loop, once for a
    /// combination that is not bound. What is lent must outlive the object.
    static std::unique_ptr<Bindings> open(const std::string& folder, std::string program,
                                          Descriptors& descriptors,
                                          std::function<void(const std::string& why)> refused);
    ~Bindings() override;
    Bindings(const Bindings&) = delete;
    Bindings& operator=(const Bindings&) = delete;

    void hear(const std::vector<Binding>& wanted) override;
    void hearHeldModifiers(std::function<void()> held) override;

  private:
    struct Wanted {
        Combination combination;
        std::function<void()> pressed;
        bool isChosen = false;
        bool passes = false;
    };

    Bindings(std::unique_ptr<Ipc> connected, std::string program,
             std::function<void(const std::string&)> refused);
    void happened(std::string_view event, std::string_view data);
    void bindAll();
    void bindBeside(const std::vector<Bound>& all);
    void bind(const Wanted& one);
    std::vector<std::string> releases() const;

    std::unique_ptr<Ipc> ipc;
    std::string program;
    std::function<void(const std::string&)> refusedHandler;
    std::optional<Grammar> grammar; ///< none before it is known
    bool isLooking = false;         ///< for what others have bound
    std::vector<Wanted> shortcuts, modifiers;
    std::vector<Wanted> bound; ///< ours, by their numbers
};

} // namespace platform::layershell::hyprland
