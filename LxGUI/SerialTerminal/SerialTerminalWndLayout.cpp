#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/Named.h"
#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

namespace
{

constexpr int ComboWidth = 125;
constexpr int BrowseWidth = 30;

QComboBox *AddCombo(QGroupBox *aGroup, const char *aName, const QString &aAccessibleName)
{
    auto *combo = Named(new QComboBox(aGroup), aName, aAccessibleName);
    combo->setMinimumWidth(ComboWidth);
    return combo;
}

QCheckBox *AddCheck(QGroupBox *aGroup, QBoxLayout &aRow, const QString &aText, const char *aName,
                    const QString &aAccessibleName)
{
    auto *check = Named(new QCheckBox(aText, aGroup), aName, aAccessibleName);
    aRow.addWidget(check);
    return check;
}

QRadioButton *AddRadio(QGroupBox *aGroup, QBoxLayout &aRow, const QString &aText, const char *aName,
                       const QString &aAccessibleName)
{
    auto *radio = Named(new QRadioButton(aText, aGroup), aName, aAccessibleName);
    aRow.addWidget(radio);
    return radio;
}

QPushButton *AddButton(QGroupBox *aGroup, QBoxLayout &aRow, const QString &aText, const char *aName,
                       const QString &aAccessibleName)
{
    QPushButton *button = MakeEnterButton(aGroup, aName, aText, aAccessibleName);
    aRow.addWidget(button);
    return button;
}

QLabel *AddLabel(QGroupBox *aGroup, QBoxLayout &aRow, const QString &aText, QWidget *aBuddy = nullptr)
{
    auto *label = new QLabel(aText, aGroup);
    label->setBuddy(aBuddy);
    aRow.addWidget(label);
    if (aBuddy) {
        aRow.addWidget(aBuddy);
    }
    return label;
}

QHBoxLayout *AddRow(QVBoxLayout &aLayout)
{
    auto *row = new QHBoxLayout;
    aLayout.addLayout(row);
    return row;
}

QGroupBox *AddGroup(QWidget *aParent, QBoxLayout &aLayout, const QString &aTitle, int aStretch = 0)
{
    auto *group = new QGroupBox(aTitle, aParent);
    aLayout.addWidget(group, aStretch);
    return group;
}

}  // namespace

void SerialTerminalWnd::CreateLayout()
{
    QWidget *parent = BeginLayout();
    auto *layout = new QVBoxLayout(parent);
    AddPortGroup(parent, *layout);
    AddSendGroup(parent, *layout);
    AddFileGroup(parent, *layout);
    AddTranscriptGroup(parent, *layout);
    FillPorts();
    UpdateControls();
    UpdateSpeed();
    UpdateLoopback();
    ClearTranscript();  // The view is new and empty.
}

void SerialTerminalWnd::AddPortGroup(QWidget *aParent, QBoxLayout &aLayout)
{
    QGroupBox *group = AddGroup(aParent, aLayout, tr("Port Selection"));
    auto *row = new QHBoxLayout(group);
    mPortCombo = AddCombo(group, "PortCombo", tr("Serial port"));
    AddLabel(group, *row, tr("Port"), mPortCombo);
    mSpeedCombo = AddCombo(group, "SpeedCombo", tr("Speed of the port"));
    mSpeedCombo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    AddLabel(group, *row, tr("Speed"), mSpeedCombo);
    mLoopbackCheck = AddCheck(group, *row, tr("Loopback"), "LoopbackCheck", tr("Loopback of the port"));
    row->addStretch();
    connect(mPortCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnPortChange(int)));
    connect(mSpeedCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnSpeedChange(int)));
    connect(mLoopbackCheck, SIGNAL(clicked(bool)), this, SLOT(OnLoopbackChange(bool)));
}

