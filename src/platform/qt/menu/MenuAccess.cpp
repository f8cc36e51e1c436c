#include "platform/qt/menu/MenuAccess.h"

#include "platform/qt/menu/BoundsPanel.h"
#include "platform/qt/menu/MenuPopup.h"
#include "platform/qt/menu/MenuSlider.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCheckBox>
#include <QHash>
#include <QKeyEvent>
#include <QPointer>
#include <QWidgetAction>

namespace platform::qt {

namespace {

// A text of the toolkit's: a doubled ampersand, and the shortcut behind a tabulator.
QString nameOf(const QAction& action) {
    return action.text().section('\t', 0, 0).replace("&&", "&");
}

QMenu* menuAround(const QWidget& part) {
    for (QWidget* widget = part.parentWidget(); widget != nullptr; widget = widget->parentWidget())
        if (auto* menu = qobject_cast<QMenu*>(widget)) return menu;
    return nullptr;
}

/// An entry that is a text.
class EntryAccess final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    EntryAccess(QMenu& owner, QAction& shown) : menu(&owner), action(&shown) {}

    bool isValid() const override { return menu && action; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return isValid() ? menu->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(menu.data());
    }
    int childCount() const override { return isValid() && action->menu() != nullptr ? 1 : 0; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 && childCount() == 1
                   ? QAccessible::queryAccessibleInterface(action->menu<QMenu*>())
                   : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* other) const override {
        return other != nullptr && other == child(0) ? 0 : -1;
    }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        const QString name = nameOf(*action);
        if (kind == QAccessible::Name) return name;
        if (kind == QAccessible::Accelerator) return action->text().section('\t', 1);
        // The toolkit makes a tool tip of the text where there is none.
        const QString hint = action->toolTip().section('\t', 0, 0);
        return kind == QAccessible::Description && hint != name ? hint : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        if (!isValid()) return {};
        const QRect inside = menu->actionGeometry(action);
        return {menu->mapToGlobal(inside.topLeft()), inside.size()};
    }
    QAccessible::Role role() const override {
        if (!isValid()) return QAccessible::NoRole;
        if (action->isSeparator()) return QAccessible::Separator;
        // Not every toolkit tells of a plain entry that it could have a mark.
        return action->isCheckable() ? QAccessible::CheckBox : QAccessible::MenuItem;
    }
    QAccessible::State state() const override {
        QAccessible::State now;
        if (!isValid()) {
            now.invalid = true;
            return now;
        }
        now.invisible = !menu->isVisible() || !action->isVisible();
        now.disabled = !action->isEnabled();
        now.focusable = now.selectable = !action->isSeparator();
        now.focused = now.selected = menu->activeAction() == action;
        now.checkable = action->isCheckable();
        now.checked = action->isChecked();
        now.hasPopup = now.expandable = action->menu() != nullptr;
        now.expanded = now.hasPopup && action->menu()->isVisible();
        now.collapsed = now.hasPopup && !now.expanded;
        return now;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override {
        return isValid() && action->isEnabled() ? QStringList{pressAction()} : QStringList();
    }
    // By the key, so that the menu closes and tells what was chosen as it always does.
    void doAction(const QString& name) override {
        if (name != pressAction() || !isValid() || !action->isEnabled()) return;
        menu->setActiveAction(action);
        QApplication::postEvent(menu,
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
    }
    QStringList keyBindingsForAction(const QString& name) const override {
        const QString keys = text(QAccessible::Accelerator);
        return name != pressAction() || keys.isEmpty() ? QStringList() : QStringList{keys};
    }

  private:
    QPointer<QMenu> menu;
    QPointer<QAction> action;
};

/// Its children are its entries: the slider and the bounds panel themselves where they are one.
class PopupAccess final : public QAccessibleWidget {
  public:
    explicit PopupAccess(MenuPopup& menu) : QAccessibleWidget(&menu, QAccessible::PopupMenu) {}
    ~PopupAccess() override {
        for (const QAccessible::Id id : entries)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(widget()->actions().size()); }
    QAccessibleInterface* child(int index) const override {
        QAction* const action = widget()->actions().value(index);
        if (action == nullptr) return nullptr;
        if (const auto* with = qobject_cast<QWidgetAction*>(action)) {
            QWidget* panel = with->defaultWidget();
            QWidget* slider = panel->findChild<QSlider*>();
            return QAccessible::queryAccessibleInterface(slider != nullptr ? slider : panel);
        }
        if (!entries.contains(action))
            entries.insert(
                action, QAccessible::registerAccessibleInterface(new EntryAccess(menu(), *action)));
        return QAccessible::accessibleInterface(entries.value(action));
    }
    int indexOfChild(const QAccessibleInterface* other) const override {
        for (int index = 0; index < childCount(); ++index)
            if (child(index) == other) return index;
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int index = 0; index < childCount(); ++index)
            if (QAccessibleInterface* each = child(index); each->rect().contains(x, y)) return each;
        return nullptr;
    }
    QAccessibleInterface* parent() const override {
        auto* above = qobject_cast<QMenu*>(widget()->parentWidget());
        QAccessibleInterface* outer = QAccessible::queryAccessibleInterface(above);
        if (outer == nullptr) return QAccessibleWidget::parent();
        return outer->child(static_cast<int>(above->actions().indexOf(menu().menuAction())));
    }
    QAccessible::State state() const override {
        QAccessible::State now = QAccessibleWidget::state();
        now.focusable = true;
        now.focused = menu().isVisible() && menu().activeAction() == nullptr;
        return now;
    }

  private:
    QMenu& menu() const { return *static_cast<QMenu*>(widget()); }

    mutable QHash<QAction*, QAccessible::Id> entries;
};

/// Something of an entry's that takes the menu's keys.
class PartAccess : public QAccessibleWidget {
  public:
    PartAccess(QWidget& part, QAccessible::Role role) : QAccessibleWidget(&part, role) {}

