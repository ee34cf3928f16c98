#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QMutexLocker>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <algorithm>

#include "LxGUI/Frame/NativeWindowApi.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/GenBrowser/FeatureDescription.h"
#include "LxGUI/GenBrowser/FeatureTexts.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterList.h"
#include "LxGenICam/LxGenString.h"

namespace
{

// Posted to the native parent when the device is about to restart.
constexpr uint32_t DeviceResetMessage = 0x4C01;

QList<LxGenParameter *> ToList(LxGenParameterList &aList)
{
    QList<LxGenParameter *> list;
    for (LxGenParameter *parameter = aList.GetFirst(); parameter; parameter = aList.GetNext()) {
        list.append(parameter);
    }
    return list;
}

bool Failed(const LxResult &aResult, QString &aError)
{
    if (!aResult.IsOK()) {
        aError = FailureText(aResult);
    }
    return !aResult.IsOK();
}

}  // namespace

/// Counts a notification that another thread than the GUI's runs.
class GenBrowserTreeItem::RunningCall
{
public:
    explicit RunningCall(GenBrowserTreeItem &aItem) : mItem(aItem), mCounts(aItem.thread() != QThread::currentThread())
    {
        Add(1);
    }
    ~RunningCall() { Add(-1); }
    RunningCall(const RunningCall &) = delete;
    RunningCall &operator=(const RunningCall &) = delete;

private:
    void Add(int aNumber)
    {
        if (mCounts) {
            mItem.mRunningCalls += aNumber;
            if (mItem.mOwner) {
                mItem.mOwner->CountCalls(aNumber);
            }
        }
    }

    GenBrowserTreeItem &mItem;
    const bool mCounts;
};

GenBrowserTreeItem::GenBrowserTreeItem(GenBrowserTreeModel *aOwner, LxGenParameter *aParameter,
                                       LxGenCategory *aCategory, LxGenVisibility aEntryVisibility,
                                       bool aUseDisplayNames)
    : mOwner(aOwner), mParameter(aParameter), mCategory(aCategory), mEntryVisibility(aEntryVisibility)
{
    mForm.mUseDisplayNames = aUseDisplayNames;
    ReadAttributes();
    connect(this, &GenBrowserTreeItem::UpdateDataSignal, this, &GenBrowserTreeItem::UpdateDataSlot);
    if (mParameter) {
        mIsRegistered = true;
        mParameter->RegisterEventSink(this);
    }
    Refresh();
    mChange = Change::None;  // no view has it yet
}

GenBrowserTreeItem::~GenBrowserTreeItem()
{
    // When this returns no notification runs and none will come.
    if (mIsRegistered.exchange(false)) {
        mParameter->UnregisterEventSink(this);
    }
    mChildren.clear();
}

void GenBrowserTreeItem::ReadAttributes()
{
    LxString name;
    LxString displayName;
    LxString toolTip;
    LxGenNameSpace nameSpace = LxGenNameSpaceUndefined;
    if (mParameter) {
        mParameter->GetName(name);
        mParameter->GetToolTip(toolTip);
        mParameter->GetDisplayName(displayName);
        LxGenVisibility visibility = LxGenVisibilityUndefined;
        mParameter->GetVisibility(visibility);
        mVisibilityText = ::VisibilityText(visibility);
        mParameter->GetNameSpace(nameSpace);
        mParameter->GetType(mForm.mType);
        mTypeText = ::TypeText(mForm.mType);
        LxGenParameterList list;
        if (mParameter->GetSelectedParameters(list).IsOK()) {
            mSelectedParameters = ToList(list);
        }
        if (mParameter->GetSelectingParameters(list).IsOK()) {
            mSelectingParameters = ToList(list);
        }
    }
    else if (mCategory) {
        mCategory->GetName(name);
        mCategory->GetToolTip(toolTip);
        mCategory->GetDisplayName(displayName);
        mCategory->GetNameSpace(nameSpace);
    }
    else {
        return;
    }
    mName = ToQString(name);
    mDisplayName = name == displayName ? mName : ToQString(displayName);  // one text in memory where they are equal
    mToolTip = ToQString(toolTip);
    mNameSpaceText = ::NameSpaceText(nameSpace);
    if (!mParameter) {
        return;
    }
    mForm.mIsMACAddress = IsMACAddressName(mName);
    mForm.mIsIPAddress = IsIPAddressName(mName);
    if (const auto *integer = dynamic_cast<LxGenInteger *>(mParameter);
        integer && !mForm.mIsMACAddress && !mForm.mIsIPAddress)
    {
        int representation = LxGenRepresentationPureNumber;
        if (integer->GetRepresentation(representation).IsOK()) {
            mForm.mIsMACAddress = representation == LxGenRepresentationMACAddress;
            mForm.mIsIPAddress = representation == LxGenRepresentationIPV4Address;
        }
    }
}

// Reading

bool GenBrowserTreeItem::IsAbandoned() const
{
    return mOwner && mOwner->IsStopping();
}

