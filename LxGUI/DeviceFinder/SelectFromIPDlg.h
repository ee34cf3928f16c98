#pragma once

#include <QtWidgets/QDialog>

class QLineEdit;

/// Asks for the IP address of a device that cannot be found by a search.
class SelectFromIPDlg : public QDialog
{
    Q_OBJECT

public:
    explicit SelectFromIPDlg(QWidget *aParent = nullptr);

    /// What was in the field at the last OK; an IP address once the dialog is accepted.
    const QString &GetAddress() const { return mAddress; }

public slots:
    /// Stays open unless the text is an IP address.
    void accept() override;
    void reject() override;

private:
    QLineEdit *mAddressEdit;
    QString mAddress;
};
