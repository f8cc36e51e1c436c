#include "platform/qt/alerts/QtAlerts.h"

#include "platform/qt/alerts/AlertDialog.h"
#include "platform/qt/loop/QtApplication.h"

#include <QFile>
#include <QIcon>
#include <QWidget>

namespace platform::qt {

int QtAlerts::runModal(const Alert& alert) {
    constexpr int iconSize = 64;
    const QtRunLoop::ModalScope modal(runLoop);
    const auto iconFile = QString::fromStdString(iconPath);
    // The reader of pictures complains of a missing file itself.
    const QPixmap icon = QFile::exists(iconFile) ? QIcon(iconFile).pixmap(iconSize) : QPixmap();
    QWidget* const accessory = makeAccessory && !alert.accessory.empty()
                                   ? makeAccessory(alert.accessory, nullptr)
                                   : nullptr;
    AlertDialog dialog(alert, icon, accessory);
    dialog.setWindowTitle(QString::fromStdString(title));
    dialog.exec();
    const auto answer = dialog.answer();
    if (!answer) application.endSession();
    return *answer == 0 ? 1 : 0;
}

} // namespace platform::qt
