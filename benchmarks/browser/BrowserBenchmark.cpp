// The feature browser: building, repainting, searching, refreshing, and how long the GUI thread is away.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeView>
#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>

#include "FeatureGenerator.h"
#include "LxGUI/GenBrowser/FeatureReading.h"
#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGenICam/LxGenEnum.h"
#include "RunBenchmarks.h"

namespace
{

double Seconds(clockid_t aClock)
{
    timespec time = {};
    clock_gettime(aClock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// The processor time that a function takes on this thread, in milliseconds; the least of some tries.
double LeastMilliseconds(int aTries, const std::function<void()> &aFunction)
{
    double least = 1e9;
    for (int i = 0; i < aTries; ++i) {
        const double start = Seconds(CLOCK_THREAD_CPUTIME_ID);
        aFunction();
        least = std::min(least, (Seconds(CLOCK_THREAD_CPUTIME_ID) - start) * 1e3);
    }
    return least;
}

void ProcessEventsFor(int aMilliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(aMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// What a browser must ask of a feature in any case: whether it is shown, and what it shows.
void ReadBare(LxGenParameter &aParameter)
{
    FeatureForm form;
    aParameter.GetType(form.mType);
    benchmark::DoNotOptimize(aParameter.IsVisible(LxGenVisibilityGuru));
    benchmark::DoNotOptimize(aParameter.IsImplemented());
    benchmark::DoNotOptimize(ReadFeature(aParameter, form, FeatureCache(), [] { return false; }));
}

double BareReads(LxGenParameterArray &aParameters, uint32_t aCount)
{
    return LeastMilliseconds(5, [&] {
        for (uint32_t i = 0; i < aCount; ++i) {
            ReadBare(*aParameters[i]);
        }
    });
}

/// A plain view over a plain model of as many rows.
double PlainView(int aRows)
{
    return LeastMilliseconds(5, [aRows] {
        QStandardItemModel model(aRows, 2);
        for (int row = 0; row < aRows; ++row) {
            model.setItem(row, 0, new QStandardItem(QStringLiteral("Feature%1").arg(row)));
            model.setItem(row, 1, new QStandardItem(QStringLiteral("0 px")));
        }
        QTreeView view;
        view.resize(600, 600);
        view.setModel(&model);
        view.show();
        view.grab();
    });
}

class Browser : public LxGenBrowserWnd
{
public:
    Browser(LxGenParameterArray *aParameters, LxGenRefresh aMode)
    {
        SetRefreshMode(aMode);
        SetPosition(-1, -1, 600, 1400);
        SetGenParameterArray(aParameters);
        ShowModeless();
        GetQWidget()->grab();
    }
    GenBrowserTree *Tree() { return GetQWidget()->findChild<GenBrowserTree *>(); }
    GenBrowserTreeModel *Model() { return qobject_cast<GenBrowserTreeModel *>(Tree()->model()); }
    QLineEdit *SearchBar() { return GetQWidget()->findChild<QLineEdit *>("SearchBar"); }
};

void BuildAndShow(benchmark::State &aState)
{
    const int count = static_cast<int>(aState.range(0));
    const GeneratedCamera camera(count);
    const double bare = BareReads(*camera.Parameters(), static_cast<uint32_t>(count));
    const double plain = PlainView(count);
    double build = 1e9;
    for (auto _ : aState) {
        build =
            std::min(build, LeastMilliseconds(1, [&] { Browser browser(camera.Parameters(), LxGenRefreshManual); }));
    }
    aState.counters["gui_ms"] = build;
    aState.counters["bare_reads_ms"] = bare;
    aState.counters["plain_view_ms"] = plain;
    aState.counters["ratio"] = build / (bare + plain);
}
BENCHMARK(BuildAndShow)->Name("Browser/Build")->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->Iterations(5);

void Memory(benchmark::State &aState)
{
    constexpr int kCount = 5000;
    const GeneratedCamera camera(kCount);
    {
        const Browser first(camera.Parameters(), LxGenRefreshManual);  // what is made once
    }
    size_t bytes = 0;
    for (auto _ : aState) {
        const size_t before = mallinfo2().uordblks;
        const Browser browser(camera.Parameters(), LxGenRefreshManual);
        bytes = mallinfo2().uordblks - before;
    }
    aState.counters["bytes_per_feature"] = static_cast<double>(bytes) / kCount;
}
BENCHMARK(Memory)->Name("Browser/Memory")->Unit(benchmark::kMillisecond)->Iterations(1);

void Repaint(benchmark::State &aState)
{
    constexpr int kRows = 50;
    const GeneratedCamera camera(1000);
    Browser browser(camera.Parameters(), LxGenRefreshManual);
    GenBrowserTree *const tree = browser.Tree();
    GenBrowserTreeModel *const model = browser.Model();
    std::vector<QModelIndex> rows;
    for (QModelIndex index = tree->indexAt(QPoint(100, 5)); index.isValid() && int(rows.size()) < kRows;
         index = tree->indexBelow(index))
    {
        rows.push_back(index);
    }
    QImage image(tree->viewport()->size(), QImage::Format_RGB32);
    double painted = 1e9;
    for (auto _ : aState) {
        painted = std::min(painted, LeastMilliseconds(20, [&] {
                               for (const QModelIndex &row : rows) {
                                   model->RefreshItemSlot(row, row.siblingAtColumn(1));
                               }
                               tree->viewport()->render(&image);
                           }));
    }
    const double bare = LeastMilliseconds(50, [&] {
        image.fill(Qt::white);
        QPainter painter(&image);
        const QFont plain = QApplication::font();
        QFont bold = plain;
        bold.setBold(true);
        for (const QModelIndex &row : rows) {
            const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(row);
            const QRect rect = tree->visualRect(row);
            painter.setFont(item->Parameter() ? plain : bold);
            painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, item->Name());
            painter.drawText(rect.translated(rect.width(), 0), Qt::AlignLeft | Qt::AlignVCenter, item->ValueText());
        }
    });
    // The same texts drawn by the toolkit's own view, to tell its part from the browser's.
    QStandardItemModel plainModel(kRows, 2);
    for (int row = 0; row < kRows && row < static_cast<int>(rows.size()); ++row) {
        const QModelIndex index = rows[static_cast<size_t>(row)];
        plainModel.setItem(row, 0, new QStandardItem(index.data().toString()));
        plainModel.setItem(row, 1, new QStandardItem(index.siblingAtColumn(1).data().toString()));
    }
    QTreeView view;
    view.setModel(&plainModel);
    view.resize(tree->size());
    view.show();
    view.grab();
    const double plainView = LeastMilliseconds(50, [&] { view.viewport()->render(&image); });
    aState.counters["rows"] = static_cast<double>(rows.size());
    aState.counters["browser_ms"] = painted;
    aState.counters["texts_ms"] = bare;
    aState.counters["plain_view_ms"] = plainView;
    aState.counters["ratio"] = painted / bare;
    aState.counters["ratio_to_plain_view"] = painted / plainView;
}
BENCHMARK(Repaint)->Name("Browser/Repaint")->Unit(benchmark::kMillisecond)->Iterations(5);

// Processor time of one automatic pass, over some of them.
void AutomaticPass(benchmark::State &aState)
{
    constexpr int kPasses = 3;
    const int count = static_cast<int>(aState.range(0));
    const GeneratedCamera camera(count);
    const double bare = BareReads(*camera.Parameters(), 40);
    double gui = 0.0;
    double all = 0.0;
    for (auto _ : aState) {
        Browser browser(camera.Parameters(), LxGenRefreshAutomatic);
        browser.SetPosition(-1, -1, 600, 1150);
        ProcessEventsFor(1000);  // the first pass is over
        const double guiBefore = Seconds(CLOCK_THREAD_CPUTIME_ID);
        const double allBefore = Seconds(CLOCK_PROCESS_CPUTIME_ID);
        ProcessEventsFor(2000 * kPasses);
        gui = (Seconds(CLOCK_THREAD_CPUTIME_ID) - guiBefore) * 1e3 / kPasses;
        all = (Seconds(CLOCK_PROCESS_CPUTIME_ID) - allBefore) * 1e3 / kPasses;
    }
    aState.counters["gui_ms"] = gui;
    aState.counters["all_threads_ms"] = all;
    aState.counters["bare_reads_of_40_ms"] = bare;
}
BENCHMARK(AutomaticPass)
    ->Name("Browser/AutomaticPass")
    ->Arg(40)
    ->Arg(100)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

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
