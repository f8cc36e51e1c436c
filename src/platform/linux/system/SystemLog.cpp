#include "platform/linux/system/SystemLog.h"

#include <QString>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::linux {

namespace {

constexpr std::size_t longest = 500;
constexpr const char* debugPriority = "<7>"; // as the journal reads it at the head of a line

/// Whether it could steer a terminal, begin a line of its own, or turn the ones around it about.
bool isControl(char32_t letter) {
    switch (QChar::category(letter)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

std::string harmless(std::string_view text) {
    // No character has more bytes than these.
    constexpr std::size_t mostBytes = 4 * (longest + 1);
    const auto bytes = static_cast<qsizetype>(std::min(text.size(), mostBytes));
    std::u32string letters = QString::fromUtf8(text.data(), bytes).toStdU32String();
    const bool isCut = letters.size() > longest;
    if (isCut) letters.resize(longest);
    std::ranges::replace_if(letters, isControl, U' ');
    return QString::fromStdU32String(letters).toStdString() + (isCut ? "..." : "");
}

/// One call: lines of several threads do not mix.
void writeLine(const char* priority, const std::string& name, std::string_view text) {
    const std::string line = priority + name + ": " + harmless(text) + '\n';
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

/// The session tells which stream its journal is, since it may have been led elsewhere since.
bool streamIsJournal() {
    const char* const told = std::getenv("JOURNAL_STREAM");
    struct stat status {};
    return told != nullptr && ::fstat(STDERR_FILENO, &status) == 0 &&
           told == std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

} // namespace

void SystemLog::write(std::string_view text) {
    writeLine("", name, text);
}

DebugLog::DebugLog(std::string programName, bool isVerbose)
    : name(std::move(programName)), verbose(isVerbose), toJournal(streamIsJournal()) {}

void DebugLog::write(std::string_view text) {
    if (verbose || (toJournal && isNew(text)))
        writeLine(toJournal ? debugPriority : "", name, text);
}

bool DebugLog::isNew(std::string_view text) {
    const std::size_t sum = std::hash<std::string_view>{}(text) | 1; // zero is no line
    if (std::ranges::any_of(recent, [sum](const auto& known) { return known == sum; }))
        return false;
    recent[next++ % recent.size()] = sum;
    return true;
}

} // namespace platform::linux
