#pragma once

#include "platform/Alerts.h"
#include "platform/qt/alerts/Accessory.h"

#include <QDialog>
#include <optional>

namespace platform::qt {

/// The window of one alert.
class AlertDialog final : public QDialog {
  public:
    /// `title` is the window's. `icon`, which is the window's too, is null for none. `accessory`,
    /// which may be null too, is shown below the texts and belongs to the dialog from then on.
    AlertDialog(const Alert& alert, const QString& title, const QPixmap& icon,
                Accessory* accessory);

    /// The index of the button; nothing when the dialog was ended by nobody's answer.
    std::optional<std::size_t> answer() const { return answered; }

    /// Escape, and a close through the window manager.
    void reject() override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* makeTexts(const Alert& alert);
    QWidget* makeButtons(const Alert& alert);
    void answerWith(std::size_t button);

    const std::size_t buttonCount;
    const Alert::Closing closing;
    Accessory* control;
    QWidget* defaultButton = nullptr;
    std::optional<std::size_t> answered;
};

} // namespace platform::qt
