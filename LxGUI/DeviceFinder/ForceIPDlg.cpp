#include "LxGUI/DeviceFinder/ForceIPDlg.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <array>

#include "LxDevice/LxDeviceGEV.h"
#include "LxDevice/LxDeviceKelvraProtocol.h"
#include "LxGUI/DeviceFinder/DialogButtons.h"
#include "LxGUI/DeviceFinder/IPv4.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/FitFont.h"
#include "LxGUI/Frame/FixedSizeDialog.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OutputEdit.h"
#include "LxGUI/Frame/Text.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"
#include "LxSystem/LxNetworkAdapter.h"

namespace
{

constexpr int ForceWidth = 350;
constexpr int ForceHeight = 400;
constexpr int FieldWidth = 130;
constexpr int MarkerDistance = 20;
// The markers stand inside the frame of their group, in the middle of the rows.
constexpr int RightMargin = 28;
constexpr int BottomMargin = 6;

constexpr QLatin1String NoMACAddress("00-00-00-00-00");
constexpr QLatin1String NoAddress("0.0.0.0");
constexpr QLatin1String WidestText("00:00:00:00:00:00");

/// Adds a row "label, field" to a group.
/// @param aOwner what the field belongs to, for its name: "NIC" or "Device".
void AddRow(QVBoxLayout *aGroup, const QString &aOwner, const QString &aLabel, QWidget *aField)
{
    auto *label = new QLabel(aLabel);
    label->setBuddy(aField);
    aField->setFixedWidth(FieldWidth);
    aField->setAccessibleName(aOwner + QLatin1Char(' ') + aLabel);
    aField->setObjectName(aField->accessibleName().remove(QLatin1Char(' ')));
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addStretch();
    row->addWidget(aField);
    aGroup->addLayout(row);
}

void AddRows(QVBoxLayout *aGroup, const QString &aOwner, QWidget *aMAC, QWidget *aIP, QWidget *aMask, QWidget *aGateway)
{
    AddRow(aGroup, aOwner, QStringLiteral("MAC Address"), aMAC);
    AddRow(aGroup, aOwner, QStringLiteral("IP Address"), aIP);
    AddRow(aGroup, aOwner, QStringLiteral("Subnet Mask"), aMask);
    AddRow(aGroup, aOwner, QStringLiteral("Default Gateway"), aGateway);
}

QVBoxLayout *CreateGroupLayout(QGroupBox *aGroup)
{
    auto *layout = new QVBoxLayout(aGroup);
    QMargins margins = layout->contentsMargins();
    margins.setRight(RightMargin);
    margins.setBottom(BottomMargin);
    layout->setContentsMargins(margins);
    return layout;
}

QLineEdit *CreateOutputEdit(const QString &aText)
{
    auto *edit = new QLineEdit(aText);
    MakeOutputEdit(edit);
    return edit;
}

}  // namespace

ForceIPDlg::ForceIPDlg(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter, QWidget *aParent) : QDialog(aParent)
{
    setObjectName(QStringLiteral("ForceIPDlg"));
    setWindowTitle(QStringLiteral("Set IP Address"));
    const DialogButtons buttons(this);

    auto *main = new QVBoxLayout(this);
    main->addWidget(CreateNICGroup());
    main->addWidget(CreateDeviceGroup());
    main->addStretch();
    main->addLayout(buttons.mLayout);

    const std::array<QWidget *, 6> order = {mNICIPCombo,        mDeviceIPEdit, mDeviceMaskEdit,
                                            mDeviceGatewayEdit, buttons.mOK,   buttons.mCancel};
    for (size_t i = 1; i < order.size(); ++i) {
        QWidget::setTabOrder(order[i - 1], order[i]);
    }
    mDeviceIPEdit->setFocus();

    for (QLineEdit *edit : {mDeviceIPEdit, mDeviceMaskEdit, mDeviceGatewayEdit}) {
        edit->setValidator(&mValidator);
        mMarkers.emplace_back(edit);
        connect(edit, SIGNAL(textChanged(const QString &)), this, SLOT(Validate()));
    }
    connect(mNICIPCombo, SIGNAL(activated(int)), this, SLOT(OnCbnSelchangeNICIPAddress(int)));
    Configure(aInfo, aAdapter);
    MakeFixedSizeDialog(this, ForceWidth, ForceHeight,
                        [this] { return WidthForText(mNICMACEdit, WidestText) <= FieldWidth; });
}

