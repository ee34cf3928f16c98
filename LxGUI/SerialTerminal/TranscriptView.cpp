#include "LxGUI/SerialTerminal/TranscriptView.h"

#include <QtCore/QTimerEvent>
#include <QtGui/QAccessible>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QFontMetricsF>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <cmath>

namespace
{

constexpr int Margin = 4;
constexpr int HintRows = 16;
constexpr int LeastRows = 4;

}  // namespace

TranscriptView::TranscriptView(QWidget *aParent) : QAbstractScrollArea(aParent)
{
    InstallTranscriptAccessibility();
    QFont font(QStringLiteral("Monospace"));
    font.setStyleHint(QFont::Monospace);
    font.setKerning(false);
    setFont(font);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // so that the width for the text never changes
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
}

// The text

void TranscriptView::Apply(const TranscriptUpdate &aUpdate)
{
    if (aUpdate.mRemoveFront == 0 && aUpdate.mRemoveBack == 0 && aUpdate.mText.isEmpty()) {
        return;
    }
    mText.remove(0, aUpdate.mRemoveFront);
    mText.chop(aUpdate.mRemoveBack);
    for (qsizetype *position : {&mAnchor, &mCursor}) {
        *position = std::clamp<qsizetype>(*position - aUpdate.mRemoveFront, 0, mText.size());
    }
    mText.append(aUpdate.mText);
    OnTextChanged();
}

void TranscriptView::AppendText(const QString &aText)
{
    Apply({0, 0, aText});
}

void TranscriptView::Clear()
{
    mText.clear();
    mAnchor = 0;
    mCursor = 0;
    OnTextChanged();
}

void TranscriptView::OnTextChanged()
{
    mRowsValid = false;
    if (mShowTimer.isActive()) {
        return;
    }
    const qint64 wait = mSinceShown.isValid() ? FrameTime - mSinceShown.elapsed() : 0;
    mShowTimer.start(static_cast<int>(std::max<qint64>(wait, 0)), this);
}

void TranscriptView::timerEvent(QTimerEvent *aEvent)
{
    if (aEvent->timerId() == mShowTimer.timerId()) {
        mShowTimer.stop();
        ShowEnd();
    }
    else {
        QAbstractScrollArea::timerEvent(aEvent);
    }
}

void TranscriptView::ShowEnd()
{
    ScrollToEnd();
    viewport()->update();
    mSinceShown.start();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::TextUpdated);
        QAccessible::updateAccessibility(&event);
    }
}

void TranscriptView::ScrollToEnd()
{
    UpdateScrollBar();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

// Rows

double TranscriptView::ColumnWidth() const
{
    return std::max(1.0, QFontMetricsF(font()).horizontalAdvance(QLatin1Char('0')));
}

int TranscriptView::VisibleRows() const
{
    return std::max(1, (viewport()->height() - 2 * Margin) / fontMetrics().lineSpacing());
}

void TranscriptView::EnsureRows()
{
    if (!mRowsValid) {
        const double columns = std::floor((viewport()->width() - 2 * Margin) / ColumnWidth());
        mRows = LayOutRows(mText, std::max(1, static_cast<int>(columns)));
        mRowsValid = true;
    }
}

void TranscriptView::UpdateScrollBar()
{
    EnsureRows();
    const int rows = VisibleRows();
    verticalScrollBar()->setPageStep(rows);
    verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(mRows.size()) - rows));
}

size_t TranscriptView::RowOf(qsizetype aIndex) const
{
    const auto next =
        std::upper_bound(mRows.begin(), mRows.end(), aIndex,
                         [](qsizetype aValue, const TranscriptRow &aRow) { return aValue < aRow.mStart; });
    return next == mRows.begin() ? 0 : static_cast<size_t>(next - mRows.begin() - 1);
}

QStringView TranscriptView::RowView(const TranscriptRow &aRow) const
{
    return QStringView(mText).mid(aRow.mStart, aRow.mLength);
}

