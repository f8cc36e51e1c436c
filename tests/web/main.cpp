#include "web/Stage.h"

#include <QApplication>
#include <cstdlib>
#include <gmock/gmock.h>
#include <unistd.h>

namespace {

support::PrivateDesktop* theDesktop = nullptr;

} // namespace

support::PrivateDesktop& webtests::desktop() {
    return *theDesktop;
}

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    support::PrivateDesktop desktop(support::PrivateDesktop::Options{
        .layout = "1600x1200+0+0", .servers = {support::ServerKind::xvfb}, .hostDisplay = {}});
    theDesktop = &desktop;
    desktop.startWindowManager("openbox");
    for (const char* name : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR",
                             "QTWEBENGINE_CHROMIUM_FLAGS"})
        ::unsetenv(name);
    for (const auto& [name, value] : desktop.environment())
        ::setenv(name.c_str(), value.c_str(), 1);
    ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
    // The engine's sandbox refuses to work for root, which a container's tests are.
    if (::geteuid() == 0) ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox", 1);
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName("web-tests");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
