#include "LxGUI/GenBrowser/GenBrowserDescriber.h"

#include <chrono>
#include <future>
#include <memory>

#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"

namespace
{

// How long the GUI thread waits for a description before it goes on without: too short to be noticed.
constexpr std::chrono::milliseconds Patience(15);

}  // namespace

GenBrowserDescriber::GenBrowserDescriber()
{
    mPool.setMaxThreadCount(1);
}

GenBrowserDescriber::~GenBrowserDescriber()
{
    Cancel();
    mPool.waitForDone();
}

void GenBrowserDescriber::Describe(const GenBrowserTreeItem *aItem)
{
    Cancel();
    if (!aItem) {
        return;
    }
    const bool mayBeQuick = !IsBusy();
    const quint64 request = mRequest;
    auto promise = std::make_shared<std::promise<QString>>();
    std::future<QString> description = promise->get_future();
    // What is dropped before it began must not count as running either.
    const std::shared_ptr<void> running((++mRunning, nullptr), [this](void *) { --mRunning; });
    mPool.start([this, aItem, request, promise, running] {
        const QString text = aItem->Description();
        promise->set_value(text);
        QMetaObject::invokeMethod(
            this, [this, request, text] { Finish(request, text); }, Qt::QueuedConnection);
    });
    if (mayBeQuick && description.wait_for(Patience) == std::future_status::ready) {
        Finish(request, description.get());
    }
    else {
        emit Described(QLatin1String("<h3>") + aItem->DisplayName() + QLatin1String("</h3>"));
    }
}

void GenBrowserDescriber::Cancel()
{
    mPool.clear();
    ++mRequest;
}

void GenBrowserDescriber::Finish(quint64 aRequest, const QString &aText)
{
    if (aRequest == mRequest) {
        ++mRequest;
        emit Described(aText);
    }
}
