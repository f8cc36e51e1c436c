#include "platform/qt/menu/MenuPopup.h"

#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/menu/BoundsPanel.h"
#include "platform/qt/menu/EntryText.h"
#include "platform/qt/menu/MenuAccess.h"
#include "platform/qt/menu/MenuStyle.h"
#include "platform/qt/menu/SliderPanel.h"
#include "platform/qt/pictures/Pictures.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidgetAction>
#include <algorithm>
#include <utility>

namespace platform::qt {

namespace {

// The toolkit takes an ampersand for the mark of a mnemonic.
QString plainText(const MenuItem& item) {
    auto [text, shortcut] = entryText(item);
    text.replace('&', "&&");
    // Behind a tabulator is the column of the shortcuts.
    return shortcut.isEmpty() ? text : text + '\t' + shortcut;
}

bool isChoice(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space ||
           key == Qt::Key_Select;
}

} // namespace

MenuPopup::MenuPopup(const Menu& menu, const Listener& hears) : root(*this), listener(&hears) {
    describeMenus();
    fill(menu, {});
}

MenuPopup::MenuPopup(const Menu& menu, std::vector<std::size_t> path, MenuPopup& outermost)
    : root(outermost), listener(outermost.listener) {
    fill(menu, path);
}

void MenuPopup::fill(const Menu& menu, const std::vector<std::size_t>& path) {
    MenuStyle::giveTo(*this);
    setSeparatorsCollapsible(true);
    setToolTipsVisible(true);
    connect(this, &QMenu::hovered, this, [this](const QAction* now) { showActive(now); });
    connect(
        this, &QMenu::aboutToShow, this, [this] { begin(); }, Qt::QueuedConnection);
    connect(this, &QMenu::aboutToHide, this, [this] { showActive(nullptr); });
    connect(
        this, &QMenu::aboutToHide, this, [this] { tellReturn(); }, Qt::QueuedConnection);
    std::vector<std::size_t> place = path;
    place.push_back(0);
    for (const auto& item : menu.items) {
        if (item->separator)
            addSeparator();
        else if (item->hasView())
            addPanel(*item, place);
        else
            addEntry(*item, place);
        ++place.back();
    }
}

void MenuPopup::addEntry(const MenuItem& item, const std::vector<std::size_t>& path) {
    QAction& action = *addAction(plainText(item));
    action.setCheckable(item.isToggle || item.state != 0);
    action.setChecked(item.state != 0);
    action.setEnabled(!item.greyed());
    action.setToolTip(QString::fromStdString(item.hint));
    if (!item.image.empty() && listener->icons != nullptr) {
        action.setIcon(listener->icons->menuIcon(item.image, item.imageIsTemplate));
        action.setIconVisibleInMenu(true);
    }
    if (!item.action.empty()) listenTo(action, identify(item, path));
    if (item.submenu == nullptr) return;
    auto* submenu = new MenuPopup(*item.submenu, path, root);
    submenu->setParent(this, submenu->windowFlags());
    action.setMenu(submenu);
    submenu->nameAfter(entryText(item).label);
    submenus.push_back(submenu);
    if (!item.action.empty()) withActionAndSubmenu.push_back(&action);
}

void MenuPopup::nameAfter(const QString& entry) {
    setAccessibleName(entry);
    for (const QAction* action : actions())
        if (MenuPanel* panel = panelOf(action)) panel->nameAfter(entry);
}

void MenuPopup::addPanel(const MenuItem& item, const std::vector<std::size_t>& path) {
    MenuPanel* panel = nullptr;
    if (const auto* view = std::get_if<SliderView>(&item.view)) {
        auto* shown = new SliderPanel(
            *view, [heard = listener, entry = identify(item, path)](double value, EventType how) {
                heard->moved(entry, value, how);
            });
        sliders.push_back(shown);
        panel = shown;
    } else {
        panel = new BoundsPanel(std::get<BoundsView>(item.view),
                                [heard = listener](CheckBox& box) { heard->clicked(box); });
    }
    auto* action = new QWidgetAction(this);
    action->setDefaultWidget(panel);
    panel->installEventFilter(this);
    addAction(action);
}

void MenuPopup::listenTo(QAction& action, MenuEntryId entry) {
    connect(&action, &QAction::triggered, this,
            [this, entry = std::move(entry)] { root.chosen = entry; });
}

std::optional<MenuEntryId> MenuPopup::run(const QPoint& position) {
    exec(position);
    return std::move(chosen);
}

std::optional<MenuEntryId> MenuPopup::runAt(const QPoint& corner) {
    fixedCorner = corner;
    return run(corner);
}

void MenuPopup::beginAt(std::size_t place) {
    first = actions().value(static_cast<qsizetype>(place));
    auto* const submenu = dynamic_cast<MenuPopup*>(first != nullptr ? first->menu() : nullptr);
    if (submenu != nullptr) submenu->first = submenu->actions().value(0);
}

/// It has the keyboard now, mostly without an entry that is chosen yet.
void MenuPopup::begin() {
    if (!isVisible()) return;
    if (QAction* const action = std::exchange(first, nullptr))
        setActiveAction(action);
    else if (activeAction() == nullptr)
        tellFocus(*this);
}

/// The toolkit says nothing of the entry to which a submenu gives the keyboard back.
void MenuPopup::tellReturn() {
    auto* const outer = dynamic_cast<MenuPopup*>(parentWidget());
    if (outer == nullptr || isVisible() || !outer->isVisible()) return;
    if (outer->activeAction() == menuAction())
        tellFocus(*outer, static_cast<int>(outer->actions().indexOf(menuAction())));
}

void MenuPopup::setVisible(bool visible) {
    if (visible && fixedCorner) move(*fixedCorner);
    std::optional<QtApplication::Closing> closing;
    if (!visible && isVisible() && &root == this) closing.emplace(*this);
    QMenu::setVisible(visible);
}

void MenuPopup::dismiss() {
    for (MenuPopup* submenu : submenus)
        submenu->dismiss();
    close();
}

void MenuPopup::showLabel(const Label& label) {
    for (SliderPanel* panel : sliders)
        panel->showLabel(label);
    for (MenuPopup* submenu : submenus)
        submenu->showLabel(label);
}

bool MenuPopup::sends(const QAction* action) const {
    return action != nullptr && action->isEnabled() &&
           std::find(withActionAndSubmenu.begin(), withActionAndSubmenu.end(), action) !=
               withActionAndSubmenu.end();
}

MenuPanel* MenuPopup::panelOf(const QAction* action) const {
    const auto* withWidget = dynamic_cast<const QWidgetAction*>(action);
    return withWidget != nullptr ? dynamic_cast<MenuPanel*>(withWidget->defaultWidget()) : nullptr;
}

void MenuPopup::showActive(const QAction* now) {
    MenuPanel* const panel = panelOf(now);
    if (panel == activePanel) return;
    if (activePanel != nullptr) activePanel->setActive(false);
    activePanel = panel;
    if (activePanel != nullptr) activePanel->setActive(true);
}

void MenuPopup::mousePressEvent(QMouseEvent* event) {
    pressed = actionAt(event->position().toPoint());
    QMenu::mousePressEvent(event);
}

// A menu may also be used with the button held down.
void MenuPopup::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() != Qt::NoButton) pressed = actionAt(event->position().toPoint());
    QMenu::mouseMoveEvent(event);
}

