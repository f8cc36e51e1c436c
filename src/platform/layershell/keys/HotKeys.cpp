#include "platform/layershell/keys/HotKeys.h"

namespace platform::layershell {

HotKeys::HotKeys(Bindings* whoHears, wayland::LayerServices& shared,
                 const wayland::Desktop::Surroundings& given)
    : ClaimedHotKeys(shared.keyboard, shared.recording, given.settings, given.later),
      bindings(whoHears) {}

HotKeys::~HotKeys() {
    HotKeys::claim({});
}

void HotKeys::claim(const std::vector<Claim>& wanted) {
    if (!bindings) return;
    std::vector<Bindings::Binding> heard;
    for (const Claim& one : wanted)
        heard.push_back(
            {one.shortcut, [this, action = one.action] { later(action); }, one.isChosen});
    bindings->hear(heard);
}

} // namespace platform::layershell
