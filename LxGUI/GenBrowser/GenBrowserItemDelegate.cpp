#include "LxGUI/GenBrowser/GenBrowserItemDelegate.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include <utility>

#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/GenBrowser/CellColors.h"
#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/GenBrowser/GenBrowserWnd.h"
#include "LxGUI/GenBrowser/NumberText.h"
#include "LxGUI/GenBrowser/QDoubleSpinBoxExact.h"
#include "LxGUI/GenBrowser/QSpinBox64.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"

namespace
{

/// The item of a feature; null for anything else.
GenBrowserTreeItem *FeatureItem(const QModelIndex &aIndex)
{
    GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(aIndex);
    return item && item->Parameter() ? item : nullptr;
}

void Fill(QComboBox &aBox, const GenBrowserTreeItem &aItem)
{
    aBox.clear();
    int current = -1;
    const QList<FeatureChoice> choices = aItem.Choices(current);
    for (const FeatureChoice &choice : choices) {
        aBox.addItem(choice.mText, static_cast<qlonglong>(choice.mValue));
        aBox.setItemData(aBox.count() - 1, choice.mToolTip, Qt::ToolTipRole);
    }
    aBox.setCurrentIndex(current);
}

void Fill(QLineEdit &aEdit, const GenBrowserTreeItem &aItem)
{
    aEdit.setText(aItem.ValueText());
    aEdit.selectAll();
}

void Fill(QSpinBox64 &aBox, GenBrowserTreeItem &aItem)
{
    const auto *integer = dynamic_cast<LxGenInteger *>(aItem.Parameter());
    if (!integer) {
        return;
    }
    const QString text = integer->IsReadable() ? ToQString(integer->ToString()) : aItem.EditText();
    int64_t min = 0;
    int64_t max = 0;
    int64_t increment = 0;
    integer->GetMin(min);
    integer->GetMax(max);
    integer->GetIncrement(increment);
    aBox.SetRange(min, max);
    aBox.SetStep(increment);
    aBox.SetText(text.toUpper());
}

void Fill(QDoubleSpinBoxExact &aBox, const GenBrowserTreeItem &aItem)
{
    const auto *number = dynamic_cast<LxGenFloat *>(aItem.Parameter());
    if (!number) {
        return;
    }
    double value = 0.0;
    double min = 0.0;
    double max = 0.0;
    if (number->IsReadable()) {
        number->GetValue(value);
    }
    number->GetMin(min);
    number->GetMax(max);
    aBox.Set(min, max, value);
}

}  // namespace

GenBrowserItemDelegate::GenBrowserItemDelegate(GenBrowserWnd *aWindow, GenBrowserTreeModel *aModel)
    : TextDelegate(aWindow), mModel(aModel)
{
    // By signature, as the slot hides the signal.
    connect(this, SIGNAL(closeEditor(QWidget *, QAbstractItemDelegate::EndEditHint)), this,
            SLOT(closeEditor(QWidget *, QAbstractItemDelegate::EndEditHint)));
}

QWidget *GenBrowserItemDelegate::MakeEditor(QWidget *aParent, const GenBrowserTreeItem &aItem) const
{
    switch (aItem.Type()) {
        case LxGenTypeEnum:
        case LxGenTypeBoolean:
            return new QComboBox(aParent);
        case LxGenTypeString:
            return new QLineEdit(aParent);
        case LxGenTypeInteger:
            if (aItem.IsIPAddress()) {
                return new QLineEdit(aParent);
            }
            return new QSpinBox64(aParent);
        case LxGenTypeFloat:
            return new QDoubleSpinBoxExact(aParent);
        case LxGenTypeCommand: {
            auto *button = new QPushButton(aParent);
            button->setAutoDefault(false);
            return button;
        }
        default:
            return nullptr;
    }
}

QWidget *GenBrowserItemDelegate::createEditor(QWidget *aParent, const QStyleOptionViewItem & /*aOption*/,
                                              const QModelIndex &aIndex) const
{
    const GenBrowserTreeItem *const item = FeatureItem(aIndex);
    QWidget *const editor = item ? MakeEditor(aParent, *item) : nullptr;
    if (!editor) {
        return nullptr;
    }
    QFont font = QApplication::font();
    font.setBold(!item->SelectedParameters().isEmpty());
    editor->setFont(font);
    editor->setObjectName(QStringLiteral("ValueEditor"));
    editor->setAccessibleName(item->ShownName());
    editor->setAutoFillBackground(true);
    mEditor = editor;
    if (mModel) {
        mModel->SetEditIndex(aIndex);
    }
    return editor;
}

void GenBrowserItemDelegate::closeEditor(QWidget *aEditor, QAbstractItemDelegate::EndEditHint /*aHint*/)
{
    // An editor that ends after the next one was opened leaves that one's row guarded.
    const bool isOther = aEditor && mEditor && aEditor != mEditor;
    if (mModel && !isOther) {
        mModel->ClearEditIndex();
    }
    // Under a message box the editor has lost the focus, and the view does not take it from there: once the box has
    // gone, the keyboard goes on in the tree.
    if (aEditor && aEditor->parentWidget() && !aEditor->hasFocus() && aEditor->window()->focusWidget() == aEditor) {
        aEditor->parentWidget()->parentWidget()->setFocus();
    }
}

