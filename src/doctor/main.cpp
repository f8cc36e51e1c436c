// What `palisor doctor` runs: says what of the desktop is not as the product needs it, or mends
// what a program that has died or hangs has left.

#include "doctor/Options.h"
#include "doctor/Rescue.h"
#include "doctor/checks/Checks.h"
#include "platform/linux/files/Installation.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/system/SessionLanguage.h"
#include "program/Printable.h"
#include "strings/Strings.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

constexpr int failure = 1;
constexpr int wrongUsage = 2;

class ErrorLog final : public platform::Log {
  public:
    void write(std::string_view text) override {
        (void)std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
    }
};

std::string productsFolder() {
    return platform::linux::dataFolder() + "/products";
}

std::vector<std::string> products() {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(productsFolder(), error), end; !error && at != end;
         at.increment(error))
        names.push_back(at->path().filename());
    std::ranges::sort(names);
    return names;
}

/// Becomes the desktop's opener of files. Returns where there is none.
int show(const std::string& text, const std::string& product) {
    const std::string file =
        platform::linux::runtimeFolder().value_or(".") + "/" + product + "-doctor.txt";
    std::ofstream(file) << text;
    ::execlp("xdg-open", "xdg-open", file.c_str(), nullptr);
    (void)std::fprintf(stderr, "no xdg-open to show %s with: install xdg-utils\n", file.c_str());
    return failure;
}

bool hasTexts(std::string_view language) {
    return !strings::table(language).empty();
}

} // namespace

int main(int argc, char** argv) {
    const auto known = products();
    const auto options = doctor::parseOptions({argv, argv + argc}, known);
    if (options.help) {
        (void)std::fputs(doctor::usage(known).c_str(), stdout);
        return 0;
    }
    if (options.error) {
        (void)std::fprintf(stderr, "%s\n", printable(*options.error).c_str());
        return wrongUsage;
    }
    ErrorLog log;
    const platform::linux::ProductBundle bundle(
        productsFolder() + "/" + options.product, platform::linux::sessionLanguage(hasTexts),
        [&options](std::string_view language, std::string_view key) {
            return strings::wordingOf(options.product, language, key);
        },
        log);
    if (options.version) {
        std::printf("%s %s\n", bundle.displayName().c_str(), bundle.version().c_str());
        return 0;
    }
    const doctor::Report report =
        options.rescue ? doctor::rescue(bundle, log) : doctor::examine(doctor::gather(bundle, log));
    const std::string text = options.json     ? doctor::asJson(report)
                             : options.rescue ? doctor::asRescueText(report)
                                              : doctor::asText(report);
    if (options.open) return show(text, options.product);
    (void)std::fputs(text.c_str(), stdout);
    return doctor::isWell(report) ? 0 : failure;
}
