// The controls of the serial bridge manager.

#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/Frame/AlignWithLayout.h"
#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/Named.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"

void SerialBridgeManagerWnd::CreateLayout()
{
    // The selection is the user's and survives.
    const QVariant selected = mPortSelectionCombo ? mPortSelectionCombo->currentData() : QVariant();
    QWidget *parent = BeginLayout();
    auto *main = new QVBoxLayout(parent);
    main->addWidget(CreatePortGroup(parent));
    main->addWidget(CreateBridgeGroup(parent));
    main->addWidget(CreateBaudRateGroup(parent));
    main->addWidget(CreateStatisticsGroup(parent));
    main->addStretch();

    connect(mTypeButtons, SIGNAL(idClicked(int)), this, SLOT(OnRadioButtonClicked(int)));
    connect(mPortSelectionCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnPortSelectionComboChanged()));
    connect(mPortCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnPortComboChanged()));
    connect(mConfigureButton, SIGNAL(clicked()), this, SLOT(OnConfigureButtonClicked()));
    FillCombos();
    if (selected.isValid()) {
        const QSignalBlocker blocker(mPortSelectionCombo);
        mPortSelectionCombo->setCurrentIndex(std::max(mPortSelectionCombo->findData(selected), 0));
    }
    RefreshViews();
}

QGroupBox *SerialBridgeManagerWnd::CreatePortGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Port Selection"), aParent);
    auto *layout = new QVBoxLayout(group);
    mPortSelectionCombo = Named(new QComboBox(group), "PortSelectionCombo", tr("Serial port of the device"));
    layout->addWidget(mPortSelectionCombo);
    return group;
}

QGroupBox *SerialBridgeManagerWnd::CreateBridgeGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Bridge"), aParent);
    auto *layout = new QGridLayout(group);
    const int indent = 24;
    layout->setColumnMinimumWidth(0, indent);
    layout->setColumnStretch(1, 1);
    mTypeButtons = new QButtonGroup(group);
    mTypeButtons->setExclusive(true);
    const auto add = [&](int aId, const QString &aText, const char *aName, int aRow) {
        auto *button = Named(new QRadioButton(aText, group), aName);
        mTypeButtons->addButton(button, aId);
        layout->addWidget(button, aRow, 0, 1, 3);
    };
    // In this order the arrow keys come to a COM port without starting a Camera Link bridge on the way.
    add(SerialBridgeEntry::Inactive, tr("None"), "InactiveRadio", 0);
    add(SerialBridgeEntry::COMPortLink, tr("Serial COM Port Link"), "COMPortRadio", 1);
    mPortCombo = Named(new QComboBox(group), "PortCombo", tr("COM port"));
    layout->addWidget(mPortCombo, 2, 1);
    mConfigureButton = MakeEnterButton(group, "ConfigureButton", tr("Configure..."), tr("Configure the COM port"));
    layout->addWidget(mConfigureButton, 2, 2);
    mSummaryLabel = Named(AlignWithLayout(new QLabel(group)), "SummaryLabel");
    layout->addWidget(mSummaryLabel, 3, 1, 1, 2);
    add(SerialBridgeEntry::CameraLinkDLL, tr("Camera Link DLL"), "CameraLinkRadio", 4);
    mNameLabel = Named(AlignWithLayout(new QLabel(group)), "NameLabel");
    mNameLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(mNameLabel, 5, 1, 1, 2);
    // The longest summary fits, so that the window keeps its width.
    mSummaryLabel->setMinimumWidth(
        mSummaryLabel->fontMetrics().horizontalAdvance(FormatSummary({4000000, static_cast<LxSerialParity>(3), 8, 2})));
    return group;
}

QGroupBox *SerialBridgeManagerWnd::CreateBaudRateGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Available/Selected Baud Rates"), aParent);
    auto *layout = new QGridLayout(group);
    const size_t rows = StandardBaudRates.size() / 2;
    for (size_t i = 0; i < StandardBaudRates.size(); ++i) {
        mBaudRateChecks[i] = Named(new QCheckBox(FormatBaudRate(StandardBaudRates[i]), group),
                                   QStringLiteral("BaudRate%1Check").arg(StandardBaudRates[i]).toLatin1().constData());
        layout->addWidget(mBaudRateChecks[i], static_cast<int>(i % rows), static_cast<int>(i / rows));
    }
    return group;
}

QGroupBox *SerialBridgeManagerWnd::CreateStatisticsGroup(QWidget *aParent)
{
    auto *group = new QGroupBox(tr("Statistics"), aParent);
    auto *layout = new QGridLayout(group);
    mSentLabel = Named(AlignWithLayout(new QLabel(group)), "SentLabel");
    mReceivedLabel = Named(AlignWithLayout(new QLabel(group)), "ReceivedLabel");
    QPushButton *reset = MakeEnterButton(group, "ResetButton", tr("Reset"), tr("Reset the statistics"));
    layout->addWidget(mSentLabel, 0, 0);
    layout->addWidget(mReceivedLabel, 1, 0);
    layout->addWidget(reset, 0, 1, 2, 1);
    layout->setColumnStretch(0, 1);
    connect(reset, SIGNAL(clicked()), this, SLOT(OnResetButtonClicked()));
    return group;
}
