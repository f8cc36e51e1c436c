#include "platform/sway/undo/Changes.h"

#include <utility>

namespace platform::sway {

Changes::Changes(Compositor& target, const Means& means, Log& writer)
    : compositor(target),
      log(writer),
      file(means.folder, target.socket()),
      guard(means.guard,
            {"the guard of the compositor's settings",
             "without it nothing is held, and the cursor is only put back"},
            writer) {
    undoLeft(means.folder);
    compositor.onReload(this, [this] { repeat(); });
}

Changes::~Changes() {
    compositor.onReload(this, {});
    std::string all;
    for (const auto& [key, change] : made)
        all += (all.empty() ? "" : "; ") + change.undo;
    if (!all.empty()) compositor.runNow(all);
    // The file goes before the guard looks.
    for (const auto& [key, change] : made)
        file.set(key, {});
}

bool Changes::isGuarded() {
    return made.empty() ? guard.answers({file.path()})
                        : !guard.hasEnded() || guard.answers({file.path()});
}

bool Changes::make(const std::string& key, const Change& change) {
    if (!isGuarded() || !file.set(key, change.undo)) {
        if (!std::exchange(told, true))
            log.write("nothing is changed in the compositor, since nobody could take it back after "
                      "the end of this program");
        return false;
    }
    made[key] = change;
    compositor.run(change.command);
    return true;
}

void Changes::takeBack(const std::string& key) {
    const auto found = made.find(key);
    if (found == made.end()) return;
    compositor.run(found->second.undo);
    made.erase(found);
    file.set(key, {});
}

void Changes::repeat() {
    std::string all;
    for (const auto& [key, change] : made)
        all += (all.empty() ? "" : "; ") + change.command;
    if (!all.empty()) compositor.run(all);
}

} // namespace platform::sway
