#include "platform/x11/overlay/gammaguard/RampFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform::x11::gammaguard {

namespace {

constexpr const char* beginning = "gamma-ramps-1";
constexpr const char* ending = "end";
constexpr std::size_t largestRamp = std::size_t{1} << 16;
constexpr std::size_t mostCrtcs = 256;
constexpr mode_t onlyTheUser = S_IRUSR | S_IWUSR;

/// Returns 0 or an error.
int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

bool isStillNamed(int descriptor, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

std::string textOf(const Kept& kept) {
    std::ostringstream text;
    text << beginning << ' ' << kept.owner << ' ' << kept.ramps.size() << '\n';
    for (const auto& [crtc, ramp] : kept.ramps) {
        text << crtc << ' ' << ramp.size() / 3;
        for (const std::uint16_t value : ramp)
            text << ' ' << value;
        text << '\n';
    }
    text << ending << '\n';
    return text.str();
}

std::optional<Kept> keptIn(std::string_view all) {
    std::istringstream text{std::string(all)};
    Kept kept;
    std::string word;
    std::size_t crtcs = 0;
    if (!(text >> word >> kept.owner >> crtcs) || word != beginning || crtcs > mostCrtcs) return {};
    for (; crtcs > 0; --crtcs) {
        std::uint32_t crtc = 0;
        std::size_t size = 0;
        if (!(text >> crtc >> size) || size == 0 || size >= largestRamp) return {};
        Ramp ramp(3 * size);
        for (std::uint16_t& value : ramp)
            if (!(text >> value)) return {};
        kept.ramps[crtc] = std::move(ramp);
    }
    if (!(text >> word) || word != ending) return {};
    return kept;
}

RampFile::RampFile(const std::string& folder, const std::string& server)
    : path(folder + "/gamma-" + server), lockPath(path + ".lock") {}

// The one before removes the file of the lock with its lock, so a lock on a file that has no name
// any more is worth nothing.
int RampFile::lock() {
    while (lockDescriptor < 0) {
        const int descriptor = ::open(
            lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, onlyTheUser);
        if (descriptor < 0) return errno;
        if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            ::close(descriptor);
            return error;
        }
        if (isStillNamed(descriptor, lockPath))
            lockDescriptor = descriptor;
        else
            ::close(descriptor);
    }
    return 0;
}

void RampFile::unlock() {
    if (lockDescriptor < 0) return;
    (void)::unlink(lockPath.c_str());
    ::close(std::exchange(lockDescriptor, -1));
}

std::optional<Kept> RampFile::read() const {
    std::ifstream file(path, std::ios::binary);
    if (!file) return {};
    return keptIn(std::string{std::istreambuf_iterator<char>(file), {}});
}

// Not synced: what it is kept for ends with the machine at the latest.
int RampFile::write(const Kept& kept) {
    const std::string temporary = path + ".new";
    (void)::unlink(temporary.c_str()); // a kill may have left one behind
    const int descriptor = ::open(
        temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, onlyTheUser);
    if (descriptor < 0) return errno;
    int error = writeAll(descriptor, textOf(kept));
    if (::close(descriptor) != 0 && error == 0) error = errno;
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) error = errno;
    if (error != 0) (void)::unlink(temporary.c_str());
    return error;
}

void RampFile::remove() {
    (void)::unlink(path.c_str());
}

} // namespace platform::x11::gammaguard
