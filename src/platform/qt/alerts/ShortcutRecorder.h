#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"
#include "platform/qt/alerts/Accessory.h"

#include <QTimer>
#include <functional>
#include <optional>
#include <string>

class QLabel;

namespace platform::qt {

class ShortcutField;

/// A field that takes one key combination from the keyboard, and a line below that says what has
/// to be said. It begins when the user clicks the field or presses Space or Enter on it, and by
/// itself, once, where a combination is needed and missing when its window gets the keyboard. What
/// would be of no use is refused with a sentence and neither stored nor claimed.
class ShortcutRecorder final : public Accessory {
  public:
    /// In sentences "%@" stands for the combination.
    struct Texts {
        std::string empty;      ///< shown where nothing is stored
        std::string recording;  ///< shown until a key is pressed
        std::string hint;       ///< what to press, how to cancel and to clear
        std::string clear;      ///< what the clear button does
        std::string modifiers;  ///< the key alone would be missed in every program
        std::string shift;      ///< so would be what it writes with Shift
        std::string unknownKey; ///< the key cannot be used
        std::string fixed;      ///< the program itself has the combination
        std::string taken;      ///< another program has it
        std::string keyboard;   ///< another program has the keyboard
        std::string needed;     ///< there must be one
        std::string disabled;   ///< there must be one, and the settings forbid it
    };
    /// The settings' keys that the combination is kept under, and whether it is in use.
    struct Keys {
        std::string shortcut, enabled;
    };
    /// Whether nobody may go without a combination.
    using Needed = std::function<bool()>;

    /// What is lent must outlive the object.
    ShortcutRecorder(Texts texts, Keys keys, Settings& settings, RecordableHotKeys& hotKeys,
                     Needed needed, QWidget* parent);
    /// Ends a recording.
    ~ShortcutRecorder() override;

    /// Not without a combination where one is needed.
    bool mayBeLeft() override;

    /// What the recorders on the screen show may have changed.
    static void refreshAll();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void refresh();
    void start();
    void startWhenFree(int attempts, const std::string& sentence);
    void cancel();
    void left();
    void stop();
    void pressed(const RecordableHotKeys::Stroke& stroke);
    const std::string* objectionTo(const Shortcut& shortcut);
    bool isMissing() const;
    bool isEnabled() const;
    void store(std::optional<Shortcut> shortcut);
    std::string label(const Shortcut& shortcut) const;
    void say(const std::string& text, bool isTrouble);

    Texts texts;
    Keys keys;
    Settings& settings;
    RecordableHotKeys& hotKeys;
    Needed needed;
    ShortcutField* field;
    QLabel* words;
    QTimer waiting; ///< for the keyboard to be free, or the focus to be back
    std::function<void()> tryAgain;
    bool recording = false;
    bool began = false; ///< by itself
};

} // namespace platform::qt
