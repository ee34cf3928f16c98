#pragma once

#include <QtWidgets/QDialog>
#include <vector>

#include "LxSerial/LxSerialPortConfiguration.h"

class QComboBox;

/// Lets the user choose how a COM port is set.
class SerialCOMPortConfigDlg : public QDialog
{
    Q_OBJECT

public:
    /// @param aBaudRates the rates to choose from, in this order; empty: the standard ones.
    SerialCOMPortConfigDlg(const LxSerialPortConfiguration &aConfiguration, const std::vector<uint32_t> &aBaudRates,
                           QWidget *aParent);

    /// What was given, or what was chosen when the dialog was accepted. Not checked for validity.
    const LxSerialPortConfiguration &Configuration() const { return mConfiguration; }

public slots:
    void OnAccept();

private:
    LxSerialPortConfiguration mConfiguration;
    QComboBox *mBaudRateCombo;
    QComboBox *mParityCombo;
    QComboBox *mByteSizeCombo;
    QComboBox *mStopBitsCombo;
};
