#include "LxGUI/GenBrowser/GenBrowserOptionsDlg.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/Frame/FixedSizeDialog.h"

namespace
{

enum NamesIndex
{
    FeatureNames = 0,
    DisplayNames = 1,
};

enum ViewIndex
{
    Tree = 0,
    AlphabeticalList = 1,
};

QComboBox *AddCombo(QFormLayout *aLayout, const QString &aLabel, const char *aName, const QStringList &aTexts)
{
    auto *combo = new QComboBox;
    combo->setObjectName(QLatin1String(aName));
    combo->setAccessibleName(aLabel);
    combo->addItems(aTexts);
    aLayout->addRow(aLabel, combo);
    return combo;
}

}  // namespace

GenBrowserOptionsDlg::GenBrowserOptionsDlg(const GenBrowserOptions &aOptions, QWidget *aParent)
    : QDialog(aParent), mOptions(aOptions)
{
    setWindowTitle(tr("Browser Options"));
    auto *main = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    main->addLayout(form);
    mNamesCombo = AddCombo(form, tr("Names"), "NamesCombo", {tr("Feature Names"), tr("Display Names")});
    mViewCombo = AddCombo(form, tr("View"), "ViewCombo", {tr("Tree"), tr("Alphabetical List")});
    mViewCombo->setToolTip(tr("The alphabetical list is sorted by feature names and needs these to be shown."));
    mRefreshCombo = AddCombo(form, tr("Refresh"), "RefreshCombo", {tr("Polling"), tr("Automatic"), tr("Manual")});
    mRefreshCombo->setItemData(0, tr("Watches all features"), Qt::ToolTipRole);
    mRefreshCombo->setItemData(1, tr("Reads the features on screen every two seconds"), Qt::ToolTipRole);
    mRefreshCombo->setItemData(2, tr("Reads when you press Refresh"), Qt::ToolTipRole);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *ok = buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("OkButton"));
    QPushButton *cancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("CancelButton"));
    main->addWidget(buttons);

    mNamesCombo->setCurrentIndex(aOptions.mDisplayNames ? DisplayNames : FeatureNames);
    mViewCombo->setCurrentIndex(aOptions.mTreeView ? Tree : AlphabeticalList);
    mViewCombo->setEnabled(!aOptions.mDisplayNames);
    const auto refresh = static_cast<uint32_t>(aOptions.mRefresh);
    mRefreshCombo->setCurrentIndex(refresh < 3 ? static_cast<int>(refresh) : static_cast<int>(LxGenRefreshAutomatic));

    connect(mNamesCombo, SIGNAL(activated(int)), this, SLOT(OnNamesComboChange(int)));
    connect(mViewCombo, SIGNAL(activated(int)), this, SLOT(OnViewComboChange(int)));
    connect(ok, SIGNAL(clicked()), this, SLOT(accept()));
    connect(cancel, SIGNAL(clicked()), this, SLOT(reject()));
    MakeFixedSizeDialog(this, 0, 0);
}

void GenBrowserOptionsDlg::accept()
{
    mOptions.mDisplayNames = mNamesCombo->currentIndex() == DisplayNames;
    mOptions.mTreeView = mViewCombo->currentIndex() == Tree;
    mOptions.mRefresh = static_cast<LxGenRefresh>(mRefreshCombo->currentIndex());
    QDialog::accept();
}

void GenBrowserOptionsDlg::OnNamesComboChange(int aIndex)
{
    if (aIndex == DisplayNames) {
        mViewCombo->setCurrentIndex(Tree);
    }
    mViewCombo->setEnabled(aIndex == FeatureNames);
}

// The view is read when the dialog is accepted; nothing else depends on it.
void GenBrowserOptionsDlg::OnViewComboChange(int /*aIndex*/) {}
