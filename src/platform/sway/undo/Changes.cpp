#include "platform/sway/undo/Changes.h"

#include <utility>

namespace platform::sway {

Changes::Changes(Compositor& target, const Means& means, Log& writer)
    : compositor(target),
      descriptors(means.descriptors),
      log(writer),
      file(means.folder, target.socket()),
      guard(means.guard,
            {"the guard of the compositor's settings",
             "without it nothing is held, and the cursor is only put back"},
            writer) {
    undoLeft(means.folder);
    compositor.onReload(this, [this] { repeat(); });
    compositor.onSettled([this] {
        for (const std::string& key : std::exchange(leaving, {}))
            file.set(key, {});
    });
}

Changes::~Changes() {
    if (watched >= 0) descriptors.unwatch(watched);
    compositor.onReload(this, {});
    compositor.onSettled({});
    std::string all;
    for (const auto& [key, one] : made)
        if (one.change) all += (all.empty() ? "" : "; ") + one.change->undo;
    if (all.empty()) all = "nop";
    const bool isDone = (made.empty() && compositor.isSettled()) || compositor.runNow(all);
    if (isDone) {
        file.remove(); // before the guard looks
        return;
    }
    // What the compositor has not carried out when this process goes, it forgets. The guard has
    // more time.
    file.leave();
    guard.letGo(true);
}

bool Changes::isGuarded() {
    if (!made.empty() && watched >= 0 && !guard.hasEnded()) return true;
    if (watched >= 0) descriptors.unwatch(std::exchange(watched, -1));
    if (!guard.answers({file.path()})) return false;
    watched = guard.descriptor();
    descriptors.watchReadable(watched, [this] { (void)isGuarded(); });
    return true;
}

bool Changes::make(const std::string& key, Wanted wanted) {
    const auto change = wanted();
    if (!isGuarded() || !file.set(key, change ? change->undo : std::string())) {
        if (!std::exchange(told, true))
            log.write("nothing is changed in the compositor, since nobody could take it back after "
                      "the end of this program");
        return false;
    }
    leaving.erase(key);
    Made& one = made[key];
    if (one.change && !change) compositor.run(one.change->undo);
    if (change) compositor.run(change->command);
    one = {std::move(wanted), change};
    return true;
}

void Changes::takeBack(const std::string& key) {
    const auto found = made.find(key);
    if (found == made.end()) return;
    if (found->second.change) compositor.run(found->second.change->undo);
    made.erase(found);
    leaving.insert(key);
}

// Nothing of it is in the compositor any more.
void Changes::repeat() {
    std::string all;
    for (auto& [key, one] : made) {
        one.change = one.wanted();
        if (!file.set(key, one.change ? one.change->undo : std::string())) one.change.reset();
        if (one.change) all += (all.empty() ? "" : "; ") + one.change->command;
    }
    if (!all.empty()) compositor.run(all);
}

} // namespace platform::sway