void GenBrowserItemDelegate::destroyEditor(QWidget *aEditor, const QModelIndex &aIndex) const
{
    // Editors also end without the signal, when another row becomes current by program.
    if (mModel && mModel->EditIndex() == aIndex) {
        mModel->ClearEditIndex();
    }
    if (mIsWriting && aEditor == mWrittenEditor) {
        DeleteWhenWritten(aEditor);
        return;
    }
    TextDelegate::destroyEditor(aEditor, aIndex);
}

void GenBrowserItemDelegate::paint(QPainter *aPainter, const QStyleOptionViewItem &aOption,
                                   const QModelIndex &aIndex) const
{
    // The view has whole rows painted even where only the values have changed.
    const auto *tree = qobject_cast<const GenBrowserTree *>(aOption.widget);
    const bool isNeeded = !tree || tree->IsPainted(aOption.rect);
    if (isNeeded && !mPlainCell.Paint(*aPainter, aOption, aIndex)) {
        TextDelegate::paint(aPainter, aOption, aIndex);
    }
}

void GenBrowserItemDelegate::initStyleOption(QStyleOptionViewItem *aOption, const QModelIndex &aIndex) const
{
    TextDelegate::initStyleOption(aOption, aIndex);
    aOption->palette.setColor(QPalette::Text, CellTextColor(aIndex));
}

void GenBrowserItemDelegate::setEditorData(QWidget *aEditor, const QModelIndex &aIndex) const
{
    GenBrowserTreeItem *const item = FeatureItem(aIndex);
    if (!item) {
        TextDelegate::setEditorData(aEditor, aIndex);
        return;
    }
    if (auto *box = qobject_cast<QComboBox *>(aEditor)) {
        Fill(*box, *item);
    }
    else if (auto *edit = qobject_cast<QLineEdit *>(aEditor)) {
        Fill(*edit, *item);
    }
    else if (auto *integerBox = qobject_cast<QSpinBox64 *>(aEditor)) {
        Fill(*integerBox, *item);
    }
    else if (auto *floatBox = qobject_cast<QDoubleSpinBoxExact *>(aEditor)) {
        Fill(*floatBox, *item);
    }
    else if (auto *button = qobject_cast<QPushButton *>(aEditor)) {
        button->setText(item->Name());
        // An editor is filled again whenever its row changes; one click still is one command.
        connect(button, &QPushButton::clicked, item, &GenBrowserTreeItem::Execute, Qt::UniqueConnection);
    }
    else {
        TextDelegate::setEditorData(aEditor, aIndex);
    }
}

bool GenBrowserItemDelegate::Write(QWidget *aEditor, GenBrowserTreeItem &aItem, QString &aError) const
{
    if (const auto *box = qobject_cast<QComboBox *>(aEditor)) {
        return aItem.SetValue(static_cast<int64_t>(box->itemData(box->currentIndex(), Qt::UserRole).toLongLong()),
                              aError);
    }
    if (const auto *edit = qobject_cast<QLineEdit *>(aEditor)) {
        return aItem.SetValue(edit->text(), aError);
    }
    if (const auto *integerBox = qobject_cast<QSpinBox64 *>(aEditor)) {
        const NumberText number = ParseNumber(integerBox->text());
        if (!number.mIsValid) {
            aError = QStringLiteral("Error parsing value.");
            return false;
        }
        return aItem.SetValue(number.mValue, aError);
    }
    if (auto *floatBox = qobject_cast<QDoubleSpinBox *>(aEditor)) {
        floatBox->interpretText();
        return aItem.SetValue(floatBox->value(), aError);
    }
    return true;
}

void GenBrowserItemDelegate::setModelData(QWidget *aEditor, QAbstractItemModel *aModel, const QModelIndex &aIndex) const
{
    if (mIsWriting) {
        return;  // One attempt, and one box, at a time, whatever happens meanwhile.
    }
    GenBrowserTreeItem *const item = FeatureItem(aIndex);
    if (!item || qobject_cast<QPushButton *>(aEditor)) {
        TextDelegate::setModelData(aEditor, aModel, aIndex);
        return;
    }
    mIsWriting = true;
    mWrittenEditor = aEditor;
    Commit(aEditor, aModel, aIndex, *item);
    mIsWriting = false;
    for (const QPointer<QObject> &object : std::exchange(mDoomed, {})) {
        if (object) {
            object->deleteLater();  // The view up the stack still uses it.
        }
    }
}

// The write may call sinks of the host, and the box runs an event loop: within both, the tree may be rebuilt and the
// window may go. What is on the stack is kept until setModelData() has returned, see DeleteWhenWritten().
void GenBrowserItemDelegate::Commit(QWidget *aEditor, QAbstractItemModel *aModel, const QModelIndex &aIndex,
                                    GenBrowserTreeItem &aItem) const
{
    const QPersistentModelIndex index(aIndex);
    QString error;
    const bool succeeded = Write(aEditor, aItem, error);
    if (index.isValid()) {
        emit aModel->dataChanged(index, index);
    }
    if (!succeeded) {
        ShowError(qobject_cast<QWidget *>(parent()), error);
    }
    if (index.isValid()) {
        TextDelegate::setModelData(aEditor, aModel, index);
    }
}

void GenBrowserItemDelegate::DeleteWhenWritten(QObject *aObject) const
{
    if (auto *widget = qobject_cast<QWidget *>(aObject)) {
        widget->hide();
    }
    mDoomed.append(aObject);
}
