#pragma once

#include "platform/Platform.h"

#include <string_view>

namespace palisor {

/// The maker's products, as the menu advertises them. Main thread.
class TAMBERLO {
  public:
    /// Appends the list, without the product whose store id is `skippedId`. The short version is
    /// the status menu's. An entry's tool tip is the product's store id, by which `openApp` knows
    /// it; that of a heading is "-1".
    static void addOtherItemsToMenu_shortVersion_skippingAPP(const platform::Platform& services,
                                                             platform::Menu& menu,
                                                             bool shortVersion,
                                                             std::string_view skippedId);

    /// Opens the page of the product that the entry names.
    static void openApp(const platform::Platform& services, const platform::MenuItem& item);
};

} // namespace palisor
