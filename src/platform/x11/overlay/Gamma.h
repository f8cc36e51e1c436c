#pragma once

#include "platform/session/GuardProcess.h"
#include "platform/session/Pace.h"
#include "platform/x11/connection/Connection.h"
#include "platform/x11/overlay/gammaguard/Rescue.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace platform::x11 {

/// What darkening through gamma needs of the machine.
struct GammaMeans {
    std::string guard;  ///< the path of the helper executable
    std::string folder; ///< the user's alone, for what does not outlive the session; empty for none
    Descriptors& descriptors; ///< must outlive whoever is given it
};

/// Darkens monitors through the gamma ramps of their CRTCs, for as long as somebody asks for it.
/// Each CRTC is darkened once, by the darkest of those who ask, from the ramp that the user has.
/// That ramp is put back exactly when the last of them has let go, or with this object; after a
/// kill by the guard, or by the next who makes an object like this. A ramp that another program
/// sets meanwhile is the user's from then on, and is darkened again within seconds. Where there is
/// no guard, or another process darkens this server's monitors, they stay bright, which is logged
/// once.
class Gamma final : private Listener {
  public:
    Gamma(Connection& connection, GammaMeans means, Log& log);
    ~Gamma();
    Gamma(const Gamma&) = delete;
    Gamma& operator=(const Gamma&) = delete;

    /// Replaces what `who` asked for before. `darkness` 0 leaves the ramps as they are, 1 is black.
    void darken(const void* who, std::vector<xcb_randr_crtc_t> crtcs, double darkness);
    void release(const void* who);

    /// Says why something stays bright, each reason once.
    void tell(const std::string& reason);

  private:
    using Ramp = gammaguard::Ramp;
    using Ramps = gammaguard::Ramps;
    using Darkness = std::map<xcb_randr_crtc_t, double>; ///< above 0
    struct Wish {
        std::vector<xcb_randr_crtc_t> crtcs;
        double darkness;
    };
    struct Dark {
        Ramp original;      ///< the user's
        Ramp shown;         ///< what the server gave back for the darkened one
        unsigned asked = 0; ///< the look at it that is under way; 0 for none
    };

    Darkness wished() const;
    void apply();
    void takeOver(const Ramps& now, Darkness& wanted);
    void settle(const Darkness& wanted);
    bool isGuarded();
    bool claimServer();
    int lockSoon();
    bool keep();
    /// Empty ones for CRTCs without.
    Ramps rampsOf(const std::set<xcb_randr_crtc_t>& crtcs);
    void look();
    void handle(const xcb_generic_event_t&) override {}
    void handleReply(unsigned sequence, const void* reply) override;

    Connection& connection;
    GammaMeans means;
    Log& log;
    std::string owner; ///< this object, in the file
    session::GuardProcess guard;
    session::Pace clock; ///< runs while anything is dark, since a foreign ramp makes no event
    std::string server;
    std::optional<gammaguard::RampFile> file; ///< locked while anything is dark
    Ramps written; ///< what it has; empty where there is none of this one
    std::map<const void*, Wish> wishes;
    std::map<xcb_randr_crtc_t, Dark> dark;
    std::set<std::string> told;
};

} // namespace platform::x11
