#include "platform/layershell/keys/HotKeys.h"

#include <utility>

namespace platform::layershell {

HotKeys::HotKeys(Means own, Log& writer, wayland::LayerServices& shared,
                 const wayland::Desktop::Surroundings& given)
    : ClaimedHotKeys(shared.keyboard, shared.recording, given.settings, given.later),
      means(std::move(own)),
      log(writer) {}

HotKeys::~HotKeys() {
    HotKeys::claim({});
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    if (!means.bindings) {
        if (!wanted.empty() && !std::exchange(told, true))
            log.write("no program can have a shortcut in this session: " + means.advice);
        return;
    }
    std::vector<Bindings::Binding> heard;
    for (const Claim& one : wanted)
        heard.push_back({one.shortcut, [this, action = one.action] { later(action); }});
    means.bindings->hear(heard);
}

} // namespace platform::layershell