qsizetype TranscriptView::IndexAtPoint(const QPoint &aPoint)
{
    EnsureRows();
    const double line = std::floor(static_cast<double>(aPoint.y() - Margin) / fontMetrics().lineSpacing());
    const double row = line + verticalScrollBar()->value();
    if (row < 0) {
        return 0;
    }
    if (row >= static_cast<double>(mRows.size())) {
        return mText.size();
    }
    const TranscriptRow &found = mRows[static_cast<size_t>(row)];
    return found.mStart + IndexAt(RowView(found), (aPoint.x() - Margin) / ColumnWidth());
}

QRect TranscriptView::RectOfIndex(qsizetype aIndex)
{
    EnsureRows();
    const size_t row = RowOf(aIndex);
    const int height = fontMetrics().lineSpacing();
    const int column = ColumnOf(RowView(mRows[row]), aIndex - mRows[row].mStart);
    return QRect(static_cast<int>(Margin + column * ColumnWidth()),
                 Margin + (static_cast<int>(row) - verticalScrollBar()->value()) * height,
                 static_cast<int>(std::ceil(ColumnWidth())), height);
}

// Painting

void TranscriptView::paintEvent(QPaintEvent * /*aEvent*/)
{
    if (mShowTimer.isActive())
    {  // The text has changed again: its end is shown now, and all of it when its time comes.
        mPainting = true;
        ScrollToEnd();
        mPainting = false;
    }
    EnsureRows();
    QPainter painter(viewport());
    painter.setLayoutDirection(Qt::LeftToRight);  // the order of bytes
    painter.setFont(font());
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::Text));
    const int height = fontMetrics().lineSpacing();
    const double width = ColumnWidth();
    const auto first = static_cast<size_t>(std::max(0, verticalScrollBar()->value()));
    const size_t end = std::min(mRows.size(), first + static_cast<size_t>(VisibleRows()) + 1);
    int y = Margin;
    for (size_t i = first; i < end; ++i, y += height) {
        const TranscriptRow &row = mRows[i];
        const QStringView view = RowView(row);
        const QString text = RowText(view);
        painter.drawText(QPointF(Margin, y + fontMetrics().ascent()), text);
        const qsizetype from = std::max(SelectionStart(), row.mStart);
        const qsizetype to = std::min(SelectionEnd(), row.End());
        if (from < to) {
            const double left = Margin + ColumnOf(view, from - row.mStart) * width;
            const QRectF marked(left, y, Margin + ColumnOf(view, to - row.mStart) * width - left, height);
            painter.save();
            painter.fillRect(marked, palette().color(QPalette::Highlight));
            painter.setClipRect(marked);
            painter.setPen(palette().color(QPalette::HighlightedText));
            painter.drawText(QPointF(Margin, y + fontMetrics().ascent()), text);
            painter.restore();
        }
    }
}

void TranscriptView::scrollContentsBy(int aX, int aY)
{
    if (!mPainting) {  // or a text that grows all the time would be painted without end
        QAbstractScrollArea::scrollContentsBy(aX, aY);
    }
}

void TranscriptView::resizeEvent(QResizeEvent *aEvent)
{
    QAbstractScrollArea::resizeEvent(aEvent);
    const bool atEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    mRowsValid = false;
    UpdateScrollBar();
    if (atEnd) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }
}

void TranscriptView::changeEvent(QEvent *aEvent)
{
    QAbstractScrollArea::changeEvent(aEvent);
    if (aEvent->type() == QEvent::FontChange) {
        mRowsValid = false;
        UpdateScrollBar();
    }
}

QSize TranscriptView::sizeHint() const
{
    const int margins = 2 * (Margin + frameWidth());
    const double width = std::ceil((TranscriptFormatter::UnfinishedHybridLine + 1) * ColumnWidth());
    return QSize(static_cast<int>(width) + margins + verticalScrollBar()->sizeHint().width(),
                 HintRows * fontMetrics().lineSpacing() + margins);
}

