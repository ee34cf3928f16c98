#include <QtWidgets/QAccessibleWidget>

#include "LxGUI/Frame/AccessibleFactory.h"
#include "LxGUI/SerialTerminal/TranscriptView.h"

namespace
{

/// Lets assistive technology read a transcript as a text that cannot be edited.
class TranscriptViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit TranscriptViewAccessible(TranscriptView *aView) : QAccessibleWidget(aView, QAccessible::EditableText) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }
    QString text(QAccessible::Text aKind) const override
    {
        return aKind == QAccessible::Value ? View().Text() : QAccessibleWidget::text(aKind);
    }
    void *interface_cast(QAccessible::InterfaceType aType) override
    {
        return aType == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(aType);
    }

    void selection(int aIndex, int *aStart, int *aEnd) const override
    {
        *aStart = aIndex == 0 ? static_cast<int>(View().SelectionStart()) : 0;
        *aEnd = aIndex == 0 ? static_cast<int>(View().SelectionEnd()) : 0;
    }
    int selectionCount() const override { return View().SelectionStart() < View().SelectionEnd() ? 1 : 0; }
    void addSelection(int aStart, int aEnd) override { View().Select(aStart, aEnd); }
    void removeSelection(int) override { View().Select(0, 0); }
    void setSelection(int, int aStart, int aEnd) override { View().Select(aStart, aEnd); }
    int cursorPosition() const override { return static_cast<int>(View().SelectionEnd()); }
    void setCursorPosition(int aPosition) override { View().Select(aPosition, aPosition); }
    QString text(int aStart, int aEnd) const override { return View().Text().mid(aStart, aEnd - aStart); }
    int characterCount() const override { return static_cast<int>(View().Text().size()); }
    QRect characterRect(int aOffset) const override
    {
        const QRect rect = View().RectOfIndex(aOffset);
        return QRect(View().viewport()->mapToGlobal(rect.topLeft()), rect.size());
    }
    int offsetAtPoint(const QPoint &aPoint) const override
    {
        return static_cast<int>(View().IndexAtPoint(View().viewport()->mapFromGlobal(aPoint)));
    }
    void scrollToSubstring(int, int) override {}
    QString attributes(int aOffset, int *aStart, int *aEnd) const override
    {
        *aStart = aOffset;
        *aEnd = aOffset;
        return QString();
    }

private:
    TranscriptView &View() const { return *static_cast<TranscriptView *>(object()); }
};

QAccessibleInterface *CreateInterface(const QString & /*aClass*/, QObject *aObject)
{
    auto *view = qobject_cast<TranscriptView *>(aObject);
    return view ? new TranscriptViewAccessible(view) : nullptr;
}

}  // namespace

void InstallTranscriptAccessibility()
{
    static const AccessibleFactory factory(CreateInterface);
}
