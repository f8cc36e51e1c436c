#include "platform/memory/Settings.h"
#include "platform/qt/alerts/ShortcutRecorder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <cstdlib>
#include <gtest/gtest.h>

// The field, with a keyboard that is pressed by calls.

namespace {

using platform::Shortcut;
using platform::qt::ShortcutRecorder;

constexpr std::uint16_t keyK = 40, escape = 53, backspace = 51, deleteKey = 117, f5 = 96;
constexpr Shortcut ctrlK{keyK, Shortcut::control};

class Keyboard final : public platform::RecordableHotKeys {
  public:
    void registerShortcut(const Shortcut&, std::function<void()>) override {}
    void unregisterShortcut(const Shortcut&) override {}
    void bindShortcut(std::string_view, std::function<void()>) override {}
    void breakBinding(std::string_view) override {}
    std::string modifierFlagsString(const Shortcut& shortcut) const override {
        const auto flags = shortcut.modifierFlags >> 16;
        return flags == 0 ? "" : "held " + std::to_string(flags);
    }
    std::string keyCodeString(const Shortcut& shortcut) const override {
        return " and " + std::to_string(shortcut.keyCode);
    }
    std::optional<std::uint16_t> keyCodeNamed(std::string_view) const override {
        return std::nullopt;
    }
    void onLabelsChange(std::function<void()>) override {}
    void onTaken(std::function<void(const Shortcut&)>) override {}
    bool isTaken(const Shortcut& shortcut) const override { return shortcut == taken; }
    Obstacle obstacleTo(const Shortcut& shortcut) override {
        if (shortcut == fixed) return Obstacle::fixed;
        return shortcut == taken ? Obstacle::taken : Obstacle::none;
    }
    bool startRecording(std::function<void(const Stroke&)> taker,
                        std::function<void()> leave) override {
        if (belongsToAnother) return false;
        pressed = std::move(taker);
        left = std::move(leave);
        if (started) started();
        return true;
    }
    void stopRecording() override { pressed = nullptr; }

    bool belongsToAnother = false;
    Shortcut taken{0, 0}, fixed{0, 0};
    std::function<void(const Stroke&)> pressed; ///< while a recording is on
    std::function<void()> left;
    std::function<void()> started; ///< tells that a recording begins
};

class Recorder : public testing::Test {
  protected:
    Recorder() { enable(true); }

    void open() {
        window.emplace();
        recorder = new ShortcutRecorder(
            {"empty", "press", "hint", "clear", "modifiers", "shift", "unknown key", "fixed: %@",
             "taken: %@", "keyboard", "needed", "disabled"},
            {.shortcut = "kept", .enabled = "enabled"}, settings, keyboard,
            [this] { return needed; }, &*window);
        settings.observe("kept", [this] {
            ++stores;
            recordingWhenStored = isRecording();
        });
        recorder->resize(300, 60);
        recorder->move(0, 0);
        elsewhere = new QWidget(&*window);
        elsewhere->setGeometry(0, 100, 50, 50);
        window->resize(400, 200);
        window->show();
        field = recorder->focusProxy();
    }

    void store(const Shortcut& shortcut) { settings.set("kept", shortcut.toValue()); }
    std::optional<Shortcut> stored() const { return Shortcut::fromValue(settings.object("kept")); }
    void enable(bool enabled) { settings.set("enabled", platform::Value{enabled}); }