QSize TranscriptView::minimumSizeHint() const
{
    const int hidden = (HintRows - LeastRows) * fontMetrics().lineSpacing();
    return QAbstractScrollArea::minimumSizeHint().expandedTo(QSize(0, sizeHint().height() - hidden));
}

// The selection

qsizetype TranscriptView::SelectionStart() const
{
    return std::min(mAnchor, mCursor);
}

qsizetype TranscriptView::SelectionEnd() const
{
    return std::max(mAnchor, mCursor);
}

void TranscriptView::Select(qsizetype aStart, qsizetype aEnd)
{
    mAnchor = std::clamp<qsizetype>(aStart, 0, mText.size());
    mCursor = std::clamp<qsizetype>(aEnd, 0, mText.size());
    viewport()->update();
}

QString TranscriptView::SelectedText() const
{
    QString text = mText.mid(SelectionStart(), SelectionEnd() - SelectionStart());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

void TranscriptView::PutSelectionIntoClipboard(bool aPrimary) const
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (mAnchor != mCursor && (!aPrimary || clipboard->supportsSelection())) {
        clipboard->setText(SelectedText(), aPrimary ? QClipboard::Selection : QClipboard::Clipboard);
    }
}

void TranscriptView::OnCopy()
{
    PutSelectionIntoClipboard(false);
}

void TranscriptView::OnSelectAll()
{
    Select(0, mText.size());
}

void TranscriptView::keyPressEvent(QKeyEvent *aEvent)
{
    if (aEvent->matches(QKeySequence::Copy)) {
        OnCopy();
    }
    else if (aEvent->matches(QKeySequence::SelectAll)) {
        OnSelectAll();
    }
    else if (aEvent->key() == Qt::Key_Home) {
        verticalScrollBar()->setValue(0);
    }
    else if (aEvent->key() == Qt::Key_End) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }
    else {
        QAbstractScrollArea::keyPressEvent(aEvent);
    }
}

void TranscriptView::mousePressEvent(QMouseEvent *aEvent)
{
    if (aEvent->button() == Qt::LeftButton) {
        const qsizetype index = IndexAtPoint(aEvent->pos());
        Select(aEvent->modifiers() & Qt::ShiftModifier ? mAnchor : index, index);
    }
}

void TranscriptView::mouseMoveEvent(QMouseEvent *aEvent)
{
    if (!(aEvent->buttons() & Qt::LeftButton)) {
        return;
    }
    if (aEvent->pos().y() < 0 || aEvent->pos().y() >= viewport()->height()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + (aEvent->pos().y() < 0 ? -1 : 1));
    }
    Select(mAnchor, IndexAtPoint(aEvent->pos()));
}

void TranscriptView::mouseReleaseEvent(QMouseEvent *aEvent)
{
    if (aEvent->button() == Qt::LeftButton) {
        PutSelectionIntoClipboard(true);
    }
}

void TranscriptView::mouseDoubleClickEvent(QMouseEvent *aEvent)
{
    const qsizetype index = IndexAtPoint(aEvent->pos());
    qsizetype start = index;
    qsizetype end = index;
    while (start > 0 && !mText[start - 1].isSpace()) {
        --start;
    }
    while (end < mText.size() && !mText[end].isSpace()) {
        ++end;
    }
    Select(start, end);
}

void TranscriptView::contextMenuEvent(QContextMenuEvent *aEvent)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *copy = menu->addAction(tr("Copy"), this, &TranscriptView::OnCopy);
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(mAnchor != mCursor);
    QAction *all = menu->addAction(tr("Select All"), this, &TranscriptView::OnSelectAll);
    all->setShortcut(QKeySequence::SelectAll);
    all->setEnabled(!mText.isEmpty());
    menu->popup(aEvent->globalPos());
}
