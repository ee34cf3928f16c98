#include "LxGUI/SerialBridgeManager/BaudRateSelectionDlg.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/Frame/AlignWithLayout.h"
#include "LxGUI/Frame/FixedSizeDialog.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeRules.h"

BaudRateSelectionDlg::BaudRateSelectionDlg(uint32_t aBaudRate, QWidget *aParent)
    : QDialog(aParent), mBaudRate(aBaudRate), mCombo(new QComboBox(this))
{
    setWindowTitle(tr("Baud Rate Selection"));
    setModal(true);
    auto *main = new QVBoxLayout(this);
    QLabel *label = AlignWithLayout(new QLabel(tr("Select Baud Rate:"), this));
    label->setBuddy(mCombo);
    main->addWidget(label);
    mCombo->setObjectName(QStringLiteral("BaudRateCombo"));
    mCombo->setAccessibleName(tr("Baud rate"));
    for (const uint32_t rate : SelectableBaudRates) {
        mCombo->addItem(FormatBaudRate(rate), rate);
    }
    SelectData(mCombo, aBaudRate);
    main->addWidget(mCombo);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    main->addWidget(buttons);
    connect(buttons, SIGNAL(accepted()), this, SLOT(OnAccept()));
    connect(buttons, SIGNAL(rejected()), this, SLOT(reject()));
    MakeFixedSizeDialog(this, 0, 0);
}

void BaudRateSelectionDlg::OnAccept()
{
    mBaudRate = mCombo->currentData().toUInt();
    QDialog::accept();
}