FeatureCache GenBrowserTreeItem::Cache() const
{
    const QMutexLocker lock(&mLock);
    return mCache;
}

void GenBrowserTreeItem::Refresh()
{
    quint64 number = 0;
    FeatureCache cache;
    {
        const QMutexLocker lock(&mLock);
        number = ++mLastReading;
        cache = mCache;
    }
    const bool isAsked = QThread::currentThread() == thread();
    const auto isAway = [this, isAsked] { return !isAsked && mOwner && !mOwner->IsDeviceReadable(); };
    const bool wasAway = isAway();  // it may be back when the reading has failed
    FeatureReading reading;
    if (mParameter) {
        const std::optional<FeatureReading> result =
            ReadFeature(*mParameter, mForm, cache, [this] { return IsAbandoned(); });
        if (!result) {
            return;
        }
        reading = *result;
    }
    // While the device is lost no reading can succeed; what was read last says more than one failure for every feature.
    if (!reading.mError.isEmpty() && (wasAway || isAway())) {
        return;
    }
    Deliver(number, reading);
}

// A reading that was begun before another one, but ends after it, must not bring back an old value. Elsewhere than on
// the GUI thread the signal only posts, so the lock may be held: numbers and posted readings stay in step.
void GenBrowserTreeItem::Deliver(quint64 aNumber, const FeatureReading &aReading)
{
    const auto send = [&] {
        emit UpdateDataSignal(aReading.mError, aReading.mValue, aReading.mImplemented, aReading.mAvailable,
                              aReading.mReadable, aReading.mWritable, aReading.mIsDone);
    };
    QMutexLocker lock(&mLock);
    const bool isOld = aNumber < mDeliveredReading;
    mDeliveredReading = std::max(aNumber, mDeliveredReading);
    if (QThread::currentThread() != thread()) {
        if (!isOld) {
            send();
        }
        return;
    }
    if (!isOld) {
        QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
    }
    lock.unlock();
    send();
}

void GenBrowserTreeItem::UpdateDataSlot(const QString &aErrorMsg, const QString &aValue, bool aImplemented,
                                        bool aAvailable, bool aReadable, bool aWritable, bool aIsDone)
{
    // The colours of both cells depend on these.
    if (aErrorMsg.isEmpty() != mErrorMsg.isEmpty() || aAvailable != mAvailable || aWritable != mWritable) {
        mChange = Change::Row;
    }
    else if (aValue != mValueText && mChange == Change::None) {
        mChange = Change::Value;
    }
    mErrorMsg = aErrorMsg;
    mValueText = aValue;
    mImplemented = aImplemented;
    mAvailable = aAvailable;
    mReadable = aReadable;
    mWritable = aWritable;
    mIsDone = aIsDone;
}

void GenBrowserTreeItem::OnParameterUpdate(LxGenParameter * /*aParameter*/)
{
    const RunningCall call(*this);
    if (IsAbandoned()) {
        return;
    }
    Refresh();
    if (mOwner) {
        mOwner->NotifyItem(this);
    }
}

void GenBrowserTreeItem::StopNotifications()
{
    // Where a notification runs, ending it would mean to wait for the device; the destructor does it later.
    if (mRunningCalls == 0 && mIsRegistered.exchange(false)) {
        mParameter->UnregisterEventSink(this);
    }
    for (const auto &child : mChildren) {
        child->StopNotifications();
    }
}

// Texts

QString GenBrowserTreeItem::FormatInteger(int64_t aValue, QString *aError) const
{
    auto *integer = dynamic_cast<LxGenInteger *>(mParameter);
    return integer ? FormatFeatureInteger(*integer, mForm, aValue, aError) : QString();
}

QString GenBrowserTreeItem::EditText()
{
    FeatureCache cache = Cache();
    if (cache.mEditText.isEmpty() && mForm.mType == LxGenTypeInteger) {
        cache.mEditText = FormatInteger(cache.mInteger);
        const QMutexLocker lock(&mLock);
        mCache.mEditText = cache.mEditText;
    }
    return cache.mEditText;
}

QString GenBrowserTreeItem::Description() const
{
    FeatureIdentity identity;
    identity.mName = mName;
    identity.mDisplayName = mDisplayName;
    identity.mType = mTypeText;
    identity.mNameSpace = mNameSpaceText;
    identity.mVisibility = mVisibilityText;
    identity.mIsAddress = mForm.mIsIPAddress || mForm.mIsMACAddress;
    for (const LxGenParameter *selector : mSelectingParameters) {
        LxString name;
        selector->GetName(name);
        identity.mSelectors.append(ToQString(name));
    }
    if (mParameter) {
        return DescribeFeature(*mParameter, identity);
    }
    return mCategory ? DescribeCategory(*mCategory, identity) : QString();
}

QList<FeatureChoice> GenBrowserTreeItem::Choices(int &aCurrent) const
{
    aCurrent = -1;
    return mParameter ? ReadChoices(*mParameter, mForm, Cache(), mEntryVisibility, aCurrent) : QList<FeatureChoice>();
}

