#include "platform/linux/files/Installation.h"
#include "platform/linux/system/SessionLanguage.h"
#include "platform/linux/system/SystemLog.h"
#include "platform/qt/loop/QtDescriptors.h"
#include "platform/qt/session/SingleInstance.h"
#include "platform/x11/connection/Connection.h"
#include "program/Desktop.h"
#include "program/Options.h"
#include "strings/Strings.h"

#include <QApplication>
#include <cstdio>
#include <cstdlib>

// Chooses the product and the platform, and owns everything.

namespace {

using platform::linux::ProductBundle;
using platform::linux::SystemLog;
using platform::x11::Connection;

constexpr int failure = 1;
constexpr int wrongUsage = 2;

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool hasTexts(std::string_view language) {
    return !strings::table(language).empty();
}

void listMonitors(Connection& connection) {
    const platform::x11::Displays displays(connection);
    const auto screens = displays.screens();
    for (std::size_t index = 0; index < screens.size(); ++index) {
        const platform::Rect frame = screens[index].frame;
        const double top = screens[0].frame.height - frame.height - frame.y;
        std::printf("%zu: %.0fx%.0f%+.0f%+.0f%s\n", index, frame.width, frame.height, frame.x, top,
                    screens[index].id == displays.mainScreen() ? " primary" : "");
    }
}

/// Must come before the application object. Settings of the user's own are left alone.
void prepareToolkit() {
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    // Nothing here is drawn with OpenGL, and its driver would take longer to load than all the
    // rest.
    ::setenv("QT_XCB_GL_INTEGRATION", "none", 0);
    // The toolkit's own loop costs half of GLib's at each wake-up, and nothing here needs that one.
    ::setenv("QT_NO_GLIB", "1", 0);
    // The session starts the program from its own entry; a session manager would add a second one.
    QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
}

int run(char* command, const Connections& connections, ProductBundle& bundle, SystemLog& log,
        platform::qt::QtDescriptors& descriptors, std::function<void()>& onLoss,
        const Options& options) {
    prepareToolkit();
    char* arguments[] = {command, nullptr};
    int count = 1;
    const QApplication toolkit(count, arguments);
    const auto identifier = bundle.string("CFBundleIdentifier");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setApplicationName(qtText(identifier));
    // No display name: the toolkit would append it to the titles of windows that begin with it.
    QGuiApplication::setDesktopFileName(qtText(identifier));

    platform::qt::SingleInstance instance{std::string(identifier), log};
    if (!instance.claim()) {
        const std::string_view name = bundle.string("CFBundleDisplayName");
        (void)std::fprintf(stderr, "%.*s is running already\n", static_cast<int>(name.size()),
                           name.data());
        return 0;
    }
    Desktop desktop(log, bundle, descriptors, connections, options);
    onLoss = [&desktop] { desktop.application.exit(failure); };
    instance.onActivate([&desktop] { desktop.activate(); });
    descriptors.start();
    // From inside the loop, which an alert or a request to quit at the start relies on.
    desktop.application.afterEvent([&desktop] { desktop.launch(); });
    const int status = QApplication::exec();
    desktop.application.exit(status);
}

} // namespace

int main(int argc, char** argv) {
    const auto [options, error] = parseOptions(argc, argv);
    if (error) {
        (void)std::fprintf(stderr, "%s\n", error->c_str());
        return wrongUsage;
    }
    if (options.help) {
        (void)std::fputs(usage().c_str(), stdout);
        return 0;
    }
    SystemLog log(options.product);
    ProductBundle bundle(platform::linux::dataFolder() + "/products/" + options.product,
                         platform::linux::sessionLanguage(hasTexts), strings::lookUp, log);
    const std::string name(bundle.string("CFBundleDisplayName"));
    if (options.version) {
        std::printf("%s %s\n", name.c_str(),
                    std::string(bundle.string("CFBundleShortVersionString")).c_str());
        return 0;
    }
    platform::qt::QtDescriptors descriptors;
    std::function<void()> onLoss;
    const auto lost = [&onLoss] {
        if (onLoss) onLoss();
    };
    const auto opened = Connection::open({}, descriptors, log, lost);
    if (!opened.connection) {
        log.write(opened.error);
        return failure;
    }
    if (options.listMonitors) {
        listMonitors(*opened.connection);
        return 0;
    }
    const auto input = Connection::open({}, descriptors, log, lost);
    if (!input.connection) {
        log.write(input.error);
        return failure;
    }
    return run(argv[0], {*opened.connection, *input.connection}, bundle, log, descriptors, onLoss,
               options);
}
