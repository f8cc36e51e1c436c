#pragma once

#include "platform/RecordableHotKeys.h"

#include <QWidget>
#include <functional>
#include <memory>
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
    /// Where the combination is kept. Called on the main thread as long as the recorder lives.
    struct Model {
        Texts texts;
        std::function<bool()> enabled;
        std::function<std::optional<Shortcut>()> stored;
        std::function<void(std::optional<Shortcut>)> store; ///< nothing clears it
        /// That another program has the combination of this label, in words.
        std::function<std::string(const std::string& label)> refusal;
    };

    /// What is lent must outlive the object.
    ShortcutRecorder(Model model, RecordableHotKeys& hotKeys, QWidget* parent);
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
    void pressed(const RecordableHotKeys::Stroke& stroke);
    void store(std::optional<Shortcut> shortcut);
    std::string label(const Shortcut& shortcut) const;
    void say(const std::string& text, bool isTrouble);

    Model model;
    RecordableHotKeys& hotKeys;
    ShortcutField* field;
    QLabel* words;
    bool recording = false;
};

} // namespace platform::qt
