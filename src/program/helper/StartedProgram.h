#pragma once

#include "platform/Descriptors.h"
#include "platform/linux/files/FileHandle.h"

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace helper {

/// A program that outlives who started it. Main thread.
class StartedProgram {
  public:
    explicit StartedProgram(platform::Descriptors& loop) : descriptors(loop) {}
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// Starts an executable, whose path comes first, with arguments and in the same environment.
    /// `ended` is called from the run loop with a sentence such as "ended with status 1". Returns 0
    /// or an errno number. Once.
    int start(std::vector<std::string> command, std::function<void(const std::string& how)> ended);

  private:
    void reap();

    platform::Descriptors& descriptors;
    platform::linux::FileHandle process; ///< readable when it has ended
    std::function<void(const std::string& how)> whenEnded;
};

} // namespace helper
