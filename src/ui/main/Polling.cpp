// The switch and the interval of polling.
#include "ui/main/Polling.h"

#include "app/Handlers.h"
#include "core/TextNumbers.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui_frmMain_KeldoX2.h"

static constexpr std::int16_t defaultIntervalMs = 1000;

Polling::Polling(const Ui::frmMain_KeldoX2 &ui, QObject *window)
    : mnuEnablePolling(ui.mnuEnablePolling)
{
    tmrPollingTimer.setParent(window);
    tmrPollingTimer.setObjectName(QStringLiteral("tmrPollingTimer"));
    connect(mnuEnablePolling, &QAction::triggered, this, &Polling::mnuEnablePolling_Click);
    connect(ui.mnuPollingInterval, &QAction::triggered, this, &Polling::mnuPollingInterval_Click);
}

void Polling::restartIfChecked()
{
    if (mnuEnablePolling->isChecked())
        tmrPollingTimer.setEnabled(true);
}

void Polling::begin()
{
    tmrPollingTimer.setInterval(defaultIntervalMs);
    restartIfChecked();
}

// The entry has toggled before this runs.
void Polling::mnuEnablePolling_Click()
{
    const bool before = !mnuEnablePolling->isChecked();
    mnuEnablePolling->setChecked(before);
    handle("frmMain_KeldoX2.mnuEnablePolling_Click", [this, before] {
        stop();
        mnuEnablePolling->setChecked(!before);
        tmrPollingTimer.setEnabled(!before);
    });
}

// A number that is not negative becomes the interval. One beyond 32767 overflows: it is reported,
// and the interval stays as it was.
void Polling::mnuPollingInterval_Click()
{
    handle("frmMain_KeldoX2.mnuPollingInterval_Click", [this] {
        frmInputBox box;
        box.setResultType(frmInputBox::Number);
        box.setDefaultValue(QString::number(defaultIntervalMs));
        box.setText(QStringLiteral("Enter an interval (in milliseconds)"));
        box.showModal();
        if (box.answerStatus() != frmInputBox::Entered)
            return;
        const auto *number = std::get_if<double>(&box.result());
        const std::int16_t interval = toInt16(number ? *number : defaultIntervalMs);
        if (interval >= 0)
            tmrPollingTimer.setInterval(interval);
    });
}
