#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QThreadPool>
#include <atomic>

class GenBrowserTreeItem;

/// Makes the description of the selected feature. That may ask the device for limits, so it happens on another thread,
/// and a slow device does not keep the user from going on. GUI thread.
class GenBrowserDescriber : public QObject
{
    Q_OBJECT

public:
    GenBrowserDescriber();
    ~GenBrowserDescriber() override;

    /// Describes an item, which must live until IsBusy() says false. Described() comes before this returns: with the
    /// description when the device is quick; otherwise with the name, and again when the description is there, unless
    /// another item is described by then.
    void Describe(const GenBrowserTreeItem *aItem);
    /// No description is wanted any more.
    void Cancel();
    /// Whether an item is still in use.
    bool IsBusy() const { return mRunning != 0; }

signals:
    void Described(const QString &aText);

private:
    void Finish(quint64 aRequest, const QString &aText);

    QThreadPool mPool;
    std::atomic<int> mRunning{0};
    quint64 mRequest = 0;  // of the description that is waited for
};
