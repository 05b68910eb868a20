// File and folder dialogs over QFileDialog.
#include "widgets/FileChooser.h"

#include "platform/EventQueue.h"
#include "platform/TestHooks.h"
#include "widgets/DialogOwner.h"

#include <QFileDialog>
#include <QPointer>
#include <QScopeGuard>
#include <QStringList>

using ChooserAnswerer = std::function<std::optional<QString>(const FileChooser::Request &)>;

static ChooserAnswerer &answererSlot()
{
    static ChooserAnswerer slot;
    return slot;
}

void TestHooks::answerChoosers(ChooserAnswerer answerer)
{
    answererSlot() = std::move(answerer);
}

// File names have either case where the system tells them apart.
static QString bothCases(const QString &pattern)
{
    if (pattern == QLatin1String("*.*"))
        return QStringLiteral("*");
    return pattern.toLower() == pattern ? pattern : pattern + QLatin1Char(' ') + pattern.toLower();
}

QString FileChooser::toQtFilter(const QString &filter)
{
    const QStringList words = filter.split(QLatin1Char('|'));
    QStringList entries;
    for (qsizetype i = 0; i + 1 < words.size(); i += 2) {
        const QString name = words.at(i).section(QLatin1Char('('), 0, 0).trimmed();
        entries.append(name + QStringLiteral(" (") + bothCases(words.at(i + 1)) +
                       QStringLiteral(")"));
    }
    return entries.join(QStringLiteral(";;"));
}

std::optional<QString> FileChooser::choose(const Request &request)
{
    if (EventQueue::ending())
        return std::nullopt;
    if (answererSlot())
        return answererSlot()(request);

    // Its owner may go while it is shown, and takes it along.
    const QPointer<QFileDialog> dialog =
        new QFileDialog(dialogOwner(), request.title, request.folder);
    const auto dispose = qScopeGuard([&] { delete dialog; });
    if (request.mode == Mode::Folder) {
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        dialog->setNameFilter(toQtFilter(request.filter));
        dialog->setAcceptMode(request.mode == Mode::Save ? QFileDialog::AcceptSave
                                                         : QFileDialog::AcceptOpen);
        dialog->setFileMode(request.mode == Mode::Save ? QFileDialog::AnyFile
                                                       : QFileDialog::ExistingFile);
        dialog->setDefaultSuffix(request.defaultExtension);
    }
    if (dialog->exec() != QDialog::Accepted || !dialog || dialog->selectedFiles().isEmpty())
        return std::nullopt;
    return dialog->selectedFiles().first();
}