QGroupBox *ForceIPDlg::CreateNICGroup()
{
    auto *group = new QGroupBox(QStringLiteral("NIC Configuration"), this);
    QVBoxLayout *layout = CreateGroupLayout(group);
    mNICMACEdit = CreateOutputEdit(NoMACAddress);
    mNICIPCombo = new QComboBox;
    mNICMaskEdit = CreateOutputEdit(NoAddress);
    mNICGatewayEdit = CreateOutputEdit(NoAddress);
    AddRows(layout, QStringLiteral("NIC"), mNICMACEdit, mNICIPCombo, mNICMaskEdit, mNICGatewayEdit);
    return group;
}

QGroupBox *ForceIPDlg::CreateDeviceGroup()
{
    auto *group = new QGroupBox(QStringLiteral("GigE Vision Device IP Configuration"), this);
    QVBoxLayout *layout = CreateGroupLayout(group);
    mDeviceMACEdit = CreateOutputEdit(NoMACAddress);
    mDeviceIPEdit = new QLineEdit(NoAddress);
    mDeviceMaskEdit = new QLineEdit(NoAddress);
    mDeviceGatewayEdit = new QLineEdit(NoAddress);
    AddRows(layout, QStringLiteral("Device"), mDeviceMACEdit, mDeviceIPEdit, mDeviceMaskEdit, mDeviceGatewayEdit);
    return group;
}

void ForceIPDlg::Configure(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter)
{
    mDeviceMAC = NoMACAddress;
    if (const auto *gev = dynamic_cast<const LxDeviceInfoGEV *>(&aInfo)) {
        mDeviceMAC = ToQString(gev->GetMACAddress());
        mSetConfiguration = &LxDeviceGEV::SetIPConfiguration;
    }
    else if (const auto *kelvra = dynamic_cast<const LxDeviceInfoKelvraProtocol *>(&aInfo)) {
        mDeviceMAC = ToQString(kelvra->GetMACAddress());
        mSetConfiguration = &LxDeviceKelvraProtocol::SetIPConfiguration;
    }
    mNICAddresses = GetAddresses(aAdapter);
    mNICGateway = ToQString(aAdapter.GetDefaultGateway());
    mNICMACEdit->setText(ToQString(aAdapter.GetMACAddress()));
    mNICGatewayEdit->setText(mNICGateway);
    for (const AdapterAddress &address : mNICAddresses) {
        mNICIPCombo->addItem(address.mIPAddress);
    }
    UpdateDefaultConfiguration();
}

void ForceIPDlg::setVisible(bool aVisible)
{
    QDialog::setVisible(aVisible);
    // Showing a dialog selects the text of its first field; the suggested address is there to be completed.
    mDeviceIPEdit->end(false);
}

AdapterAddress ForceIPDlg::GetNICAddress() const
{
    const int index = mNICIPCombo->currentIndex();
    return index < 0 ? AdapterAddress() : mNICAddresses[static_cast<size_t>(index)];
}

IPConfiguration ForceIPDlg::GetConfiguration() const
{
    // An empty gateway is no address, which is 0: none.
    return {IPv4::ToNumber(mDeviceIPEdit->text()), IPv4::ToNumber(mDeviceMaskEdit->text()),
            IPv4::ToNumber(mDeviceGatewayEdit->text())};
}

void ForceIPDlg::OnCbnSelchangeNICIPAddress(int /*aIndex*/)
{
    UpdateDefaultConfiguration();
}

void ForceIPDlg::UpdateDefaultConfiguration()
{
    const AdapterAddress nic = GetNICAddress();
    mNICMaskEdit->setText(nic.mSubnetMask);
    const uint32_t network = IPv4::GetNetwork(IPv4::ToNumber(nic.mIPAddress), IPv4::ToNumber(nic.mSubnetMask));
    mDeviceMACEdit->setText(mDeviceMAC);
    mDeviceIPEdit->setText(IPv4::GetSuggestedPrefix(network));
    mDeviceMaskEdit->setText(nic.mSubnetMask);
    mDeviceGatewayEdit->setText(mNICGateway);
    Validate();
}

