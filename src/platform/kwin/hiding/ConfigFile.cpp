#include "platform/kwin/hiding/ConfigFile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::kwin {

std::optional<std::string> textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) return std::nullopt;
    return text;
}

bool replace(const std::string& path, std::optional<std::string_view> text) {
    if (!text) return ::unlink(path.c_str()) == 0;
    std::error_code error;
    const auto followed = std::filesystem::canonical(path, error);
    const std::string target = error ? path : followed.string();
    struct stat before {};
    const bool wasThere = ::stat(target.c_str(), &before) == 0;
    std::string made = target + ".XXXXXX";
    const int file = ::mkstemp(made.data());
    if (file < 0) return false;
    bool isDone = !wasThere || ::fchmod(file, before.st_mode & 07777) == 0;
    for (std::string_view rest = *text; isDone && !rest.empty();) {
        const ssize_t written = ::write(file, rest.data(), rest.size());
        isDone = written > 0;
        if (isDone) rest.remove_prefix(static_cast<std::size_t>(written));
    }
    isDone = isDone && ::fsync(file) == 0;
    isDone = ::close(file) == 0 && isDone && ::rename(made.c_str(), target.c_str()) == 0;
    if (!isDone) ::unlink(made.c_str());
    return isDone;
}

} // namespace platform::kwin
