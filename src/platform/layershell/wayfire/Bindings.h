#pragma once

#include "platform/Log.h"
#include "platform/layershell/keys/Bindings.h"
#include "platform/layershell/wayfire/Ipc.h"

#include <map>
#include <set>

namespace platform::layershell::wayfire {

/// Keys that Wayfire binds while it runs, by its plugins "ipc" and "command". It forgets them when
/// the socket closes.
class Bindings final : public layershell::Bindings {
  public:
    /// Null where the plugin "ipc" is not there. `refused` is called once, from the run loop, where
    /// it binds nothing. What is lent must outlive the object.
    static std::unique_ptr<Bindings> open(const std::string& socket, Descriptors& descriptors,
                                          std::function<void(const std::string& why)> refused);

    void hear(const std::vector<Binding>& wanted) override;
    void hearHeldModifiers(std::function<void()> held) override;

  private:
    struct Bound {
        std::function<void()> pressed; ///< empty of one that is to go
        std::int64_t id = 0;           ///< 0 before the compositor has told it
    };

    Bindings(std::unique_ptr<Ipc> connected, std::function<void(const std::string&)> refused);
    void bind(const std::string& combination, std::function<void()> pressed);
    void answered(const std::string& combination, const JsonValue& answer);
    void unbind(std::int64_t id);

    std::unique_ptr<Ipc> ipc;
    std::function<void(const std::string&)> refusedHandler;
    std::map<std::string, Bound> bound; ///< by combination
    std::set<std::string> shortcuts;    ///< those of them that `hear` has bound
};

} // namespace platform::layershell::wayfire
