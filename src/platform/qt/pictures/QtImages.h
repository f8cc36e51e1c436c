#pragma once

#include "platform/Images.h"

namespace platform::qt {

/// The formats that the toolkit and its plugins read. No application object is needed.
class QtImages final : public Images {
  public:
    Image load(const std::string& path) override;
    Image drawn(const Image& source, const Drawing& drawing) override;
};

} // namespace platform::qt
