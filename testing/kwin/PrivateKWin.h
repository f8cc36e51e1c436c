#pragma once

#include "testing/PrivateSession.h"
#include "testing/kwin/LoginManager.h"

#include <optional>

struct ei;
struct ei_device;

namespace support {

/// A headless KWin of the test's own with outputs side by side. It uses nothing of the desktop that
/// it runs on. KWin and all its clients have to be of one user, which is not the superuser.
class PrivateKWin : public PrivateSession {
  public:
    struct Options {
        int outputs = 2;             ///< of 1280x720 each
        std::string configuration{}; ///< the user's kwinrc
        std::string desktopFile{};   ///< of a program that is installed
        /// The socket of a compositor that shows each output as a window; nobody sees them without.
        std::string shownIn{};
        bool locks = false; ///< whether the screen can be locked, with `login`
        Environment more{}; ///< for what is started in it
    };

    /// Why there can be none on this machine; nothing where there can.
    static std::optional<std::string> missing();

    PrivateKWin() : PrivateKWin(Options{}) {}
    /// Throws std::runtime_error where it does not start.
    explicit PrivateKWin(const Options& options);

    /// What an expression is inside the compositor's scripts, as text: "workspace.cursorPos.x".
    std::string evaluate(const std::string& expression);
    /// Has a script run inside the compositor, as long as that lives. What it prints is in the log.
    void load(const std::string& text);
    /// Null where the screen cannot be locked.
    LoginManager* login() { return loginManager ? &*loginManager : nullptr; }
    /// A method of the compositor's, carried out: busctl's words behind "call org.kde.KWin".
    void call(const std::vector<std::string>& words) const;

  private:
    void load(const std::string& name, const std::string& text);

    int evaluated = 0;
    std::optional<LoginManager> loginManager;
};

/// A mouse and a keyboard of the private compositor's, by its sockets for emulated input. Every
/// call returns when the compositor has taken it in (push: all of it).
class KWinHand {
  public:
    explicit KWinHand(const PrivateKWin& kwin);
    ~KWinHand();
    KWinHand(const KWinHand&) = delete;
    KWinHand& operator=(const KWinHand&) = delete;

    /// Layout coordinates, as a device without a motion of its own sends it.
    void moveTo(double x, double y);
    void relative(double dx, double dy);
    /// `steps` events of (dx, dy) at `hz` a second. Returns the seconds that it took.
    double push(double dx, double dy, int steps, int hz);
    /// The same at `speed` pixels a second to the right, or to the left where it is negative: like
    /// a mouse it sends whole pixels, and nothing where there is none yet. Returns by how many
    /// seconds the latest of them came too late.
    double pushAt(double speed, double seconds, int hz);
    /// The kernel's code; the left one otherwise.
    void pressButton(std::uint32_t code = leftButton) { button(code, true); }
    void releaseButton(std::uint32_t code = leftButton) { button(code, false); }
    /// The kernel's codes.
    void press(std::uint32_t key) { this->key(key, true); }
    void release(std::uint32_t key) { this->key(key, false); }

  private:
    static constexpr std::uint32_t leftButton = 0x110;
    void button(std::uint32_t code, bool down);
    void key(std::uint32_t code, bool down);
    void send(double dx, double dy);
    void synchronize();
    void read();
    bool isReady() const { return mouse && absolute && keyboard; }

    sd_bus* bus = nullptr;
    ei* context = nullptr;
    ei_device *mouse = nullptr, *absolute = nullptr, *keyboard = nullptr;
    unsigned sequence = 0;
};

} // namespace support
