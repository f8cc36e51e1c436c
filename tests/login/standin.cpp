// Stands in for a product at login: owns NAME on the session bus, and does what DEED says.

#include "bus/SingleInstance.h"
#include "platform/linux/system/SystemLog.h"
#include "platform/qt/loop/QtDescriptors.h"
#include "platform/qt/session/DistributedNotifications.h"
#include "platform/qt/session/SessionApplications.h"

#include <QCoreApplication>
#include <cstdlib>

int main(int argc, char** argv) {
    const std::string name = std::getenv("NAME");
    const std::string deed = std::getenv("DEED");
    if (deed == "end") return 3;
    const QCoreApplication application(argc, argv);
    platform::linux::SystemLog log("stand-in");
    platform::qt::QtDescriptors descriptors;
    bus::Link link(descriptors, log);
    bus::SingleInstance instance(name, link, log);
    (void)link.wait();
    if (!instance.claim()) return 4;
    link.start();
    descriptors.start();
    const platform::qt::SessionApplications applications(name, log);
    for (const std::string& other : applications.others())
        log.write("beside " + other);
    for (int index = 1; index < argc; ++index)
        log.write("told " + std::string(argv[index]));
    log.write("pid " + std::to_string(QCoreApplication::applicationPid()) + " end");
    using platform::qt::DistributedNotifications;
    if (deed == "tell others") {
        DistributedNotifications::post("SOMETHING", name, log);
        DistributedNotifications::post("TERMINATEHELPER", name + "2", log);
    }
    if (deed == "tell") DistributedNotifications::post("TERMINATEHELPER", name, log);
    return QCoreApplication::exec();
}
