#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QMutexLocker>
#include <QtCore/QScopedValueRollback>
#include <QtGui/QCursor>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>

#include "LxGUI/DeviceFinder/DeviceFinderThread.h"
#include "LxGUI/DeviceFinder/DiscoveryState.h"
#include "LxGUI/DeviceFinder/ForceIPDlg.h"
#include "LxGUI/DeviceFinder/InfoTable.h"
#include "LxGUI/DeviceFinder/SelectFromIPDlg.h"
#include "LxGUI/DeviceFinder/SystemLookup.h"
#include "LxGUI/DeviceFinder/TreeItemFactory.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/Frame/Text.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"
#include "LxSystem/LxNetworkAdapter.h"

namespace
{

QString InvalidConfigurationText(int aType)
{
    if (!IsNetworkDevice(aType)) {
        return QStringLiteral("This device must be connected to a USB 3.0 (SuperSpeed) port.");
    }
    // The text ends with a blank.
    return QString::fromUtf8(
        "The device is on a subnet that is not compatible with your computer’s network interface card (NIC). "
        "Configure the device to use dynamic addressing (LLA or DHCP) or a static IP address. ");
}

}  // namespace

DeviceFinderWnd::DeviceFinderWnd()
{
    SetTitle("Device Selection");
    SetPosition(-1, -1, 900, 600);
}

DeviceFinderWnd::~DeviceFinderWnd()
{
    StopDiscovery();
}

// Options

ListingOptions DeviceFinderWnd::GetOptions() const
{
    ListingOptions options;
    options.mShowUnreachable = mShowUnreachable;
    options.mGEVEnabled = mGEVEnabled;
    options.mU3VEnabled = mU3VEnabled;
    options.mKelvraEnabled = mKelvraEnabled;
    options.mGEVVisible = mGEVVisible;
    options.mU3VVisible = mU3VVisible;
    options.mKelvraVisible = mKelvraVisible;
    return options;
}

void DeviceFinderWnd::SetGEVEnabled(bool aEnabled, bool aVisible)
{
    mGEVEnabled = aEnabled;
    mGEVVisible = aVisible;
}

void DeviceFinderWnd::GetGEVEnabled(bool &aEnabled, bool &aVisible) const
{
    aEnabled = mGEVEnabled;
    aVisible = mGEVVisible;
}

void DeviceFinderWnd::SetU3VEnabled(bool aEnabled, bool aVisible)
{
    mU3VEnabled = aEnabled;
    mU3VVisible = aVisible;
}

void DeviceFinderWnd::GetU3VEnabled(bool &aEnabled, bool &aVisible) const
{
    aEnabled = mU3VEnabled;
    aVisible = mU3VVisible;
}

void DeviceFinderWnd::SetKelvraProtocolEnabled(bool aEnabled, bool aVisible)
{
    mKelvraEnabled = aEnabled;
    mKelvraVisible = aVisible;
}

void DeviceFinderWnd::GetKelvraProtocolEnabled(bool &aEnabled, bool &aVisible) const
{
    aEnabled = mKelvraEnabled;
    aVisible = mKelvraVisible;
}

// Opening and closing

void DeviceFinderWnd::OnOpen()
{
    StopDiscovery();
    mSelected = nullptr;
    mState = std::make_shared<DiscoveryState>(this);
    mThread = std::make_unique<DeviceFinderThread>(mState);
    mState->mSystem.RegisterEventSink(this);
    {
        const QMutexLocker lock(&mMapMutex);
        const QScopedValueRollback refreshing(mRefreshing, true);
        RebuildInterfaceItems();
    }
    QEvent refresh(RefreshEvent);
    QCoreApplication::sendEvent(this, &refresh);
    mThread->Start();

    const bool network = GetOptions().IsNetworkVisible();
    if (mOKButton) {
        mOKButton->setEnabled(false);
        mSetIPButton->setEnabled(false);
        mSetIPButton->setVisible(network);
        mSelectFromIPButton->setEnabled(true);
        mSelectFromIPButton->setVisible(network);
    }
}

void DeviceFinderWnd::OnClose()
{
    StopDiscovery();
}

void DeviceFinderWnd::StopDiscovery()
{
    if (mDialog) {
        mDialog->reject();
    }
    if (mThread) {
        mState->mSystem.UnregisterEventSink(this);
        mThread->Cancel();
        mThread.reset();
        // The state stays: it owns the device that was chosen.
    }
    ClearItems();
    QCoreApplication::removePostedEvents(this, RefreshEvent);
    mRefreshPosted = false;
}

