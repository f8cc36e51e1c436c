#include "platform/qt/alerts/QtAlerts.h"

#include "platform/qt/alerts/AlertDialog.h"
#include "platform/qt/loop/QtApplication.h"

#include <QGuiApplication>
#include <QWidget>

namespace platform::qt {

int QtAlerts::runModal(const Alert& alert) {
    constexpr int iconSize = 64;
    const QtRunLoop::ModalScope modal(runLoop);
    const qreal scale = qGuiApp->devicePixelRatio();
    auto icon = QPixmap::fromImage(pictures.drawn(iconName, qRound(iconSize * scale)));
    icon.setDevicePixelRatio(scale);
    QWidget* const accessory =
        alert.accessory.empty() ? nullptr : makeAccessory(alert.accessory, nullptr);
    AlertDialog dialog(alert, icon, accessory);
    dialog.setWindowTitle(QString::fromStdString(title));
    dialog.exec();
    const auto answer = dialog.answer();
    if (!answer) application.endSession();
    return *answer == 0 ? defaultButton : alternateButton;
}

} // namespace platform::qt
