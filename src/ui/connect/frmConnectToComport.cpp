// The connect-to-port dialog.
#include "ui/connect/frmConnectToComport.h"

#include "app/AppState.h"
#include "app/modSearchPorts.h"
#include "core/ResumeNext.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "ui_frmConnectToComport.h"

#include <QApplication>
#include <QLineEdit>
#include <QTimer>

frmConnectToComport::frmConnectToComport(QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::frmConnectToComport>())
{
    m_ui->setupUi(this);
    // The entry that is missing from the list can still be typed; nothing is completed or added.
    m_ui->comboComPort->setCompleter(nullptr);
    m_ui->comboComPort->setInsertPolicy(QComboBox::NoInsert);
    m_ui->comboComPort->setEnabled(false);
    connect(m_ui->OKButton, &QPushButton::clicked, this, &frmConnectToComport::OKButton_Click);
    connect(m_ui->CancelButton, &QPushButton::clicked, this,
            &frmConnectToComport::CancelButton_Click);
}

frmConnectToComport::~frmConnectToComport() = default;

QComboBox &frmConnectToComport::comboComPort()
{
    return *m_ui->comboComPort;
}

void frmConnectToComport::showModal()
{
    if (EventQueue::ending())
        return;
    Form_Load();
    // The dialog is on the screen while the ports are tried, one after the other.
    QTimer::singleShot(0, this, &frmConnectToComport::listPorts);
    exec();
    finish();
}

void frmConnectToComport::Form_Load()
{
    m_searched = false;
    resumeNext(
        "frmConnectToKnownComport.Form_Load",
        [this] {
            setWindowIcon(QApplication::windowIcon());
            setWindowTitle(applicationTitle());
            QFont arial = font();
            arial.setFamily(QStringLiteral("Arial"));
            setFont(arial);
        },
        [this] {
            setControlsEnabled(true); // an earlier connection left them disabled
            m_ui->chkTovinR->setChecked(false);
            m_ui->comboComPort->clear();
            m_ui->comboComPort->setEnabled(false);
        },
        [] { InitializeStuff(); });
}

void frmConnectToComport::listPorts()
{
    PopulateComboBox(*m_ui->comboComPort);
    if (!m_ui->comboComPort->isEnabled())
        return;
    m_ui->comboComPort->setFocus();
    m_ui->comboComPort->lineEdit()->selectAll(); // a typed number replaces it
}

// The port's text goes to the search as it stands, with the blank of the list's entries.
void frmConnectToComport::Connect()
{
    reportAndEnd(
        "frmConnectToKnownComport",
        [this] {
            AppState &state = app();
            state.searchFinished = false;
            state.mainWindow->stopPolling();
            const QString port = m_ui->comboComPort->currentText();
            m_searched = true;
            SearchPorts(m_ui->chkTovinR->isChecked() ? 2 : 3, port);
        },
        "Connect");
    app().searchFinished = true;
}

void frmConnectToComport::OKButton_Click()
{
    if (m_connecting)
        return;
    reportAndEnd("frmConnectToKnownComport.OKButton_Click", [this] {
        // A disabled list means that there is nothing to search on.
        if (!m_ui->comboComPort->isEnabled())
            return;
        m_connecting = true;
        setControlsEnabled(false);
        Connect();
    });
    m_connecting = false;
    accept();
}

void frmConnectToComport::CancelButton_Click()
{
    reject();
}

// While it connects the dialog stays until the search has ended, which is at once.
void frmConnectToComport::reject()
{
    if (m_connecting && !EventQueue::ending()) {
        if (const auto search = app().search)
            search->cancel();
        return;
    }
    QDialog::reject();
}

void frmConnectToComport::setControlsEnabled(bool enabled)
{
    m_ui->comboComPort->setEnabled(enabled);
    m_ui->chkTovinR->setEnabled(enabled);
    m_ui->OKButton->setEnabled(enabled);
}

// However the dialog ended: no search runs, and the windows say what is true.
void frmConnectToComport::finish()
{
    if (EventQueue::ending())
        return;
    AppState &state = app();
    state.searchFinished = true;
    resumeNext(
        "frmConnectToKnownComport", [&] { state.channelsWindow()->setProgressVisible(false); },
        [&] {
            // Connecting, or finding nothing, has said how that went.
            if (!m_searched)
                state.mainWindow->setStatusPanel(1, QStringLiteral("NOT CONNECTED"));
        },
        [&] { state.mainWindow->bringUpToDate(); });
}
