#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/wayland/connection/Handles.h"

#include <chrono>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace platform::wayland {

/// Who listens at the other end of a connected socket; 0 where that is not told.
pid_t processBehind(int socket);
/// The compositor that the environment names; 0 where it is not reached. Waits for nothing.
pid_t compositorProcess();

/// A connection of the program's own, beside the toolkit's. What comes on it is read from the run
/// loop: the protocol's events only note what they tell, and whoever wants to act on it does so
/// when the batch has ended. Main thread.
class Connection {
  public:
    using Clock = std::chrono::steady_clock;

    struct Opened {
        std::unique_ptr<Connection> connection; ///< null with an error
        std::string error;
    };
    /// What layers take, and the pointer over them.
    static constexpr std::string_view forLayers[] = {"wl_compositor",
                                                     "wl_subcompositor",
                                                     "wl_shm",
                                                     "wl_seat",
                                                     "zwlr_layer_shell_v1",
                                                     "wp_viewporter",
                                                     "zwp_relative_pointer_manager_v1",
                                                     "zxdg_output_manager_v1"};
    /// What tells of the monitors and of the keyboard, and no more.
    static constexpr std::string_view forOutputs[] = {"wl_seat", "zxdg_output_manager_v1"};

    /// To the compositor that the environment names, which must have these globals. What is lent
    /// must outlive the connection. `lost` is called once, from the run loop.
    static Opened open(Descriptors& descriptors, Log& log, std::function<void()> lost,
                       std::span<const std::string_view> needed = forLayers);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// What the compositor's executable is called: "labwc"; empty where that is not told.
    std::string compositorName() const;
    /// Whether the compositor has a global of that interface.
    bool has(std::string_view interface) const { return offered.contains(interface); }

    /// A global that few compositors have, at that version; the caller destroys it. Null where
    /// there is none, or an older one.
    wl_proxy* bind(const wl_interface& interface, std::uint32_t version);

    // The compositor's globals. Never null where they were needed.
    wl_compositor* compositor() const { return globals.compositor.get(); }
    wl_subcompositor* subcompositor() const { return globals.subcompositor.get(); }
    wl_shm* memory() const { return globals.memory.get(); }
    wl_seat* seat() const { return globals.seat.get(); }
    zwlr_layer_shell_v1* layers() const { return globals.layers.get(); }
    wp_viewporter* viewporter() const { return globals.viewporter.get(); }
    zwp_relative_pointer_manager_v1* relative() const { return globals.relative.get(); }
    zxdg_output_manager_v1* outputs() const { return globals.outputs.get(); }
    zwp_idle_inhibit_manager_v1* idle() const { return globals.idle.get(); } ///< may be null
    /// May be null.
    zwlr_virtual_pointer_manager_v1* virtualPointers() const { return globals.pointers.get(); }

    /// Tells of outputs, those that are there at once. One handler each.
    void onOutput(std::function<void(std::uint32_t name, wl_output*)> came,
                  std::function<void(std::uint32_t name)> went);

    /// Tells what devices the seat has, now and at each change: of WL_SEAT_CAPABILITY_. One
    /// handler.
    void onSeat(std::function<void(std::uint32_t capabilities)> changed);
    std::uint32_t seatCapabilities() const { return capabilities; } ///< as `onSeat` tells them

    /// Calls `ended` after each batch of events, from the run loop; an empty one ends that.
    void onBatchEnd(const void* owner, std::function<void()> ended);

    /// Whether what comes is read as it comes, as it is at first. Otherwise whoever said so calls
    /// `read` at a pace.
    void readAtOnce(bool on);
    /// Reads all that has come, and ends the batch.
    void read();

    /// Nothing is sent while a `Later` lives.
    void flush();
    /// While one lives, what is asked of the compositor waits, but for what somebody waits for
    /// meanwhile: so that it draws after it has carried out what it is told by another way.
    class Later {
      public:
        explicit Later(Connection& target) : connection(target) { ++connection.delays; }
        ~Later() {
            --connection.delays;
            connection.flush();
        }
        Later(const Later&) = delete;
        Later& operator=(const Later&) = delete;

      private:
        Connection& connection;
    };
    /// Reads until `reached` or the deadline, and tells which it was. Batches end later, from the
    /// run loop.
    bool waitFor(const std::function<bool()>& reached, Clock::time_point deadline);
    /// Whether the compositor has answered all that was asked of it, within a second.
    bool synchronize();

  private:
    Connection(Descriptors& descriptors, Log& log, std::function<void()> lost);
    std::string bind(std::span<const std::string_view> needed);
    void global(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void listenToSeat();
    enum class Round { nothing, some, failed };
    Round readOnce();
    void endBatch();
    void lose();

    struct Globals {
        Handle<wl_compositor> compositor;
        Handle<wl_subcompositor> subcompositor;
        Handle<wl_shm> memory;
        Handle<wl_seat> seat;
        Handle<zwlr_layer_shell_v1> layers;
        Handle<wp_viewporter> viewporter;
        Handle<zwp_relative_pointer_manager_v1> relative;
        Handle<zxdg_output_manager_v1> outputs;
        Handle<zwp_idle_inhibit_manager_v1> idle;
        Handle<zwlr_virtual_pointer_manager_v1> pointers;
    };

    Descriptors& descriptors;
    Log& log;
    std::function<void()> lost;
    Handle<wl_display> display;
    Handle<wl_registry> registry;
    Globals globals;
    struct Offer {
        std::uint32_t name, version;
    };
    std::map<std::string, Offer, std::less<>> offered; ///< all globals, by their interfaces
    std::map<std::uint32_t, Handle<wl_output>> outputList;
    std::function<void(std::uint32_t, wl_output*)> outputCame;
    std::function<void(std::uint32_t)> outputWent;
    std::uint32_t capabilities = 0;
    std::function<void(std::uint32_t)> seatChanged;
    std::vector<std::pair<const void*, std::function<void()>>> batchHandlers;
    int wake = -1;  ///< readable when a batch was read by somebody who waited
    int delays = 0; ///< how many `Later` there are
    bool isWatched = false;
    bool isLost = false;
};

} // namespace platform::wayland
