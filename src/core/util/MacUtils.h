#pragma once

#include "platform/Platform.h"
#include "platform/Views.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace palisor {

/// General operations without state of their own. They take the services that they work on. Main
/// thread only, but for those on system facts and dates.
class MacUtils {
  public:
    // SystemFacts.cpp
    /// Three numbers with points between them; "999" where the system does not tell.
    static std::string OSVersion(const platform::Platform& services);
    /// "notFound" where the machine has no name.
    static std::string machineModel(const platform::Platform& services);
    /// The machine's identifier for this application, never the machine's own.
    static std::optional<std::string> getSystemUUID(const platform::Platform& services);

    // Folders.cpp; nothing for a user without folders
    /// The folder for documents.
    static std::optional<std::string> getPathGenerico(const platform::Platform& services);
    /// A file in the folder for documents.
    static std::optional<std::string> filePath(const platform::Platform& services,
                                               const std::string& name);
    static std::optional<std::string> downloadFolder(const platform::Platform& services);
    static std::optional<std::string> desktopFolder(const platform::Platform& services);
    /// The path of the downloads read as an address; nothing where it holds what none may hold.
    static std::optional<std::string> downloadURL(const platform::Platform& services);

    // Dates.cpp
    static std::string getYearNumber(const platform::Platform& services);
    /// A stamp such as "2026/01/02-03:04:05". The hour runs from 01 to 12.
    static std::string univokeDate(const platform::Platform& services);
    /// Such as "02-01-2026 15.04.05", for the names of files.
    static std::string currentDateqweString(const platform::Platform& services);

    // Files.cpp
    /// Writes the text to "path/name.ext", whose folder is made where it is missing; false, with
    /// the file as it was, when that fails or the encoding lacks a character.
    static bool writeFileWithContent_path_name_ext_encoding(
        const platform::Platform& services, std::string_view content, const std::string& path,
        const std::string& name, const std::string& ext, platform::TextEncoding encoding);
    /// Puts the bytes of a picture, from their base64 text, into the folder for documents, as
    /// "tempimage.jpg"; the path of the file, or nothing when that fails.
    static std::optional<std::string> fromBase64ToImageFile(const platform::Platform& services,
                                                            std::string_view base64);

    // Notices.cpp
    /// Shows an alert and waits until it has been answered, whatever `modal` says.
    static void showSimpleModalAlertWithTitle_message_modal(const platform::Platform& services,
                                                            const std::string& title,
                                                            const std::string& message, bool modal);
    static void sendSimpleNotificationWithTitle_text_sound_identifier(
        const platform::Platform& services, const std::optional<std::string>& title,
        const std::optional<std::string>& text, const std::optional<std::string>& sound,
        const std::optional<std::string>& identifier);

    // Strings.cpp
    /// Of the UTF-8 bytes, as 32 lower-case hexadecimal digits.
    static std::string md5(const platform::Platform& services, std::string_view text);
    /// The text's bytes read as a zero-terminated string of the system's own encoding, which mends
    /// a text whose bytes were taken for another one.
    static std::string fixStringWithUTF8Encoding(const platform::Platform& services,
                                                 std::string_view text);

    // MacUtils.cpp
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

    /// The picture whose bytes the base64 text says, by way of the file that
    /// `fromBase64ToImageFile` writes; nothing when there is no such picture.
    static std::optional<platform::Image> fromBase64ToImage(const platform::Platform& services,
                                                            std::string_view base64);

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
