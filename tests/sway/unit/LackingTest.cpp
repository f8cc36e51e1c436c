#include "platform/wayland/connection/Connection.h"
#include "testing/KeptLog.h"
#include "testing/PolledDescriptors.h"
#include "testing/TempFolder.h"

#include <array>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <wayland-server-core.h>

// A compositor without something that the program cannot do without.

namespace {

using platform::wayland::Connection;

const std::array<const wl_interface*, 8> needed{&wl_compositor_interface,
                                                &wl_subcompositor_interface,
                                                &wl_shm_interface,
                                                &wl_seat_interface,
                                                &zwlr_layer_shell_v1_interface,
                                                &wp_viewporter_interface,
                                                &zwp_relative_pointer_manager_v1_interface,
                                                &zxdg_output_manager_v1_interface};

/// A compositor that has globals of which it knows the names alone. It runs on a thread.
class Nameplate {
  public:
    explicit Nameplate(const wl_interface* lacking)
        : display(wl_display_create()), stop(eventfd(0, EFD_CLOEXEC)) {
        for (const wl_interface* one : needed)
            if (one != lacking)
                wl_global_create(
                    display, one, one->version,
                    const_cast<wl_interface*>(one), // NOLINT: given back as it is
                    [](wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
                        wl_resource_create(client, static_cast<const wl_interface*>(data),
                                           static_cast<int>(version), id);
                    });
        EXPECT_EQ(wl_display_add_socket(display, path.c_str()), 0);
        wl_event_loop_add_fd(
            wl_display_get_event_loop(display), stop, WL_EVENT_READABLE,
            [](int, std::uint32_t, void* owner) {
                wl_display_terminate(static_cast<wl_display*>(owner));
                return 0;
            },
            display);
        thread = std::thread([this] { wl_display_run(display); });
    }
    ~Nameplate() {
        eventfd_write(stop, 1);
        thread.join();
        wl_display_destroy_clients(display);
        wl_display_destroy(display);
        ::close(stop);
    }
    Nameplate(const Nameplate&) = delete;
    Nameplate& operator=(const Nameplate&) = delete;

    std::string errorOfConnecting() const {
        ::setenv("WAYLAND_DISPLAY", path.c_str(), 1);
        auto opened = Connection::open(descriptors, log, [] {});
        EXPECT_EQ(opened.connection == nullptr, !opened.error.empty());
        return opened.error;
    }

  private:
    testing_support::TempFolder folder;
    std::string path = folder.path("wayland");
    wl_display* display;
    int stop;
    std::thread thread;
    mutable testing_support::PolledDescriptors descriptors;
    mutable testing_support::KeptLog log;
};

TEST(WaylandConnection, SaysWhatTheCompositorLacks) {
    EXPECT_EQ(Nameplate(nullptr).errorOfConnecting(), "");
    for (const wl_interface* one : needed)
        EXPECT_EQ(Nameplate(one).errorOfConnecting(),
                  std::string("the Wayland compositor has no ") + one->name);
}

TEST(WaylandConnection, SaysThatThereIsNoCompositor) {
    const testing_support::TempFolder folder;
    testing_support::PolledDescriptors descriptors;
    testing_support::KeptLog log;
    ::setenv("WAYLAND_DISPLAY", folder.path("none").c_str(), 1);
    EXPECT_EQ(Connection::open(descriptors, log, [] {}).error,
              "the Wayland compositor cannot be reached");
}

} // namespace
