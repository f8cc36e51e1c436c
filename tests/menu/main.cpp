#include "Stage.h"

#include <QApplication>
#include <cstdlib>

namespace {

support::PrivateDesktop* theDesktop = nullptr;

} // namespace

support::PrivateDesktop& menutests::desktop() {
    return *theDesktop;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    support::PrivateDesktop desktop("1280x800+0+0,1024x768+1280+16");
    theDesktop = &desktop;
    desktop.startWindowManager("openbox");
    for (const char* name : {"QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR"})
        ::unsetenv(name);
    for (const auto& [name, value] : desktop.environment())
        ::setenv(name.c_str(), value.c_str(), 1);
    ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
