#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/linux/files/FileHandle.h"

#include <functional>
#include <string>

namespace platform::linux {

/// Notices that a file has been written and closed, or another one renamed to its name. The folder
/// is watched, since editors rename: a watch of the file itself would stay with the old one.
class FileWatch {
  public:
    /// `changed` is called on the main thread. Without a watch (no such folder, no watches left)
    /// that is logged and nothing is ever reported. Descriptors must outlive the object.
    FileWatch(const std::string& path, Descriptors& descriptors, Log& log,
              std::function<void()> changed);
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

  private:
    void readEvents();

    std::string fileName;
    Descriptors& descriptors;
    std::function<void()> changed;
    FileHandle notices;
};

} // namespace platform::linux