void SerialTerminalWnd::AddSendGroup(QWidget *aParent, QBoxLayout &aLayout)
{
    QGroupBox *group = AddGroup(aParent, aLayout, tr("Send"));
    auto *rows = new QVBoxLayout(group);
    QHBoxLayout *row = AddRow(*rows);
    AddLabel(group, *row, tr("Send as"));
    AddRadio(group, *row, tr("ASCII"), "SendAsAscii", tr("Send as ASCII"))->setChecked(true);
    mSendAsHexadecimal = AddRadio(group, *row, tr("Hexadecimal"), "SendAsHexadecimal", tr("Send as hexadecimal"));
    row->addStretch();

    row = AddRow(*rows);
    mDataEdit = Named(new QLineEdit(group), "DataEdit", tr("Data to send"));
    AddLabel(group, *row, tr("Data"), mDataEdit);
    mSendButton = AddButton(group, *row, tr("Send"), "SendButton", tr("Send the data"));

    row = AddRow(*rows);
    AddLabel(group, *row, tr("Append"));
    mCRCheck = AddCheck(group, *row, tr("CR"), "CRCheck", tr("Append a carriage return"));
    mLFCheck = AddCheck(group, *row, tr("LF"), "LFCheck", tr("Append a line feed"));
    mNullCheck = AddCheck(group, *row, tr("NULL"), "NullCheck", tr("Append a zero byte"));
    mOtherCheck = AddCheck(group, *row, tr("Other"), "OtherCheck", tr("Append other bytes"));
    mOtherEdit = Named(new QLineEdit(group), "OtherEdit", tr("Other bytes to append, hexadecimal"));
    mOtherLabel = AddLabel(group, *row, tr("Hex"), mOtherEdit);
    row->addStretch();

    connect(mSendButton, SIGNAL(clicked()), this, SLOT(OnBnClickedSend()));
    connect(mOtherCheck, SIGNAL(stateChanged(int)), this, SLOT(OnBnClickedOthercheck(int)));
    connect(mDataEdit, SIGNAL(returnPressed()), mSendButton, SLOT(click()));
    connect(mOtherEdit, SIGNAL(returnPressed()), mSendButton, SLOT(click()));
}

void SerialTerminalWnd::AddFileGroup(QWidget *aParent, QBoxLayout &aLayout)
{
    QGroupBox *group = AddGroup(aParent, aLayout, tr("Send File"));
    auto *row = new QHBoxLayout(group);
    mFileEdit = Named(new QLineEdit(group), "FileEdit", tr("File to send"));
    AddLabel(group, *row, tr("File"), mFileEdit);
    mBrowseButton = AddButton(group, *row, tr("..."), "BrowseButton", tr("Choose a file"));
    mBrowseButton->setMaximumWidth(BrowseWidth);
    mSendFileButton = AddButton(group, *row, tr("Send file"), "SendFileButton", tr("Send the file"));
    mValidationCheck = AddCheck(group, *row, tr("Loopback validation"), "ValidationCheck",
                                tr("Check that the bytes of the file come back"));
    connect(mBrowseButton, SIGNAL(clicked()), this, SLOT(OnBrowseFile()));
    connect(mSendFileButton, SIGNAL(clicked()), this, SLOT(OnSendFile()));
    connect(mFileEdit, SIGNAL(returnPressed()), mSendFileButton, SLOT(click()));
}

void SerialTerminalWnd::AddTranscriptGroup(QWidget *aParent, QBoxLayout &aLayout)
{
    QGroupBox *group = AddGroup(aParent, aLayout, tr("Transcript"), 1);
    auto *rows = new QVBoxLayout(group);
    QHBoxLayout *row = AddRow(*rows);
    AddLabel(group, *row, tr("Display format"));
    mAsciiFormat = AddRadio(group, *row, tr("ASCII"), "AsciiFormat", tr("Display as ASCII"));
    mAsciiFormat->setChecked(true);
    mHexadecimalFormat = AddRadio(group, *row, tr("Hexadecimal"), "HexadecimalFormat", tr("Display as hexadecimal"));
    mHybridFormat = AddRadio(group, *row, tr("Hybrid"), "HybridFormat", tr("Display as hexadecimal and ASCII"));
    row->addStretch();
    mEchoCheck = AddCheck(group, *row, tr("Echo sent data"), "EchoCheck", tr("Show what is sent, too"));
    QPushButton *clear = AddButton(group, *row, tr("Clear"), "ClearButton", tr("Clear the transcript"));
    mView = Named(new TranscriptView(group), "Transcript", tr("Transcript"));
    rows->addWidget(mView, 1);
    connect(mAsciiFormat, SIGNAL(toggled(bool)), this, SLOT(OnAsciiFormatToggled(bool)));
    connect(mHexadecimalFormat, SIGNAL(toggled(bool)), this, SLOT(OnHexadecimalFormatToggled(bool)));
    connect(mHybridFormat, SIGNAL(toggled(bool)), this, SLOT(OnHybridFormatToggled(bool)));
    connect(clear, SIGNAL(clicked()), this, SLOT(OnBnClickedClear()));
}