    static void click(QWidget* target) {
        const QPointF at(target->rect().center());
        QMouseEvent press(QEvent::MouseButtonPress, at, target->mapToGlobal(at), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, target->mapToGlobal(at), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(target, &release);
    }
    void key(QEvent::Type type, int code, bool repeated = false, QWidget* target = nullptr) {
        QKeyEvent event(type, code, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(target != nullptr ? target : field, &event);
    }
    void activate() {
        QEvent event(QEvent::WindowActivate);
        QApplication::sendEvent(&*window, &event);
    }

    void press(std::optional<std::uint16_t> code, std::uint32_t flags) {
        ASSERT_TRUE(isRecording()) << "nothing is being recorded";
        const auto taker = keyboard.pressed; // it ends the recording itself
        taker({code, flags});
    }

    bool isRecording() const { return keyboard.pressed != nullptr; }
    std::string shown() const { return field->accessibleName().toStdString(); }
    std::string words() const { return recorder->findChild<QLabel*>()->text().toStdString(); }
    QAbstractButton* clearButton() const { return field->findChild<QAbstractButton*>(); }

    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Settings settings{effects};
    Keyboard keyboard;
    int stores = 0;
    bool needed = false;
    bool recordingWhenStored = false;
    std::optional<QWidget> window;
    ShortcutRecorder* recorder = nullptr;
    QWidget* field = nullptr;
    QWidget* elsewhere = nullptr;
};

TEST_F(Recorder, OpensWithoutRecording) {
    open();
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "empty");
    EXPECT_FALSE(clearButton()->isVisible());
    EXPECT_EQ(words(), "");
}

TEST_F(Recorder, StoresOneCombinationAndShowsItAsItIsLabelled) {
    open();
    click(field);
    ASSERT_TRUE(isRecording());
    EXPECT_EQ(shown(), "press");
    EXPECT_EQ(words(), "hint");
    press({}, Shortcut::control);
    EXPECT_EQ(shown(), "held 4");
    press({}, 0);
    EXPECT_EQ(shown(), "press");
    press(keyK, Shortcut::control);
    EXPECT_FALSE(isRecording());
    EXPECT_FALSE(recordingWhenStored) << "it could not be tried";
    EXPECT_EQ(stored(), ctrlK);
    EXPECT_EQ(shown(), "held 4 and 40");
    EXPECT_EQ(words(), "");
    EXPECT_TRUE(clearButton()->isVisible());
}

TEST_F(Recorder, SaysThatAnotherProgramHoldsWhatIsStored) {
    store(ctrlK);
    keyboard.taken = ctrlK;
    open();
    EXPECT_EQ(shown(), "held 4 and 40");
    EXPECT_EQ(words(), "taken: held 4 and 40");
}

TEST_F(Recorder, RefusesInOneSentenceWhatWouldBeOfNoUseAndKeepsTheOldOne) {
    constexpr Shortcut ctrlA{0, Shortcut::control}, superF2{120, Shortcut::command};
    keyboard.taken = ctrlA;
    keyboard.fixed = superF2;
    const struct {
        Shortcut pressed;
        const char* words;
    } rows[] = {
        {{keyK, 0}, "modifiers"},           {{f5, 0}, "modifiers"},
        {{keyK, Shortcut::shift}, "shift"}, {{escape, Shortcut::shift}, "shift"},
        {ctrlA, "taken: held 4 and 0"},     {superF2, "fixed: held 16 and 120"},
    };
    store(ctrlK);
    stores = 0;
    open();
    click(field);
    for (const auto& [pressed, sentence] : rows) {
        press(pressed.keyCode, pressed.modifierFlags);
        EXPECT_EQ(words(), sentence);
        EXPECT_TRUE(isRecording()) << sentence;
    }
    keyboard.pressed({.unknownKey = true});
    EXPECT_EQ(words(), "unknown key");
    EXPECT_EQ(stores, 0);
    press(escape, 0);
    EXPECT_EQ(stored(), ctrlK);
    EXPECT_EQ(shown(), "held 4 and 40");
    click(field);
    press(f5, Shortcut::shift);
    EXPECT_EQ(stored(), (Shortcut{f5, Shortcut::shift})) << "writes nothing";
}

TEST_F(Recorder, ThatIsNeededBeginsByItselfWhenItsWindowGetsTheKeyboard) {
    needed = true;
    open();
    EXPECT_FALSE(isRecording()) << "the window has yet to get it";
    activate();
    ASSERT_TRUE(isRecording());
    EXPECT_EQ(words(), "hint");
    press(escape, 0);
    EXPECT_FALSE(isRecording()) << "a way to other windows";
    EXPECT_EQ(words(), "needed");
    activate();
    EXPECT_FALSE(isRecording()) << "once";
    store(ctrlK);
    open();
    activate();
    EXPECT_FALSE(isRecording()) << "there is one";
}

TEST_F(Recorder, ThatIsNeededWaitsForTheKeyThatClosedTheWindowToBeUp) {
    needed = true;
    keyboard.belongsToAnother = true;
    open();
    activate();
    EXPECT_FALSE(recorder->mayBeLeft());
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(words(), "needed");
    keyboard.belongsToAnother = false;
    QEventLoop wait;
    keyboard.started = [&wait] { wait.quit(); };
    wait.exec(); // the test's own limit ends it otherwise
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(words(), "needed");
}

TEST_F(Recorder, ThatIsNeededSaysWhatIsMissingWhenItIsLeftAndTakesTheKeyboard) {
    needed = true;
    open();
    for (int times = 0; times < 2; ++times) {
        EXPECT_FALSE(recorder->mayBeLeft());
        EXPECT_TRUE(isRecording());
        EXPECT_EQ(words(), "needed");
    }
    press(escape, 0);
    store({f5, 0});
    EXPECT_FALSE(recorder->mayBeLeft()) << "the program would not take it for one";
    press(keyK, Shortcut::control);
    EXPECT_TRUE(recorder->mayBeLeft());
    EXPECT_FALSE(isRecording());
    enable(false);
    EXPECT_FALSE(recorder->mayBeLeft());
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(words(), "disabled");
    needed = false;
    EXPECT_TRUE(recorder->mayBeLeft());
}

TEST_F(Recorder, IsCancelledByEscapeAloneByAClickElsewhereAndByAnotherWindow) {
    store(ctrlK);
    open();
    click(field);
    press(escape, 0);
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "held 4 and 40");
    EXPECT_EQ(words(), "");
    click(field);
    click(elsewhere);
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "held 4 and 40");
    click(field);
    keyboard.left();
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "held 4 and 40");
    click(field);
    press(escape, Shortcut::control);
    EXPECT_EQ(stored(), (Shortcut{escape, Shortcut::control}));
    EXPECT_EQ(stores, 1);
}

