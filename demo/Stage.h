#pragma once

#include "testing/desktop/Product.h"

#include <string_view>

namespace demo {

/// Two monitors side by side, a light window that fills each, and the program.
class Stage : public desktop::Product {
  public:
    /// The program lies in the folder `programs`; the one for pictures is made where it does not
    /// exist. Throws std::runtime_error.
    Stage(const std::filesystem::path& programs, const std::filesystem::path& pictures);

    static constexpr support::Area left{0, 0, 960, 600};
    static constexpr support::Area right{960, 0, 800, 600};
    static constexpr support::Spot leftMiddle{480, 300};
    static constexpr support::Spot rightMiddle{1360, 300};

    support::TestWindow leftWindow, rightWindow;

    /// With the cursor on the left monitor and settings of its own.
    void startProgram(const desktop::Setting& setting = {});

    /// Whether the middle of a monitor shows the window darkened, or as it is.
    bool isDark(const support::Area& monitor) const;
    bool isBright(const support::Area& monitor) const;
    bool waitForDark(const support::Area& monitor, const support::Area& bright);
    bool waitForAllBright();

    /// Prints one line for what was tried; the outcome counts.
    void tell(bool seen, std::string_view what, std::string_view details = {});
    bool allSeen() const { return missing == 0; }
    void takePicture(const std::string& title);

  private:
    support::Colour middle(const support::Area& monitor) const;

    std::filesystem::path pictures;
    int othersDark = 0;
    int missing = 0;
};

} // namespace demo
