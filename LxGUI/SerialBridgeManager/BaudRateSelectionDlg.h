#pragma once

#include <QtWidgets/QDialog>

class QComboBox;

/// Asks for the baud rate of a port that tells none.
class BaudRateSelectionDlg : public QDialog
{
    Q_OBJECT

public:
    BaudRateSelectionDlg(uint32_t aBaudRate, QWidget *aParent);

    /// What was given, or what was chosen when the dialog was accepted.
    uint32_t BaudRate() const { return mBaudRate; }

public slots:
    void OnAccept();

private:
    uint32_t mBaudRate;
    QComboBox *mCombo;
};
