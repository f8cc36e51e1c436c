#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/linux/files/FileHandle.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace platform::linux {

/// Notices that a file has come, gone, or been written and closed, also behind a link. The folder
/// is watched, since editors rename: a watch of the file itself would stay with the old one. A
/// folder that goes away is watched again when there is another one in its place.
class FileWatch {
  public:
    /// `changed` is called on the main thread. Where the system has no watches left that is logged
    /// and nothing is ever reported; a path that is not absolute is no file. Descriptors and the
    /// log must outlive the object.
    FileWatch(std::string path, Descriptors& descriptors, Log& log, std::function<void()> changed);
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

  private:
    void watch();
    void stop();
    bool watchPlace(const std::string& place);
    bool add(const std::string& folder, std::uint32_t what, const std::string& name);
    void readEvents();

    std::string path;
    Descriptors& descriptors;
    Log& log;
    std::function<void()> changed;
    FileHandle notices;
    std::vector<std::string> places;            ///< the path and where its links lead to
    std::map<int, std::set<std::string>> names; ///< that count in each folder, by its watch
    bool allThere = false;                      ///< every folder is
};

} // namespace platform::linux
