#include "platform/qt/alerts/AlertDialog.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <cstdlib>
#include <gtest/gtest.h>

// The window of a question that somebody else has written.

namespace {

using platform::Alert;
using platform::qt::AlertDialog;

std::string times(std::size_t count, const std::string& text) {
    std::string all;
    while (all.size() < count * text.size())
        all += text;
    return all;
}

/// The longest text that the dialog holds.
qsizetype longestText(const AlertDialog& dialog) {
    qsizetype longest = 0;
    for (const auto* label : dialog.findChildren<QLabel*>())
        longest = std::max(longest, label->text().size());
    for (const auto* view : dialog.findChildren<QPlainTextEdit*>())
        longest = std::max(longest, view->toPlainText().size());
    return longest;
}

// Laying out a whole megabyte would hold the program up.
TEST(AlertDialogs, LayOutWhatFitsOfALongTextWhateverItIs) {
    for (const std::string letter : {"a", "W ", "\xF0\x9F\x98\x80", "\xE0\xB8\x81", "\n", "\t"}) {
        const std::string text = times(1'048'576 / letter.size(), letter);
        AlertDialog dialog({.message = "m", .informative = text, .buttons = {text, text}}, {}, {},
                           nullptr);
        dialog.show();
        QApplication::processEvents();
        EXPECT_LE(longestText(dialog), 2001);
        for (const auto* button : dialog.findChildren<QPushButton*>())
            EXPECT_LE(button->text().size(), 61);
    }
}

TEST(AlertDialogs, ShowTextsOfOrdinaryLengthWhole) {
    const std::string text = times(400, "Word ");
    AlertDialog dialog({.message = "m", .informative = text, .buttons = {"A & B"}}, {}, {},
                       nullptr);
    EXPECT_EQ(longestText(dialog), 2000);
    EXPECT_EQ(dialog.findChild<QPushButton*>()->text(), "A && B");
}

TEST(AlertDialogs, AreClosedByTheButtonThatTheyName) {
    using Closing = Alert::Closing;
    struct Row {
        Closing closing;
        std::vector<std::string> buttons;
        std::optional<std::size_t> answer;
    };
    const Row rows[] = {
        {Closing::lastButton, {"a", "b"}, 1},      {Closing::lastButton, {"a"}, 0},
        {Closing::defaultButton, {"a", "b"}, 0},   {Closing::defaultButton, {"a"}, 0},
        {Closing::none, {"a", "b"}, std::nullopt}, {Closing::none, {"a"}, 0}};
    for (const auto& [closing, buttons, answer] : rows) {
        AlertDialog byEscape({.message = "m", .buttons = buttons, .closing = closing}, {}, {},
                             nullptr);
        byEscape.show();
        byEscape.reject();
        EXPECT_EQ(byEscape.answer(), answer);
        EXPECT_EQ(byEscape.isVisible(), !answer) << "it stays until it is answered";
        AlertDialog byWindowManager({.message = "m", .buttons = buttons, .closing = closing}, {},
                                    {}, nullptr);
        byWindowManager.show();
        byWindowManager.close();
        EXPECT_EQ(byWindowManager.answer(), answer);
        EXPECT_EQ(byWindowManager.isVisible(), !answer);
    }
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