void DeviceFinderWnd::ClearItems()
{
    const QMutexLocker lock(&mMapMutex);
    const QScopedValueRollback refreshing(mRefreshing, true);
    mInterfacesChanged = false;
    mInterfaceItems.clear();
    mDeviceItems.clear();
    mPendingDevices.clear();
    // Trees that were replaced keep their items; nothing refers to these any more. Nor does anything show them when the
    // application has gone before the window.
    if (mTree && OwnedApplication::CanMakeWidgets()) {
        mTree->clear();
        RefreshTables();
    }
}

void DeviceFinderWnd::StopThread()
{
    if (mThread) {
        mThread->Cancel();
    }
}

void DeviceFinderWnd::StopThreadForSelection()
{
    // The lists of the system are those of the last whole search. A device that was selected during the first search is
    // in none before that ends; otherwise there is nothing to wait for.
    if (mThread && !FindSelection()) {
        mThread->Stop();
    }
    StopThread();
}

void DeviceFinderWnd::RestartThread()
{
    if (mThread) {
        mThread->Start();
    }
}

// Reports of the search thread

bool DeviceFinderWnd::OnFound(const LxDeviceInfo * /*aInfo*/)
{
    return true;
}

void DeviceFinderWnd::ReportInterface(const LxInterface &aInterface)
{
    bool reserved = false;
    OnDeviceFound(&aInterface, nullptr, reserved);
}

void DeviceFinderWnd::OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool & /*aReserved*/)
{
    if (!aInterface || (aInfo && !OnFound(aInfo))) {
        return;
    }
    const QMutexLocker lock(&mMapMutex);
    const auto item = mInterfaceItems.find(aInterface->GetUniqueID().GetAscii());
    if (item != mInterfaceItems.end()) {
        item->second->Refill(mState->mSystem, *aInterface);
    }
    else if (IsInterfaceListed(aInterface->GetType(), GetOptions())) {
        mInterfacesChanged = true;
    }
    if (aInfo) {
        if (!IsDeviceListed(aInfo->GetType(), GetOptions())) {
            return;
        }
        ReportDevice(*aInterface, *aInfo);
    }
    PostRefresh();
}

void DeviceFinderWnd::ReportDevice(const LxInterface &aInterface, const LxDeviceInfo &aInfo)
{
    const QByteArray interfaceID = aInterface.GetUniqueID().GetAscii();
    const QByteArray key = aInfo.GetUniqueID().GetAscii() + interfaceID;
    if (const auto placed = mDeviceItems.find(key); placed != mDeviceItems.end()) {
        placed->second->Refill(aInfo);
        return;
    }
    std::unique_ptr<TreeItemInfoDevice> &pending = mPendingDevices[key];
    if (!pending) {
        pending = CreateDeviceItem(aInfo.GetType(), IsDeviceEnabled(aInfo.GetType(), GetOptions()));
        pending->SetInterfaceID(interfaceID);
    }
    pending->Refill(aInfo);
}

void DeviceFinderWnd::PostRefresh()
{
    // One refresh shows all reports that came before it.
    if (!mRefreshPosted.exchange(true)) {
        QCoreApplication::postEvent(this, new QEvent(RefreshEvent));
    }
}

// Refresh of the tree

bool DeviceFinderWnd::event(QEvent *aEvent)
{
    if (aEvent->type() == RefreshEvent) {
        Refresh();
        return true;
    }
    return Wnd::event(aEvent);
}

bool DeviceFinderWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    if (aEvent->type() == RefreshEvent) {
        Refresh();
        return true;
    }
    return QObject::eventFilter(aObject, aEvent);
}

void DeviceFinderWnd::Refresh()
{
    const QMutexLocker lock(&mMapMutex);
    mRefreshPosted = false;
    if (!mThread || !mTree) {
        return;
    }
    const QScopedValueRollback refreshing(mRefreshing, true);
    if (mInterfacesChanged) {
        RebuildInterfaceItems();
    }
    const TreeItemInfo *selected = GetSelectedItem();
    for (const auto &[id, item] : mInterfaceItems) {
        item->Display(mIcons);
        if (item == selected) {
            RefreshTables();
        }
    }
    PlacePendingDevices();
    RefreshDevices();
}

void DeviceFinderWnd::RebuildInterfaceItems()
{
    mInterfaceItems.clear();
    mDeviceItems.clear();
    mPendingDevices.clear();
    mInterfacesChanged = false;
    if (!mTree) {
        return;
    }
    mTree->clear();
    RefreshTables();
    const LxSystem &system = mState->mSystem;
    for (uint32_t i = 0; i < system.GetInterfaceCount(); ++i) {
        const LxInterface *interface = system.GetInterface(i);
        if (!interface || !IsInterfaceListed(interface->GetType(), GetOptions())) {
            continue;
        }
        TreeItemInfoInterface *item = CreateInterfaceItem(interface->GetType()).release();
        item->Refill(system, *interface);
        item->Display(mIcons);
        mTree->addTopLevelItem(item);
        mInterfaceItems[item->GetUniqueID()] = item;
    }
    mTree->expandAll();
}

