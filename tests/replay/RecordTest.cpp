#include "app/AppDelegate.h"
#include "platform/memory/MemoryPlatform.h"
#include "replay/ReplayRun.h"
#include "scenario/record/Recorded.h"
#include "testing/Layouts.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;

/// A session over the memory platform that is written down while it goes on.
struct RecordedSession {
    RecordedSession() {
        platform.bundle.set("IDApp", Value{std::int64_t{8}});
        platform.bundle.set("CFBundleIdentifier", Value{"com.tamberlo.palisor"});
        platform.displays.replace(screensFromLayout("1920x1080+0+0,1280x1024+1920+56"));
        platform.settings.edit("PRIMOACCESSO", Value{"1"});
        platform.settings.edit("VELOCITY_OPTION", Value{true});
        platform.settings.edit("VELOCITY", Value{std::int64_t{10}});
        platform.settings.edit("customShortcut",
                               platform::Shortcut{40, platform::Shortcut::command}.toValue());
        platform.effects.record();
        writer.begin(platform.bundle, platform.settings.persistentValues(), platform.displays);
    }

    std::string scenario() const {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    ~RecordedSession() { std::filesystem::remove(path); }

    std::string path =
        std::filesystem::temp_directory_path() / ("recorded-" + std::to_string(getpid()));
    platform::memory::MemoryPlatform platform;
    record::ScenarioWriter writer{path};
    record::RecordedInput input{platform.input, writer};
    record::RecordedDisplays displays{platform.displays, writer};
    record::RecordedStatusItem statusItem{platform.statusItem, writer,
                                          [this] { return platform.application.currentEvent(); }};
};

platform::Platform servicesOf(RecordedSession& session) {
    const platform::Platform real = session.platform.services();
    return {
        real.log,        real.runLoop,       real.application, real.bundle,        real.settings,
        real.files,      real.system,        session.displays, real.pointer,       real.cursor,
        session.input,   real.keyboard,      real.hotKeys,     real.windows,       real.focus,
        real.workspace,  session.statusItem, real.alerts,      real.notifications, real.sounds,
        real.loginItems, real.power,         real.textCodec,   real.infoWindows,   real.http,
        real.json,       real.images,        real.web,         real.calendar};
}

/// The lines of a replay without their time, as the memory platform keeps them.
std::vector<std::string> withoutTime(const std::string& output) {
    std::vector<std::string> lines;
    std::istringstream text(output);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line.substr(line.find(R"("effect":)")));
    return lines;
}

TEST(RecordedSession, ReplaysToTheSameEffects) {
    RecordedSession session;
    auto& platform = session.platform;
    AppDelegate app(servicesOf(session));
    app.applicationDidFinishLaunching();

    platform.move({1900, 500});
    platform.move({1921, 500});
    platform.move({1910, 500});
    platform.move({2000, 510});
    for (const std::uint16_t key : {55, 58, 59})
        platform.changeModifier(key);
    platform.move({100, 100});
    platform.changeModifier(59);
    platform.displays.change(screensFromLayout("1280x1024+0+0,1280x1024+1280+0"));
    auto* target = platform.statusItem.menuTarget();
    target->menuWillOpen(*platform.statusItem.menu());
    for (const auto& item : platform.statusItem.menu()->items)
        if (item->title == "CTRLALTCMDText") {
            target->chosen(*item);
            break;
        }

    std::vector<std::string> lived;
    for (const std::string& line : platform.effects.timedLines(
             {"warp", "window", "windowOut", "write", "monitor", "frontmostActivated"}))
        lived.push_back(line.substr(line.find(R"("effect":)")));
    ASSERT_FALSE(lived.empty());

    const ReplayRun run;
    const ReplayResult replayed = run.play(
        session.scenario(), "--only warp,window,windowOut,write,monitor,frontmostActivated s");
    EXPECT_EQ(replayed.status, 0) << replayed.errors;
    EXPECT_EQ(withoutTime(replayed.output), lived);
}

TEST(RecordedSession, ToAFileThatCannotBeWrittenSaysSo) {
    EXPECT_FALSE(record::ScenarioWriter("/nowhere/at/all").good());
}

} // namespace
} // namespace palisor
