#pragma once

#include "platform/HotKeys.h"

#include <QWidget>
#include <functional>
#include <optional>
#include <string>

class QLabel;

namespace platform::qt {

class ShortcutField;

/// A field that takes one key combination from the keyboard, and a line below that says what has
/// to be said. Nothing is recorded before the user clicks the field, or presses Space or Enter on
/// it.
class ShortcutRecorder final : public QWidget {
  public:
    struct Texts {
        std::string empty;     ///< shown where nothing is stored
        std::string recording; ///< shown until a key is pressed
        std::string hint;      ///< how to cancel and to clear
        std::string modifiers; ///< the key alone would be missed in every program
        std::string clear;     ///< what the clear button does
    };
    /// A key code, absent when only modifiers changed, and the modifiers that are held.
    using Pressed = std::function<void(std::optional<std::uint16_t> keyCode, std::uint32_t flags)>;

    /// Where the combination is kept, and the keyboard. Called on the main thread as long as the
    /// recorder lives.
    struct Model {
        Texts texts;
        std::function<bool()> enabled;
        std::function<std::optional<Shortcut>()> stored;
        std::function<void(std::optional<Shortcut>)> store; ///< nothing clears it
        std::function<std::string(const Shortcut&)> label;
        std::function<std::string(std::uint32_t flags)> modifiersLabel;
        /// Why the combination will do nothing, in words; empty when it is the program's own.
        std::function<std::string(const Shortcut&)> refusal;
        /// Brings every key to the first function, and calls the second when the user goes to
        /// another window; false when that is not possible now.
        std::function<bool(Pressed, std::function<void()> left)> startRecording;
        std::function<void()> stopRecording;
    };

    ShortcutRecorder(Model model, QWidget* parent);
    /// Ends a recording.
    ~ShortcutRecorder() override;

    /// What the recorders on the screen show may have changed.
    static void refreshAll();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void refresh();
    void start();
    void cancel();
    void stop();
    void pressed(std::optional<std::uint16_t> keyCode, std::uint32_t flags);
    void store(std::optional<Shortcut> shortcut);
    void say(const std::string& text, bool isTrouble);

    Model model;
    ShortcutField* field;
    QLabel* words;
    bool recording = false;
};

} // namespace platform::qt
