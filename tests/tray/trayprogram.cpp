// usage: tray_program FOLDER PICTURE TEMPLATE
// Shows FOLDER/PICTURE.svg in the tray and prints each click; a middle click changes the icon to
// the template, and its title, and a right one does so and changes both back at once.

#include "platform/qt/loop/QtDescriptors.h"
#include "platform/qt/tray/ExportedMenu.h"
#include "platform/qt/tray/TrayIcon.h"
#include "platform/x11/tray/TrayWindow.h"

#include <QApplication>
#include <cstdio>

namespace {

class Printer final : public platform::Log {
  public:
    void write(std::string_view text) override {
        std::printf("%.*s\n", static_cast<int>(text.size()), text.data());
        (void)std::fflush(stdout);
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    Printer log;
    platform::qt::QtDescriptors descriptors;
    const auto opened = platform::x11::Connection::open({}, descriptors, log, [] { std::exit(1); });
    if (!opened.connection) return 1;
    const QApplication application(argc, argv);
    const platform::qt::Pictures pictures({argv[1]}, log);
    const platform::qt::TrayIcon::Identity identity{"org.example.traytest", "Tray test"};
    platform::x11::TrayWindow window(*opened.connection, identity.id, identity.title);
    platform::qt::TrayIcon icon(&window, pictures, identity, log);
    icon.setImage({argv[2], false});
    const platform::Menu menu;
    platform::qt::ExportedMenu exported(menu, {});
    int clicks = 0;
    const auto clicked = [&](int button) {
        log.write("click " + std::to_string(++clicks) + " of button " + std::to_string(button));
        if (button == 0) return;
        icon.setImage({argv[3], true});
        icon.setToolTip("Tray test: changed");
        if (button != 1) return;
        icon.setImage({argv[2], false});
        icon.setToolTip(identity.title);
    };
    icon.show(clicked, &exported);
    descriptors.start();
    log.write("started");
    return QApplication::exec();
}
