#include "LxGUI/SerialBridgeManager/SerialCOMPortConfigDlg.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QVBoxLayout>
#include <initializer_list>
#include <utility>

#include "LxGUI/Frame/FixedSizeDialog.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeRules.h"

namespace
{

QComboBox *AddCombo(QFormLayout *aForm, const QString &aLabel, const char *aName,
                    std::initializer_list<std::pair<const char *, uint32_t>> aRows)
{
    auto *combo = new QComboBox;
    combo->setObjectName(QLatin1String(aName));
    combo->setAccessibleName(aLabel.chopped(1));
    for (const auto &[text, value] : aRows) {
        combo->addItem(QLatin1String(text), value);
    }
    aForm->addRow(aLabel, combo);
    return combo;
}

}  // namespace

SerialCOMPortConfigDlg::SerialCOMPortConfigDlg(const LxSerialPortConfiguration &aConfiguration,
                                               const std::vector<uint32_t> &aBaudRates, QWidget *aParent)
    : QDialog(aParent), mConfiguration(aConfiguration)
{
    setWindowTitle(tr("Serial COM Port Configuration"));
    auto *main = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    main->addLayout(form);
    mBaudRateCombo = AddCombo(form, tr("Baud Rate:"), "BaudRateCombo", {});
    mParityCombo = AddCombo(form, tr("Parity:"), "ParityCombo", {{"None", 0}, {"Even", 1}, {"Odd", 2}});
    mByteSizeCombo = AddCombo(form, tr("Byte Size:"), "ByteSizeCombo", {{"7 bits", 7}, {"8 bits", 8}});
    mStopBitsCombo = AddCombo(form, tr("Stop Bits:"), "StopBitsCombo", {{"1 bit", 1}, {"2 bits", 2}});
    const std::vector<uint32_t> standard(StandardBaudRates.begin(), StandardBaudRates.end());
    for (const uint32_t rate : aBaudRates.empty() ? standard : aBaudRates) {
        mBaudRateCombo->addItem(FormatBaudRate(rate), rate);
    }
    SelectData(mBaudRateCombo, aConfiguration.mBaudRate);
    SelectData(mParityCombo, static_cast<uint32_t>(aConfiguration.mParity));
    SelectData(mByteSizeCombo, aConfiguration.mByteSize);
    SelectData(mStopBitsCombo, aConfiguration.mStopBits);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    main->addWidget(buttons);
    connect(buttons, SIGNAL(accepted()), this, SLOT(OnAccept()));
    connect(buttons, SIGNAL(rejected()), this, SLOT(reject()));
    MakeFixedSizeDialog(this, 0, 0);
}

void SerialCOMPortConfigDlg::OnAccept()
{
    mConfiguration.mBaudRate = mBaudRateCombo->currentData().toUInt();
    mConfiguration.mParity = static_cast<LxSerialParity>(mParityCombo->currentData().toUInt());
    mConfiguration.mByteSize = mByteSizeCombo->currentData().toUInt();
    mConfiguration.mStopBits = mStopBitsCombo->currentData().toUInt();
    accept();
}
