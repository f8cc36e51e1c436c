#pragma once

#include "platform/Platform.h"

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
};

} // namespace palisor
