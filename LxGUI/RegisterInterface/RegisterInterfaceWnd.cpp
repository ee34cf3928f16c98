#include "LxGUI/RegisterInterface/RegisterInterfaceWnd.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/FitFont.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OutputEdit.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/RegisterInterface/HexField.h"

namespace
{

constexpr int Width = 350;
constexpr int Height = 180;
constexpr int Margin = 6;
constexpr int Spacing = 4;

QLineEdit *CreateEdit(QWidget *aParent, const char *aName, const QString &aAccessibleName)
{
    auto *edit = new QLineEdit(aParent);
    edit->setObjectName(QLatin1String(aName));
    edit->setAccessibleName(aAccessibleName);
    return edit;
}

QLineEdit *CreateOutputEdit(QWidget *aParent, const char *aName, const QString &aAccessibleName)
{
    QLineEdit *edit = CreateEdit(aParent, aName, aAccessibleName);
    MakeOutputEdit(edit);
    return edit;
}

/// Rows "label, field" or "label, field, hex" of a group, with labels of one width. The margins are tight, so that
/// eight digits fit into the fields; nothing grows in height, so that the rows of the two groups are level.
class GroupLayout
{
public:
    explicit GroupLayout(QGroupBox *aGroup) : mGroup(aGroup), mLayout(new QVBoxLayout(aGroup))
    {
        mLayout->setContentsMargins(Margin, Margin, Margin, Margin);
        mLayout->setSpacing(Spacing);
    }

    void AddRow(const char *aLabel, QLineEdit *aEdit, bool aHex)
    {
        auto *row = new QHBoxLayout;
        row->setSpacing(Spacing);
        QLabel *label = AddLabel(row, aLabel);
        label->setBuddy(aEdit);
        row->addWidget(aEdit);
        if (aHex) {
            AddLabel(row, "hex");
        }
        mLayout->addLayout(row);
    }

    void AddButton(QPushButton *aButton) { mLayout->addWidget(aButton); }

private:
    QLabel *AddLabel(QHBoxLayout *aRow, const char *aText)
    {
        auto *label = new QLabel(QLatin1String(aText), mGroup);
        label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        aRow->addWidget(label);
        return label;
    }

    QGroupBox *mGroup;
    QVBoxLayout *mLayout;
};

/// The labels before fields are of one width, and eight digits can be read.
void SetLeastWidths(const QWidget &aContent)
{
    for (QLabel *label : aContent.findChildren<QLabel *>()) {
        if (label->buddy()) {
            label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("Address")));
        }
    }
    for (QLineEdit *edit : aContent.findChildren<QLineEdit *>()) {
        edit->setMinimumWidth(WidthForText(edit, FormatHexField(0)));
    }
}

}  // namespace

RegisterInterfaceWnd::RegisterInterfaceWnd()
{
    SetTitle("Register Interface");
}

RegisterInterfaceWnd::~RegisterInterfaceWnd() = default;

void RegisterInterfaceWnd::SetDevice(LxDeviceGEV *aDevice)
{
    mDevice = aDevice;
    mWatch.Set(this, "a device", {static_cast<LxDevice *>(aDevice)}, [this] { SetDevice(nullptr); });
}

bool RegisterInterfaceWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    return QObject::eventFilter(aObject, aEvent);
}

void RegisterInterfaceWnd::OutputField::SetText(const QString &aText)
{
    mText = aText;
    Show();
}

void RegisterInterfaceWnd::OutputField::Show()
{
    if (mEdit) {
        mEdit->setText(mText);
        // A text that is too wide shows its beginning here and the whole in the tool tip.
        mEdit->setCursorPosition(0);
        mEdit->setToolTip(mText);
    }
}

void RegisterInterfaceWnd::CreateLayout()
{
    QWidget *parent = BeginLayout();
    auto *main = new QVBoxLayout(parent);
    main->setContentsMargins(Margin, Margin, Margin, Margin);
    auto *groups = new QHBoxLayout;
    groups->setSpacing(Margin);
    main->addLayout(groups);
    groups->addWidget(CreateReadGroup(parent));
    groups->addWidget(CreateWriteGroup(parent));
    SetLeastWidths(*parent);
    MakeFixedSizeDialog(Width, Height, [parent] {
        SetLeastWidths(*parent);
        return true;
    });
}

