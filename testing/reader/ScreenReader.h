#pragma once

#include "testing/desktop/Layout.h"
#include "testing/desktop/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace support {

/// One thing that a program shows, as a screen reader is told of it.
struct Heard {
    std::string role, name, description;
    std::set<std::string> states; ///< those that a reader speaks of
    struct Value {
        double current = 0, least = 0, most = 0;
    };
    std::optional<Value> value;
    std::string keys; ///< that do the same, as they are shown
    Area place;       ///< X root coordinates
    int depth = 0;    ///< below the window

    /// All of it on one line: 'slider "Darkness" (85%) 85 of 0 to 100 [focused]', or
    /// 'menu item "Quit" by Ctrl+Q [greyed]'.
    std::string line() const;
    bool is(const std::string& state) const { return states.contains(state); }
};

/// A screen reader on the desktop's own accessibility bus: it asks for what is shown and hears
/// where the keyboard is. Programs that start from its making on talk to it. One thread, which it
/// gives a QCoreApplication if there is none. Throws std::runtime_error where the bus does not come
/// or does not answer.
class ScreenReader final : public QObject {
    Q_OBJECT

  public:
    explicit ScreenReader(const PrivateDesktop& desktop);
    ~ScreenReader() override;

    /// What of all programs' windows is shown, each followed by what is in it. Menus are no windows
    /// here: they are found by what has the keyboard.
    std::vector<Heard> windows() const;
    /// The siblings of what has the keyboard, and what is in them.
    std::vector<Heard> aroundFocus() const;

    /// The last one that was told to have the keyboard, as it is now; nothing where it is gone.
    std::optional<Heard> focus() const;
    /// The lines of what was told since the last call, one for each time that the keyboard moved
    /// or that what it is at said something new.
    std::vector<std::string> takeTold();

    /// Looks at once and after each event.
    bool waitUntil(const std::function<bool()>& expected, milliseconds limit = generous);
    /// Whether what has the keyboard reads so before long.
    bool reads(const std::string& line);

  private slots:
    void stateChanged(const QDBusMessage& message);
    void propertyChanged(const QDBusMessage& message);

  private:
    struct Place {
        QString program, path;
        bool operator==(const Place&) const = default;
    };
    QDBusMessage ask(const Place& at, const char* interface, const char* operation,
                     const QVariantList& arguments = {}) const;
    QVariant property(const Place& at, const char* interface, const char* name) const;
    std::vector<Place> children(const Place& of) const;
    std::optional<Heard> look(const Place& at) const;
    void gather(const Place& at, int depth, std::vector<Heard>& into) const;

    std::unique_ptr<QCoreApplication> application;
    QDBusConnection bus;
    std::optional<Place> last;
    std::vector<std::string> told;
};

} // namespace support