void ForceIPDlg::Validate()
{
    const AdapterAddress nic = GetNICAddress();
    const IPConfigurationDoubts doubts =
        FindDoubts(GetConfiguration(), IPv4::ToNumber(nic.mIPAddress), IPv4::ToNumber(nic.mSubnetMask));
    mMarkers[0].SetMessage(doubts.mIPAddress);
    mMarkers[1].SetMessage(doubts.mSubnetMask);
    mMarkers[2].SetMessage(doubts.mDefaultGateway);
    update();
}

bool ForceIPDlg::HasDoubts() const
{
    return std::any_of(mMarkers.begin(), mMarkers.end(),
                       [](const FieldErrorMarker &aMarker) { return aMarker.HasMessage(); });
}

bool ForceIPDlg::CheckAddressFormat(QString aText)
{
    return !aText.section(QLatin1Char('.'), 3).isEmpty();
}

void ForceIPDlg::accept()
{
    Validate();
    const IPConfiguration configuration = GetConfiguration();
    // Only the first address of the adapter blocks; another one that is selected raises a doubt.
    const QString error = FindBlockingError(configuration, mDeviceIPEdit->text(),
                                            mNICAddresses.empty() ? QString() : mNICAddresses.front().mIPAddress);
    if (!error.isEmpty()) {
        ShowError(this, error);
        return;
    }
    if (HasDoubts()) {
        const auto answer = QMessageBox::question(
            this, QStringLiteral("Warning"),
            QStringLiteral("This IP Configuration may be incompatible with your Interface settings or simply "
                           "invalid.\r\n\r\nAre you sure you want to continue?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        // The application may have closed the dialog under the question.
        if (answer != QMessageBox::Yes || !isVisible()) {
            return;
        }
    }
    if (Apply(configuration).IsOK()) {
        QDialog::accept();
    }
    else {
        ShowError(this, QStringLiteral("Failed setting IP configuration"));
    }
}

LxResult ForceIPDlg::Apply(const IPConfiguration &aConfiguration)
{
    mDeviceIPEdit->setText(IPv4::ToText(aConfiguration.mIPAddress));
    mDeviceMaskEdit->setText(IPv4::ToText(aConfiguration.mSubnetMask));
    mDeviceGatewayEdit->setText(IPv4::ToText(aConfiguration.mDefaultGateway));
    if (!mSetConfiguration) {
        return LxResultCode::NoNetworkDevice;
    }
    const BusyCursor busy;
    return mSetConfiguration(ToLxString(mDeviceMAC), ToLxString(mDeviceIPEdit->text()),
                             ToLxString(mDeviceMaskEdit->text()), ToLxString(mDeviceGatewayEdit->text()));
}

void ForceIPDlg::reject()
{
    QDialog::reject();
}

// Markers

QRect ForceIPDlg::GetMarkerRect(const FieldErrorMarker &aMarker) const
{
    // Fields know their place inside their group; that of the device is below that of the adapter.
    const QRect field = aMarker.GetField()->geometry();
    const int groupTop = mNICGatewayEdit->geometry().top() + mNICGatewayEdit->height() + MarkerDistance;
    return QRect(QPoint(field.right() + MarkerDistance, field.center().y() + groupTop), aMarker.GetSize());
}

void ForceIPDlg::paintEvent(QPaintEvent *aEvent)
{
    QDialog::paintEvent(aEvent);
    QPainter painter(this);
    for (const FieldErrorMarker &marker : mMarkers) {
        if (marker.HasMessage()) {
            marker.Draw(painter, GetMarkerRect(marker).topLeft());
        }
    }
}

bool ForceIPDlg::event(QEvent *aEvent)
{
    if (aEvent->type() == QEvent::ToolTip) {
        // A marker explains itself as its field does.
        const auto *help = static_cast<QHelpEvent *>(aEvent);
        for (const FieldErrorMarker &marker : mMarkers) {
            if (marker.HasMessage() && GetMarkerRect(marker).contains(help->pos())) {
                QToolTip::showText(help->globalPos(), marker.GetMessage(), this, GetMarkerRect(marker));
                return true;
            }
        }
    }
    return QDialog::event(aEvent);
}
