// The operation, about and contact windows: their captions and texts to the letter.
#include "support/Fixture.h"
#include "support/TestMain.h"

#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmCommonDialog.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmOperation.h"

#include <QtWidgets>

class TestInformationWindows : public QObject
{
    Q_OBJECT

private slots:
    void operationTexts_data();
    void operationTexts();
    void operationCaptionAndFont();
    void operationCloses_data();
    void operationCloses();
    void aboutTexts();
    void aboutShowsTheProgramsIcon();
    void aboutCloses();
    void contactSaysWhereToReport();
    void contactCloses();
    void noTextIsCutOff();
    void theFileDialogsHiddenWindowKeepsItsText();
};

static QString label(const QWidget &window, const char *name)
{
    const auto *found = window.findChild<QLabel *>(QString::fromLatin1(name));
    return found ? found->text() : QStringLiteral("(no such label)");
}

void TestInformationWindows::operationTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Label2") << "Tuning the KELDO-X Active Bandpass Filter";
    QTest::newRow("Label1") << "Frequency Control";
    QTest::newRow("Label3") << "Click and drag the slider to the desired RX Frequency.";
    QTest::newRow("Label4") << "Once the mouse button is released the KELDO-X tunes to the RX "
                               "Frequency displayed.";
    QTest::newRow("Label7") << "Type the desired frequency (in MHz) in the box below the slider. "
                               "and press the Enter key.";
    QTest::newRow("Label8") << "Single click the directional arrows at the ends of the slider bar "
                               "to change the frequency by one step.";
    QTest::newRow("Label9") << "Single click to the left or right of the slider, within the slide "
                               "bar, to move several steps.";
    QTest::newRow("Label12") << "If your exact RX Frequency is not an available option, choose the "
                                "next frequency up or down.";
    QTest::newRow("Label13") << "Test both channels as one may have better performance than the "
                                "other.";
    QTest::newRow("Label10") << "Status Indicators";
    QTest::newRow("Label11") << "Output Power Controls";
    for (const char *empty : {"Label5", "Label6", "Label20"})
        QTest::newRow(empty) << "";
    QTest::newRow("label21")
        << "Communication Status indicator: \r\ngreen = OK, \r\nred = this program did not get "
           "the expected response from the the Keldo-X. Check the data and power cables (on USB "
           "models, it may help to unplug the USB cable, wait a few seconds, reconnect it, and "
           "wait a few seconds for Windows to find the USB device), then select 'Connect to "
           "Keldo-X' from the menu. ";
    QTest::newRow("lblAGC")
        << "Use the AGC checkbox to select either AGC or manual attenuation.\r\nWhen AGC is "
           "selected, and the AGC attenuation is set to zero, the output power will be at the "
           "default value of -45 dBm.  You can lower this power by increasing the AGC "
           "attenuation, or raise it by decreasing the AGC attenuation.  When manual attenuation "
           "is selected and set to zero, the Keldo-X is at its highest output power. You can "
           "lower the power by increasing the manual attenuation. ";
}

void TestInformationWindows::operationTexts()
{
    auto *window = new frmOperation; // deletes itself when closed
    QTEST(label(*window, QTest::currentDataTag()), "text");
    window->close();
}

void TestInformationWindows::operationCaptionAndFont()
{
    frmOperation window;
    QCOMPARE(window.objectName(), QStringLiteral("frmOperation"));
    QCOMPARE(window.windowTitle(), QStringLiteral("   KELDO-X Control Program Operation"));
    const auto labels = window.findChildren<QLabel *>();
    QCOMPARE(labels.size(), 17);
    for (const QLabel *each : labels)
        QCOMPARE(each->font().family(), QStringLiteral("Arial"));
}

void TestInformationWindows::operationCloses_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("mouse") << false;
    QTest::newRow("Escape") << true;
}

void TestInformationWindows::operationCloses()
{
    QFETCH(const bool, byKey);
    const QPointer<frmOperation> window = new frmOperation;
    window->show();
    if (byKey)
        QTest::keyClick(window, Qt::Key_Escape);
    else
        QTest::mouseClick(window->findChild<QPushButton *>(QStringLiteral("cmdClose")),
                          Qt::LeftButton);
    QTRY_VERIFY(!window);
}

