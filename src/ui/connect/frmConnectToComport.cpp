// The connect-to-port dialog.
#include "ui/connect/frmConnectToComport.h"

#include "app/AppState.h"
#include "app/Progress.h"
#include "app/Words.h"
#include "app/modSearchPorts.h"
#include "core/ResumeNext.h"
#include "platform/Application.h"
#include "platform/EventQueue.h"
#include "ui_frmConnectToComport.h"
#include "widgets/PortBox.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTimer>

frmConnectToComport::frmConnectToComport(QWidget *owner)
    : QDialog(owner), m_ui(std::make_unique<Ui::frmConnectToComport>())
{
    m_ui->setupUi(this);
    // The entry that is missing from the list can still be typed; nothing is completed or added.
    m_ui->comboComPort->setCompleter(nullptr);
    m_ui->comboComPort->setInsertPolicy(QComboBox::NoInsert);
    m_ui->comboComPort->setEnabled(false);
    showPortDescriptions(*m_ui->comboComPort);
    addLines();
    connect(m_ui->comboComPort, &QComboBox::currentTextChanged, this,
            &frmConnectToComport::showPortsDevice);
    connect(&m_watcher, &PortWatcher::Changed, this, &frmConnectToComport::listAgain);
    connect(m_ui->OKButton, &QPushButton::clicked, this, &frmConnectToComport::OKButton_Click);
    connect(m_ui->CancelButton, &QPushButton::clicked, this,
            &frmConnectToComport::CancelButton_Click);
}

frmConnectToComport::~frmConnectToComport() = default;

QLabel *frmConnectToComport::makeLine(QWidget *parent, const QString &name)
{
    auto *line = new QLabel(parent);
    line->setObjectName(name);
    line->setTextFormat(Qt::PlainText);
    line->setWordWrap(true);
    line->hide();
    return line;
}

void frmConnectToComport::addLines()
{
    m_device = makeLine(this, QStringLiteral("lblDevice"));
    m_refused = makeLine(this, QStringLiteral("lblRefused"));
    m_letGo = makeLine(this, QStringLiteral("lblLetGo"));
    m_letGo->setText(
        tr("The connected units were let go, so that their ports can be listed. Cancel "
           "leaves them so: a search connects them again."));
    m_ui->columnLayout->insertWidget(1, m_device);
    m_ui->columnLayout->insertWidget(3, m_refused);
    m_ui->columnLayout->insertWidget(4, m_letGo);
}

static void tell(QLabel &line, const QString &text)
{
    line.setText(text);
    line.setAccessibleName(text);
    line.setVisible(!text.isEmpty());
}

void frmConnectToComport::showPortsDevice()
{
    tell(*m_device, portDescription(*m_ui->comboComPort));
}

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
            // Before the list is there, OK would close the dialog without a search.
            m_ui->OKButton->setEnabled(false);
            tell(*m_refused, {});
            m_letGo->setVisible(app().foundUnits > 0);
        },
        [] { InitializeStuff(); });
}

void frmConnectToComport::listPorts()
{
    list(PopulateComboBox);
}

void frmConnectToComport::list(QStringList (*fill)(QComboBox &ports))
{
    if (m_listing || m_connecting)
        return;
    const QScopedValueRollback listing(m_listing, true);
    m_ui->OKButton->setEnabled(false);
    const QStringList refused = fill(*m_ui->comboComPort);
    // Filled or failed: with a disabled list OK only closes the dialog, as it always did.
    m_ui->OKButton->setEnabled(true);
    tell(*m_refused, refused.join(QLatin1Char('\n')));
    showPortsDevice();
    if (!isVisible())
        return;
    m_watcher.start();
    if (!m_ui->comboComPort->isEnabled())
        return;
    m_ui->comboComPort->setFocus();
    m_ui->comboComPort->lineEdit()->selectAll(); // a typed number replaces it
}

// A port came or went. What was chosen or typed stays.
void frmConnectToComport::listAgain(int ports)
{
    if (m_connecting || m_listing || !isVisible())
        return;
    if (ports == 0) { // the operator sees it, and needs no report
        m_ui->comboComPort->clear();
        m_ui->comboComPort->setEnabled(false);
        return;
    }
    const QString typed = m_ui->comboComPort->currentText();
    list(PopulateComboBoxAgain);
    if (!typed.isEmpty() && m_ui->comboComPort->isEnabled())
        m_ui->comboComPort->setEditText(typed);
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
    if (m_connecting || m_listing)
        return;
    reportAndEnd("frmConnectToKnownComport.OKButton_Click", [this] {
        // A disabled list means that there is nothing to search on.
        if (!m_ui->comboComPort->isEnabled())
            return;
        m_connecting = true;
        m_watcher.stop();
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
        cancelRunning();
        return;
    }
    m_watcher.stop();
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
            if (m_searched)
                return;
            state.mainWindow->setStatusPanel(MainPanel::connection, Words::notConnected);
            state.channelsWindow()->showNotConnected();
        },
        [&] { state.mainWindow->bringUpToDate(); });
}
