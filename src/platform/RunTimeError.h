// The one exception type of the program: a numbered run-time error.
#pragma once

#include <QString>

#include <exception>

namespace ErrorNumber {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileName = 52;
inline constexpr int FileAlreadyOpen = 55;
inline constexpr int DeviceFailure = 57;
inline constexpr int InputPastEnd = 62;
inline constexpr int FileAccess = 75;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidPropertyValue = 380;
// The serial control's own numbers.
inline constexpr int InvalidWhileOpen = 8000;
inline constexpr int InvalidPortNumber = 8002;
inline constexpr int PortAlreadyOpen = 8005;
inline constexpr int DeviceNotOpen = 8012;
inline constexpr int CommStateNotSet = 8015;
inline constexpr int ValidOnlyWhenOpen = 8018;
inline constexpr int DeviceBusy = 8019;
inline constexpr int ReadFailed = 8020;
} // namespace ErrorNumber

class RunTimeError : public std::exception
{
public:
    // An empty description takes the library's text for the number, an empty source the
    // application's title.
    explicit RunTimeError(int number, QString description = {}, QString source = {});

    int number() const { return m_number; }
    QString description() const { return m_description; }
    QString source() const { return m_source; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

// The library's own text for an error number; numbers without one give
// "Application-defined or object-defined error".
QString runTimeErrorText(int number);
