#include "LxGUI/DeviceFinder/SelectFromIPDlg.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/DeviceFinder/DialogButtons.h"
#include "LxGUI/DeviceFinder/IPv4.h"
#include "LxGUI/Frame/FixedSizeDialog.h"

namespace
{

constexpr int SelectWidth = 350;
constexpr int SelectHeight = 200;
constexpr int SpaceBehindAddress = 20;

}  // namespace

SelectFromIPDlg::SelectFromIPDlg(QWidget *aParent) : QDialog(aParent), mAddressEdit(new QLineEdit(this))
{
    setObjectName(QStringLiteral("SelectFromIPDlg"));
    setWindowTitle(QStringLiteral("Select From IP Address"));

    auto *text = new QLabel(
        QStringLiteral("If a device cannot be detected, you can still attempt to select it from its IP address."),
        this);
    text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    text->setWordWrap(true);

    auto *label = new QLabel(QStringLiteral("IP Address"), this);
    label->setBuddy(mAddressEdit);
    mAddressEdit->setObjectName(QStringLiteral("AddressEdit"));
    mAddressEdit->setAccessibleName(label->text());
    auto *address = new QHBoxLayout;
    address->addWidget(label);
    address->addWidget(mAddressEdit);
    address->addSpacing(SpaceBehindAddress);

    const DialogButtons buttons(this);

    auto *main = new QVBoxLayout(this);
    main->addWidget(text);
    main->addLayout(address);
    main->addStretch();
    main->addLayout(buttons.mLayout);

    QWidget::setTabOrder(mAddressEdit, buttons.mOK);
    QWidget::setTabOrder(buttons.mOK, buttons.mCancel);
    mAddressEdit->setFocus();
    MakeFixedSizeDialog(this, SelectWidth, SelectHeight);
}

void SelectFromIPDlg::accept()
{
    mAddress = mAddressEdit->text();
    if (IPv4::Parse(mAddress)) {
        QDialog::accept();
        return;
    }
    QMessageBox::information(this, QStringLiteral("Error"), QStringLiteral("Invalid IP address."), QMessageBox::Ok);
}

void SelectFromIPDlg::reject()
{
    QDialog::reject();
}
