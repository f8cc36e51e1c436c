#pragma once

#include "platform/InputEvents.h"
#include "platform/Menu.h"
#include "platform/qt/menu/MenuEntryId.h"

#include <QMenu>
#include <functional>
#include <optional>
#include <vector>

namespace platform::qt {

class Pictures;
class MenuPanel;
class SliderPanel;

/// The toolkit's menu for one opening, made from the data. It keeps no pointer into the data, so
/// the data may be rebuilt while it is open; the check boxes of a bounds view are the exception and
/// must outlive it. An entry with an action and a submenu is chosen by a click or Enter, and opens
/// its submenu when the pointer rests on it or by the arrow key.
class MenuPopup final : public QMenu {
  public:
    /// Hears from inside `run`.
    struct Listener {
        const Pictures* icons = nullptr; ///< the pictures of entries; null for none
        std::function<void(const MenuEntryId& entry, double value, EventType how)> moved;
        std::function<void(CheckBox& box)> clicked;
    };

    /// The listener must outlive the object.
    MenuPopup(const Menu& menu, const Listener& listener);

    /// Opens it with a corner at `position`, all on the monitor there, and returns when it has
    /// closed: the entry that was chosen, if one was. Once only.
    std::optional<MenuEntryId> run(const QPoint& position);

    /// The same with its top left corner there, even where the toolkit would move it: the work area
    /// of several monitors is one rectangle, which begins far from a panel of a lower monitor.
    std::optional<MenuEntryId> runAt(const QPoint& corner);

    /// When it opens, the keyboard is at that entry of the outermost menu, counted with the
    /// separators, or in its submenu.
    void beginAt(std::size_t place);

    /// Whether the entry was chosen with the keyboard.
    bool wasChosenByKey() const { return keyChose; }

    /// Closes it and its submenus; nothing is chosen.
    void dismiss();

    void setVisible(bool visible) override;

    /// Shows the text where the label is.
    void showLabel(const Label& label);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    MenuPopup(const Menu& menu, std::vector<std::size_t> path, MenuPopup& outermost);

    void fill(const Menu& menu, const std::vector<std::size_t>& path);
    void addEntry(const MenuItem& item, const std::vector<std::size_t>& path);
    void addPanel(const MenuItem& item, const std::vector<std::size_t>& path);
    void nameAfter(const QString& entry);
    void listenTo(QAction& action, MenuEntryId entry);
    /// Whether the entry is chosen although it has a submenu.
    bool sends(const QAction* action) const;
    void begin();
    void tellReturn();
    bool chooseByLetter(const QKeyEvent& key);
    MenuPanel* panelOf(const QAction* action) const;
    void showActive(const QAction* now);

    MenuPopup& root; ///< itself for the outermost menu
    const Listener* listener;
    std::vector<MenuPopup*> submenus;
    std::vector<SliderPanel*> sliders;
    std::vector<const QAction*> withActionAndSubmenu;
    const QAction* pressed = nullptr;
    QAction* first = nullptr; ///< that has the keyboard when it opens
    MenuPanel* activePanel = nullptr;
    std::optional<QPoint> fixedCorner;
    std::optional<MenuEntryId> chosen; ///< of the outermost menu only
    bool keyChose = false;             ///< likewise
};

} // namespace platform::qt