void TestInformationWindows::aboutTexts()
{
    const frmAbout window;
    QCOMPARE(window.objectName(), QStringLiteral("frmAbout"));
    QCOMPARE(window.windowTitle(), QStringLiteral("   About KELDO-X Control Program"));
    QCOMPARE(label(window, "lblTitle"), QStringLiteral("KELDO-X Control Program"));
    QCOMPARE(label(window, "lblDescription"),
             QStringLiteral("KELDO-X Series Active Bandpass Filter Tuning Software for Windows"));
    QCOMPARE(label(window, "lblVersion"), QStringLiteral("Version " KELDOX_VERSION));
    static const QRegularExpression version(QStringLiteral(R"(^Version \d+\.\d+\.\d+$)"));
    QVERIFY(version.match(label(window, "lblVersion")).hasMatch());
}

void TestInformationWindows::aboutShowsTheProgramsIcon()
{
    const QIcon before = QApplication::windowIcon();
    QPixmap red(256, 256);
    red.fill(Qt::red);
    QApplication::setWindowIcon(QIcon(red));
    const frmAbout window;
    QApplication::setWindowIcon(before);
    const QPixmap shown =
        window.findChild<QLabel *>(QStringLiteral("picIcon"))->pixmap(Qt::ReturnByValue);
    QVERIFY(!shown.isNull());
    QCOMPARE(shown.toImage().pixelColor(shown.width() / 2, shown.height() / 2), QColor(Qt::red));
}

void TestInformationWindows::aboutCloses()
{
    frmAbout window;
    window.show();
    QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(!window.isVisible());
}

void TestInformationWindows::contactSaysWhereToReport()
{
    const frmContact window;
    QCOMPARE(window.objectName(), QStringLiteral("frmContact"));
    QCOMPARE(window.windowTitle(), QStringLiteral("   KELDO-X Control Program Contact"));
    QVERIFY(label(window, "lblTitle").endsWith(QStringLiteral(KELDOX_VERSION)));
    QVERIFY(label(window, "lblProject").contains(QStringLiteral("docs/manual.md")));
    QVERIFY(label(window, "lblReport").contains(QStringLiteral("issue")));
    QVERIFY(QDir::fromNativeSeparators(label(window, "lblLog"))
                .endsWith(QStringLiteral("/keldo-x/Keldo-X.log")));
}

void TestInformationWindows::contactCloses()
{
    const QPointer<frmContact> window = new frmContact;
    window->show();
    QTest::mouseClick(window->findChild<QPushButton *>(QStringLiteral("OKButton")), Qt::LeftButton);
    QTRY_VERIFY(!window);
}

void TestInformationWindows::noTextIsCutOff()
{
    frmOperation operation;
    frmAbout about;
    frmContact contact;
    for (QDialog *window : {static_cast<QDialog *>(&operation), static_cast<QDialog *>(&about),
                            static_cast<QDialog *>(&contact)}) {
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        for (const QScrollBar *bar : window->findChildren<QScrollBar *>())
            QVERIFY2(!bar->isVisible(), qPrintable(window->objectName() + bar->objectName()));
        for (const QLabel *each : window->findChildren<QLabel *>()) {
            if (!each->isVisible() || each->text().isEmpty())
                continue;
            const int needed =
                each->wordWrap() ? each->heightForWidth(each->width()) : each->sizeHint().height();
            QVERIFY2(each->height() >= needed, qPrintable(each->objectName()));
            QVERIFY2(each->wordWrap() || each->width() >= each->sizeHint().width(),
                     qPrintable(each->objectName()));
        }
        window->close();
    }
}

void TestInformationWindows::theFileDialogsHiddenWindowKeepsItsText()
{
    const frmCommonDialog window;
    QCOMPARE(window.findChild<QLabel *>()->text(),
             QStringLiteral("this form exists just to hold  a common dialog"));
    QVERIFY(!window.isVisible());
}

KELDOX_TEST(TestInformationWindows)
#include "TestInformationWindows.moc"
