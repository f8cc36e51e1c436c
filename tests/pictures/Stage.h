#pragma once

#include "pictures/Backdrop.h"
#include "testing/SettingsManager.h"
#include "testing/desktop/Product.h"
#include "testing/reader/ScreenReader.h"

#include <optional>
#include <vector>

namespace pictures {

/// What a picture is of.
struct Scene {
    std::string name;    ///< of the picture's file
    std::string product; ///< by its command
    std::string layout;  ///< as support::parseLayout reads it
    desktop::Entries settings{};
    int submenu = 0;          ///< opened in its menu, by the downward steps to it; 0 for none
    bool isOfAWindow = false; ///< the one that comes up at the start, not the menu
};

/// All that the guide has.
const std::vector<Scene>& scenes();

/// A desk with the scene's product on it, as the picture is to show it, light or dark. Throws
/// std::runtime_error where the product does not come to that.
class Stage : desktop::Product {
  public:
    Stage(const Scene& scene, bool dark);

    /// What a screen reader is told of what is in the picture, a line each.
    std::string words() const { return told; }
    /// The toolkit and the font, with which it is drawn, and whether the icon has a tray: where one
    /// of them is another, the picture is.
    std::string toolkit() const;
    /// Of now.
    support::Picture picture() const;
    /// Whether the picture comes to be like that one.
    bool comesToLookLike(const support::Picture& other) const;
    /// When nothing moves any more.
    support::Picture settledPicture() const;

  private:
    void startTray(bool dark);
    void openToldMenu();
    void showMenu(const Scene& scene);
    bool menusAre(std::size_t count);
    void showWindow();
    std::optional<support::Area> window() const;
    void hear(const std::vector<support::Heard>& lines);

    Backdrop backdrop;
    support::SettingsManager settingsManager;
    support::ScreenReader reader;
    std::unique_ptr<support::ChildProcess> tray;
    bool showsWindow;
    std::string told;
};

/// Whether nobody would tell them apart.
bool areAlike(const support::Picture& one, const support::Picture& other);

} // namespace pictures
