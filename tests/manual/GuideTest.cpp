#include "app/SettingsTable.h"
#include "manual/Pages.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <set>

// The pages for users lead somewhere, and tell of what there is.

namespace manual {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::vector<fs::path> pages() {
    std::vector<fs::path> found{fs::path(DOCUMENTS).parent_path() / "README.md"};
    for (const auto& entry : fs::recursive_directory_iterator(DOCUMENTS))
        if (entry.path().extension() == ".md") found.push_back(entry.path());
    return found;
}

/// What links to a heading of the page are called, as repositories and tools/guide make them.
std::set<std::string> anchorsOf(const std::string& page) {
    std::set<std::string> found;
    for (const std::string& heading : allOf(page, "\n#+ ([^\n]*)")) {
        std::string anchor;
        for (const char letter : heading) {
            const auto one = static_cast<unsigned char>(letter);
            if (letter == ' ' || letter == '-')
                anchor += '-';
            else if (std::isalnum(one) != 0 || letter == '_')
                anchor += static_cast<char>(std::tolower(one));
        }
        found.insert(anchor);
    }
    return found;
}

void expectLeadsSomewhere(const fs::path& page, const std::string& link) {
    const std::size_t mark = link.find('#');
    const std::string file = link.substr(0, mark);
    const fs::path target = file.empty() ? page : page.parent_path() / file;
    EXPECT_TRUE(fs::exists(target)) << page << ": " << link;
    const bool isThere =
        mark == std::string::npos || anchorsOf(textOf(target)).contains(link.substr(mark + 1));
    EXPECT_TRUE(isThere) << page << ": " << link;
}

TEST(Guide, HasNoLinkThatLeadsNowhere) {
    int links = 0;
    for (const fs::path& page : pages())
        for (const char* pattern : {"\\]\\(([^)\\s]+)", "(?:src|srcset|href)=\"([^\"]+)\""})
            for (const std::string& link : allOf(textOf(page), pattern)) {
                if (link.starts_with("https://")) continue;
                expectLeadsSomewhere(page, link);
                ++links;
            }
    EXPECT_GT(links, 60);
}

TEST(Guide, LeadsToEachOfItsPages) {
    const std::string index = textOf(fs::path(DOCUMENTS) / "guide/README.md");
    for (const fs::path& page : pages()) {
        if (page.filename() == "README.md") continue;
        const bool isInGuide = page.parent_path().filename() == "guide";
        EXPECT_THAT(index, HasSubstr((isInGuide ? "(" : "(../") + page.filename().string() + ")"));
    }
}

TEST(Guide, ListsEverySettingWithWhatItMeans) {
    const std::string page = textOf(fs::path(DOCUMENTS) / "guide/settings.md");
    std::size_t rows = 0;
    for (const palisor::Setting& setting : palisor::settingsTable()) {
        const std::string row =
            "\n| " + std::string(setting.name) + " | " + std::string(setting.meaning) + " | ";
        const std::size_t at = page.find(row);
        ASSERT_NE(at, std::string::npos) << row;
        const std::string rest = page.substr(at + row.size(), page.find('\n', at + 1) - at);
        EXPECT_THAT(rest, HasSubstr("| `" + std::string(setting.key) + "` |")) << row;
        ++rows;
    }
    EXPECT_EQ(allOf(page, "\n(\\| [a-z-]+ \\|.*`)").size(), rows) << "a row of no setting";
}

// The slider's number, squared and times 0.03, is the way that a push has to go within a sixtieth
// of a second.
TEST(Guide, TellsHowFastAPushHasToBe) {
    const std::string page = textOf(fs::path(DOCUMENTS) / "guide/push.md");
    const std::regex row("\n\\| (\\d+)[^|]*\\| ([\\d,]+) pixels a second");
    int rows = 0;
    for (std::sregex_iterator at(page.begin(), page.end(), row), end; at != end; ++at, ++rows) {
        const double velocity = std::stod((*at)[1]);
        std::string speed = (*at)[2];
        std::erase(speed, ',');
        EXPECT_NEAR(std::stod(speed), 60 * 0.03 * velocity * velocity, 1) << velocity;
    }
    EXPECT_GE(rows, 3);
}

TEST(Guide, HasNoPictureThatIsNotShown) {
    std::string all;
    for (const fs::path& page : pages())
        all += textOf(page);
    int pictures = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(DOCUMENTS) / "pictures"))
        if (entry.path().extension() == ".png") {
            EXPECT_THAT(all, HasSubstr("pictures/" + entry.path().filename().string()));
            ++pictures;
        }
    EXPECT_GE(pictures, 14);
}

// Software centres show the pictures of the guide.
TEST(Guide, HasThePicturesThatSoftwareCentresShow) {
    const fs::path folder = fs::path(DOCUMENTS).parent_path() / "packaging/metainfo";
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto images =
            allOf(textOf(entry.path()), "<image[^>]*>[^<]*/pictures/([^<]*)</image>");
        EXPECT_FALSE(images.empty()) << entry.path();
        for (const std::string& image : images)
            EXPECT_TRUE(fs::exists(fs::path(DOCUMENTS) / "pictures" / image)) << image;
    }
}

} // namespace
} // namespace manual
