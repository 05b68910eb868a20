// Texts from outside where Qt would take them for rich text, or a "&" for a mnemonic.
#pragma once

#include <QString>
#include <QTextDocument>

// For a tool tip: Qt shows one as rich text when it looks like it.
inline QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

// For the caption of a button.
inline QString plainCaption(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}
