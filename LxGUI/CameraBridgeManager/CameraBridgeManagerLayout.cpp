#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>

#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGUI/Frame/AlignWithLayout.h"
#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/FitFont.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/Named.h"
#include "LxGUI/LxGenBrowserWnd.h"

namespace
{

constexpr int MainSpacing = 8;
constexpr int GroupSpacing = 4;
constexpr int BlockSpacing = 2;
constexpr int BlockIndent = 20;
constexpr int LabelWidth = 80;
constexpr int StatusMargin = 83;
constexpr int FieldWidth = 210;
constexpr int LeastColumnWidth = 450;
constexpr int MostColumnWidth = 520;
const QSize LeastBrowserSize(350, 300);
const QSize LeastSize(900, 600);
const QSize MostSize(1600, 1200);
const QSize FirstSize(1000, 640);  // the browser's buttons fit
const QSize ResetButtonSize(75, 25);
const QSize ResetTextSize(67, 19);

QComboBox *MakeCombo(QWidget *aParent, const char *aName, const QString &aAccessibleName)
{
    auto *combo = Named(new QComboBox(aParent), aName, aAccessibleName);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);  // long identifiers do not widen it
    combo->setMinimumWidth(FieldWidth);
    return combo;
}

QLabel *MakeLabel(QWidget *aParent, const QString &aText, QWidget *aBuddy)
{
    auto *label = new QLabel(aText, aParent);
    label->setFixedWidth(LabelWidth);
    label->setBuddy(aBuddy);
    return label;
}

/// A margin at the side where lines begin.
QMargins IndentedBy(const QWidget *aParent, int aIndent)
{
    return aParent->isRightToLeft() ? QMargins(0, 0, aIndent, 0) : QMargins(aIndent, 0, 0, 0);
}

QLabel *MakeStatus(QWidget *aParent, const char *aName, const QString &aText, bool aEnabled)
{
    auto *label = new QLabel(aText, aParent);
    label->setObjectName(QLatin1String(aName));
    label->setContentsMargins(IndentedBy(aParent, StatusMargin));
    label->setEnabled(aEnabled);
    return AlignWithLayout(label);
}

QBoxLayout *AddBlock(QBoxLayout *aLayout, const QWidget *aParent)
{
    auto *block = new QVBoxLayout;
    block->setContentsMargins(IndentedBy(aParent, BlockIndent));
    block->setSpacing(BlockSpacing);
    aLayout->addLayout(block);
    return block;
}

void AddRow(QBoxLayout *aBlock, QWidget *aLabel, QWidget *aField, QWidget *aButton)
{
    auto *row = new QHBoxLayout;
    row->addWidget(aLabel);
    row->addWidget(aField, 1);
    row->addWidget(aButton);
    aBlock->addLayout(row);
}

}  // namespace

void CameraBridgeManagerWnd::CreateLayout()
{
    // What lives as long as the window is taken out of the earlier content before that is deleted.
    if (mBrowserWidget) {
        mBrowserWidget->setParent(nullptr);
    }
    if (mTimer) {
        mTimer->setParent(nullptr);
    }
    QWidget *parent = BeginLayout();
    auto *main = new QHBoxLayout(parent);
    main->setSpacing(MainSpacing);
    main->setContentsMargins(MainSpacing, MainSpacing, MainSpacing, MainSpacing);
    auto *container = new QWidget(parent);
    container->setMinimumWidth(LeastColumnWidth);
    container->setMaximumWidth(MostColumnWidth);
    auto *column = new QVBoxLayout(container);
    column->setSpacing(GroupSpacing);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(CreateSetupGroup(container));
    column->addWidget(CreateStatisticsGroup(container));
    column->addWidget(CreateCheckGroup(container));
    column->addStretch();
    ShrinkFontToFit(container, QSize(MostColumnWidth, LeastSize.height() - 2 * MainSpacing), [this] {
        const int label = std::max({mKCFLabel->sizeHint().width(), mCLPTemplateLabel->sizeHint().width(),
                                    mCLPXMLLabel->sizeHint().width(), mGenCPLabel->sizeHint().width()});
        const QSize reset = mResetButton->fontMetrics().size(Qt::TextSingleLine, mResetButton->text());
        return label <= LabelWidth && reset.width() <= ResetTextSize.width() &&
               reset.height() <= ResetTextSize.height();
    });
    main->addWidget(container);
    EmbedBrowser(main, parent);
    Widget()->setMinimumSize(LeastSize);
    Widget()->setMaximumSize(MostSize);
    if (IsDialog()) {
        Widget()->resize(Widget()->size().expandedTo(FirstSize));
    }
    if (!mTimer) {
        mTimer = new QTimer;
        connect(mTimer, &QTimer::timeout, this, &CameraBridgeManagerWnd::OnTimerTimeout);
    }
    mTimer->setParent(Widget());
    MakeConnections();
    UpdateEnabledState();
}

