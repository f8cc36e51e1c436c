#include "platform/qt/web/WebModule.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QOpenGLContext>
#include <utility>

// Exported by the toolkit, but declared in no public header.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();

namespace platform::qt {

void WebModule::cookies(std::function<void(const std::vector<Cookie>&)> done) {
    if (load()) engine->cookies(std::move(done));
}

void WebModule::setCookie(const Cookie& cookie) {
    if (load()) engine->setCookie(cookie);
}

void WebModule::removeAllData() {
    if (load()) engine->removeAllData();
}

std::unique_ptr<WebWindow> WebModule::open(const WebWindowDescription& description) {
    return load() ? engine->open(description) : nullptr;
}

bool WebModule::load() {
    if (engine) return true;
    // The engine refuses to be loaded late where nobody has made a context for it to share. It
    // draws by software, so one that was never created will do; a real one would load the graphics
    // driver at each start of the program.
    if (qt_gl_global_share_context() == nullptr)
        qt_gl_set_global_share_context(new QOpenGLContext(QCoreApplication::instance()));
    QLibrary library(QString::fromStdString(file));
    if (const auto create = reinterpret_cast<Web* (*)()>(library.resolve("createWebEngine"))) {
        engine.reset(create());
        return true;
    }
    if (!std::exchange(told, true))
        log.write("web pages need an engine that is not here: install libqt6webenginewidgets6, and "
                  "the program's web-engine.so, which is built where qt6-webengine-dev is (" +
                  library.errorString().toStdString() + ")");
    return false;
}

} // namespace platform::qt