void MenuPopup::mouseReleaseEvent(QMouseEvent* event) {
    QAction* const action = actionAt(event->position().toPoint());
    const bool clicked = action == std::exchange(pressed, nullptr);
    root.keyChose = false;
    if (!clicked || !sends(action)) {
        QMenu::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    root.dismiss();
    action->trigger();
}

void MenuPopup::keyPressEvent(QKeyEvent* event) {
    QAction* const action = activeAction();
    root.keyChose = true;
    if (MenuPanel* panel = panelOf(action); panel != nullptr && panel->handleKey(*event)) {
        event->accept();
        return;
    }
    if (isChoice(event->key()) && sends(action)) {
        event->accept();
        root.dismiss();
        action->trigger();
        return;
    }
    if (chooseByLetter(*event)) {
        event->accept();
        return;
    }
    QMenu::keyPressEvent(event);
}

// As in every menu: a letter that begins one entry chooses it, and one that begins several goes
// from each to the next.
bool MenuPopup::chooseByLetter(const QKeyEvent& key) {
    const QString letter = key.text();
    const auto others = key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (letter.size() != 1 || !letter[0].isLetterOrNumber() || others != Qt::NoModifier)
        return false;
    QList<QAction*> begun;
    for (QAction* action : actions())
        if (action->isEnabled() && action->text().startsWith(letter, Qt::CaseInsensitive))
            begun += action;
    if (begun.isEmpty()) return false;
    const auto next = begun.indexOf(activeAction()) + 1;
    setActiveAction(begun[next % begun.size()]);
    if (begun.size() > 1) return true;
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    keyPressEvent(&enter);
    return true;
}

// The pointer over a panel is not seen by the menu itself.
bool MenuPopup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Enter)
        for (QAction* action : actions())
            if (MenuPanel* panel = panelOf(action); panel != nullptr && panel == watched) {
                setActiveAction(action);
                showActive(action);
            }
    return QMenu::eventFilter(watched, event);
}

} // namespace platform::qt