// Writing. A write notifies sinks on this thread; one of the host's may even rebuild the tree, and the item is gone.

bool GenBrowserTreeItem::CheckWritable(QString &aError) const
{
    if (mParameter && mParameter->IsWritable()) {
        return true;
    }
    aError = QStringLiteral("Parameter is not (no longer?) writable.");
    return false;
}

void GenBrowserTreeItem::Written(const FeatureCache &aCache)
{
    {
        const QMutexLocker lock(&mLock);
        mCache = aCache;
        mCache.mHasValue = true;
    }
    Refresh();
}

bool GenBrowserTreeItem::SetValue(const QString &aText, QString &aError)
{
    if (!CheckWritable(aError)) {
        return false;
    }
    FeatureCache cache = Cache();
    const QPointer<GenBrowserTreeItem> self(this);
    if (auto *text = dynamic_cast<LxGenString *>(mParameter)) {
        if (Failed(text->SetValue(ToLxString(aText)), aError)) {
            return false;
        }
        cache.mEditText = aText;
    }
    else if (auto *integer = dynamic_cast<LxGenInteger *>(mParameter); integer && mForm.mIsIPAddress) {
        int64_t value = 0;
        if (!ParseIPAddress(aText, value)) {
            aError = QStringLiteral("Invalid IP Address.");
            return false;
        }
        if (Failed(integer->SetValue(value), aError)) {
            return false;
        }
        cache.mInteger = value;
    }
    else {
        Refresh();  // A text is not written to any other kind.
        return true;
    }
    if (self) {
        Written(cache);
    }
    return true;
}

bool GenBrowserTreeItem::SetValue(int64_t aValue, QString &aError)
{
    if (!CheckWritable(aError)) {
        return false;
    }
    FeatureCache cache = Cache();
    const QPointer<GenBrowserTreeItem> self(this);
    if (auto *integer = dynamic_cast<LxGenInteger *>(mParameter)) {
        if (Failed(integer->SetValue(aValue), aError)) {
            return false;
        }
        if (!self) {
            return true;
        }
        cache.mInteger = aValue;
        cache.mEditText = FormatInteger(aValue);
    }
    else if (auto *enumeration = dynamic_cast<LxGenEnum *>(mParameter)) {
        if (Failed(enumeration->SetValue(aValue), aError)) {
            return false;
        }
        if (!self) {
            return true;
        }
        const LxGenEnumEntry *entry = nullptr;
        if (enumeration->GetEntryByValue(aValue, &entry).IsOK() && entry) {
            cache.mEditText = EntryText(*entry, mForm.mUseDisplayNames);
        }
        cache.mInteger = aValue;
    }
    else if (auto *boolean = dynamic_cast<LxGenBoolean *>(mParameter)) {
        if (Failed(boolean->SetValue(aValue != 0), aError)) {
            return false;
        }
        cache.mInteger = aValue != 0 ? 1 : 0;
    }
    if (self) {
        Written(cache);
    }
    return true;
}

bool GenBrowserTreeItem::SetValue(double aValue, QString &aError)
{
    if (!CheckWritable(aError)) {
        return false;
    }
    const QPointer<GenBrowserTreeItem> self(this);
    auto *number = dynamic_cast<LxGenFloat *>(mParameter);
    const bool failed = !number || Failed(number->SetValue(aValue), aError);
    if (!self) {
        return !failed;
    }
    if (failed) {
        Refresh();
        return false;
    }
    FeatureCache cache = Cache();
    cache.mFloat = aValue;
    Written(cache);
    return true;
}

void GenBrowserTreeItem::Execute()
{
    auto *command = dynamic_cast<LxGenCommand *>(mParameter);
    if (!command) {
        return;
    }
    const QPointer<GenBrowserTreeItem> self(this);
    const QString name = mName;
    command->Execute();
    if (!self || name != QLatin1String("DeviceReset") || !mOwner) {
        return;
    }
    if (const HWND parent = mOwner->NativeParent()) {
        NativeWindows().PostMessageA(parent, DeviceResetMessage, 0, 0);
    }
}

// The tree

void GenBrowserTreeItem::AppendChild(std::unique_ptr<GenBrowserTreeItem> aChild)
{
    aChild->mParent = this;
    aChild->mRow = static_cast<int>(mChildren.size());
    mChildren.push_back(std::move(aChild));
}

void GenBrowserTreeItem::SetChildren(std::vector<std::unique_ptr<GenBrowserTreeItem>> aChildren)
{
    mChildren = std::move(aChildren);
    for (size_t row = 0; row < mChildren.size(); ++row) {
        mChildren[row]->mRow = static_cast<int>(row);
    }
}

GenBrowserTreeItem *GenBrowserTreeItem::Child(int aRow) const
{
    return aRow >= 0 && aRow < ChildCount() ? mChildren[static_cast<size_t>(aRow)].get() : nullptr;
}
