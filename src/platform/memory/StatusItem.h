#pragma once

#include "platform/StatusItem.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

/// An item without a tray. Its menu opens only when `click` says so.
class StatusItem final : public platform::StatusItem {
  public:
    explicit StatusItem(Effects& stream) : effects(stream) {}

    void create(Menu& menu, MenuTarget& newTarget) override {
        mainMenu = &menu;
        target = &newTarget;
    }

    void setImage(std::string_view name, bool isTemplate) override {
        effects.emit("statusImage", Member{"name", name}, Member{"template", isTemplate});
    }

    void setToolTip(std::string_view text) override { toolTip = text; }

    void popUpMenu() override { effects.emit("popUpMenu"); }

    void labelChanged(const Label& label) override {
        effects.emit("label", Member{"view", label.name}, Member{"text", label.text});
    }

    /// Null before there is an item.
    Menu* menu() const { return mainMenu; }
    const std::string& shownToolTip() const { return toolTip; }
    MenuTarget* menuTarget() const { return target; }

  private:
    Effects& effects;
    Menu* mainMenu = nullptr;
    MenuTarget* target = nullptr;
    std::string toolTip;
};

} // namespace platform::memory