QGroupBox *RegisterInterfaceWnd::CreateReadGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Read"), aParent);
    GroupLayout layout(group);
    mReadAddressEdit = CreateEdit(group, "ReadAddressEdit", QStringLiteral("Address to read, hexadecimal"));
    QPushButton *button =
        MakeEnterButton(group, "ReadButton", QStringLiteral("Read"), QStringLiteral("Read the register"));
    mReadValue.mEdit = CreateOutputEdit(group, "ReadValueEdit", QStringLiteral("Value read, hexadecimal"));
    mReadResult.mEdit = CreateOutputEdit(group, "ReadResultEdit", QStringLiteral("Result of reading"));
    layout.AddRow("Address", mReadAddressEdit, true);
    layout.AddButton(button);
    layout.AddRow("Value", mReadValue.mEdit, true);
    layout.AddRow("Result", mReadResult.mEdit, false);
    mReadValue.Show();
    mReadResult.Show();
    connect(button, SIGNAL(clicked()), this, SLOT(OnReadButtonClicked()));
    connect(mReadAddressEdit, SIGNAL(returnPressed()), button, SLOT(click()));
    return group;
}

QGroupBox *RegisterInterfaceWnd::CreateWriteGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Write"), aParent);
    GroupLayout layout(group);
    mWriteAddressEdit = CreateEdit(group, "WriteAddressEdit", QStringLiteral("Address to write, hexadecimal"));
    mWriteValueEdit = CreateEdit(group, "WriteValueEdit", QStringLiteral("Value to write, hexadecimal"));
    QPushButton *button =
        MakeEnterButton(group, "WriteButton", QStringLiteral("Write"), QStringLiteral("Write the register"));
    mWriteResult.mEdit = CreateOutputEdit(group, "WriteResultEdit", QStringLiteral("Result of writing"));
    layout.AddRow("Address", mWriteAddressEdit, true);
    layout.AddRow("Value", mWriteValueEdit, true);
    layout.AddButton(button);
    layout.AddRow("Result", mWriteResult.mEdit, false);
    mWriteResult.Show();
    connect(button, SIGNAL(clicked()), this, SLOT(OnWriteButtonClicked()));
    for (QLineEdit *edit : {mWriteAddressEdit.data(), mWriteValueEdit.data()}) {
        connect(edit, SIGNAL(returnPressed()), button, SLOT(click()));
    }
    return group;
}

void RegisterInterfaceWnd::OnOpen()
{
    for (QLineEdit *edit : {mReadAddressEdit.data(), mWriteAddressEdit.data(), mWriteValueEdit.data()}) {
        if (edit) {
            edit->setText(FormatHexField(0));
        }
    }
    if (mReadAddressEdit) {
        mReadAddressEdit->selectAll();  // it has the focus: what is typed first is the address
    }
}

void RegisterInterfaceWnd::OnClose() {}

bool RegisterInterfaceWnd::ParseField(const QLineEdit *aEdit, const char *aWarning, uint32_t &aValue)
{
    if (aEdit && ParseHexField(aEdit->text(), aValue)) {
        return true;
    }
    ShowError(Widget(), QLatin1String(aWarning));
    return false;
}

void RegisterInterfaceWnd::OnReadButtonClicked()
{
    uint32_t address = 0;
    if (!ParseField(mReadAddressEdit, "Could not parse read address.", address)) {
        return;
    }
    if (!mDevice) {
        mReadValue.SetText(QString());
        mReadResult.SetText(QStringLiteral("No device"));
        return;
    }
    uint32_t value = 0;
    const LxResult result = mDevice->ReadRegister(address, value);
    mReadValue.SetText(result.IsOK() ? FormatHexField(value) : QString());
    mReadResult.SetText(ToQString(result.GetCodeString()));
}

void RegisterInterfaceWnd::OnWriteButtonClicked()
{
    uint32_t address = 0;
    uint32_t value = 0;
    if (!ParseField(mWriteAddressEdit, "Could not parse write address.", address) ||
        !ParseField(mWriteValueEdit, "Could not parse write value.", value))
    {
        return;
    }
    if (!mDevice) {
        mWriteResult.SetText(QStringLiteral("No device"));
        return;
    }
    mWriteResult.SetText(ToQString(mDevice->WriteRegister(address, value, true).GetCodeString()));
}
