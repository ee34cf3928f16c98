// The feature browser: building, repainting, searching, refreshing, and how long the GUI thread is away.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QTreeView>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "FeatureGenerator.h"
#include "LxGUI/GenBrowser/FeatureReading.h"
#include "LxGUI/GenBrowser/GenBrowserThread.h"
#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterList.h"
#include "RunBenchmarks.h"

namespace
{

constexpr int Tries = 5;
constexpr int VisibleRows = 40;

double Seconds(clockid_t aClock)
{
    timespec time = {};
    clock_gettime(aClock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// The processor time that a function takes on this thread, in milliseconds.
double Milliseconds(const std::function<void()> &aFunction)
{
    const double start = Seconds(CLOCK_THREAD_CPUTIME_ID);
    aFunction();
    return (Seconds(CLOCK_THREAD_CPUTIME_ID) - start) * 1e3;
}

/// The least of some tries.
double LeastMilliseconds(int aTries, const std::function<void()> &aFunction)
{
    double least = 1e9;
    for (int i = 0; i < aTries; ++i) {
        least = std::min(least, Milliseconds(aFunction));
    }
    return least;
}

void ProcessEventsFor(int aMilliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(aMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

struct NoSink : LxGenEventSink
{
    void OnParameterUpdate(LxGenParameter *) override {}
};

/// What a browser must ask of a feature to show it, whatever it is made of: its category, whether it is shown, its
/// fixed texts and relations, its notifications, its value.
void ReadBare(LxGenParameterArray &aParameters, LxGenParameter &aParameter, NoSink &aSink)
{
    LxString text;
    LxGenVisibility visibility = LxGenVisibilityUndefined;
    LxGenNameSpace nameSpace = LxGenNameSpaceUndefined;
    LxGenParameterList list;
    FeatureForm form;
    aParameter.GetCategory(text);
    benchmark::DoNotOptimize(aParameters.GetCategory(text));
    benchmark::DoNotOptimize(aParameter.IsVisible(LxGenVisibilityGuru));
    benchmark::DoNotOptimize(aParameter.IsImplemented());
    if (const auto *enumeration = dynamic_cast<LxGenEnum *>(&aParameter)) {
        int64_t count = 0;
        const LxGenEnumEntry *entry = nullptr;
        enumeration->GetEntriesCount(count);
        enumeration->GetEntryByIndex(0, &entry);
        benchmark::DoNotOptimize(entry && entry->IsVisible(LxGenVisibilityGuru));
    }
    aParameter.GetName(text);
    aParameter.GetToolTip(text);
    aParameter.GetDisplayName(text);
    aParameter.GetVisibility(visibility);
    aParameter.GetNameSpace(nameSpace);
    aParameter.GetType(form.mType);
    aParameter.GetSelectedParameters(list);
    aParameter.GetSelectingParameters(list);
    if (const auto *integer = dynamic_cast<LxGenInteger *>(&aParameter)) {
        int representation = 0;
        integer->GetRepresentation(representation);
    }
    aParameter.RegisterEventSink(&aSink);
    benchmark::DoNotOptimize(ReadFeature(aParameter, form, FeatureCache(), [] { return false; }));
}

double BareReads(LxGenParameterArray &aParameters)
{
    NoSink sink;
    const uint32_t count = aParameters.GetCount();
    double least = 1e9;
    for (int i = 0; i < Tries; ++i) {
        least = std::min(least, Milliseconds([&] {
                             for (uint32_t feature = 0; feature < count; ++feature) {
                                 ReadBare(aParameters, *aParameters[feature], sink);
                             }
                         }));
        for (uint32_t feature = 0; feature < count; ++feature) {
            aParameters[feature]->UnregisterEventSink(&sink);
        }
    }
    return least;
}

/// Makes a view show as many rows as the figures are about, whichever part of the window's height it has got.
void ShowRows(QTreeView &aView, QWidget &aWindow, int aRows)
{
    const int row = aView.visualRect(aView.model()->index(0, 0)).height();
    for (int i = 0; i < 20 && aView.viewport()->height() != aRows * row; ++i) {
        aWindow.resize(aWindow.width(), aWindow.height() + aRows * row - aView.viewport()->height());
        QCoreApplication::processEvents();
    }
}

/// A plain view over a plain model of as many rows.
double PlainView(int aRows)
{
    double least = 1e9;
    for (int i = 0; i < Tries; ++i) {
        std::optional<QStandardItemModel> model;
        std::optional<QTreeView> view;
        least = std::min(least, Milliseconds([&] {
                             model.emplace(aRows, 2);
                             for (int row = 0; row < aRows; ++row) {
                                 model->setItem(row, 0, new QStandardItem(QStringLiteral("Feature%1").arg(row)));
                                 model->setItem(row, 1, new QStandardItem(QStringLiteral("0 px")));
                             }
                             view.emplace();
                             view->resize(600, VisibleRows * view->fontMetrics().height());
                             view->setModel(&*model);
                             view->show();
                             view->grab();
                         }));
        view.reset();
    }
    return least;
}

class Browser : public LxGenBrowserWnd
{
public:
    Browser(LxGenParameterArray *aParameters, LxGenRefresh aMode)
    {
        SetRefreshMode(aMode);
        SetVisibility(LxGenVisibilityGuru);
        SetPosition(-1, -1, 600, sHeight);
        SetGenParameterArray(aParameters);
        ShowModeless();
        GetQWidget()->grab();
    }
    /// Shows so many rows, neither more nor less; browsers that are made later start as high.
    void ShowRows(int aRows)
    {
        ::ShowRows(*Tree(), *GetQWidget(), aRows);
        sHeight = GetQWidget()->height();
    }
    GenBrowserTree *Tree() { return GetQWidget()->findChild<GenBrowserTree *>(); }
    GenBrowserTreeModel *Model() { return qobject_cast<GenBrowserTreeModel *>(Tree()->model()); }
    QLineEdit *SearchBar() { return GetQWidget()->findChild<QLineEdit *>("SearchBar"); }
    /// The first cells of the rows on screen.
    std::vector<QModelIndex> Rows()
    {
        std::vector<QModelIndex> rows;
        for (QModelIndex index = Tree()->indexAt(QPoint(100, 2));
             index.isValid() && Tree()->visualRect(index).bottom() <= Tree()->viewport()->height();
             index = Tree()->indexBelow(index))
        {
            rows.push_back(index);
        }
        return rows;
    }

private:
    static inline int sHeight = 800;
};

void BuildAndShow(benchmark::State &aState)
{
    const int count = static_cast<int>(aState.range(0));
    const GeneratedCamera camera(count);
    Browser first(camera.Parameters(), LxGenRefreshManual);  // what is made once
    first.ShowRows(VisibleRows);
    const double bare = BareReads(*camera.Parameters());
    const double plain = PlainView(count);
    double build = 1e9;
    for (auto _ : aState) {
        std::optional<Browser> browser;
        build = std::min(build, Milliseconds([&] { browser.emplace(camera.Parameters(), LxGenRefreshManual); }));
    }
    aState.counters["gui_ms"] = build;
    aState.counters["bare_reads_ms"] = bare;
    aState.counters["plain_view_ms"] = plain;
    aState.counters["ratio"] = build / (bare + plain);
}
BENCHMARK(BuildAndShow)->Name("Browser/Build")->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->Iterations(9);

void Memory(benchmark::State &aState)
{
    constexpr int count = 5000;
    const GeneratedCamera camera(count);
    {
        Browser first(camera.Parameters(), LxGenRefreshManual);  // what is made once
        first.ShowRows(VisibleRows);
    }
    size_t bytes = 0;
    for (auto _ : aState) {
        const size_t before = mallinfo2().uordblks;
        const Browser browser(camera.Parameters(), LxGenRefreshManual);
        bytes = mallinfo2().uordblks - before;
    }
    aState.counters["bytes_per_feature"] = static_cast<double>(bytes) / count;
}
BENCHMARK(Memory)->Name("Browser/Memory")->Unit(benchmark::kMillisecond)->Iterations(1);

/// A plain widget with the names and values of a browser's rows where the browser shows them, and nothing else, drawn
/// by the cheapest call that the toolkit has.
class BareTexts : public QWidget
{
public:
    BareTexts(const GenBrowserTree &aTree, const std::vector<QModelIndex> &aRows)
    {
        mBold.setBold(true);
        const int margin = aTree.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
        for (const QModelIndex &row : aRows) {
            const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(row);
            const QFontMetrics metrics(item->Parameter() ? mPlain : mBold);
            const auto origin = [&](const QModelIndex &aIndex) {
                const QRect place = aTree.visualRect(aIndex);
                const int top = place.top() + (place.height() - metrics.height()) / 2;
                return QPoint(place.left() + margin, top + metrics.ascent());
            };
            mRows.push_back({item, origin(row), origin(row.siblingAtColumn(1))});
        }
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(aTree.viewport()->size());
        show();
        grab();
    }

private:
    struct Row
    {
        const GenBrowserTreeItem *mItem;
        QPoint mNamePlace;
        QPoint mValuePlace;
    };

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        for (const Row &row : mRows) {
            painter.setFont(row.mItem->Parameter() ? mPlain : mBold);
            painter.drawText(row.mNamePlace, row.mItem->Name());
            painter.drawText(row.mValuePlace, row.mItem->ValueText());
        }
    }

    std::vector<Row> mRows;
    const QFont mPlain = QApplication::font();
    QFont mBold = QApplication::font();
};

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *aWidget) { aWidget->installEventFilter(this); }
    /// Processes events until the widget was painted; ends the program when it is not.
    void WaitForPaint()
    {
        mCount = 0;
        QTimer patience;
        patience.setSingleShot(true);
        patience.start(5000);
        while (mCount == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            if (!patience.isActive()) {
                throw std::runtime_error("nothing was painted");
            }
        }
    }

private:
    int mCount = 0;
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        mCount += aEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// From the model's word that rows have changed until they are on screen: their values, as when a device is read again,
// and whole rows, as when they come into view. Beside a widget that only draws their texts, both through the toolkit's
// repainting.
void Repaint(benchmark::State &aState)
{
    constexpr int shownRows = 50;
    constexpr int pause = 20;  // milliseconds; as long as the view gathers changes, so that all begin as cold
    const GeneratedCamera camera(1000);
    Browser browser(camera.Parameters(), LxGenRefreshManual);
    browser.ShowRows(shownRows);
    GenBrowserTree *const tree = browser.Tree();
    GenBrowserTreeModel *const model = browser.Model();
    const std::vector<QModelIndex> rows = browser.Rows();
    BareTexts bareTexts(*tree, rows);
    PaintCounter paints(tree->viewport());
    PaintCounter barePaints(&bareTexts);
    double painted = 1e9;
    double wholeRows = 1e9;
    double bare = 1e9;
    uint32_t value = 0;
    for (auto _ : aState) {
        for (int i = 0; i < 20; ++i) {
            camera.SetValues(++value);
            for (const QModelIndex &row : rows) {
                GenBrowserTreeModel::Item(row)->Refresh();
            }
            QCoreApplication::processEvents();
            painted = std::min(painted, Milliseconds([&] {
                                   for (const QModelIndex &row : rows) {
                                       model->RefreshItemSlot(row, row.siblingAtColumn(1));
                                   }
                                   paints.WaitForPaint();
                               }));
            ProcessEventsFor(pause);
            wholeRows = std::min(wholeRows, Milliseconds([&] {
                                     tree->viewport()->update();
                                     paints.WaitForPaint();
                                 }));
            ProcessEventsFor(pause);
            bare = std::min(bare, Milliseconds([&] {
                                bareTexts.update();
                                barePaints.WaitForPaint();
                            }));
        }
    }
    // The same texts in the toolkit's own view, to tell its part from the browser's.
    QStandardItemModel plainModel(static_cast<int>(rows.size()), 2);
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const QModelIndex index = rows[static_cast<size_t>(row)];
        plainModel.setItem(row, 0, new QStandardItem(index.data().toString()));
        plainModel.setItem(row, 1, new QStandardItem(index.siblingAtColumn(1).data().toString()));
    }
    QTreeView view;
    view.setModel(&plainModel);
    view.resize(tree->size());
    view.show();
    view.grab();
    PaintCounter viewPaints(view.viewport());
    const double plainView = LeastMilliseconds(50, [&] {
        view.viewport()->update();
        viewPaints.WaitForPaint();
    });
    aState.counters["rows"] = static_cast<double>(rows.size());
    aState.counters["browser_ms"] = painted;
    aState.counters["browser_whole_rows_ms"] = wholeRows;
    aState.counters["texts_ms"] = bare;
    aState.counters["plain_view_ms"] = plainView;
    aState.counters["ratio"] = painted / bare;
    aState.counters["ratio_of_whole_rows"] = wholeRows / bare;
    aState.counters["ratio_to_plain_view"] = wholeRows / plainView;
}
BENCHMARK(Repaint)->Name("Browser/Repaint")->Unit(benchmark::kMillisecond)->Iterations(5);

/// What one pass of the refresh thread takes.
struct PassTimes
{
    double mWall = 1e9;    // of the pass, in milliseconds
    double mThread = 1e9;  // processor time of the refresh thread
    double mGui = 1e9;     // processor time of the GUI thread, repainting included
};

/// Runs the first pass of a refresh thread on a browser without one.
PassTimes RunPass(Browser &aBrowser, LxGenParameterArray *aParameters)
{
    struct Moment
    {
        double mWall = Seconds(CLOCK_MONOTONIC);
        double mThread = Seconds(CLOCK_THREAD_CPUTIME_ID);
    };
    GenBrowserTree *const tree = aBrowser.Tree();
    GenBrowserTreeModel *const model = aBrowser.Model();
    const uint32_t count = aParameters->GetCount();
    std::optional<Moment> first;  // these three are written by the thread until mIsDone
    Moment last;
    uint32_t asked = 0;
    std::atomic<bool> isDone{false};
    GenBrowserThread thread(tree, model, aParameters, LxGenRefreshAutomatic);
    QObject context;
    QObject::connect(
        tree, &GenBrowserTree::IsVisibleSignal, &context,
        [&] {
            if (!first) {
                first.emplace();
            }
            ++asked;
        },
        Qt::DirectConnection);
    const auto note = [&] {
        last = Moment();
        if (asked == count && !isDone.exchange(true)) {
            QMetaObject::invokeMethod(
                &context, [] {}, Qt::QueuedConnection);  // ends the wait below
        }
    };
    // The last question is answered, or the last row on screen refreshed.
    QObject::connect(model, &GenBrowserTreeModel::RefreshItemSignal, &context, note, Qt::DirectConnection);
    QObject::connect(
        tree, &GenBrowserTree::IsVisibleSignal, &context,
        [&] {
            if (asked == count && count > VisibleRows) {
                note();
            }
        },
        Qt::DirectConnection);
    const double gui = Seconds(CLOCK_THREAD_CPUTIME_ID);
    thread.start();
    while (!isDone) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::processEvents();
    PassTimes times;
    times.mGui = (Seconds(CLOCK_THREAD_CPUTIME_ID) - gui) * 1e3;
    times.mWall = (last.mWall - first->mWall) * 1e3;
    times.mThread = (last.mThread - first->mThread) * 1e3;
    thread.RequestStop();
    while (!thread.wait(QDeadlineTimer(0))) {
        QCoreApplication::processEvents();
    }
    return times;
}

/// What blocking questions to an idle GUI thread take that have nothing to answer, in milliseconds. As in a pass, the
/// asking thread has slept before each.
double BareQuestions(size_t aCount, std::chrono::microseconds aSleep)
{
    GenBrowserTree tree;  // without rows
    QEventLoop loop;
    double time = 0.0;
    std::thread asker([&] {
        for (size_t i = 0; i < aCount; ++i) {
            std::this_thread::sleep_for(aSleep);
            const double start = Seconds(CLOCK_MONOTONIC);
            benchmark::DoNotOptimize(emit tree.IsVisibleSignal(QModelIndex()));
            time += (Seconds(CLOCK_MONOTONIC) - start) * 1e3;
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    asker.join();
    return time;
}

// A pass over 40 rows on screen of as many features, none of whose values or each of which has changed since; on
// registers in memory, and on registers that take as long as a camera's on a network. The bare reads run on a thread,
// too.
void AutomaticPass(benchmark::State &aState, bool aIsChanged, std::chrono::microseconds aDelay)
{
    const int count = static_cast<int>(aState.range(0));
    const GeneratedCamera camera(count);
    Browser browser(camera.Parameters(), LxGenRefreshManual);
    browser.ShowRows(VisibleRows);
    const std::vector<QModelIndex> rows = browser.Rows();
    camera.mPort->SetDelay(aDelay);
    PassTimes best;
    double bareWall = 1e9;
    double questions = 1e9;
    uint32_t value = 0;
    size_t features = 0;
    for (auto _ : aState) {
        if (aIsChanged) {
            camera.SetValues(++value);
        }
        const PassTimes times = RunPass(browser, camera.Parameters());
        best.mWall = std::min(best.mWall, times.mWall);
        best.mThread = std::min(best.mThread, times.mThread);
        best.mGui = std::min(best.mGui, times.mGui);
        features = 0;
        std::thread([&] {
            const double start = Seconds(CLOCK_MONOTONIC);
            for (const QModelIndex &row : rows) {
                if (LxGenParameter *const parameter = GenBrowserTreeModel::Item(row)->Parameter()) {
                    FeatureForm form;
                    form.mType = GenBrowserTreeModel::Item(row)->Type();
                    benchmark::DoNotOptimize(ReadFeature(*parameter, form, FeatureCache(), [] { return false; }));
                    ++features;
                }
            }
            bareWall = std::min(bareWall, (Seconds(CLOCK_MONOTONIC) - start) * 1e3);
        }).join();
        questions = std::min(questions, BareQuestions(static_cast<size_t>(count), aDelay));
    }
    camera.mPort->SetDelay(std::chrono::microseconds(0));
    aState.counters["rows"] = static_cast<double>(rows.size());
    aState.counters["features_on_screen"] = static_cast<double>(features);
    aState.counters["gui_ms"] = best.mGui;
    aState.counters["thread_ms"] = best.mThread;
    aState.counters["pass_ms"] = best.mWall;
    aState.counters["bare_reads_ms"] = bareWall;
    aState.counters["bare_questions_ms"] = questions;
    aState.counters["ratio"] = best.mWall / bareWall;
    aState.counters["ratio_with_questions"] = best.mWall / (bareWall + questions);
}
BENCHMARK_CAPTURE(AutomaticPass, Unchanged, false, std::chrono::microseconds(0))
    ->Arg(39)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);
BENCHMARK_CAPTURE(AutomaticPass, Changed, true, std::chrono::microseconds(0))
    ->Arg(39)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);
BENCHMARK_CAPTURE(AutomaticPass, Network, true, std::chrono::microseconds(200))
    ->Arg(39)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK_CAPTURE(AutomaticPass, Network, true, std::chrono::microseconds(200))
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

void Idle(benchmark::State &aState)
{
    const GeneratedCamera camera(1000);
    double time = 0.0;
    for (auto _ : aState) {
        Browser browser(camera.Parameters(), LxGenRefreshManual);
        ProcessEventsFor(300);
        const double before = Seconds(CLOCK_PROCESS_CPUTIME_ID);
        ProcessEventsFor(3000);
        time = (Seconds(CLOCK_PROCESS_CPUTIME_ID) - before) * 1e3 / 3;
    }
    aState.counters["cpu_ms_per_s"] = time;
}
BENCHMARK(Idle)->Name("Browser/IdleManual")->Unit(benchmark::kMillisecond)->Iterations(1);

void SearchKeystroke(benchmark::State &aState)
{
    const GeneratedCamera camera(5000);
    Browser browser(camera.Parameters(), LxGenRefreshManual);
    const QString query = QStringLiteral("feature4321");
    double longest = 0.0;
    for (auto _ : aState) {
        for (int length = 0; length <= query.size(); ++length) {
            QElapsedTimer clock;
            clock.start();
            browser.SearchBar()->setText(query.left(length));
            QCoreApplication::processEvents();
            longest = std::max(longest, static_cast<double>(clock.nsecsElapsed()) / 1e6);
        }
    }
    aState.counters["longest_ms"] = longest;
}
BENCHMARK(SearchKeystroke)->Name("Browser/SearchKeystroke")->Unit(benchmark::kMillisecond)->Iterations(3);

// How long the GUI thread is away from its event loop while the user searches, scrolls and closes.
void Stall(benchmark::State &aState, bool aIsFrozen, LxGenRefresh aMode)
{
    const GeneratedCamera camera(200);
    qint64 longest = 0;
    for (auto _ : aState) {
        Browser browser(camera.Parameters(), aMode);
        ProcessEventsFor(200);
        if (aIsFrozen) {
            camera.mPort->Freeze(std::chrono::milliseconds(500));
        }
        else {
            camera.mPort->SetDelay(std::chrono::milliseconds(200));
        }
        ProcessEventsFor(2500);  // the thread is reading
        QElapsedTimer clock;
        const auto note = [&] { longest = std::max(longest, clock.restart()); };
        QTimer heartbeat;
        heartbeat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&heartbeat, &QTimer::timeout, note);
        clock.start();
        heartbeat.start(1);
        for (const char *text : {"f", "fe", "fea", "feature1", "feature12", "feature123", ""}) {
            browser.SearchBar()->setText(QString::fromLatin1(text));
            ProcessEventsFor(80);
        }
        for (int place = 0; place < 100; place += 5) {
            browser.Tree()->verticalScrollBar()->setValue(place);
            ProcessEventsFor(20);
        }
        browser.Close();
        note();
        camera.mPort->SetDelay(std::chrono::microseconds(0));
        camera.mPort->Thaw();
    }
    aState.counters["longest_ms"] = static_cast<double>(longest);
}
BENCHMARK_CAPTURE(Stall, SlowAutomatic, false, LxGenRefreshAutomatic)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(Stall, SlowPolling, false, LxGenRefreshPolling)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_CAPTURE(Stall, FrozenAutomatic, true, LxGenRefreshAutomatic)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RunBenchmarks(argc, argv);
}
