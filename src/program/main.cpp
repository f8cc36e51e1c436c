#include "platform/linux/files/Installation.h"
#include "platform/linux/system/SessionLanguage.h"
#include "platform/linux/system/SystemLog.h"
#include "platform/qt/loop/QtDescriptors.h"
#include "platform/qt/session/HiddenBus.h"
#include "program/Options.h"
#include "program/Printable.h"
#include "program/Program.h"
#include "program/bus/OneInstance.h"
#include "strings/Strings.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <cstdio>
#include <cstdlib>

// Chooses the product and the session, and owns everything.

namespace {

using platform::linux::ProductBundle;
using platform::linux::SystemLog;

constexpr int failure = 1;
constexpr int wrongUsage = 2;

bool hasTexts(std::string_view language) {
    return !strings::table(language).empty();
}

void listMonitors(const platform::Displays& displays) {
    const auto screens = displays.screens();
    for (std::size_t index = 0; index < screens.size(); ++index) {
        const platform::Rect frame = screens[index].frame;
        const double top = screens[0].frame.height - frame.height - frame.y;
        std::printf("%zu: %.0fx%.0f%+.0f%+.0f%s\n", index, frame.width, frame.height, frame.x, top,
                    screens[index].id == displays.mainScreen() ? " primary" : "");
    }
}

/// Must come before the application object. Settings of the user's own are left alone.
void prepareToolkit(const Session& session) {
    ::setenv("QT_QPA_PLATFORM", session.toolkitPlatform(), 1);
    // Nothing here is drawn with OpenGL, and its driver would take longer to load than all the
    // rest.
    ::setenv("QT_XCB_GL_INTEGRATION", "none", 0);
    // The toolkit's own loop costs half of GLib's at each wake-up, and nothing here needs that one.
    ::setenv("QT_NO_GLIB", "1", 0);
    // The session starts the program from its own entry; a session manager would add a second one.
    QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
}

/// Whether the toolkit would abort for want of its plugin, with an advice that helps nobody.
bool lacksWindows(const Session& session) {
    if (!std::string_view(session.toolkitPlatform()).starts_with("wayland")) return false;
    if (std::getenv("DISPLAY") != nullptr || std::getenv("QT_PLUGIN_PATH") != nullptr ||
        std::getenv("QT_QPA_PLATFORM_PLUGIN_PATH") != nullptr)
        return false;
    const QDir folder(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    return folder.exists() && folder.entryList({"libqwayland*"}).isEmpty();
}

int run(char* command, Session& session, ProductBundle& bundle, const Product& product,
        platform::qt::QtDescriptors& descriptors, SystemLog& log, const Options& options) {
    prepareToolkit(session);
    bus::Link link(descriptors, log);
    OneInstance instance(product.identifier, session.displayName(), link, descriptors, log);
    platform::qt::HiddenBus silent(link.wait() == bus::Link::State::silent);
    char* arguments[] = {command, nullptr};
    int count = 1;
    const QApplication toolkit(count, arguments);
    silent.showAgain();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const auto identifier = QString::fromStdString(product.identifier);
    QCoreApplication::setApplicationName(identifier);
    // No display name: the toolkit would append it to the titles of windows that begin with it.
    QGuiApplication::setDesktopFileName(identifier);

    if (!instance.claim(options.atLogin)) {
        (void)std::fprintf(stderr, "%s is running already\n", product.name.c_str());
        return 0;
    }
    Program program(product, bundle, session, link, descriptors, log, options);
    instance.onActivate([&program] { program.activate(); });
    link.start();
    descriptors.start();
    program.launch();
    program.exit(QApplication::exec());
}

} // namespace

int main(int argc, char** argv) {
    const auto [options, error] = parseOptions(argc, argv);
    if (error) {
        (void)std::fprintf(stderr, "%s\n", printable(*error).c_str());
        return wrongUsage;
    }
    if (options.help) {
        (void)std::fputs(usage(options.command).c_str(), stdout);
        return 0;
    }
    SystemLog log(options.product);
    const Session* joined = nullptr;
    std::string shown;
    ProductBundle bundle(
        platform::linux::dataFolder() + "/products/" + options.product,
        platform::linux::sessionLanguage(hasTexts),
        [&, &options = options](std::string_view language, std::string_view key) {
            if (joined && joined->hasSwitch()) {
                if (auto text = strings::wordingWithSwitch(options.product, language, key)) {
                    shown = std::move(*text);
                    return std::string_view(shown);
                }
            }
            return strings::wordingOf(options.product, language, key);
        },
        log);
    const Product product{.identifier = std::string(bundle.string("CFBundleIdentifier")),
                          .name = std::string(bundle.string("CFBundleDisplayName")),
                          .icon = "icon"};
    if (options.version) {
        std::printf("%s %s\n", product.name.c_str(),
                    std::string(bundle.string("CFBundleShortVersionString")).c_str());
        return 0;
    }
    platform::qt::QtDescriptors descriptors;
    const auto [session, refusal] = Session::open(options, descriptors, log);
    if (!session) {
        log.write(refusal);
        return failure;
    }
    if (options.listMonitors) {
        listMonitors(session->displays());
        return 0;
    }
    if (lacksWindows(*session)) {
        log.write(
            "no window can be shown in this Wayland session: install the package qt6-wayland");
        return failure;
    }
    joined = session.get();
    return run(argv[0], *session, bundle, product, descriptors, log, options);
}
