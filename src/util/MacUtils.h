#pragma once

#include "platform/Platform.h"

namespace palisor {

/// General operations without state of their own. They take the services that they work on; main
/// thread only.
class MacUtils {
  public:
    /// Repairs a settings store whose file is missing. The repair ends the process with status 0,
    /// so that the next start finds a working store.
    static void fixDefaultsIfNeeded(const platform::Platform& services);

    /// Empties the persistent settings; registered defaults stay.
    static void deleteAllSavedUserDefaults(const platform::Platform& services);
};

} // namespace palisor
