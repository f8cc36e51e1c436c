#include "manual/Console.h"
#include "manual/Shells.h"
#include "platform/json/Parser.h"
#include "program/client/Commands.h"

#include <QXmlStreamReader>
#include <fstream>
#include <gmock/gmock.h>
#include <map>

// Everything that the document on scripting shows is done as a reader would do it.

namespace desktop {
namespace {

using testing::HasSubstr;

using manual::blocks;
using manual::isAsShown;
using manual::Step;
using manual::stepsOf;
using manual::Texts;

const platform::JsonValue& memberOf(const platform::JsonValue& object, const char* name) {
    const auto* const found = object.member(name);
    if (found == nullptr) throw std::runtime_error(std::string("no member ") + name);
    return *found;
}

struct Scripting : manual::Console, testing::Test {
    void expectClickSwitches(const std::string& line) {
        const bool before = isActive();
        EXPECT_EQ(typed(line), "");
        EXPECT_NE(isActive(), before) << line;
    }
};

TEST_F(Scripting, IsAsTheDocumentShows) {
    std::vector<std::pair<Step, std::unique_ptr<support::ChildProcess>>> watching;
    int count = 0;
    for (const std::string& block : blocks(DOCUMENT, "console"))
        for (Step& step : stepsOf(block)) {
            ++count;
            if (step.command.find(" watch") != step.command.npos) {
                watching.emplace_back(step, shell(step.command));
                EXPECT_TRUE(watching.back().second->waitForText("version"));
                continue;
            }
            const std::string seen = typed(step.command);
            EXPECT_TRUE(isAsShown(seen, step.shown)) << "$ " << step.command << "\n" << seen;
        }
    EXPECT_GT(count, 30);
    ASSERT_EQ(watching.size(), 1U);
    for (const auto& [step, child] : watching) {
        EXPECT_EQ(child->wait(), 0);
        EXPECT_TRUE(isAsShown(child->output(), step.shown)) << child->output();
    }
    typed("palisor quit");
}

TEST(ScriptingDocument, HasEveryCommandAndEveryExitStatus) {
    std::string typed;
    for (const std::string& block : blocks(DOCUMENT, "console"))
        for (const Step& step : stepsOf(block))
            typed += step.command + "\n";
    for (const client::Command& command : client::commands)
        EXPECT_THAT(typed, HasSubstr("palisor " + std::string(command.name)));
    for (const client::SettingsWord& word : client::settingsWords)
        EXPECT_THAT(typed, HasSubstr("palisor settings " + std::string(word.name)));
    std::ifstream file(DOCUMENT);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    for (const client::ExitMeaning& exit : client::exits)
        EXPECT_THAT(text, HasSubstr("| " + std::to_string(static_cast<int>(exit.status)) + " | " +
                                    std::string(exit.meaning)));
}

TEST(ScriptingDocument, IsNotMatchedBySomethingElse) {
    EXPECT_TRUE(isAsShown("a\nb\nc\n", "a\n…\n"));
    EXPECT_TRUE(isAsShown("[1] *\n", "[1] *\n"));
    EXPECT_FALSE(isAsShown("a\nb\n", "a\n"));
    EXPECT_FALSE(isAsShown("", "a\n"));
}

TEST_F(Scripting, WaybarsModuleFollowsInJson) {
    typed("palisor on");
    const auto config = platform::json::read(blocks(DOCUMENT, "json").at(0), 10);
    const platform::JsonValue& module = memberOf(config, "custom/palisor");
    const auto text = [](const platform::JsonValue& object, const char* member) {
        return std::get<std::string>(memberOf(object, member).held);
    };
    EXPECT_EQ(text(module, "return-type"), "json");
    const auto child = shell(text(module, "exec"));
    EXPECT_TRUE(child->waitForText("\"on\"}\n"));
    expectClickSwitches(text(module, "on-click"));
    EXPECT_TRUE(child->waitForText("\"off\"}\n"));
    EXPECT_EQ(typed(text(module, "on-click-right")), "");
    EXPECT_TRUE(waitForMenus(1));
    typed("palisor quit");
    EXPECT_EQ(child->wait(), 0);
    std::istringstream lines(child->output());
    Texts seen;
    for (std::string line; std::getline(lines, line);) {
        const auto shown = platform::json::read(line, 10);
        seen.push_back(text(shown, "text") + " " + text(shown, "class"));
    }
    EXPECT_THAT(seen, testing::ElementsAre("DUMMY0 on", "free off"));
}

TEST_F(Scripting, PolybarsModuleFollowsInLines) {
    typed("palisor on");
    std::map<std::string, std::string> module;
    std::istringstream lines(blocks(DOCUMENT, "ini").at(0));
    for (std::string line; std::getline(lines, line);)
        if (const auto at = line.find(" = "); at != line.npos)
            module[line.substr(0, at)] = line.substr(at + 3);
    EXPECT_EQ(module.at("tail"), "true");
    const auto child = shell(module.at("exec"));
    EXPECT_TRUE(child->waitForText("DUMMY0\n"));
    expectClickSwitches(module.at("click-left"));
    EXPECT_TRUE(child->waitForText("free\n"));
    EXPECT_EQ(typed(module.at("click-right")), "");
    EXPECT_TRUE(waitForMenus(1));
    typed("palisor quit");
    EXPECT_EQ(child->wait(), 0);
    EXPECT_EQ(child->output(), "DUMMY0\nfree\n");
}

TEST_F(Scripting, TheGenericMonitorOfXfceShowsTags) {
    const std::string script = blocks(DOCUMENT, "sh").at(0);
    const auto tags = [&] {
        QXmlStreamReader reader(QString::fromStdString("<all>" + typed(script) + "</all>"));
        std::map<std::string, std::string> found;
        reader.readNextStartElement();
        while (reader.readNextStartElement()) {
            const std::string tag = reader.name().toString().toStdString();
            found[tag] = reader.readElementText().toStdString();
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
        return found;
    };
    EXPECT_EQ(tags()["txt"], "not running");
    typed("palisor on");
    EXPECT_EQ(tags()["txt"], "DUMMY0");
    EXPECT_NE(tags()["tool"], "");
    expectClickSwitches(tags()["txtclick"]);
    EXPECT_EQ(tags()["txt"], "none");
    typed("palisor quit");
}

TEST_F(Scripting, CompletionsNameTheMonitorsOfTheProgramThatRunsAndAreSilentOtherwise) {
    auto environment = desktop.environment();
    const auto monitorsIn = [&](const std::string& shell) {
        return manual::offered(shell, {programs() + "/palisor", "cross", ""}, environment);
    };
    for (const std::string& shell : manual::shells())
        EXPECT_EQ(monitorsIn(shell), manual::Names{}) << shell;
    EXPECT_FALSE(desktop.isOnTheBus(identifier()));
    typed("palisor on");
    for (const std::string& shell : manual::shells())
        EXPECT_EQ(monitorsIn(shell), (manual::Names{"DUMMY0", "DUMMY1"})) << shell;
    typed("palisor quit");
}

} // namespace
} // namespace desktop