    QAccessible::State state() const override {
        QAccessible::State now = QAccessibleWidget::state();
        now.focusable = true;
        now.focused = isActive();
        return now;
    }

  private:
    virtual bool isActive() const = 0;
};

/// A slider counts in the units of its label, and says what that says.
class SliderAccess final : public PartAccess, public QAccessibleValueInterface {
  public:
    explicit SliderAccess(MenuSlider& shown)
        : PartAccess(shown, QAccessible::Slider), slider(shown) {}

    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(menuAround(slider));
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : PartAccess::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value) return slider.accessibleDescription();
        return PartAccess::text(kind);
    }

    QVariant currentValue() const override { return slider.shownValue(); }
    void setCurrentValue(const QVariant& value) override { slider.goTo(value.toDouble()); }
    QVariant minimumValue() const override { return slider.shownMinimum(); }
    QVariant maximumValue() const override { return slider.shownMaximum(); }
    QVariant minimumStepSize() const override { return slider.shownStep(); }

  private:
    bool isActive() const override { return slider.isActive(); }

    MenuSlider& slider;
};

class BoxAccess final : public PartAccess {
  public:
    BoxAccess(QCheckBox& shown, const BoundsPanel& around)
        : PartAccess(shown, QAccessible::CheckBox), box(shown), panel(around) {}

    QAccessible::State state() const override {
        QAccessible::State now = PartAccess::state();
        now.checkable = true;
        now.checked = box.isChecked();
        return now;
    }
    QStringList actionNames() const override {
        return box.isEnabled() ? QStringList{toggleAction()} : QStringList();
    }
    void doAction(const QString& name) override {
        if (name == toggleAction()) box.click();
    }

  private:
    bool isActive() const override { return panel.isAt(box); }

    QCheckBox& box;
    const BoundsPanel& panel;
};

QAccessibleInterface* describe(const QString&, QObject* object) {
    if (auto* menu = dynamic_cast<MenuPopup*>(object)) return new PopupAccess(*menu);
    if (auto* slider = dynamic_cast<MenuSlider*>(object)) return new SliderAccess(*slider);
    if (auto* panel = dynamic_cast<BoundsPanel*>(object))
        return new QAccessibleWidget(panel, QAccessible::Grouping);
    if (auto* box = qobject_cast<QCheckBox*>(object))
        if (const auto* panel = dynamic_cast<BoundsPanel*>(box->parentWidget()))
            return new BoxAccess(*box, *panel);
    return nullptr;
}

} // namespace

void describeMenus() {
    QAccessible::installFactory(describe);
}

void tellFocus(QWidget& part, int entry) {
    QAccessibleEvent event(&part, QAccessible::Focus);
    event.setChild(entry);
    QAccessible::updateAccessibility(&event);
}

} // namespace platform::qt
