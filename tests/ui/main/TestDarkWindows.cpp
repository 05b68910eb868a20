// The windows under a dark palette: what is coloured or painted by the program can be read there
// too. With KELDOX_PICTURES set to a folder it leaves the pictures there.
#include "MainBench.h"

#include "ui/connect/frmConnectToComport.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmOperation.h"

class TestDarkWindows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void presetsCanBeRead_data();
    void presetsCanBeRead();
    void lightsCanBeSeen();
    void textsCanBeRead();
    void tabFollowsTheEyeInDialogs();

private:
    QPalette m_usual;
};

static QPalette darkPalette()
{
    QPalette dark(QColor(60, 60, 64), QColor(45, 45, 48));
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(120, 120, 120));
    return dark;
}

void TestDarkWindows::init()
{
    m_usual = QApplication::palette();
    QApplication::setPalette(darkPalette());
}

void TestDarkWindows::cleanup()
{
    QApplication::setPalette(m_usual);
}

static double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

// Of the brightest and the darkest place inside the control's edge.
static double contrastWithin(QWidget &control, int edge)
{
    const QImage picture = control.grab().toImage();
    double darkest = 1;
    double brightest = 0;
    for (int y = edge; y < picture.height() - edge; ++y)
        for (int x = edge; x < picture.width() - edge; ++x) {
            const double here = luminance(picture.pixelColor(x, y));
            darkest = std::min(darkest, here);
            brightest = std::max(brightest, here);
        }
    return (brightest + 0.05) / (darkest + 0.05);
}

static void savePicture(QWidget &window, const QString &name)
{
    const QString folder = qEnvironmentVariable("KELDOX_PICTURES");
    if (!folder.isEmpty())
        window.grab().save(folder + QStringLiteral("/dark-") + name + QStringLiteral(".png"));
}

void TestDarkWindows::presetsCanBeRead_data()
{
    QTest::addColumn<bool>("setMode");
    QTest::newRow("recalled") << false;
    QTest::newRow("set") << true;
}

void TestDarkWindows::presetsCanBeRead()
{
    QFETCH(const bool, setMode);
    ConnectedBench bench;
    app().presets[4]->setValue(106.5);
    if (setMode)
        bench.find<QPushButton>("cmdSetPresets")->click();
    QTest::qWait(1);
    savePicture(*bench.window, setMode ? QStringLiteral("set-mode") : QStringLiteral("main"));
    for (const char *name : {"cmdSetDUTFreq_4", "cmdSetPresets"})
        QVERIFY2(contrastWithin(*bench.find<QPushButton>(name), 6) >= 4.5, name);
}

void TestDarkWindows::lightsCanBeSeen()
{
    ConnectedBench bench;
    auto *light = bench.find<IndicatorLight>("ShapeStatusLight");
    for (const QColor &color : {IndicatorLight::green, IndicatorLight::red, IndicatorLight::amber,
                                IndicatorLight::buttonFace}) {
        light->setFillColor(color, QStringLiteral("x"));
        QVERIFY2(contrastWithin(*light, 0) >= 3, qPrintable(color.name()));
    }
}

void TestDarkWindows::textsCanBeRead()
{
    ConnectedBench bench;
    for (const char *name : {"lblCurrentChannel", "lblPressEnter", "lblMHz", "StatusBar_2"})
        QVERIFY2(contrastWithin(*bench.find<QLabel>(name), 2) >= 4.5, name);
    QVERIFY(contrastWithin(*bench.frequency(), 4) >= 4.5);
    frmOperation operation;
    frmAbout about;
    frmContact contact;
    frmConnectToComport connectDialog;
    for (QDialog *dialog :
         {static_cast<QDialog *>(&operation), static_cast<QDialog *>(&about),
          static_cast<QDialog *>(&contact), static_cast<QDialog *>(&connectDialog)}) {
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
        savePicture(*dialog, dialog->objectName());
        for (QLabel *label : dialog->findChildren<QLabel *>())
            if (label->isVisible() && !label->text().isEmpty()) {
                QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
                QVERIFY2(contrastWithin(*label, 0) >= 4.5, qPrintable(label->objectName()));
            }
        dialog->close();
    }
}

// Down, and to the right within a line.
void TestDarkWindows::tabFollowsTheEyeInDialogs()
{
    const Fixture fixture;
    frmConnectToComport connectDialog;
    connectDialog.comboComPort().setEnabled(true);
    connectDialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&connectDialog));
    connectDialog.comboComPort().setFocus();
    QStringList order;
    for (int i = 0; i < 4; ++i) {
        order.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order.join(QLatin1Char(' ')),
             QStringLiteral("comboComPort chkTovinR OKButton CancelButton"));
    QPoint before;
    for (const QString &name : order) {
        const auto *control = connectDialog.findChild<QWidget *>(name);
        const QPoint place = control->mapTo(&connectDialog, control->rect().center());
        QVERIFY2(place.y() > before.y() + 4 || place.x() > before.x(), qPrintable(name));
        before = place;
    }
}

KELDOX_TEST(TestDarkWindows)
#include "TestDarkWindows.moc"
