#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::x11::gammaguard {

/// Red, green and blue, one after another, as many values of each.
using Ramp = std::vector<std::uint16_t>;

/// The user's ramps, by CRTC.
using Ramps = std::map<std::uint32_t, Ramp>;

/// What lies in the file.
struct Kept {
    std::string owner; ///< whoever wrote it; one word
    Ramps ramps;
};

std::string textOf(const Kept& kept);
/// Nothing where the text is not whole.
std::optional<Kept> keptIn(std::string_view text);

/// The file that has the user's ramps for as long as a server shows darker ones. It is what tells
/// which monitors are dark, and whose affair they are: a ramp that does not lie there any more must
/// not be written back. Whoever changes it holds its lock, which ends with the process.
class RampFile {
  public:
    /// `server` is the server's own name, of letters and digits. Nothing is made yet.
    RampFile(const std::string& folder, const std::string& server);
    ~RampFile() { unlock(); }
    RampFile(const RampFile&) = delete;
    RampFile& operator=(const RampFile&) = delete;

    /// Returns 0 or an error, EWOULDBLOCK where another has the lock. Does not wait.
    int lock();
    void unlock();
    bool isLocked() const { return lockDescriptor >= 0; }

    /// Nothing where there is none, or none that is whole. Needs no lock.
    std::optional<Kept> read() const;
    /// Replaces the file, as a whole or not at all; mode 0600. Returns 0 or an error.
    int write(const Kept& kept);
    void remove();

  private:
    std::string path;
    std::string lockPath;
    int lockDescriptor = -1;
};

} // namespace platform::x11::gammaguard
