#pragma once

#include "testing/PrivateSession.h"
#include "testing/eye/Picture.h"
#include "testing/sway/WaylandClient.h"

#include <optional>

struct zwlr_virtual_pointer_v1;

namespace support {

/// A session of a headless compositor with layers, of wlroots.
class WlrootsSession : public PrivateSession {
  public:
    /// What an output shows, numbered from 1 on, in pixels of the output.
    Picture picture(int output) const;
    /// Its mean, from 0 to 255.
    double brightness(int output) const { return picture(output).brightness(); }

  protected:
    explicit WlrootsSession(int outputs, const std::string& desktop = {});
    /// Starts the compositor, which is told to write this line to its descriptor 3, and returns
    /// the line. Throws std::runtime_error where none comes.
    std::string announced(const std::vector<std::string>& command);
};

/// A headless sway of the test's own with two outputs side by side. It uses nothing of the desktop
/// that it runs on.
class PrivateSway : public WlrootsSession {
  public:
    struct Options {
        std::string layout = "1920x1080+0+0,1280x1024+1920+0"; ///< as parseLayout reads it
        std::string configuration{};                           ///< more of the user's
    };

    /// Why there can be none on this machine; nothing where there can.
    static std::optional<std::string> missing();

    PrivateSway() : PrivateSway(Options{}) {}
    /// Throws std::runtime_error where it does not start.
    explicit PrivateSway(const Options& options);

    /// A command of the compositor's, carried out; throws std::runtime_error where it is refused.
    void run(const std::string& command) const;
    /// What swaymsg prints of a question: "get_outputs".
    std::string ask(const std::string& question) const;
    /// Whether the upper two thirds of a picture are, which no drawn cursor leaves so.
    bool isOfOneColour(int output) const;
};

/// As grim writes it in its format "ppm". Throws std::runtime_error where it is none.
Picture readPicture(const std::string& file);

/// A mouse of a private compositor's. Every call returns when the compositor has taken it in (push:
/// all of it).
class SwayHand {
  public:
    explicit SwayHand(const PrivateSway& sway);
    /// Of another compositor, by its socket: it is put somewhere by `place` alone.
    explicit SwayHand(const std::string& socketPath) : SwayHand(nullptr, socketPath) {}
    ~SwayHand();
    SwayHand(const SwayHand&) = delete;
    SwayHand& operator=(const SwayHand&) = delete;

    /// Layout coordinates. It is no motion of the mouse.
    void moveTo(int x, int y);
    /// The same as a motion of the mouse, to a pixel of a layout of that size.
    void place(int x, int y, int width, int height);
    void relative(double dx, double dy);
    /// `steps` events of (dx, dy) at `hz` a second. Returns the seconds that it took.
    double push(double dx, double dy, int steps, int hz);
    /// The same at `speed` pixels a second to the right, or to the left where it is negative: like
    /// a mouse it sends whole pixels, and nothing where there is none yet, and says when its hand
    /// moved however late the system lets it send that.
    void pushAt(double speed, double seconds, int hz);
    /// The kernel's code; the left one otherwise.
    void pressButton(std::uint32_t code = leftButton);
    void releaseButton(std::uint32_t code = leftButton);

  private:
    SwayHand(const PrivateSway* sway, const std::string& socketPath);
    void send(double dx, double dy) { send(dx, dy, Clock::now()); }
    void send(double dx, double dy, Clock::time_point when);
    static constexpr std::uint32_t leftButton = 0x110;
    void button(std::uint32_t code, bool down);

    const PrivateSway* sway; ///< null of another compositor
    WaylandClient client;
    zwlr_virtual_pointer_v1* pointer;
};

} // namespace support
