#pragma once

#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/login/AutostartItems.h"

namespace helper {

/// What the product's autostart entries say. `calendarFolder` is passed on to the product; empty
/// for none.
platform::linux::AutostartItems::Product loginEntry(const platform::linux::ProductBundle& bundle,
                                                    const std::string& calendarFolder);

} // namespace helper
