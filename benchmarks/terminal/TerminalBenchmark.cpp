// The serial terminal: its transcript against a stock text view, a flooding port, and a large file with validation.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTimer>
#include <QtGui/QTextCursor>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Absence.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"
#include "LxGUI/SerialTerminal/TranscriptView.h"
#include "RunBenchmarks.h"
#include "SimulatedGrabber.h"
#include "StockTerminal.h"

namespace
{

constexpr QSize ViewSize(640, 400);

void ProcessEventsUntil(const std::function<bool()> &aCondition)
{
    while (!aCondition()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
}

/// Chunks of 64 characters of a text with lines of 80.
std::vector<QString> Chunks()
{
    QString text;
    for (int line = 0; text.size() < 64 * 4096; ++line) {
        text += QStringLiteral("%1").arg(line, 8) + QStringLiteral(" abcdefghij").repeated(7).left(70) +
                QStringLiteral("\r\n");
    }
    std::vector<QString> chunks;
    for (qsizetype i = 0; i + 64 <= text.size(); i += 64) {
        chunks.push_back(text.mid(i, 64));
    }
    return chunks;
}

/// The transcript of the terminal, fed as the terminal feeds it.
class OwnView
{
public:
    OwnView()
    {
        mView.resize(ViewSize);
        mView.show();
    }
    void Feed(const QString &aChunk)
    {
        const QByteArray bytes = aChunk.toLatin1();
        mFormatter.Add(reinterpret_cast<const uint8_t *>(bytes.data()), static_cast<uint32_t>(bytes.size()));
        mView.Apply(mFormatter.Take(mView.Text()));
    }

private:
    TranscriptFormatter mFormatter;
    TranscriptView mView;
};

/// A stock view that is kept at the same number of characters and shows its end.
class PlainView
{
public:
    PlainView()
    {
        mView.setReadOnly(true);
        mView.setUndoRedoEnabled(false);
        mView.setFont(QFont(QStringLiteral("Monospace")));
        mView.resize(ViewSize);
        mView.show();
    }
    void Feed(const QString &aChunk)
    {
        QTextCursor cursor(mView.document());
        const int excess =
            mView.document()->characterCount() + static_cast<int>(aChunk.size()) - int{TranscriptFormatter::Capacity};
        if (excess > 0) {
            cursor.setPosition(std::min(excess, mView.document()->characterCount() - 1), QTextCursor::KeepAnchor);
            cursor.removeSelectedText();
        }
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(aChunk);
        mView.moveCursor(QTextCursor::End);
    }

private:
    QPlainTextEdit mView;
};

/// Characters that a view takes in a second of processor time, its painting included.
template <class View>
double CharactersPerSecond(const std::vector<QString> &aChunks)
{
    View view;
    QApplication::processEvents();
    size_t next = 0;
    size_t count = 0;
    QElapsedTimer frame;
    frame.start();
    const auto feed = [&] {
        view.Feed(aChunks[next++ % aChunks.size()]);
        if (frame.elapsed() >= 16) {  // both paint once a frame of the screen
            QApplication::processEvents();
            frame.start();
        }
    };
    while (next * 64 < 40000) {
        feed();
    }
    const double start = Seconds(CLOCK_THREAD_CPUTIME_ID);
    double end = start;
    for (; end - start < 1.0; ++count, end = Seconds(CLOCK_THREAD_CPUTIME_ID)) {
        feed();
    }
    return static_cast<double>(count) * 64 / (end - start);
}

/// Milliseconds that a full view takes for a batch of so many chunks, painting included; the least of some.
template <class View>
double BatchMilliseconds(const std::vector<QString> &aChunks, int aCount)
{
    View view;
    size_t next = 0;
    while (next * 64 < 40000) {
        view.Feed(aChunks[next++]);
    }
    double least = 1e9;
    for (int i = 0; i < 20; ++i) {
        QElapsedTimer frame;
        frame.start();
        while (frame.elapsed() < 20) {
            QApplication::processEvents();
        }
        QString batch;
        for (int k = 0; k < aCount; ++k) {
            batch += aChunks[next++ % aChunks.size()];
        }
        const double start = Seconds(CLOCK_THREAD_CPUTIME_ID);
        view.Feed(batch);
        QApplication::processEvents();
        least = std::min(least, (Seconds(CLOCK_THREAD_CPUTIME_ID) - start) * 1e3);
    }
    return least;
}

void ViewThroughput(benchmark::State &aState)
{
    const std::vector<QString> chunks = Chunks();
    double own = 0;
    double plain = 0;
    for (auto _ : aState) {
        own = CharactersPerSecond<OwnView>(chunks);
        plain = CharactersPerSecond<PlainView>(chunks);
    }
    aState.counters["own kchars/s"] = own / 1e3;
    aState.counters["plain_text_edit kchars/s"] = plain / 1e3;
    aState.counters["ratio"] = own / plain;
}
BENCHMARK(ViewThroughput)->Name("Terminal/View")->Unit(benchmark::kMillisecond)->Iterations(1);

void ViewBatch(benchmark::State &aState)
{
    const std::vector<QString> chunks = Chunks();
    const auto count = static_cast<int>(aState.range(0));
    double own = 0;
    double plain = 0;
    for (auto _ : aState) {
        own = BatchMilliseconds<OwnView>(chunks, count);
        plain = BatchMilliseconds<PlainView>(chunks, count);
    }
    aState.counters["own_ms"] = own;
    aState.counters["plain_text_edit_ms"] = plain;
    aState.counters["ratio"] = own / plain;
}
// What comes in 250 ms at 115200 and at 921600 baud.
BENCHMARK(ViewBatch)->Name("Terminal/Batch")->Arg(45)->Arg(360)->Unit(benchmark::kMillisecond)->Iterations(1);

/// Sends as fast as the port takes it while it is open.
class FloodPeer : public LxSimulatedSerialPeer
{
public:
    ~FloodPeer() override
    {
        mStop = true;
        if (mThread.joinable()) {
            mThread.join();
        }
    }
    void OnConnected(const std::shared_ptr<LxSimulatedSerialLine> &aLine) override
    {
        mThread = std::thread([this, aLine] {
            std::string bytes;
            for (int i = 0; i < 65536; ++i) {
                bytes += static_cast<char>(i % 95 + 32);
            }
            while (!mStop) {
                mSent +=
                    aLine->Send(reinterpret_cast<const uint8_t *>(bytes.data()), static_cast<uint32_t>(bytes.size()));
            }
        });
    }
    void OnReceive(const uint8_t *, uint32_t, LxSimulatedSerialLine &) override {}
    uint64_t Sent() const { return mSent; }

private:
    std::atomic<bool> mStop{false};
    std::atomic<uint64_t> mSent{0};
    std::thread mThread;
};

/// A terminal on a simulated frame grabber.
class Terminal
{
public:
    explicit Terminal(std::shared_ptr<LxSimulatedSerialPeer> aPeer)
    {
        if (!mWnd.SetDevice(mGrabber.GetAdapter()).IsOK()) {
            std::abort();  // nothing could be measured
        }
        mWnd.ShowModeless();
        QElapsedTimer clock;
        clock.start();
        ProcessEventsUntil([&clock] { return clock.elapsed() > 200; });  // the first painting, with its fonts
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::move(aPeer));
    }
    ~Terminal()
    {
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, nullptr);
        mWnd.Close();
        mWnd.SetDevice(nullptr);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    template <class Type>
    Type *Find(const char *aName)
    {
        return mWnd.GetQWidget()->findChild<Type *>(QLatin1String(aName));
    }
    void Click(const char *aName) { Find<QAbstractButton>(aName)->click(); }

private:
    SimulatedGrabber mGrabber{SimulatedGrabber::MakeValues(1)};
    LxSerialTerminalWnd mWnd;
};

/// Counts the characters that a terminal shows.
class ShownCharacters : public QObject
{
public:
    ShownCharacters() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override
    {
        if (aEvent->type() == SerialTerminalWnd::ShowEvent) {
            mCount += static_cast<double>(static_cast<SerialTerminalWnd *>(aObject)->PendingCount());
        }
        return false;
    }

