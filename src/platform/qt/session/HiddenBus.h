#pragma once

#include <string>

namespace platform::qt {

/// A session bus that does not answer is none for the toolkit, whose library would wait for half a
/// minute each time. To be made before the application object.
class HiddenBus {
  public:
    /// Hides it from this process, for good, where it is silent; otherwise does nothing.
    explicit HiddenBus(bool isSilent);

    /// What the program starts is to have the real address again. Needs the application object.
    void showAgain();

  private:
    bool isHidden;
    std::string address;
};

} // namespace platform::qt
