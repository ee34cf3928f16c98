#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QElapsedTimer>
#include <QtWidgets/QAbstractScrollArea>
#include <vector>

#include "LxGUI/SerialTerminal/TranscriptFormatter.h"
#include "LxGUI/SerialTerminal/TranscriptRows.h"

/// A read-only text in a font of fixed width that grows at its end and shrinks at its beginning, quickly: a change
/// costs next to nothing, and is shown with others a frame of the screen later. It shows the newest text after each
/// change.
///
/// The text keeps its characters as they are, CR LF too. Text can be selected with the mouse and copied.
class TranscriptView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// A change is shown so many milliseconds after another one.
    static constexpr int FrameTime = 16;

    explicit TranscriptView(QWidget *aParent = nullptr);

    const QString &Text() const { return mText; }
    void Apply(const TranscriptUpdate &aUpdate);
    void AppendText(const QString &aText);
    void Clear();

    /// The selection as it goes to the clipboard: lines end with LF.
    QString SelectedText() const;
    qsizetype SelectionStart() const;
    qsizetype SelectionEnd() const;
    void Select(qsizetype aStart, qsizetype aEnd);

    /// The index of the character at a place of the viewport, and the place that a character has there.
    qsizetype IndexAtPoint(const QPoint &aPoint);
    QRect RectOfIndex(qsizetype aIndex);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void OnCopy();
    void OnSelectAll();

protected:
    void paintEvent(QPaintEvent *aEvent) override;
    void scrollContentsBy(int aX, int aY) override;
    void resizeEvent(QResizeEvent *aEvent) override;
    void changeEvent(QEvent *aEvent) override;
    void timerEvent(QTimerEvent *aEvent) override;
    void keyPressEvent(QKeyEvent *aEvent) override;
    void mousePressEvent(QMouseEvent *aEvent) override;
    void mouseMoveEvent(QMouseEvent *aEvent) override;
    void mouseReleaseEvent(QMouseEvent *aEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *aEvent) override;
    void contextMenuEvent(QContextMenuEvent *aEvent) override;

private:
    void OnTextChanged();
    void ShowEnd();
    void ScrollToEnd();
    void EnsureRows();
    void UpdateScrollBar();
    double ColumnWidth() const;
    int VisibleRows() const;
    size_t RowOf(qsizetype aIndex) const;
    QStringView RowView(const TranscriptRow &aRow) const;
    void PutSelectionIntoClipboard(bool aPrimary) const;

    QString mText;
    std::vector<TranscriptRow> mRows;
    bool mRowsValid = false;
    bool mPainting = false;
    qsizetype mAnchor = 0;  // where the selection was begun
    qsizetype mCursor = 0;  // where it ends
    QElapsedTimer mSinceShown;
    QBasicTimer mShowTimer;
};

/// Makes assistive technology read the views; called by each view.
void InstallTranscriptAccessibility();
