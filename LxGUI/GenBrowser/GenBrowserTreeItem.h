#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "LxGUI/GenBrowser/FeatureReading.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenTypes.h"

class GenBrowserTreeModel;
class LxGenCategory;
class LxGenParameter;

Q_DECLARE_INTERFACE(LxGenEventSink, "LxGenEventSink")

/// A node of the browser's tree: the root, a category or a feature.
///
/// What the GUI shows of a feature is written on the GUI thread only, by UpdateDataSlot(); Refresh() reads the device
/// on whatever thread calls it. What the constructor sets never changes and may be read by any thread.
class GenBrowserTreeItem : public QObject, private LxGenEventSink
{
    Q_OBJECT
    Q_INTERFACES(LxGenEventSink)

public:
    /// A feature, a category, or with neither the root. Reads the feature once.
    /// @param aOwner may be null.
    GenBrowserTreeItem(GenBrowserTreeModel *aOwner, LxGenParameter *aParameter, LxGenCategory *aCategory,
                       LxGenVisibility aEntryVisibility, bool aUseDisplayNames);
    ~GenBrowserTreeItem() override;

    // Fixed
    LxGenParameter *Parameter() const { return mParameter; }
    LxGenCategory *Category() const { return mCategory; }
    LxGenType Type() const { return mForm.mType; }
    const QString &Name() const { return mName; }
    const QString &DisplayName() const { return mDisplayName; }
    /// The one of the two that the browser shows.
    const QString &ShownName() const { return mForm.mUseDisplayNames ? mDisplayName : mName; }
    const QString &ToolTip() const { return mToolTip; }
    const QString &TypeText() const { return mTypeText; }
    const QString &NameSpaceText() const { return mNameSpaceText; }
    const QString &VisibilityText() const { return mVisibilityText; }
    bool IsIPAddress() const { return mForm.mIsIPAddress; }
    bool IsMACAddress() const { return mForm.mIsMACAddress; }
    const QList<LxGenParameter *> &SelectedParameters() const { return mSelectedParameters; }
    const QList<LxGenParameter *> &SelectingParameters() const { return mSelectingParameters; }

    // As last delivered; GUI thread
    const QString &ValueText() const { return mValueText; }
    const QString &ErrorMsg() const { return mErrorMsg; }
    bool IsReadable() const { return mReadable; }
    bool IsWritable() const { return mWritable; }
    bool IsImplemented() const { return mImplemented; }
    bool IsAvailable() const { return mAvailable; }
    bool IsDone() const { return mIsDone; }

    /// What of its row looks different since this was last asked. GUI thread.
    enum class Change
    {
        None,
        Value,
        Row,
    };
    Change TakeChange() { return std::exchange(mChange, Change::None); }

    /// Reads the feature and emits UpdateDataSignal(). Any thread. A reading that fails while the device is lost is
    /// delivered on the GUI thread only, where somebody asked for it; otherwise the last values stay.
    void Refresh();
    /// The rich text of the description pane. Any thread; may ask the device.
    QString Description() const;
    /// The value as text; an error text that is asked for is set when it is out of range.
    QString FormatInteger(int64_t aValue, QString *aError = nullptr) const;
    /// The text that an editor starts with while the feature cannot be read.
    QString EditText();

    /// Writes a string or an IP address. GUI thread.
    /// @return false, and why, when nothing was written.
    bool SetValue(const QString &aText, QString &aError);
    /// Writes an integer, an enumeration or a boolean.
    bool SetValue(int64_t aValue, QString &aError);
    /// Writes a float.
    bool SetValue(double aValue, QString &aError);
    /// What an editor of an enumeration or a boolean offers; aCurrent is -1 when none is the current one.
    QList<FeatureChoice> Choices(int &aCurrent) const;

    // The tree; guarded by the model's lock when other threads may look
    void AppendChild(std::unique_ptr<GenBrowserTreeItem> aChild);
    /// Brings the children into another order, which holds the same items.
    void SetChildren(std::vector<std::unique_ptr<GenBrowserTreeItem>> aChildren);
    std::vector<std::unique_ptr<GenBrowserTreeItem>> &Children() { return mChildren; }
    GenBrowserTreeItem *Child(int aRow) const;
    int ChildCount() const { return static_cast<int>(mChildren.size()); }
    GenBrowserTreeItem *ParentItem() const { return mParent; }
    /// The position among the parent's children; -1 without a parent.
    int Row() const { return mRow; }

    /// Ends the notifications of this feature and of the children, except where one runs at this moment.
    void StopNotifications();
    /// Guards what refreshes of several threads share; also held while the model measures the item.
    QMutex &Lock() const { return mLock; }

public slots:
    void UpdateDataSlot(const QString &aErrorMsg, const QString &aValue, bool aImplemented, bool aAvailable,
                        bool aReadable, bool aWritable, bool aIsDone);
    /// Runs the command.
    void Execute();

signals:
    void UpdateDataSignal(const QString &aErrorMsg, const QString &aValue, bool aImplemented, bool aAvailable,
                          bool aReadable, bool aWritable, bool aIsDone);

private:
    class RunningCall;

    void OnParameterUpdate(LxGenParameter *aParameter) override;
    void ReadAttributes();
    bool IsAbandoned() const;
    void Deliver(quint64 aNumber, const FeatureReading &aReading);
    FeatureCache Cache() const;
    /// Notes what was written and refreshes.
    void Written(const FeatureCache &aCache);
    bool CheckWritable(QString &aError) const;

    GenBrowserTreeModel *const mOwner;
    std::vector<std::unique_ptr<GenBrowserTreeItem>> mChildren;
    GenBrowserTreeItem *mParent = nullptr;
    int mRow = -1;
    LxGenParameter *const mParameter;
    LxGenCategory *const mCategory;
    QString mName;
    QString mDisplayName;
    QString mToolTip;
    QString mTypeText;
    QString mNameSpaceText;
    QString mVisibilityText;
    const LxGenVisibility mEntryVisibility;
    FeatureForm mForm;
    QList<LxGenParameter *> mSelectedParameters;
    QList<LxGenParameter *> mSelectingParameters;

    QString mValueText;
    QString mErrorMsg;
    bool mReadable = false;
    bool mWritable = false;
    bool mImplemented = false;
    bool mAvailable = false;
    bool mIsDone = true;
    Change mChange = Change::None;

    std::atomic<bool> mIsRegistered{false};
    std::atomic<int> mRunningCalls{0};  // notifications that run on other threads

    mutable QMutex mLock;  // guards everything below
    FeatureCache mCache;
    quint64 mLastReading = 0;       // number of the reading that was started last
    quint64 mDeliveredReading = 0;  // number of the reading whose result counts
};
