#pragma once

#include <string>
#include <vector>

namespace platform::calendar {

/// A recurring event becomes two by several writes, and the process may be killed between them.
/// What such a cut is about is written down before the first write and struck out after the last,
/// so that the next start can finish it or undo it.
struct Cut {
    std::string place;    ///< the folder, or the calendar's id
    std::string before;   ///< the file or UID of the first half, which was the whole
    std::string after;    ///< of the later half, which is new
    std::string wholeSum; ///< checksum of the first half's text before the cut
    /// Of the text by which a folder knows the later half, and a server that the first half has
    /// become shorter.
    std::string partSum;
    std::vector<std::string> moved{}; ///< ids of the occurrences that go to the later half

    bool operator==(const Cut&) const = default;
};

std::string checksumOf(const std::string& text);

class CutJournal {
  public:
    /// An empty path keeps no journal: a kill may then leave the event twice.
    explicit CutJournal(std::string path) : file(std::move(path)) {}

    /// What is not struck out; none where the file cannot be read.
    std::vector<Cut> cuts() const;
    /// False when it cannot be written down: then nothing must be cut.
    bool add(const Cut& cut) const;
    void strike(const Cut& cut) const;

  private:
    bool write(const std::vector<Cut>& cuts) const;

    std::string file;
};

} // namespace platform::calendar
