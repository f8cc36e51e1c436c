#pragma once

#include "app/Control.h"
#include "unit/Program.h"

#include <functional>
#include <utility>

namespace palisor {

/// The barrier on two monitors, the cursor on the left one, and who is told of changes.
struct Controlled : Program, control::Watcher {
    explicit Controlled(int variant = variants::barrier, std::string_view layout = sideBySide)
        : Program(variant, layout) {
        platform.pointer.place({960, 500});
        launched();
        app.watch(this);
    }

    void changed() override { ++changes; }
    void crossed(std::string_view from, std::string_view to) override {
        crossings.push_back(std::string(from) + " to " + std::string(to));
    }

    control::State state() { return control::state(app); }
    /// Whether something was told since the last call.
    bool toldOfChanges() { return std::exchange(changes, 0) != 0; }
    void plug(std::string_view layout) { platform.displays.change(screensFromLayout(layout)); }
    bool stored(std::string_view key) { return platform.settings.boolForKey(key); }

    int changes = 0;
    Lines crossings;
};

} // namespace palisor