void DeviceFinderWnd::PlacePendingDevices()
{
    const bool showUnreachable = mShowUnreachable;
    std::map<TreeItemInfoInterface *, QList<QTreeWidgetItem *>> children;
    for (auto &[key, device] : mPendingDevices) {
        const auto parent = mInterfaceItems.find(device->GetInterfaceID());
        // What would be removed again at once need not be placed.
        if (parent != mInterfaceItems.end() && !device->IsToBeRemoved(showUnreachable)) {
            device->Display(mIcons);
            mDeviceItems[key] = device.get();
            children[parent->second].append(device.release());
        }
    }
    mPendingDevices.clear();
    for (const auto &[parent, devices] : children) {
        parent->addChildren(devices);
    }
}

void DeviceFinderWnd::RefreshDevices()
{
    const bool showUnreachable = mShowUnreachable;
    for (auto i = mDeviceItems.begin(); i != mDeviceItems.end();) {
        TreeItemInfoDevice *item = i->second;
        if (item->IsToBeRemoved(showUnreachable)) {
            // Out of the map and of the tree first: while an item is deleted inside a tree, its derived part is gone.
            i = mDeviceItems.erase(i);
            item->parent()->removeChild(item);
            delete item;
        }
        else {
            item->Display(mIcons);
            ++i;
        }
    }
}

void DeviceFinderWnd::ForgetItemsOf(const QTreeWidget *aTree)
{
    std::erase_if(mInterfaceItems, [aTree](const auto &aEntry) { return aEntry.second->treeWidget() == aTree; });
    std::erase_if(mDeviceItems, [aTree](const auto &aEntry) { return aEntry.second->treeWidget() == aTree; });
}

// Information tables and buttons

TreeItemInfo *DeviceFinderWnd::GetSelectedItem() const
{
    const QList<QTreeWidgetItem *> items = mTree ? mTree->selectedItems() : QList<QTreeWidgetItem *>();
    return items.isEmpty() ? nullptr : dynamic_cast<TreeItemInfo *>(items.first());
}

TreeItemInfoDevice *DeviceFinderWnd::GetSelectedDevice() const
{
    return dynamic_cast<TreeItemInfoDevice *>(GetSelectedItem());
}

void DeviceFinderWnd::OnTvnSelchangedTree()
{
    if (mRefreshing) {
        RefreshTables();
    }
    else {
        const QMutexLocker lock(&mMapMutex);
        RefreshTables();
    }
}

void DeviceFinderWnd::RefreshTables()
{
    if (!mInterfaceTable || !mDeviceTable) {
        return;
    }
    const TreeItemInfo *selected = GetSelectedItem();
    TreeItemInfoDevice *device = GetSelectedDevice();
    const TreeItemInfo *interface = selected;
    if (device) {
        device->RefreshAccess();
        const auto found = mInterfaceItems.find(device->GetInterfaceID());
        interface = found != mInterfaceItems.end() ? found->second : nullptr;
    }
    const bool deviceRows = device ? FillInfoTable(*mDeviceTable, device->GetRows()) : ClearInfoTable(*mDeviceTable);
    const bool interfaceRows =
        interface ? FillInfoTable(*mInterfaceTable, interface->GetRows()) : ClearInfoTable(*mInterfaceTable);
    if (deviceRows || interfaceRows) {
        mInterfaceTable->resizeColumnsToContents();
        mDeviceTable->resizeColumnsToContents();
    }
    if (mOKButton) {
        mOKButton->setEnabled(device && device->IsEnabled());
    }
    if (mSetIPButton) {
        mSetIPButton->setEnabled(device && device->CanSetIP());
    }
}

void DeviceFinderWnd::OnBnClickedShowunreachableCheck(int aState)
{
    mShowUnreachable = aState == Qt::Checked;
    if (QWidget *widget = Widget()) {
        QCoreApplication::postEvent(widget, new QEvent(RefreshEvent));
    }
}

// Choosing

std::optional<DeviceFinderWnd::Selection> DeviceFinderWnd::FindSelection()
{
    QByteArray interfaceID;
    QByteArray deviceID;
    {
        const QMutexLocker lock(&mMapMutex);
        const TreeItemInfoDevice *item = GetSelectedDevice();
        if (!item || !mState) {
            return std::nullopt;
        }
        interfaceID = item->GetInterfaceID();
        deviceID = item->GetUniqueID();
    }
    Selection selection;
    selection.mInterface = FindInterface(mState->mSystem, interfaceID);
    selection.mDevice = selection.mInterface ? FindDeviceInfo(*selection.mInterface, deviceID) : nullptr;
    return selection.mDevice ? std::optional(selection) : std::nullopt;
}

