#pragma once

#include "platform/Platform.h"

#include <string>
#include <string_view>

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

    /// Whether a text says something: it is not empty or blank, and none of the words that stand
    /// for nothing, "NULL" and "(null)".
    static bool isValidInfo(std::string_view text);

    /// Percent-encoded so that it can stand as a value in the query of an address.
    static std::string URLEncodedString(const platform::Platform& services, std::string_view text);

    /// Opens an application's page in the store, on the web and in the store's own program. `osx`:
    /// the store for computers, otherwise that for telephones.
    static void openStorePageWithID_osx(const platform::Platform& services,
                                        const std::string& stringID, bool osx);

    /// Opens a new message in the user's mail program.
    static void sendEmailTo_Subject_Body(const platform::Platform& services,
                                         std::string_view recipient, std::string_view subject,
                                         std::string_view body);
};

} // namespace palisor
