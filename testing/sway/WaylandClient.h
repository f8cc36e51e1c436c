#pragma once

#include "testing/Wait.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

struct wl_display;
struct wl_registry;
struct wl_compositor;
struct wl_shm;
struct wl_seat;
struct wl_output;
struct zwlr_layer_shell_v1;
struct zwlr_virtual_pointer_manager_v1;
struct wp_viewporter;

namespace support {

/// A plain client of a private compositor, with the globals that tests use. One thread at a time.
class WaylandClient {
  public:
    /// Throws std::runtime_error where it cannot connect, or a global is missing.
    explicit WaylandClient(const std::string& socketPath);
    ~WaylandClient();
    WaylandClient(const WaylandClient&) = delete;
    WaylandClient& operator=(const WaylandClient&) = delete;

    /// Sends what was asked, also to a compositor that is behind. Throws std::runtime_error where
    /// it takes nothing for seconds.
    void flush() const;
    /// Until the compositor has taken in all that was sent.
    void synchronize() const;
    /// The output that has that place in the order of their names, from 0 on: compositors announce
    /// them in an order of their own. Waits for the compositor.
    wl_output* output(std::size_t index) const;

    wl_display* display = nullptr;
    wl_compositor* compositor = nullptr;
    wl_shm* memory = nullptr;
    wl_seat* seat = nullptr;
    zwlr_layer_shell_v1* layers = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers = nullptr; ///< null where the compositor has none
    wp_viewporter* viewporter = nullptr;

  private:
    struct Output {
        wl_output* output = nullptr;
        std::string name;
    };
    void addOutput(std::uint32_t global);

    wl_registry* registry = nullptr;
    std::map<std::uint32_t, Output> outputs; ///< by the global's number
};

/// A layer that covers an output and tells when the cursor is on it. It reads on a thread of its
/// own.
class Witness {
  public:
    enum class Where { belowEverything, aboveEverything };

    /// `pixel` is premultiplied 0xAARRGGBB. Returns when it is on screen.
    Witness(const std::string& socketPath, std::size_t output, Where where, std::uint32_t pixel);
    ~Witness();
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;

    struct Report {
        int entered = 0; ///< times
        Clock::time_point firstEntered{};
        double seconds = 0;       ///< over it, in all, up to now
        double farthestLeft = -1; ///< of the places told, how far from the left edge; -1 for none
        bool isOver = false;
        double lastX = 0, lastY = 0; ///< on the output
        int buttons = 0;             ///< presses
        Clock::time_point came{};    ///< when it was entered last
    };
    Report report() const;

  private:
    struct State;
    void read();

    std::unique_ptr<WaylandClient> client;
    std::unique_ptr<State> state;
    int stop = -1;
    std::thread reader;
};

} // namespace support
