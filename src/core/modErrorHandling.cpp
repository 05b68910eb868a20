// The error report and the table of the program's error texts.
#include "core/modErrorHandling.h"

#include "core/EventLog.h"
#include "core/Message.h"
#include "core/Secrets.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

#include <QMap>
#include <QScopedValueRollback>

#include <new>

namespace {

// Some texts stand for several numbers, and 3005 and 3300 differ by one word only, both on purpose.
const QMap<int, const char *> &errorTexts()
{
    static const QMap<int, const char *> texts = {
        {2001, "unknown"},
        {3200, "user interrupted the program"},
        {3001, "cannot write to the GPIB"},
        {3002, "cannot write to the device"},
        {3003, "cannot write to the device"},
        {3004, "cannot write to the device"},
        {3005, "cannot read from the device"},
        {3006, "cannot read from the device"},
        {3007, "cannot read from the device"},
        {3300, "cannot read from device"},
        {3301, "instrument or DUT was not found"},
        {3020, "cannot write to the network analyzer"},
        {3022, "cannot write to the network analyzer"},
        {3023, "cannot write to the network analyzer"},
        {3021, "cannot read from the network analyzer"},
        {3050, "cannot write to serial port"},
        {3051, "cannot write to serial port"},
        {3150, "found blank or out of range data"},
        {3100, "trouble while trying to access the disk"},
        {3101, "no filename chosen"},
        {3170, "possible math error or bad numeric data"},
        {8000, "Operation not valid while the port is opened"},
        {8001, "Timeout value must be greater than zero"},
        {8002, "Invalid Port Number"},
        {8003, "internal error - Property available only at run time"},
        {8004, "internal error - Property is read only at runtime"},
        {8005, "Port already open"},
        {8006, "The device identifier is invalid or unsupported"},
        {8007, "The Device's baud rate is unsupported"},
        {8008, "The specified byte size is invalid"},
        {8009, "The default parameters are in error"},
        {8010, "The hardware is not available (locked by another device)"},
        {8011, "The function cannot allocate the queues"},
        {8012, "The device is not open"},
        {8013, "The device is already open"},
        {8014, "Could not enable comm notification"},
        {8015, "Could not set comm state"},
        {8016, "Could not set comm event mask"},
        {8017, "Unknown port error"},
        {8018, "Operation valid only when the port is open"},
        {8019, "The device is busy"},
        {8020, "Error reading comm device"},
        {8021, "Internal error retrieving device control block for the port"},
        {380, "Invalid property value"},
        {383, "internal error - Property is read-only"},
        {394, "internal error - Property is read-only"},
    };
    return texts;
}

// The pending error as a numbered one; every other exception gets the number that fits it best.
RunTimeError pendingError()
{
    try {
        throw;
    } catch (const RunTimeError &error) {
        return error;
    } catch (const std::bad_alloc &) {
        return RunTimeError(7);
    } catch (const std::exception &error) {
        return RunTimeError(51, QString::fromLocal8Bit(error.what()));
    } catch (...) {
        return RunTimeError(51);
    }
}

QString detailedText(const RunTimeError &error, const QString &text, const QString &source,
                     const QString &extraInfo)
{
    const QString lineBreak = QStringLiteral("\r\n");
    const QString libraryText = runTimeErrorText(error.number());
    QString account = QStringLiteral("Error number = %1").arg(error.number()) + lineBreak;
    account += QStringLiteral("ErrText = <") + text + QStringLiteral(">  ") + lineBreak;
    if (text != libraryText)
        account += QStringLiteral("Error$ = <") + libraryText + QStringLiteral(">") + lineBreak;
    if (text != error.description())
        account += QStringLiteral("Err.description = <") + error.description() +
                   QStringLiteral(">") + lineBreak;
    // No blank between the two, deliberately.
    account += QStringLiteral("Err.source = <") + error.source() + QStringLiteral(">from <") +
               source + QStringLiteral(">") + lineBreak;
    if (!extraInfo.isEmpty())
        account += QStringLiteral("extra info: <") + extraInfo + QStringLiteral(">") + lineBreak;
    return account;
}

QString shortText(const RunTimeError &error, const QString &text, const QString &source,
                  const QString &extraInfo)
{
    const QString lineBreak = QStringLiteral("\r\n");
    QString account =
        QStringLiteral("Error %1 (").arg(error.number()) + text + QStringLiteral(")") + lineBreak;
    if (error.description() != QLatin1String("Application-defined or object-defined error"))
        account += error.description() + lineBreak;
    account += QStringLiteral(" from ") + error.source() + lineBreak;
    if (error.source() != source && !source.isEmpty())
        account += QStringLiteral(" in ") + source + lineBreak;
    return account + extraInfo;
}

} // namespace

QString ErrText(int number)
{
    // The look-up takes 16 bits, so a number outside of them fails here and is never shown.
    const int listed = toInt16(number);
    const auto text = errorTexts().constFind(listed);
    if (text != errorTexts().cend())
        return QString::fromLatin1(*text);
    return QLatin1Char('\'') + runTimeErrorText(listed) + QLatin1Char('\'');
}

void ReportError(const QString &source, const QString &extraInfo)
{
    if (!std::current_exception())
        return;
    const RunTimeError error = pendingError();
    const QString text = ErrText(error.number());

    // A failing display or log file must not report into itself.
    static bool isReporting = false;
    const auto log = eventLog();
    if (!isReporting && log && log->hasDisplay()) {
        const QScopedValueRollback reporting(isReporting, true);
        try {
            logEvent(QStringLiteral("modErrorHandling"),
                     detailedText(error, text, source, extraInfo));
        } catch (...) { // NOLINT(bugprone-empty-catch)
            // The box below still tells.
        }
    }
    showMessage(secrets().masked(shortText(error, text, source, extraInfo)),
                MessageBox::Exclamation);
}
