#pragma once

#include <QtWidgets/QDialog>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxGUI/DeviceFinder/FieldErrorMarker.h"
#include "LxGUI/DeviceFinder/IPConfigurationRules.h"
#include "LxGUI/DeviceFinder/SubnetRules.h"
#include "LxGUI/Frame/IP4Validator.h"

class LxDeviceInfo;
class LxNetworkAdapter;
class QComboBox;
class QGroupBox;
class QLineEdit;

/// Gives a network device, addressed by its MAC address, an IP configuration, so that it can be reached from a network
/// adapter.
///
/// Doubtful fields are marked at every keystroke and asked about at OK; the device is changed by OK only.
class ForceIPDlg : public QDialog
{
    Q_OBJECT

public:
    /// Copies what it needs of the device and the adapter.
    ForceIPDlg(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter, QWidget *aParent = nullptr);

    void setVisible(bool aVisible) override;

public slots:
    /// Stays open unless the device took the configuration.
    void accept() override;
    void reject() override;
    /// Marks the doubtful fields.
    void Validate();
    /// Whether a text has something behind a third dot.
    bool CheckAddressFormat(QString aText);
    void OnCbnSelchangeNICIPAddress(int aIndex);
    /// Suggests a configuration on the subnet of the selected address of the adapter.
    void UpdateDefaultConfiguration();

protected:
    bool event(QEvent *aEvent) override;
    void paintEvent(QPaintEvent *aEvent) override;

private:
    using SetConfiguration = LxResult (*)(const LxString &, const LxString &, const LxString &, const LxString &);

    QGroupBox *CreateNICGroup();
    QGroupBox *CreateDeviceGroup();
    void Configure(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter);
    /// The selected address of the adapter, with empty texts when it has none.
    AdapterAddress GetNICAddress() const;
    IPConfiguration GetConfiguration() const;
    bool HasDoubts() const;
    LxResult Apply(const IPConfiguration &aConfiguration);
    QRect GetMarkerRect(const FieldErrorMarker &aMarker) const;

    QLineEdit *mNICMACEdit = nullptr;
    QComboBox *mNICIPCombo = nullptr;
    QLineEdit *mNICMaskEdit = nullptr;
    QLineEdit *mNICGatewayEdit = nullptr;
    QLineEdit *mDeviceMACEdit = nullptr;
    QLineEdit *mDeviceIPEdit = nullptr;
    QLineEdit *mDeviceMaskEdit = nullptr;
    QLineEdit *mDeviceGatewayEdit = nullptr;
    IP4Validator mValidator;
    std::vector<FieldErrorMarker> mMarkers;  // of the address, the mask and the gateway of the device

    AdapterAddresses mNICAddresses;
    QString mNICGateway;
    QString mDeviceMAC;
    SetConfiguration mSetConfiguration = nullptr;  // by the kind of the device; null when it is no network device
};
