#include "platform/qt/alerts/QtAlerts.h"

#include "platform/qt/alerts/AlertDialog.h"
#include "platform/qt/loop/QtApplication.h"

#include <QApplication>

namespace platform::qt {

int QtAlerts::runModal(const Alert& alert) {
    constexpr int iconSize = 64;
    const QtRunLoop::ModalScope modal(runLoop);
    const qreal scale = qGuiApp->devicePixelRatio();
    auto icon = QPixmap::fromImage(pictures.drawn(iconName, qRound(iconSize * scale)));
    icon.setDevicePixelRatio(scale);
    Accessory* const accessory =
        alert.accessory.empty() ? nullptr : makeAccessory(alert.accessory, nullptr);
    AlertDialog dialog(alert, QString::fromStdString(title), icon, accessory);
    dialog.exec();
    const auto answer = dialog.answer();
    if (!answer) application.endSession();
    return *answer == 0 ? defaultButton : alternateButton;
}

bool QtAlerts::bringToFront() {
    QWidget* const alert = QApplication::activeModalWidget();
    if (alert == nullptr) return false;
    if (alert->isMinimized()) alert->showNormal();
    alert->raise();
    alert->activateWindow();
    return true;
}

} // namespace platform::qt
