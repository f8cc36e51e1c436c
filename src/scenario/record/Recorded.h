#pragma once

#include "platform/Application.h"
#include "platform/Displays.h"
#include "platform/StatusItem.h"
#include "scenario/record/ScenarioWriter.h"

// Services that pass everything on to the real ones and write down what the user did on the way.
// What is lent must outlive them.

namespace record {

class RecordedInput final : public platform::InputEvents {
  public:
    RecordedInput(platform::InputEvents& realInput, ScenarioWriter& scenario)
        : real(realInput), writer(scenario) {}

    void addGlobalMonitor(platform::EventMask mask, Handler handler) override {
        real.addGlobalMonitor(mask, written(std::move(handler)));
    }
    void addTap(const platform::TapParameters& parameters, Handler handler) override {
        real.addTap(parameters, written(std::move(handler)));
    }
    void watch(const platform::PointerWatch& wanted) override { real.watch(wanted); }
    bool tellsMotion() const override { return real.tellsMotion(); }

  private:
    Handler written(Handler handler) {
        return [this, handler = std::move(handler)](const platform::InputEvent& event) {
            writer.input(event);
            handler(event);
        };
    }

    platform::InputEvents& real;
    ScenarioWriter& writer;
};

class RecordedDisplays final : public platform::Displays {
  public:
    RecordedDisplays(platform::Displays& realDisplays, ScenarioWriter& scenario)
        : real(realDisplays), writer(scenario) {}

    std::span<const platform::Screen> screens() const override { return real.screens(); }
    platform::ScreenId mainScreen() const override { return real.mainScreen(); }
    void onChange(std::function<void()> changed) override {
        real.onChange([this, changed = std::move(changed)] {
            writer.screens(real);
            changed();
        });
    }

  private:
    platform::Displays& real;
    ScenarioWriter& writer;
};

class RecordedStatusItem final : public platform::StatusItem, private platform::MenuTarget {
  public:
    /// `currentEvent` answers with the event that is being handled: what opened the menu, or
    /// moves a slider.
    RecordedStatusItem(platform::StatusItem& realItem, ScenarioWriter& scenario,
                       std::function<platform::CurrentEvent()> currentEvent);

    void create(platform::Menu& menu, platform::MenuTarget& newTarget) override;
    void setImage(std::string_view name, bool isTemplate) override {
        real.setImage(name, isTemplate);
    }
    void setToolTip(std::string_view text) override { real.setToolTip(text); }
    void popUpMenu() override { real.popUpMenu(); }
    void labelChanged(const platform::Label& label) override { real.labelChanged(label); }

  private:
    void menuWillOpen(platform::Menu& menu) override;
    void chosen(platform::MenuItem& item) override;
    void moved(platform::Slider& slider) override;
    void clicked(platform::CheckBox& box) override;

    platform::StatusItem& real;
    ScenarioWriter& writer;
    std::function<platform::CurrentEvent()> currentEvent;
    platform::MenuTarget* target = nullptr;
};

} // namespace record
