// The content of the device finder.

#include <QtCore/QMutexLocker>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"
#include "LxGUI/DeviceFinder/InfoTable.h"
#include "LxGUI/Frame/AlignWithLayout.h"
#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/TextDelegate.h"

namespace
{

constexpr int InterfaceTableHeight = 140;
constexpr int TreeWidth = 540;
constexpr int ButtonWidth = 140;

QLabel *CreateHeading(QWidget *aParent, const QString &aText, QWidget *aBuddy)
{
    QLabel *label = AlignWithLayout(new QLabel(aText, aParent));
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setBuddy(aBuddy);
    return label;
}

QPushButton *CreateButton(QWidget *aParent, const char *aName, const QString &aText)
{
    auto *button = new QPushButton(aText, aParent);
    button->setObjectName(QLatin1String(aName));
    button->setAccessibleName(aText);
    return button;
}

}  // namespace

void DeviceFinderWnd::CreateLayout()
{
    QWidget *parent = BeginLayout();

    mInterfaceTable =
        CreateInfoTable(parent, QStringLiteral("InterfaceTable"), QStringLiteral("Interface Information"));
    mInterfaceTable->setMaximumHeight(InterfaceTableHeight);
    mDeviceTable = CreateInfoTable(parent, QStringLiteral("DeviceTable"), QStringLiteral("Device Information"));
    mDeviceTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto *right = new QVBoxLayout;
    right->addWidget(CreateHeading(parent, QStringLiteral("Interface Information"), mInterfaceTable));
    right->addWidget(mInterfaceTable);
    right->addWidget(CreateHeading(parent, QStringLiteral("Device Information"), mDeviceTable));
    right->addWidget(mDeviceTable);

    mTree = new DeviceTree(parent);
    mTree->setObjectName(QStringLiteral("DeviceTree"));
    mTree->setAccessibleName(QStringLiteral("Available Devices"));
    mTree->setMinimumWidth(TreeWidth);
    mTree->setContextMenuPolicy(Qt::CustomContextMenu);
    mTree->setHeaderHidden(true);
    mTree->setUniformRowHeights(true);
    mTree->setItemDelegate(new TextDelegate(mTree));
    auto *left = new QVBoxLayout;
    left->addWidget(CreateHeading(parent, QStringLiteral("Available Devices"), mTree));
    left->addWidget(mTree);
    auto *upper = new QHBoxLayout;
    upper->addLayout(left);
    upper->addLayout(right);

    mShowUnreachableCheck = new QCheckBox(QStringLiteral("Show unreachable Network Devices"), parent);
    mShowUnreachableCheck->setObjectName(QStringLiteral("ShowUnreachableCheck"));
    mShowUnreachableCheck->setAccessibleName(mShowUnreachableCheck->text());
    mShowUnreachableCheck->setChecked(mShowUnreachable);

    auto *main = new QVBoxLayout(parent);
    main->addLayout(upper);
    main->addWidget(mShowUnreachableCheck);
    main->addLayout(CreateButtons(parent));

    QWidget *previous = mTree;
    for (QWidget *next : {static_cast<QWidget *>(mInterfaceTable), static_cast<QWidget *>(mDeviceTable),
                          static_cast<QWidget *>(mShowUnreachableCheck), static_cast<QWidget *>(mSetIPButton),
                          static_cast<QWidget *>(mSelectFromIPButton), static_cast<QWidget *>(mOKButton),
                          static_cast<QWidget *>(mCancelButton)})
    {
        QWidget::setTabOrder(previous, next);
        previous = next;
    }
    mTree->setFocus();

    connect(mTree, SIGNAL(itemSelectionChanged()), this, SLOT(OnTvnSelchangedTree()));
    connect(mTree, SIGNAL(itemDoubleClicked(QTreeWidgetItem *, int)), this,
            SLOT(OnNMDblclkTree(QTreeWidgetItem *, int)));
    connect(mTree, SIGNAL(customContextMenuRequested(QPoint)), this, SLOT(OnContextMenu(QPoint)));
    connect(mSetIPButton, SIGNAL(clicked()), this, SLOT(OnBnClickedForceipButton()));
    connect(mSelectFromIPButton, SIGNAL(clicked()), this, SLOT(OnBnClickedSelectfromipButton()));
    connect(mOKButton, SIGNAL(clicked()), this, SLOT(accept()));
    connect(mCancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    connect(mShowUnreachableCheck, SIGNAL(stateChanged(int)), this, SLOT(OnBnClickedShowunreachableCheck(int)));
    connect(mTree.data(), &DeviceTree::AboutToBeDestroyed, &mTreeWatcher, [this](DeviceTree *aTree) {
        const QMutexLocker lock(&mMapMutex);
        ForgetItemsOf(aTree);
    });

    MakeFixedSizeDialog(StoredWidth(), StoredHeight());
    mIcons.Load();
}

QLayout *DeviceFinderWnd::CreateButtons(QWidget *aParent)
{
    mSetIPButton = CreateButton(aParent, "SetIPButton", QStringLiteral("Set IP Address..."));
    mSelectFromIPButton = CreateButton(aParent, "SelectFromIPButton", QStringLiteral("Select from IP Address..."));
    mOKButton = CreateButton(aParent, "OKButton", QStringLiteral("OK"));
    mCancelButton = CreateButton(aParent, "CancelButton", QStringLiteral("Cancel"));
    for (QPushButton *button : {mSetIPButton.data(), mSelectFromIPButton.data()}) {
        button->setMinimumWidth(ButtonWidth);
        button->setAutoDefault(false);
        PressOnEnter(button);  // not OK, which Enter presses elsewhere
    }
    mSetIPButton->setEnabled(false);
    mOKButton->setDefault(true);
    auto *row = new QHBoxLayout;
    row->addWidget(mSetIPButton);
    row->addWidget(mSelectFromIPButton);
    row->addStretch();
    row->addWidget(mOKButton);
    row->addWidget(mCancelButton);
    return row;
}