QRadioButton *CameraBridgeManagerWnd::AddRadioButton(QBoxLayout *aLayout, QWidget *aParent, const char *aName,
                                                     const QString &aText)
{
    auto *button = Named(new QRadioButton(aText, aParent), aName, aText);
    aLayout->addWidget(button);
    // clicked, not toggled: neither the button that goes off nor a change by the program chooses anything
    connect(button, &QRadioButton::clicked, this, [this, button] { OnRadioButtonChanged(button->text()); });
    return button;
}

QGroupBox *CameraBridgeManagerWnd::CreateSetupGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(QStringLiteral("Bridge Setup"), aParent);
    auto *layout = new QVBoxLayout(group);
    layout->setSpacing(GroupSpacing);
    layout->setContentsMargins(MainSpacing, MainSpacing, MainSpacing, MainSpacing);
    mPortCombo = MakeCombo(group, "PortCombo", QStringLiteral("Serial port"));
    layout->addWidget(mPortCombo);
    mNoneRadio = AddRadioButton(layout, group, "NoneRadio", QStringLiteral("None"));
    mNoneRadio->setChecked(true);
    mKCFRadio = AddRadioButton(layout, group, "KCFRadio", QStringLiteral("Kelvra Camera File"));
    AddCameraFileBlock(layout, group);
    mCLPRadio = AddRadioButton(layout, group, "CLPRadio", QStringLiteral("GenICam CL Protocol"));
    AddCLProtocolBlock(layout, group);
    mGenCPRadio = AddRadioButton(layout, group, "GenCPRadio", QStringLiteral("GenCP"));
    AddGenCPBlock(layout, group);
    mSourceCombo = MakeCombo(group, "SourceCombo", QStringLiteral("Source"));
    auto *label = new QLabel(QStringLiteral("Source:"), group);
    label->setBuddy(mSourceCombo);
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(mSourceCombo, 1);
    layout->addLayout(row);
    return group;
}

void CameraBridgeManagerWnd::AddCameraFileBlock(QBoxLayout *aLayout, QWidget *aParent)
{
    QBoxLayout *block = AddBlock(aLayout, aParent);
    mKCFPathEdit = Named(new QLineEdit(aParent), "KCFPathEdit", QStringLiteral("Path of the Kelvra camera file"));
    mKCFPathEdit->setMinimumWidth(FieldWidth);
    mKCFLabel = MakeLabel(aParent, QStringLiteral("Path"), mKCFPathEdit);
    mKCFPathButton =
        MakeEnterButton(aParent, "KCFPathButton", QStringLiteral("..."), QStringLiteral("Choose the file"));
    AddRow(block, mKCFLabel, mKCFPathEdit, mKCFPathButton);
    mKCFLoadButton = MakeEnterButton(aParent, "KCFLoadButton", QStringLiteral("Load"), QStringLiteral("Load the file"));
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(mKCFLoadButton);
    block->addLayout(row);
    mKCFStatus = MakeStatus(aParent, "KCFStatus", QStringLiteral("Not initialized"), true);
    block->addWidget(mKCFStatus);
}

void CameraBridgeManagerWnd::AddCLProtocolBlock(QBoxLayout *aLayout, QWidget *aParent)
{
    QBoxLayout *block = AddBlock(aLayout, aParent);
    mCLPTemplateCombo = MakeCombo(aParent, "CLPTemplateCombo", QStringLiteral("CL Protocol template"));
    mCLPTemplateLabel = MakeLabel(aParent, QStringLiteral("Template"), mCLPTemplateCombo);
    mCLPProbeButton =
        MakeEnterButton(aParent, "CLPProbeButton", QStringLiteral("Probe"), QStringLiteral("Probe the camera"));
    AddRow(block, mCLPTemplateLabel, mCLPTemplateCombo, mCLPProbeButton);
    mCLPCameraID = MakeStatus(aParent, "CLPCameraID", QStringLiteral("Not found"), false);
    block->addWidget(mCLPCameraID);
    mCLPXMLCombo = MakeCombo(aParent, "CLPXMLCombo", QStringLiteral("CL Protocol XML"));
    mCLPXMLLabel = MakeLabel(aParent, QStringLiteral("XML"), mCLPXMLCombo);
    mCLPConnectButton = MakeEnterButton(aParent, "CLPConnectButton", QStringLiteral("Connect"),
                                        QStringLiteral("Connect by the CL Protocol"));
    AddRow(block, mCLPXMLLabel, mCLPXMLCombo, mCLPConnectButton);
    mCLPStatus = MakeStatus(aParent, "CLPStatus", QStringLiteral("Not initialized"), false);
    block->addWidget(mCLPStatus);
}

