#include "manual/Shells.h"

#include "app/Control.h"
#include "doctor/Options.h"
#include "program/Options.h"
#include "program/client/Words.h"
#include "testing/TempFolder.h"
#include "unit/Program.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

// What the shells offer is what the programs take.

namespace manual {
namespace {

using testing::IsEmpty;
using testing::Not;

struct Completions : testing::TestWithParam<std::string> {
    Names offer(const std::vector<std::string>& line, const std::string& folder = "/") const {
        return offered(GetParam(), line, {{"PATH", std::getenv("PATH")}, {"HOME", home.path()}},
                       folder);
    }

    testing_support::TempFolder home;
};

template <class Table>
void add(Names& names, const Table& options) {
    for (const OptionWords& one : options) {
        names.emplace(one.name);
        if (!one.shortName.empty()) names.emplace(one.shortName);
    }
}

template <class Table>
Names namesOf(const Table& table) {
    Names names;
    for (const auto& one : table)
        names.emplace(one.name);
    return names;
}

TEST_P(Completions, OfferEveryCommandAndEveryOption) {
    EXPECT_EQ(offer({"palisor", ""}), namesOf(client::commands));
    EXPECT_EQ(offer({"palisor", "st"}), Names{"status"});
    Names all;
    add(all, client::options);
    EXPECT_EQ(offer({"palisor", "status", "-"}), all);
    add(all, programOptions);
    EXPECT_EQ(offer({"crosshair", "-"}), all);
    Names doctors;
    add(doctors, doctor::optionTable);
    EXPECT_EQ(offer({"palisor-doctor", "-"}), doctors);
    EXPECT_EQ(offer({"palisor", "doctor", "-"}), doctors);
}

TEST_P(Completions, OfferWhatMayFollowAnOption) {
    const Names all(products::names.begin(), products::names.end());
    EXPECT_EQ(offer({"palisor", "--product", ""}), all);
    EXPECT_EQ(offer({"palisor-doctor", "--product", "or"}), Names{"orbisant"});
    EXPECT_EQ(offer({"palisor", "--hold", ""}), (Names{"on", "off"}));
    const std::filesystem::path folder = home.path();
    std::ofstream(folder / "xfile") << "a";
    std::filesystem::create_directory(folder / "xfolder");
    if (GetParam() == "zsh") {
        EXPECT_EQ(offer({"palisor", "--record", "x"}), Names{"FILE"});
        EXPECT_EQ(offer({"palisor", "--calendar", "x"}), Names{"DIR"});
        return;
    }
    EXPECT_THAT(offer({"palisor", "--record", "x"}, folder), testing::Contains("xfile"));
    EXPECT_THAT(offer({"palisor", "--calendar", "x"}, folder),
                testing::ElementsAre(testing::StartsWith("xfolder")));
}

TEST_P(Completions, OfferWhatMayFollowACommand) {
    EXPECT_EQ(offer({"palisor", "settings", ""}), namesOf(client::settingsWords));
    for (const client::Command& command : client::commands) {
        const Names after = offer({"palisor", std::string(command.name), ""});
        EXPECT_TRUE(command.most > 0 || after.empty()) << command.name;
        EXPECT_TRUE(command.name != "free" || !after.empty());
    }
    EXPECT_THAT(offer({"palisor", "settings", "list", ""}), IsEmpty());
    EXPECT_THAT(offer({"palisor", "settings", "get", "push", ""}), IsEmpty());
}

TEST_P(Completions, OfferTheSettingsOfTheProduct) {
    for (const auto name : products::names) {
        const std::string product(name);
        palisor::Program fresh(variantOf(name));
        Names settings;
        for (const auto& state : palisor::control::settings(fresh.app))
            settings.emplace(state.setting->name);
        EXPECT_EQ(offer({product, "settings", "set", ""}), settings);
        EXPECT_EQ(offer({"palisor", "--product", product, "settings", "get", ""}), settings);
    }
    EXPECT_EQ(offer({"palisor", "--product=orbisant", "settings", "get", "break"}),
              Names{"break-after-switch"});
}

TEST_P(Completions, OfferValuesThatTheSettingTakes) {
    for (const palisor::Setting& setting : palisor::settingsTable()) {
        const std::string name(setting.name);
        int variant = 0;
        for (const auto product : products::names)
            if (setting.products.contains(variantOf(product))) variant = variantOf(product);
        palisor::Program program(variant);
        program.launched();
        const Names values = offer({"palisor", "settings", "set", name, ""});
        EXPECT_THAT(values, Not(IsEmpty())) << name;
        const bool isFlag = setting.kind == palisor::Setting::Kind::flag;
        EXPECT_EQ(isFlag, values == (Names{"off", "on"})) << name;
        // A minus begins a word like any other here.
        const Names negative = offer({"palisor", "settings", "set", name, "-"});
        EXPECT_EQ(!negative.empty(), setting.least < 0) << name;
        for (const std::string& value : values)
            EXPECT_EQ(palisor::control::setSetting(program.app, name, value),
                      palisor::control::Refusal::none)
                << name << " " << value;
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Completions, testing::ValuesIn(shells()),
                         [](const auto& shell) { return shell.param; });

} // namespace
} // namespace manual
