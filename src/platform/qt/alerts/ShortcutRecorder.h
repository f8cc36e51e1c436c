#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"

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
        std::string taken;     ///< another program has the combination in place of "%@"
    };
    /// The settings' keys that the combination is kept under, and whether it is in use.
    struct Keys {
        std::string shortcut, enabled;
    };

    /// What is lent must outlive the object.
    ShortcutRecorder(Texts texts, Keys keys, Settings& settings, RecordableHotKeys& hotKeys,
                     QWidget* parent);
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
    void say(const QString& text, bool isTrouble);

    Texts texts;
    Keys keys;
    Settings& settings;
    RecordableHotKeys& hotKeys;
    ShortcutField* field;
    QLabel* words;
    bool recording = false;
};

} // namespace platform::qt