void CameraBridgeManagerWnd::AddGenCPBlock(QBoxLayout *aLayout, QWidget *aParent)
{
    QBoxLayout *block = AddBlock(aLayout, aParent);
    mGenCPXMLCombo = MakeCombo(aParent, "GenCPXMLCombo", QStringLiteral("GenCP XML"));
    mGenCPLabel = MakeLabel(aParent, QStringLiteral("XML"), mGenCPXMLCombo);
    mGenCPConnectButton =
        MakeEnterButton(aParent, "GenCPConnectButton", QStringLiteral("Connect"), QStringLiteral("Connect by GenCP"));
    AddRow(block, mGenCPLabel, mGenCPXMLCombo, mGenCPConnectButton);
    mGenCPStatus = MakeStatus(aParent, "GenCPStatus", QStringLiteral("Not initialized"), false);
    block->addWidget(mGenCPStatus);
}

QGroupBox *CameraBridgeManagerWnd::CreateStatisticsGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(QStringLiteral("Statistics"), aParent);
    auto *layout = new QVBoxLayout(group);
    mReceivedLabel = AlignWithLayout(new QLabel(QStringLiteral("Bytes received: 0"), group));
    mReceivedLabel->setObjectName(QStringLiteral("ReceivedLabel"));
    mSentLabel = AlignWithLayout(new QLabel(QStringLiteral("Bytes sent: 0"), group));
    mSentLabel->setObjectName(QStringLiteral("SentLabel"));
    mResetButton =
        MakeEnterButton(group, "ResetButton", QStringLiteral("Reset"), QStringLiteral("Reset the statistics"));
    mResetButton->setFixedSize(ResetButtonSize);
    layout->addWidget(mReceivedLabel);
    layout->addWidget(mSentLabel);
    layout->addWidget(mResetButton);
    return group;
}

QGroupBox *CameraBridgeManagerWnd::CreateCheckGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(aParent);
    auto *layout = new QHBoxLayout(group);
    layout->setSpacing(GroupSpacing);
    layout->setContentsMargins(GroupSpacing, MainSpacing, GroupSpacing, MainSpacing);  // the texts just fit
    const QString sync = QStringLiteral("Frame Grabber Parameters Synchronization");
    const QString power = QStringLiteral("Power Over Camera Link (PoCL)");
    mSyncCheck = Named(new QCheckBox(sync, group), "SyncCheck", sync);
    mPoCLCheck = Named(new QCheckBox(power, group), "PoCLCheck", power);
    layout->addWidget(mSyncCheck);
    layout->addWidget(mPoCLCheck);
    return group;
}

QWidget *CameraBridgeManagerWnd::LoadBrowser()
{
    if (!mBrowser) {
        mBrowser = std::make_unique<LxGenBrowserWnd>();
    }
    return mBrowser->GetQWidget();
}

void CameraBridgeManagerWnd::EmbedBrowser(QBoxLayout *aLayout, QWidget *aParent)
{
    mBrowserWidget = LoadBrowser();
    if (!mBrowserWidget) {
        ShowError(Widget(), QStringLiteral("GenICam browser could not be loaded."), QStringLiteral("Warning"));
        return;
    }
    mBrowserWidget->setParent(aParent);
    mBrowserWidget->setMinimumSize(LeastBrowserSize);
    mBrowserWidget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    aLayout->addWidget(mBrowserWidget, 1);
    mBrowserWidget->show();
}

void CameraBridgeManagerWnd::MakeConnections()
{
    using Self = CameraBridgeManagerWnd;
    const auto onChoice = [this](QComboBox *aCombo, void (Self::*aSlot)()) {
        connect(aCombo, &QComboBox::currentIndexChanged, this, aSlot);
    };
    const auto onClick = [this](QAbstractButton *aButton, void (Self::*aSlot)()) {
        connect(aButton, &QAbstractButton::clicked, this, aSlot);
    };
    onChoice(mPortCombo, &Self::OnPortComboChanged);
    onChoice(mCLPTemplateCombo, &Self::OnCLPTemplateComboChanged);
    onChoice(mCLPXMLCombo, &Self::OnCLPXMLComboChanged);
    onChoice(mGenCPXMLCombo, &Self::OnGenCPXMLComboChanged);
    onChoice(mSourceCombo, &Self::OnSourceComboChanged);
    onClick(mKCFPathButton, &Self::OnKCFPathButtonClicked);
    onClick(mKCFLoadButton, &Self::OnKCFLoadButtonClicked);
    onClick(mCLPProbeButton, &Self::OnCLPProbeButtonClicked);
    onClick(mCLPConnectButton, &Self::OnCLPConnectButtonClicked);
    onClick(mGenCPConnectButton, &Self::OnGenCPConnectButtonClicked);
    onClick(mResetButton, &Self::OnResetButtonClicked);
    onClick(mSyncCheck, &Self::OnSyncCheckChanged);
    onClick(mPoCLCheck, &Self::OnPoCLCheckChanged);
}
