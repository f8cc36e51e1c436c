#include "platform/calendar/CutJournal.h"

#include "platform/calendar/Glib.h"
#include "platform/linux/files/AtomicFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <unistd.h>

namespace platform::calendar {

namespace {

// A cut is lines of a name, a blank and a text, and ends with an empty line.
constexpr std::array fields = {std::pair{"place", &Cut::place}, std::pair{"before", &Cut::before},
                               std::pair{"after", &Cut::after},
                               std::pair{"whole-sum", &Cut::wholeSum},
                               std::pair{"part-sum", &Cut::partSum}};
constexpr const char* movedField = "moved";

std::string textOf(const Cut& cut) {
    std::string text;
    for (const auto& [name, field] : fields)
        text += std::string(name) + ' ' + cut.*field + '\n';
    for (const std::string& id : cut.moved)
        text += std::string(movedField) + ' ' + id + '\n';
    return text + '\n';
}

} // namespace

std::string checksumOf(const std::string& text) {
    return take(g_compute_checksum_for_string(G_CHECKSUM_SHA256, text.data(),
                                              static_cast<gssize>(text.size())));
}

std::vector<Cut> CutJournal::cuts() const {
    std::vector<Cut> all;
    if (file.empty()) return all;
    std::istringstream text(linux::readFile(file).text);
    Cut cut;
    for (std::string line; std::getline(text, line);) {
        if (line.empty()) {
            all.push_back(std::exchange(cut, {}));
            continue;
        }
        const auto blank = std::min(line.find(' '), line.size() - 1);
        const auto name = line.substr(0, blank);
        const auto value = line.substr(blank + 1);
        if (name == movedField) cut.moved.push_back(value);
        for (const auto& [known, field] : fields)
            if (name == known) cut.*field = value;
    }
    return all;
}

bool CutJournal::add(const Cut& cut) const {
    if (file.empty()) return true;
    const std::string text = textOf(cut);
    const auto lines = fields.size() + cut.moved.size() + 1;
    if (static_cast<std::size_t>(std::ranges::count(text, '\n')) != lines) return false;
    auto all = cuts();
    all.push_back(cut);
    return write(all);
}

void CutJournal::strike(const Cut& cut) const {
    if (file.empty()) return;
    auto all = cuts();
    std::erase(all, cut);
    (void)write(all);
}

bool CutJournal::write(const std::vector<Cut>& cuts) const {
    if (cuts.empty()) return ::unlink(file.c_str()) == 0 || errno == ENOENT;
    std::string text;
    for (const Cut& cut : cuts)
        text += textOf(cut);
    return linux::makeFolders(std::filesystem::path(file).parent_path()) == 0 &&
           !linux::replaceFile(file, text).failure;
}

} // namespace platform::calendar