void DeviceFinderWnd::accept()
{
    StopThreadForSelection();
    if (!mSelected) {
        const std::optional<Selection> selection = FindSelection();
        if (!selection) {
            RestartThread();
            return;
        }
        if (!selection->mDevice->IsConfigurationValid()) {
            const QPointer<DeviceFinderWnd> self(this);
            ShowError(Widget(), InvalidConfigurationText(selection->mDevice->GetType()));
            if (self) {
                RestartThread();
            }
            return;
        }
        mSelected = selection->mDevice;
    }
    EndDialog(QDialog::Accepted);
}

void DeviceFinderWnd::reject()
{
    EndDialog(QDialog::Rejected);
}

void DeviceFinderWnd::EndDialog(QDialog::DialogCode aCode)
{
    // The application may delete the window when its dialog ends.
    const QPointer<DeviceFinderWnd> self(this);
    if (auto *dialog = qobject_cast<QDialog *>(Widget())) {
        aCode == QDialog::Accepted ? dialog->accept() : dialog->reject();
    }
    if (self) {
        OnClose();
    }
}

void DeviceFinderWnd::OnNMDblclkTree(QTreeWidgetItem * /*aItem*/, int /*aColumn*/)
{
    const TreeItemInfoDevice *device = GetSelectedDevice();
    if (device && device->IsEnabled()) {
        accept();
    }
}

// IP addresses

void DeviceFinderWnd::OnContextMenu(QPoint aPoint)
{
    if (!mTree || !mTree->itemAt(aPoint)) {
        return;
    }
    {
        const QMutexLocker lock(&mMapMutex);
        const TreeItemInfoDevice *device = GetSelectedDevice();
        if (!device || !device->CanSetIP()) {
            return;
        }
    }
    auto *menu = new QMenu(mTree);
    menu->setObjectName(QStringLiteral("DeviceMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    mSetIPAction = menu->addAction(QStringLiteral("Set IP Address..."));
    connect(mSetIPAction, SIGNAL(triggered()), this, SLOT(OnBnClickedForceipButton()));
    // the keyboard may have asked for it while the cursor is elsewhere
    const QPoint cursor = QCursor::pos();
    const QWidget &view = *mTree->viewport();
    menu->popup(view.rect().contains(view.mapFromGlobal(cursor)) ? cursor : view.mapToGlobal(aPoint));
}

void DeviceFinderWnd::OnBnClickedForceipButton()
{
    if (QWidget *widget = Widget()) {
        widget->repaint();
    }
    StopThreadForSelection();
    const QPointer<DeviceFinderWnd> self(this);
    const std::optional<Selection> selection = FindSelection();
    const auto *adapter = selection ? dynamic_cast<const LxNetworkAdapter *>(selection->mInterface) : nullptr;
    if (!adapter || !(dynamic_cast<const LxDeviceInfoGEV *>(selection->mDevice) ||
                      dynamic_cast<const LxDeviceInfoKelvraProtocol *>(selection->mDevice)))
    {
        ShowError(Widget(), QStringLiteral("The selected device is no longer available"));
        if (self) {
            RestartThread();
        }
        return;
    }
    EditIPConfiguration(*selection->mDevice, *adapter);
    if (!self) {
        return;
    }
    {
        // No device reported anything in the meantime.
        const QMutexLocker lock(&mMapMutex);
        for (const auto &[key, item] : mDeviceItems) {
            item->RestartLastSeen();
        }
    }
    RestartThread();
}

void DeviceFinderWnd::EditIPConfiguration(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter)
{
    // On the heap: the application may delete the window and with it the dialog.
    const QPointer<ForceIPDlg> dialog(new ForceIPDlg(aInfo, aAdapter, Widget()));
    mDialog = dialog;
    dialog->exec();
    delete dialog;
}

void DeviceFinderWnd::OnBnClickedSelectfromipButton()
{
    StopThread();
    const QPointer<DeviceFinderWnd> self(this);
    const std::optional<LxString> address = AskForAddress();
    if (!self) {
        return;
    }
    if (address && mState) {
        const LxDeviceInfo *found = nullptr;
        LxResult result;
        {
            const BusyCursor busy;
            result = mState->mSystem.FindDevice(*address, &found);
        }
        if (result.IsOK() && found) {
            mSelected = found;
            accept();
            return;
        }
        QMessageBox::information(Widget(), QStringLiteral("Error"), QStringLiteral("Could not contact device."),
                                 QMessageBox::Ok);
        if (!self) {
            return;
        }
    }
    RestartThread();
}

std::optional<LxString> DeviceFinderWnd::AskForAddress()
{
    const QPointer<SelectFromIPDlg> dialog(new SelectFromIPDlg(Widget()));
    mDialog = dialog;
    std::optional<LxString> address;
    if (dialog->exec() == QDialog::Accepted) {
        address = ToLxString(dialog->GetAddress());
    }
    delete dialog;
    return address;
}
