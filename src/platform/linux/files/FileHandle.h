#pragma once

#include <unistd.h>
#include <utility>

namespace platform::linux {

/// Owns a file descriptor.
class FileHandle {
  public:
    explicit FileHandle(int descriptor = -1) : fd(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(fd, other.fd);
        return *this;
    }
    ~FileHandle() {
        if (fd >= 0) ::close(fd);
    }

    int get() const { return fd; }
    explicit operator bool() const { return fd >= 0; }

  private:
    int fd;
};

} // namespace platform::linux
