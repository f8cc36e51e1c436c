// Starts one product when the user logs in. The desktop runs it from the user's autostart entry. It
// goes when the product tells it to, or when there is no product that could.

#include "app/LoginHelper.h"
#include "bus/SingleInstance.h"
#include "platform/linux/files/Installation.h"
#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/login/AutostartItems.h"
#include "platform/linux/system/SystemLog.h"
#include "platform/qt/loop/QtDescriptors.h"
#include "platform/qt/session/DistributedNotifications.h"
#include "platform/qt/session/SessionApplications.h"
#include "program/Options.h"
#include "program/Printable.h"
#include "program/helper/StartedProgram.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

using platform::linux::ProductBundle;
using platform::linux::SystemLog;

constexpr int failure = 1;
constexpr int wrongUsage = 2;

constexpr const char* usageText =
    "Usage: palisor-helper --product NAME [--calendar DIR]\n"
    "\n"
    "Starts the product, with the folder, and waits until it is told to end. For the desktop's "
    "autostart.\n";

struct Session {
    Session(const std::string& ownName, SystemLog& log)
        : link(descriptors, log), instance(ownName, link, log), applications(ownName, log) {}

    platform::qt::QtDescriptors descriptors;
    bus::Link link;
    bus::SingleInstance instance;
    platform::qt::SessionApplications applications;
    platform::qt::DistributedNotifications notifications;
    helper::StartedProgram program{descriptors};
    bool isUp = false;
};

/// Listens before the product is started, so that nothing it says is missed. False without a
/// session bus.
bool listen(Session& session, const std::string& mainIdentifier, SystemLog& log) {
    session.applications.onStart(mainIdentifier, [&session, mainIdentifier, &log] {
        session.isUp = true;
        log.write(mainIdentifier + " is up");
    });
    session.applications.onSessionEnd([] { QCoreApplication::exit(0); });
    return session.notifications.listen(
        [mainIdentifier](const std::string& name, const std::string& object) {
            if (name == palisor::loginHelper::terminate && object == mainIdentifier)
                QCoreApplication::exit(0);
        });
}

/// In the desktop's settings, where the product's own entry is shown and this one's is not.
bool isSwitchedOff(const std::string& mainIdentifier, SystemLog& log) {
    const auto folder = platform::linux::configurationFolder();
    if (!folder) return false;
    platform::linux::AutostartItems::Product product;
    product.identifier = mainIdentifier;
    return platform::linux::AutostartItems(*folder + "/autostart", std::move(product), log)
        .isSwitchedOff();
}

int run(const ProductBundle& bundle, const std::string& calendarFolder, SystemLog& log) {
    const std::string mainIdentifier(bundle.string("CFBundleIdentifier"));
    if (isSwitchedOff(mainIdentifier, log)) return 0;
    Session session(mainIdentifier + std::string(palisor::loginHelper::identifierEnding), log);
    (void)session.link.wait();
    if (!session.instance.claim()) return 0;
    // The product would find itself running, and nobody could tell this helper to end.
    if (std::ranges::count(session.applications.others(), mainIdentifier) > 0) return 0;

    const bool canBeTold = listen(session, mainIdentifier, log);
    const std::string path = bundle.path();
    std::vector<std::string> command{path, std::string(atLoginOption)};
    if (!calendarFolder.empty()) command.insert(command.end(), {"--calendar", calendarFolder});
    const auto ended = [&](const std::string& how) {
        log.write(path + (session.isUp ? " " : " did not come up: it ") + how);
        QCoreApplication::exit(session.isUp ? 0 : failure);
    };
    const int error = session.program.start(command, ended);
    if (error != 0) {
        log.write(path + " cannot be started: " + std::strerror(error));
        return failure;
    }
    if (!canBeTold) return 0;
    session.link.start();
    session.descriptors.start();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const auto [options, error] = parseOptions(argc, argv);
    if (options.help) {
        (void)std::fputs(usageText, stdout);
        return 0;
    }
    if (error) {
        (void)std::fprintf(stderr, "%s\n%s", printable(*error).c_str(), usageText);
        return wrongUsage;
    }
    SystemLog log(options.product + "-helper");
    const ProductBundle bundle(
        platform::linux::dataFolder() + "/products/" + options.product, {},
        [](std::string_view, std::string_view key) { return key; }, log);
    if (bundle.string("CFBundleIdentifier").empty()) return failure;
    const QCoreApplication application(argc, argv);
    return run(bundle, options.calendarFolder, log);
}
