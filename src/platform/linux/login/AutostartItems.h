#pragma once

#include "platform/Log.h"
#include "platform/LoginItems.h"
#include "platform/linux/login/DesktopEntry.h"

#include <string>
#include <vector>

namespace platform::linux {

/// Login items as entries of the user's XDG autostart folder. A helper's is
/// "<helper identifier>.desktop". The session's own list is made of every other entry that is not
/// switched off; what is inserted is named "<identifier>.desktop", "<identifier>-2.desktop" and so
/// on, and the order of the list is that of the names.
///
/// Where the product has both, settings that heed NoDisplay show its item alone, and the helper
/// goes by that.
///
/// A user may edit an entry or switch it off in the desktop's settings. One that was written here
/// and only switched off or on since is written anew and deleted at will. Any other is the user's:
/// it is enabled by flipping what switches it off, and disabled by hiding it, which starts it no
/// more and loses nothing of what the user wrote.
class AutostartItems final : public LoginItems {
  public:
    struct Product {
        std::string identifier;
        std::string name;                ///< for the desktop's settings
        std::string comment;             ///< likewise
        std::string icon;                ///< the name of a theme's icon, or the path of a file
        std::vector<std::string> helper; ///< its command: an absolute path, then arguments
        /// What follows the path in an entry of the session's own list.
        std::vector<std::string> options{};
        std::string program{}; ///< its absolute path, where an item that starts nothing is led to
        /// Of the helper's entry beside an item of the list, which has the name.
        std::string helperName{};
    };

    /// `folder` is made when it is needed. An empty one is no folder: then nothing can be kept.
    AutostartItems(std::string folder, Product product, Log& log);

    void setEnabled(const std::string& helperIdentifier, bool enabled) override;
    bool hasSessionList() override { return !folder.empty(); }
    std::vector<ListItem> sessionList() override;

    /// An own entry for the path that was switched off comes back instead of a new one.
    void insertLast(const std::string& path) override;

    void remove(const ListItem& item) override;

    /// Gives what was written by an earlier version the form of today, and what starts a program
    /// that is not there any more the place that the product has now. Switched off it stays, and
    /// what the user has edited is left alone.
    void bringUpToDate();

    /// An entry of the product's own, of the list or a helper's.
    struct Entry {
        std::string path;
        std::vector<std::string> command; ///< the program first; empty where none can be read
        bool isThere = false;             ///< the program
        bool isOff = false;
        bool isEdited = false; ///< by the user, whose it is then
    };
    std::vector<Entry> entries() const;

    /// Whether all the items that were inserted for the product are switched off. Then a helper of
    /// it should not start it either: a desktop's settings show the item alone.
    bool isSwitchedOff() const;

  private:
    DesktopEntry itemEntry(const std::string& path) const; ///< of the session's own list
    DesktopEntry helperEntry() const;
    bool isOwnItem(const std::string& file) const;
    bool hasOwnItem() const;
    DesktopEntry entryFor(const std::vector<std::string>& command) const;
    void enable(const std::string& file, const DesktopEntry& fresh);
    void disable(const std::string& file);
    bool read(const std::string& file, std::string& text) const;
    void write(const std::string& file, const std::string& text) const;
    std::vector<std::string> files() const;
    std::uint64_t idOf(const std::string& file);
    std::string pathOf(const std::string& file) const { return folder + "/" + file; }
    void report(const std::string& file, std::string_view step, int error) const;

    std::string folder;
    Product product;
    Log& log;
    std::vector<std::string> known; ///< files that were listed; the index is the identifier - 1
};

} // namespace platform::linux