TEST_F(Recorder, GoesOnWhereTheWindowIsTheActiveOneAgain) {
    open();
    window->activateWindow();
    click(field);
    keyboard.left();
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "empty");
    QEventLoop wait;
    keyboard.started = [&wait] { wait.quit(); };
    wait.exec(); // the test's own limit ends it otherwise
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(shown(), "press");
}

TEST_F(Recorder, IsClearedByBackspaceByDeleteAndByItsButton) {
    for (const std::uint16_t code : {backspace, deleteKey}) {
        store(ctrlK);
        open();
        click(field);
        press(code, 0);
        EXPECT_EQ(stored(), std::nullopt);
        EXPECT_EQ(shown(), "empty");
        EXPECT_FALSE(isRecording());
    }
    store(ctrlK);
    open();
    click(clearButton());
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(shown(), "empty");
    EXPECT_FALSE(isRecording());
    store(ctrlK);
    open();
    key(QEvent::KeyPress, Qt::Key_Return, false, clearButton());
    EXPECT_EQ(stored(), std::nullopt) << "by Enter on the button";
    click(field);
    press(backspace, Shortcut::control);
    EXPECT_EQ(stored(), (Shortcut{backspace, Shortcut::control}));
}

TEST_F(Recorder, NeverTakesModifiersAlone) {
    open();
    click(field);
    press({}, Shortcut::control | Shortcut::option);
    press({}, 0);
    EXPECT_TRUE(isRecording());
    EXPECT_EQ(stores, 0);
}

TEST_F(Recorder, IsStartedBySpaceAndEnterWhenTheyAreReleased) {
    open();
    for (const int code : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        key(QEvent::KeyPress, code);
        key(QEvent::KeyRelease, code, true);
        key(QEvent::KeyPress, code, true);
        EXPECT_FALSE(isRecording());
        key(QEvent::KeyRelease, code);
        EXPECT_TRUE(isRecording());
        press(escape, 0);
        key(QEvent::KeyRelease, code);
        EXPECT_FALSE(isRecording()) << "a press elsewhere";
    }
}

TEST_F(Recorder, IsDisabledWhereTheShortcutIs) {
    enable(false);
    store(ctrlK);
    open();
    EXPECT_FALSE(field->isEnabled());
    click(field);
    EXPECT_FALSE(isRecording());
    EXPECT_EQ(shown(), "held 4 and 40");
    enable(true);
    ShortcutRecorder::refreshAll();
    EXPECT_TRUE(field->isEnabled());
    click(field);
    EXPECT_TRUE(isRecording());
    enable(false);
    ShortcutRecorder::refreshAll();
    EXPECT_FALSE(isRecording());
    EXPECT_FALSE(field->isEnabled());
}

TEST_F(Recorder, ShowsAnEditFromOutside) {
    open();
    store(ctrlK);
    ShortcutRecorder::refreshAll();
    EXPECT_EQ(shown(), "held 4 and 40");
}

TEST_F(Recorder, GivesTheKeyboardBackWhenItIsHiddenOrGone) {
    open();
    click(field);
    ASSERT_TRUE(isRecording());
    window->hide();
    EXPECT_FALSE(isRecording());
    window->show();
    click(field);
    ASSERT_TRUE(isRecording());
    window.reset();
    EXPECT_FALSE(isRecording());
}

TEST_F(Recorder, SaysThatTheKeyboardCannotBeHad) {
    keyboard.belongsToAnother = true;
    open();
    click(field);
    EXPECT_EQ(shown(), "empty");
    EXPECT_EQ(words(), "keyboard");
    keyboard.belongsToAnother = false;
    click(field);
    EXPECT_TRUE(isRecording());
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
