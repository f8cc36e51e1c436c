#include "platform/kwin/keys/HeldModifiers.h"

#include <algorithm>
#include <array>
#include <linux/input-event-codes.h>
#include <utility>

namespace platform::kwin {

namespace {

constexpr std::uint32_t allKinds = KeyState::option | KeyState::control | KeyState::command;

// The keyboard comes in a millisecond, and never under a locked screen.
constexpr std::chrono::milliseconds longestWait{500};

} // namespace

HeldModifiers::HeldModifiers(wayland::Connection& x, const wayland::Outputs& screens,
                             wayland::KeyboardSeat& keys, Descriptors& descriptors,
                             std::function<void(bool)> handler)
    : connection(x),
      outputs(screens),
      keyboard(keys),
      changed(std::move(handler)),
      patience(
          descriptors,
          [this] {
              patience.stop();
              layer.reset();
          },
          longestWait),
      state(connection, [this](std::uint32_t now) { kinds = now; }) {
    keyboard.onEnter([this](std::span<const std::uint32_t> down) {
        constexpr std::array left{KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA};
        isAnswered = layer != nullptr;
        isLeft = std::ranges::all_of(left, [&](int key) {
            return std::ranges::find(down, static_cast<std::uint32_t>(key)) != down.end();
        });
    });
    connection.onBatchEnd(this, [this] { update(); });
}

HeldModifiers::~HeldModifiers() {
    connection.onBatchEnd(this, {});
    keyboard.onEnter({});
}

void HeldModifiers::update() {
    const bool areAll = kinds == allKinds;
    if (layer && (isAnswered || !areAll)) {
        patience.stop();
        layer.reset();
        if (areAll && isLeft) changed(isTold = true);
    } else if (!areAll && std::exchange(isTold, false)) {
        changed(false);
    } else if (areAll && !isTold && !isAsked) {
        ask();
    }
    isAsked = areAll;
}

void HeldModifiers::ask() {
    const auto places = outputs.places();
    if (places.empty()) return;
    isAnswered = isLeft = false;
    const Rect& whole = places[0].area;
    layer = std::make_unique<wayland::Layer>(
        connection, wayland::Layer::Look{places[0], {whole.x, whole.y, 1, 1}, 0, true});
    layer->setCatches(false);
    patience.start();
}

} // namespace platform::kwin
