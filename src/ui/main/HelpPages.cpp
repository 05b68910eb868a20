// The pages that the Help menu opens.
#include "ui/main/HelpPages.h"

#include "core/Message.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

QString helpFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/" KELDOX_DOCUMENTS));
}

void showHelpPage(const QString &page, const QString &folder)
{
    const QString file = folder + QLatin1Char('/') + page;
    const QString shown = QDir::toNativeSeparators(file);
    if (!QFileInfo::exists(file))
        showMessage(QCoreApplication::translate("HelpPages", "This page is not installed."),
                    MessageBox::Information,
                    QCoreApplication::translate("HelpPages", "It was looked for at %1").arg(shown));
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        showMessage(
            QCoreApplication::translate("HelpPages", "No program was found that shows this page."),
            MessageBox::Information,
            QCoreApplication::translate("HelpPages", "It lies at %1").arg(shown));
}
