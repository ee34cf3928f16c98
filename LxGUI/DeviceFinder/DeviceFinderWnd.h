#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QEvent>
#include <QtCore/QMutex>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtGui/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableWidget>
#include <atomic>
#include <map>
#include <memory>
#include <optional>

#include "LxBase/LxString.h"
#include "LxGUI/DeviceFinder/DeviceTree.h"
#include "LxGUI/DeviceFinder/IconStrip.h"
#include "LxGUI/DeviceFinder/ListingRules.h"
#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"
#include "LxGUI/DeviceFinder/TreeItemInfoInterface.h"
#include "LxGUI/Frame/Wnd.h"
#include "LxSystem/LxSystemEventSink.h"

class DeviceFinderThread;
class LxDeviceInfo;
class LxInterface;
class LxNetworkAdapter;
struct DiscoveryState;

Q_DECLARE_INTERFACE(LxSystemEventSink, "LxSystemEventSink")

/// The window behind LxDeviceFinderWnd.
///
/// Reports of the search thread fill items in maps; a posted event makes the GUI thread place and show them.
class DeviceFinderWnd : public Wnd, private LxSystemEventSink
{
    Q_OBJECT
    Q_INTERFACES(LxSystemEventSink)

public:
    /// The event that asks for a refresh of the tree.
    static constexpr QEvent::Type RefreshEvent = static_cast<QEvent::Type>(10985);

    DeviceFinderWnd();
    ~DeviceFinderWnd() override;

    bool event(QEvent *aEvent) override;
    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

    /// Null until a device is chosen; the system that owns it lives until the next OnOpen().
    const LxDeviceInfo *GetSelected() const { return mSelected; }
    void SetGEVEnabled(bool aEnabled, bool aVisible);
    void GetGEVEnabled(bool &aEnabled, bool &aVisible) const;
    void SetU3VEnabled(bool aEnabled, bool aVisible);
    void GetU3VEnabled(bool &aEnabled, bool &aVisible) const;
    void SetKelvraProtocolEnabled(bool aEnabled, bool aVisible);
    void GetKelvraProtocolEnabled(bool &aEnabled, bool &aVisible) const;

    /// For the search thread.
    bool IsShowUnreachable() const { return mShowUnreachable; }
    void ReportInterface(const LxInterface &aInterface);

public slots:
    void OnTvnSelchangedTree();
    void OnBnClickedShowunreachableCheck(int aState);
    void accept();
    void reject();
    void OnNMDblclkTree(QTreeWidgetItem *aItem, int aColumn);
    void OnBnClickedForceipButton();
    void OnBnClickedSelectfromipButton();
    void OnContextMenu(QPoint aPoint);

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;

    /// Whether a device is listed; called on the thread that searches.
    virtual bool OnFound(const LxDeviceInfo *aInfo);
    /// Lets the user change the IP configuration of a network device.
    virtual void EditIPConfiguration(const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter);
    /// Lets the user type the address of a device; nothing when they cancel.
    virtual std::optional<LxString> AskForAddress();

    /// The work of OnClose(), for the destructors of derived classes too: when theirs has run, the search thread must
    /// no longer ask OnFound().
    void StopDiscovery();

private:
    using InterfaceItems = std::map<QByteArray, TreeItemInfoInterface *>;
    using DeviceItems = std::map<QByteArray, TreeItemInfoDevice *>;
    using PendingDevices = std::map<QByteArray, std::unique_ptr<TreeItemInfoDevice>>;
    /// A device and the interface at which it was found.
    struct Selection
    {
        const LxInterface *mInterface = nullptr;
        const LxDeviceInfo *mDevice = nullptr;
    };

    // called on the thread that searches
    void OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool &aReserved) override;
    void ReportDevice(const LxInterface &aInterface, const LxDeviceInfo &aInfo);
    void PostRefresh();

    // called with mMapMutex locked, on the GUI thread
    void RebuildInterfaceItems();
    void PlacePendingDevices();
    void RefreshDevices();
    void RefreshTables();
    void ForgetItemsOf(const QTreeWidget *aTree);

    void Refresh();
    void ClearItems();
    TreeItemInfo *GetSelectedItem() const;
    TreeItemInfoDevice *GetSelectedDevice() const;
    std::optional<Selection> FindSelection();
    void EndDialog(QDialog::DialogCode aCode);
    /// Ends the running search early.
    void StopThread();
    /// The same, but so that FindSelection() finds what is selected.
    void StopThreadForSelection();
    void RestartThread();
    ListingOptions GetOptions() const;
    QLayout *CreateButtons(QWidget *aParent);

    QPointer<DeviceTree> mTree;
    QPointer<QTableWidget> mInterfaceTable;
    QPointer<QTableWidget> mDeviceTable;
    QPointer<QPushButton> mSetIPButton;
    QPointer<QPushButton> mSelectFromIPButton;
    QPointer<QPushButton> mOKButton;
    QPointer<QPushButton> mCancelButton;
    QPointer<QCheckBox> mShowUnreachableCheck;
    QPointer<QAction> mSetIPAction;
    QPointer<QDialog> mDialog;  // that of EditIPConfiguration() or AskForAddress() while it is open
    IconStrip mIcons;
    const LxDeviceInfo *mSelected = nullptr;

    QMutex mMapMutex;  // guards the maps, the items in them and mInterfacesChanged
    InterfaceItems mInterfaceItems;
    DeviceItems mDeviceItems;  // by the unique IDs of device and interface, one behind the other; so are the pending
    PendingDevices mPendingDevices;
    bool mInterfacesChanged = false;

    bool mRefreshing = false;  // whether Refresh() holds mMapMutex, for what it brings about itself
    std::atomic<bool> mRefreshPosted{false};
    std::shared_ptr<DiscoveryState> mState;
    std::unique_ptr<DeviceFinderThread> mThread;

    std::atomic<bool> mShowUnreachable{false};
    std::atomic<bool> mGEVEnabled{true};
    std::atomic<bool> mU3VEnabled{true};
    std::atomic<bool> mKelvraEnabled{false};
    std::atomic<bool> mGEVVisible{true};
    std::atomic<bool> mU3VVisible{true};
    std::atomic<bool> mKelvraVisible{true};

    // The context of the connections that must not outlive this class's part of the object.
    QObject mTreeWatcher;
};
