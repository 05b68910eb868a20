// Searching the display.
#include "ui/monitor/FindStrip.h"

#include "ui_FindStrip.h"

#include <QKeyEvent>
#include <QPlainTextEdit>

// More places than anyone looks at; drawing each costs time.
static constexpr int mostHighlights = 500;

FindStrip::FindStrip(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::FindStrip>())
{
    m_ui->setupUi(this);
    hide();
    connect(m_ui->txtFind, &QLineEdit::textChanged, this, &FindStrip::highlight);
    connect(m_ui->txtFind, &QLineEdit::textEdited, this, &FindStrip::searchAsTyped);
    connect(m_ui->cmdFindNext, &QPushButton::clicked, this, &FindStrip::findNext);
    connect(m_ui->cmdFindPrevious, &QPushButton::clicked, this, &FindStrip::findPrevious);
    connect(m_ui->cmdFindClose, &QPushButton::clicked, this, &FindStrip::closeStrip);
}

FindStrip::~FindStrip() = default;

void FindStrip::open()
{
    connect(m_pane, &QPlainTextEdit::textChanged, this, &FindStrip::highlight,
            Qt::UniqueConnection);
    const QString selected = m_pane->textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        m_ui->txtFind->setText(selected);
    m_ui->lblFound->clear();
    show();
    highlight();
    m_ui->txtFind->setFocus();
    m_ui->txtFind->selectAll();
}

void FindStrip::closeStrip()
{
    hide();
    m_pane->setFocus();
}

void FindStrip::hideEvent(QHideEvent *event)
{
    if (m_pane && isHidden()) { // and not with its window
        disconnect(m_pane, &QPlainTextEdit::textChanged, this, &FindStrip::highlight);
        m_pane->setExtraSelections({});
    }
    QWidget::hideEvent(event);
}

void FindStrip::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        closeStrip();
    else if (isEnter && event->modifiers().testFlag(Qt::ShiftModifier))
        findPrevious();
    else if (isEnter)
        findNext();
    else
        QWidget::keyPressEvent(event);
}

// A longer text may still stand where the shorter one was found.
void FindStrip::searchAsTyped()
{
    QTextCursor from = m_pane->textCursor();
    from.setPosition(from.selectionStart());
    m_pane->setTextCursor(from);
    search({});
}

void FindStrip::findNext()
{
    search({});
}

void FindStrip::findPrevious()
{
    search(QTextDocument::FindBackward);
}

void FindStrip::search(QTextDocument::FindFlags direction)
{
    const QString text = m_ui->txtFind->text();
    QTextDocument *const document = m_pane->document();
    QTextCursor place = document->find(text, m_pane->textCursor(), direction);
    QString said;
    if (place.isNull() && !text.isEmpty()) {
        const bool isBack = direction.testFlag(QTextDocument::FindBackward);
        QTextCursor edge(document);
        edge.movePosition(isBack ? QTextCursor::End : QTextCursor::Start);
        place = document->find(text, edge, direction);
        said = isBack ? tr("from the end") : tr("from the beginning");
        if (place.isNull())
            said = tr("not found");
    }
    if (!place.isNull())
        m_pane->setTextCursor(place);
    m_ui->lblFound->setText(said);
}

void FindStrip::highlight()
{
    QList<QTextEdit::ExtraSelection> places;
    const QString text = m_ui->txtFind->text();
    QTextCursor place(m_pane->document());
    while (!text.isEmpty() && places.size() < mostHighlights) {
        place = m_pane->document()->find(text, place);
        if (place.isNull())
            break;
        QTextEdit::ExtraSelection shown;
        shown.cursor = place;
        shown.format.setBackground(Qt::yellow);
        shown.format.setForeground(Qt::black);
        places.append(shown);
    }
    m_pane->setExtraSelections(places);
}
