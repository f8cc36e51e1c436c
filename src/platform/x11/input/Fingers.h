#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace platform::x11 {

/// Which finger on a touch screen moves the cursor: the first one, and no other before all have
/// been lifted. Fingers are numbered by the server and never alike.
class Fingers {
  public:
    Fingers() {
        constexpr std::size_t hands = 32; // so that touching allocates nothing
        touching.reserve(hands);
    }

    void down(std::uint32_t finger, std::uint16_t device) {
        if (touching.empty()) pointing = finger;
        touching.push_back(finger);
        screen = device;
    }
    bool isPointing(std::uint32_t finger) const { return pointing == finger; }
    void up(std::uint32_t finger) {
        std::erase(touching, finger);
        if (pointing == finger) pointing.reset();
    }

    /// The touch screen.
    std::uint16_t device() const { return screen; }
    void forget() {
        touching.clear();
        pointing.reset();
    }

  private:
    std::vector<std::uint32_t> touching;
    std::optional<std::uint32_t> pointing;
    std::uint16_t screen = 0;
};

} // namespace platform::x11
