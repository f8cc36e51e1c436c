#pragma once

#include "platform/Platform.h"
#include "platform/Views.h"

#include <memory>
#include <optional>
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

    // Images.cpp

    /// The image fitted into the middle of a new one of that size, larger or smaller, as it is
    /// where the size is its own. Nothing for an image that is not valid.
    static std::optional<platform::Image>
    imageByScalingProportionallyToSize_image(const platform::Platform& services,
                                             platform::ImageSize size, platform::Image image);

    /// A copy of the same size with rounded corners, or the ellipse that it holds.
    static platform::Image roundCorners_isCircle(const platform::Platform& services,
                                                 const platform::Image& image, bool isCircle);

    /// What the view looks like.
    static platform::Image snapshotForView(platform::View& view);

    /// The view's layer, also where it is hidden or has none, which it is and has again afterwards.
    static platform::Image imageRepresentation(platform::View& view);

    // Views.cpp

    static bool isFullScreen(const platform::FramedWindow& window);

    /// Whether the cursor is inside the view's bounds, whatever may lie over them.
    static bool isMouseOverView(const platform::Platform& services, const platform::View& view);

    /// Underlines the whole text of the field.
    static void underlineTextfiledText(platform::TextField& field);

    // Cookies.cpp; each does nothing where there is no web engine

    /// Puts all cookies of the web engine into the settings, under "cookies" or the key, at a later
    /// turn of the run loop.
    static void saveCookies(const platform::Platform& services);
    static void saveCookies(const platform::Platform& services, const std::string& key);

    /// Gives the web engine the cookies that were saved; it keeps others that it has.
    static void loadCookies(const platform::Platform& services);
    static void loadCookies(const platform::Platform& services, const std::string& key);

    /// Removes all that the web engine keeps of the pages it has shown.
    static void clearCacheWK(const platform::Platform& services);

    // WebWindow.cpp

    /// A window with a web page, not yet on screen, that remembers its frame under the name and
    /// otherwise is in the middle of the screen. Null where there is no web engine. It must go
    /// before the services.
    static std::unique_ptr<platform::WebWindow>
    createSimpleWindowWebView_title_URL(const platform::Platform& services,
                                        const std::string& autosaveName, const std::string& title,
                                        const std::string& URL);
};

} // namespace palisor