    double mCount = 0;
};

void Flood(benchmark::State &aState, const char *aFormat, double aCharactersPerByte)
{
    constexpr int duration = 3000;
    for (auto _ : aState) {
        auto peer = std::make_shared<FloodPeer>();
        Terminal terminal(peer);
        terminal.Click(aFormat);
        ShownCharacters shown;
        Absence absence;
        QElapsedTimer clock;
        clock.start();
        const uint64_t before = peer->Sent();
        ProcessEventsUntil([&clock] { return clock.elapsed() > duration; });
        const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
        const double taken = static_cast<double>(peer->Sent() - before) / seconds;
        aState.counters["taken MB/s"] = taken / 1e6;
        aState.counters["shown MB/s"] = shown.mCount / aCharactersPerByte / seconds / 1e6;
        aState.counters["away_ms"] = absence.mLongest;
        aState.counters["away_own_ms"] = absence.mLongestOwn;
        aState.counters["work_ms"] = absence.mLongestWork;
        if (const double stock = MeasureStockTerminal().mBytesPerSecond; stock > 0) {
            aState.counters["stock_terminal MB/s"] = stock / 1e6;
            aState.counters["ratio"] = taken / stock;
        }
    }
}
BENCHMARK_CAPTURE(Flood, Ascii, "AsciiFormat", 1.0)
    ->Name("Terminal/Flood/ascii")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(Flood, Hexadecimal, "HexadecimalFormat", 50.0 / 16)
    ->Name("Terminal/Flood/hexadecimal")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(Flood, Hybrid, "HybridFormat", 69.0 / 16)
    ->Name("Terminal/Flood/hybrid")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

/// Of this process, in memory. Not what malloc has handed out: asking it stops the other threads.
size_t ResidentBytes()
{
    std::ifstream file("/proc/self/statm");
    size_t size = 0;
    size_t resident = 0;
    file >> size >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

void SendFile(benchmark::State &aState)
{
    constexpr int megabytes = 100;
    QTemporaryFile file;
    file.open();
    for (int i = 0; i < megabytes; ++i) {
        QByteArray bytes(1000000, '\0');
        for (qsizetype k = 0; k < bytes.size(); ++k) {
            bytes[k] = static_cast<char>(k * 31 + k / 251 + i);
        }
        file.write(bytes);
    }
    file.flush();
    for (auto _ : aState) {
        Terminal terminal(std::make_shared<LxSimulatedSerialEcho>());
        terminal.Click("ValidationCheck");
        terminal.Click("HybridFormat");
        terminal.Find<QLineEdit>("FileEdit")->setText(file.fileName());
        auto *view = terminal.Find<TranscriptView>("Transcript");
        auto *button = terminal.Find<QAbstractButton>("SendFileButton");
        Absence absence;
        size_t most = 0;
        size_t start = 0;
        QTimer memory;
        QObject::connect(&memory, &QTimer::timeout, [&] {
            const size_t now = ResidentBytes();
            start = start == 0 ? now : start;
            most = std::max(most, now);
        });
        memory.start(20);
        QElapsedTimer clock;
        clock.start();
        button->click();
        ProcessEventsUntil([button] { return button->isEnabled(); });
        const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9 - 1.0;  // without the last second's wait
        const QString report = view->Text().right(200);
        const QString whole = QString::number(megabytes * 1000000);
        if (!report.contains(whole + '/' + whole + " successfully transmitted") ||
            !report.contains(whole + '/' + whole + " bytes received"))
        {
            aState.SkipWithError(report.toUtf8().constData());
        }
        aState.counters["sent MB/s"] = megabytes / seconds;
        aState.counters["memory_growth MB"] = static_cast<double>(most - start) / 1e6;
        aState.counters["away_ms"] = absence.mLongest;
        aState.counters["away_own_ms"] = absence.mLongestOwn;
        aState.counters["work_ms"] = absence.mLongestWork;
    }
}
BENCHMARK(SendFile)->Name("Terminal/SendFile")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // Before the threads of the others run.
    if (const StockTerminal &stock = MeasureStockTerminal(); stock.mBytesPerSecond == 0) {
        std::fprintf(stderr, "Terminal/Flood: no stock terminal to compare with: %s\n", stock.mReason.c_str());
    }
    return RunBenchmarks(argc, argv);
}
