// The numbered run-time error and the library's texts for the numbers that have one.
#include "platform/RunTimeError.h"

#include "platform/Application.h"

#include <QMap>

RunTimeError::RunTimeError(int number, QString description, QString source)
    : m_number(number),
      m_description(description.isEmpty() ? runTimeErrorText(number) : std::move(description)),
      m_source(source.isEmpty() ? applicationTitle() : std::move(source)),
      m_what(m_description.toUtf8())
{
}

QString runTimeErrorText(int number)
{
    static const QMap<int, const char *> texts = {
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {7, "Out of memory"},
        {9, "Subscript out of range"},
        {11, "Division by zero"},
        {13, "Type mismatch"},
        {51, "Internal error"},
        {52, "Bad file name or number"},
        {53, "File not found"},
        {54, "Bad file mode"},
        {55, "File already open"},
        {57, "Device I/O error"},
        {61, "Disk full"},
        {62, "Input past end of file"},
        {70, "Permission denied"},
        {71, "Disk not ready"},
        {75, "Path/File access error"},
        {76, "Path not found"},
        {91, "Object variable not set"},
        {380, "Invalid property value"},
        {383, "Property is read-only"},
        {394, "Property is write-only"},
    };
    return QString::fromLatin1(texts.value(number, "Application-defined or object-defined error"));
}
