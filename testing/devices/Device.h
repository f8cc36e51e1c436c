#pragma once

#include "testing/desktop/Layout.h"

#include <filesystem>
#include <string>

namespace support {

/// A device of a private Xorg's own, driven by a test: what XTEST cannot play. The server makes the
/// devices that `PrivateDesktop::Options` names. Places are X root coordinates. Every call returns
/// when the server has taken the input in. One thread.
class Device {
  public:
    /// What the server's driver calls them: "Pointer" tells steps and scrolls by a hundred and
    /// twentieth of a notch, "PointerAbsolute" tells places, "Touch" is a touch screen.
    static constexpr const char* pointer = "Pointer";
    static constexpr const char* pen = "PointerAbsolute";
    static constexpr const char* touchScreen = "Touch";
    /// The device is called so.
    static std::string nameOf(std::size_t index) { return "device " + std::to_string(index); }

    /// `desktop`: all of it, to which a device that tells places is mapped. Throws
    /// std::runtime_error where the server has no such device.
    Device(const std::filesystem::path& socket, const Area& desktop);
    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    void move(int dx, int dy);   ///< of a pointer
    void scroll(int notchParts); ///< the same, downwards; 120 for a notch
    void scrollAcross(int notchParts);
    void place(int x, int y); ///< of a pen
    void press(int button = 1);
    void release(int button = 1);
    void touch(unsigned finger, int x, int y);
    void drag(unsigned finger, int x, int y);
    void lift(unsigned finger, int x, int y);

  private:
    void send(const void* event, std::size_t size);
    void receive();
    void sync();
    void motion(bool absolute, unsigned firstAxis, double first, unsigned secondAxis,
                double second);
    void button(int number, bool down);
    void touches(unsigned type, unsigned finger, int x, int y);
    double across(int x) const;
    double down(int y) const;

    Area desktop;
    int connection;
};

} // namespace support
