#include "manual/Pages.h"

#include "app/Variants.h"

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace manual {

namespace {

std::string withoutFonts(const std::string& line) {
    std::string text;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] != '\\') {
            text += line[at];
        } else if (line[++at] == 'f') {
            ++at;
        } else {
            text += line[at];
        }
    }
    return text;
}

} // namespace

std::string textOf(const std::filesystem::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> allOf(const std::string& text, const char* pattern) {
    std::vector<std::string> found;
    const std::regex expression(pattern);
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

std::string pageFile(const std::string& name) {
    return std::string(SHARE) + "/man/man1/" + name + ".1";
}

std::map<std::string, std::string> entries(const std::string& page, const std::string& title) {
    std::ifstream file(pageFile(page));
    std::map<std::string, std::string> found;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(".SH ") || line.starts_with(".SS ")) inside = line.substr(4) == title;
        if (!inside || line != ".TP") continue;
        std::string term, text;
        std::getline(file, term);
        std::getline(file, text);
        if (!found.emplace(withoutFonts(term), withoutFonts(text)).second)
            throw std::runtime_error("twice: " + term);
    }
    if (found.empty()) throw std::runtime_error(page + " has no " + title);
    return found;
}

Names termsOf(const std::string& page, const std::string& title) {
    Names names;
    for (const auto& [term, text] : entries(page, title)) {
        std::istringstream words(term);
        std::string word;
        do {
            words >> word;
            names.insert(word.substr(0, word.find(',')));
        } while (word.ends_with(','));
    }
    return names;
}

int variantOf(std::string_view product) {
    namespace variants = palisor::variants;
    const std::map<std::string_view, int> numbers = {{"palisor", variants::barrier},
                                                     {"vellumor", variants::cursorHider},
                                                     {"quenlow", variants::desktopSwitcher},
                                                     {"orbisant", variants::wrapAround},
                                                     {"stay-awake", variants::keepAwake},
                                                     {"crosshair", variants::crossHair},
                                                     {"calendar-alerts", variants::calendarAlerts}};
    return numbers.at(product);
}

} // namespace manual
