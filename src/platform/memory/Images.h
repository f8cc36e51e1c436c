#pragma once

#include "platform/Images.h"

#include <functional>
#include <optional>

namespace platform::memory {

/// Draws by taking averages of samples, and reads the one format that needs no library: binary
/// portable pixmaps (P6 with 255 levels).
class Images final : public platform::Images {
  public:
    /// The contents of a file; nothing when there is none.
    using Reader = std::function<std::optional<std::string>(const std::string& path)>;

    explicit Images(Reader fileReader) : reader(std::move(fileReader)) {}

    Image load(const std::string& path) override;
    Image drawn(const Image& source, const Drawing& drawing) override;

  private:
    Reader reader;
};

} // namespace platform::memory
