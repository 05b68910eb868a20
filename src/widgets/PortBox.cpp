// Port numbers with their devices.
#include "widgets/PortBox.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QStyledItemDelegate>

namespace {

constexpr int descriptionRole = Qt::UserRole;

class PortDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QString description = index.data(descriptionRole).toString();
        if (!description.isEmpty())
            option->text += QStringLiteral("   ") + description;
    }
};

} // namespace

void showPortDescriptions(QComboBox &box)
{
    box.setItemDelegate(new PortDelegate(&box));
    // The list is as wide as it needs, however narrow the box.
    box.view()->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
}

void addPort(QComboBox &box, const QString &number, const QString &description)
{
    box.addItem(number);
    const int entry = box.count() - 1;
    box.setItemData(entry, description, descriptionRole);
    box.setItemData(entry, number.trimmed() + QStringLiteral(", ") + description,
                    Qt::AccessibleTextRole);
    // A name from outside is never read as markup.
    box.setItemData(entry, description.toHtmlEscaped(), Qt::ToolTipRole);
    const int wanted = box.view()->sizeHintForColumn(0) + box.view()->frameWidth() * 2 +
                       box.fontMetrics().averageCharWidth() * 3;
    if (box.view()->minimumWidth() < wanted)
        box.view()->setMinimumWidth(wanted);
}

QString portDescription(const QComboBox &box)
{
    const QString text = box.currentText().trimmed();
    for (int entry = 0; entry < box.count(); ++entry)
        if (box.itemText(entry).trimmed() == text)
            return box.itemData(entry, descriptionRole).toString();
    return {};
}
