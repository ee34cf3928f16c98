#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <condition_variable>
#include <limits>
#include <thread>
#include <utility>

#include "BrowserTest.h"
#include "LxPersistence/LxPropertyList.h"
#include "WaitFor.h"

namespace
{

using std::chrono::milliseconds;

/// Keeps calls of the device waiting while it is closed, at most for a time that no test should take.
class Gate
{
public:
    void Close()
    {
        const std::lock_guard lock(mMutex);
        mIsOpen = false;
    }
    void Open()
    {
        const std::lock_guard lock(mMutex);
        mIsOpen = true;
        mOpened.notify_all();
    }
    void Pass()
    {
        std::unique_lock lock(mMutex);
        ++mWaiting;
        if (!mOpened.wait_for(lock, std::chrono::seconds(20), [this] { return mIsOpen; })) {
            ADD_FAILURE() << "the GUI thread waits for the device";
        }
        --mWaiting;
    }
    /// How many calls are waiting.
    int Waiting() const
    {
        const std::lock_guard lock(mMutex);
        return mIsOpen ? 0 : mWaiting;
    }

private:
    mutable std::mutex mMutex;  // guards everything below
    std::condition_variable mOpened;
    bool mIsOpen = true;
    int mWaiting = 0;
};

/// Many features in two categories; each is a fake of which everything can be scripted.
class BrowserThread : public testing::Test
{
protected:
    void SetUp() override
    {
        mArray.AddCategory("General");
        for (int i = 0; i < 60; ++i) {
            mFeatures.push_back(&mArray.Add<FakeInteger>("Feature" + std::to_string(i)));
        }
        mBrowser = std::make_unique<TestBrowser>();
    }

    void Show(LxGenRefresh aMode)
    {
        mBrowser->SetRefreshMode(aMode);
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->SetPosition(-1, -1, 400, 400);
        mBrowser->ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser->GetQWidget()));
    }
    /// Lets every call of the device go through the gate.
    void PutGate()
    {
        for (FakeInteger *feature : mFeatures) {
            feature->mScript.OnCall([this](const std::string &) { mGate.Pass(); });
        }
    }
    /// Closes the window and opens the gate from the event loop, which must run meanwhile.
    void CloseWhileTheDeviceIsStuck()
    {
        QTimer::singleShot(0, [this] { mGate.Open(); });
        mBrowser->Close();
        EXPECT_FALSE(mFeatures[0]->HasSinks());
    }
    void SetDelay(milliseconds aDelay)
    {
        for (FakeInteger *feature : mFeatures) {
            feature->mScript.SetDelay(aDelay);
        }
    }
    int Reads(size_t aFeature) const { return mFeatures[aFeature]->mScript.Count("GetValue"); }

    Gate mGate;
    FakeArray mArray;
    std::vector<FakeInteger *> mFeatures;
    std::unique_ptr<TestBrowser> mBrowser;
};

// Modes

TEST_F(BrowserThread, AutomaticModeReadsWhatIsOnScreenAndNothingElse)
{
    Show(LxGenRefreshAutomatic);
    mFeatures[0]->mValue = 7;
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Value("Feature0") == "7 "; }));
    EXPECT_EQ(Reads(59), 1);  // when it was built
    mBrowser->Tree()->verticalScrollBar()->setValue(mBrowser->Tree()->verticalScrollBar()->maximum());
    EXPECT_TRUE(WaitForGui([&] { return Reads(59) > 1; }));
}

TEST_F(BrowserThread, AutomaticModeComesBackEveryTwoSeconds)
{
    Show(LxGenRefreshAutomatic);
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) >= 2; }));
    QElapsedTimer clock;
    clock.start();
    const int reads = Reads(0);
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > reads; }));
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > reads + 1; }));
    EXPECT_GE(clock.elapsed(), 1900);
}

TEST_F(BrowserThread, AnUnknownModeWorksLikeTheAutomaticOne)
{
    Show(static_cast<LxGenRefresh>(77));
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > 1; }));
}

TEST_F(BrowserThread, PollingModeReadsEverythingOnceAndThenPolls)
{
    Show(LxGenRefreshPolling);
    EXPECT_TRUE(WaitForGui([&] { return mArray.mScript.Count("Poll") >= 3; }));
    EXPECT_EQ(Reads(0), 2);
    EXPECT_EQ(Reads(59), 2);
}

TEST_F(BrowserThread, WhatPollingFindsReachesTheView)
{
    mArray.mOnPoll = [this] { mFeatures[59]->Notify(); };
    Show(LxGenRefreshPolling);
    const QAbstractItemModelTester tester(mBrowser->Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    mFeatures[59]->mValue = 9;
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Value("Feature59") == "9 "; }));
}

/// How many refresh threads run.
int Threads()
{
    const QDir tasks("/proc/self/task");
    int count = 0;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(task + "/comm"));
        count += name.open(QIODevice::ReadOnly) && name.readAll().startsWith("GenBrowserThre") ? 1 : 0;
    }
    return count;
}

/// The system still has a thread for a moment after Qt has seen its end.
void ExpectNoThread()
{
    EXPECT_TRUE(WaitFor([] { return Threads() == 0; }));
}

/// The objects below a widget that have running timers.
QStringList RunningTimers(QWidget *aWidget)
{
    QStringList names;
    QObjectList objects = aWidget->findChildren<QObject *>();
    objects.append(aWidget);
    for (QObject *object : objects) {
        if (!QAbstractEventDispatcher::instance()->registeredTimers(object).isEmpty()) {
            names << object->metaObject()->className();
        }
    }
    return names;
}

TEST_F(BrowserThread, ManualModeRunsNoThread)
{
    Show(LxGenRefreshAutomatic);
    EXPECT_TRUE(WaitForGui([] { return Threads() == 1; })) << "it names itself";
    mBrowser->SetRefreshMode(LxGenRefreshManual);
    ExpectNoThread();
    EXPECT_EQ(mArray.mScript.Count("Poll"), 0);
}

TEST_F(BrowserThread, AnIdleBrowserHasNothingToDo)
{
    QApplication::setCursorFlashTime(0);
    Show(LxGenRefreshManual);
    const int reads = Reads(0);
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Feature1"));
    // From some moment on the event loop has neither events nor timers of the window, so that nothing can happen.
    EXPECT_TRUE(WaitForGui([&] {
        bool isIdle = true;
        for (int i = 0; i < 10; ++i) {
            isIdle = !QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents) && isIdle;
        }
        return isIdle && RunningTimers(mBrowser->GetQWidget()).isEmpty();
    })) << RunningTimers(mBrowser->GetQWidget()).join(' ').toStdString();
    EXPECT_EQ(Reads(0), reads);
}

TEST_F(BrowserThread, TheEditedRowIsReadButItsEditorIsLeftAlone)
{
    Show(LxGenRefreshAutomatic);
    QWidget *editor = mBrowser->OpenEditor("Feature0");
    ASSERT_NE(editor, nullptr);
    QTest::keySequence(editor, QKeySequence::SelectAll);
    QTest::keyClicks(editor, "42");
    mFeatures[0]->mValue = 7;
    const int reads = Reads(1);
    EXPECT_TRUE(WaitForGui([&] { return Reads(1) > reads && mBrowser->Value("Feature0") == "7 "; }));
    EXPECT_EQ(editor->findChild<QLineEdit *>()->text(), "42");
}

TEST_F(BrowserThread, TheThreadsRowsKeepTheModelsPromises)
{
    for (const char *view : {"Tree", "AlphabeticalList"}) {
        LxPropertyList list;
        list.Add(LxProperty("View", view));
        mBrowser->Load(list);
        Show(LxGenRefreshAutomatic);
        const QAbstractItemModelTester tester(mBrowser->Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        QSignalSpy spy(mBrowser->Model(), &QAbstractItemModel::dataChanged);
        EXPECT_TRUE(WaitForGui([&] { return spy.size() > 5; }));
        for (const QList<QVariant> &change : spy) {
            EXPECT_EQ(change[0].toModelIndex().column(), 0);
            EXPECT_EQ(change[1].toModelIndex().column(), 1);
            EXPECT_EQ(change[0].toModelIndex().row(), change[1].toModelIndex().row());
        }
        mBrowser->Close();
    }
}

// Describing the selected feature

TEST_F(BrowserThread, DescribesTheSelectedFeatureWhereTheDeviceMayBeSlow)
{
    std::thread::id asker;
    mFeatures[1]->mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "GetIncrement") {  // asked for by descriptions only
            asker = std::this_thread::get_id();
        }
    });
    const auto describe = [&](LxGenRefresh aMode) {
        Show(aMode);
        mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Feature1"));
        EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Increment: 1"); }));
        mBrowser->Close();
        return std::exchange(asker, std::thread::id());
    };
    EXPECT_NE(describe(LxGenRefreshAutomatic), std::this_thread::get_id());
    EXPECT_NE(describe(LxGenRefreshPolling), std::this_thread::get_id());
    EXPECT_EQ(describe(LxGenRefreshManual), std::this_thread::get_id());  // no thread runs
}

TEST_F(BrowserThread, DescribesTheFeatureThatWasSelectedLast)
{
    Show(LxGenRefreshAutomatic);
    mFeatures[1]->mScript.OnCall([this](const std::string &aCall) {
        if (aCall == "GetIncrement") {
            mGate.Pass();
        }
    });
    const auto select = [&](const char *aName) { mBrowser->Tree()->setCurrentIndex(mBrowser->Cell(aName)); };
    mGate.Close();
    select("Feature1");
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "The Feature1");
    EXPECT_TRUE(WaitForGui([&] { return mGate.Waiting() > 0; }));
    select("Feature2");
    select("Feature3");
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "The Feature3");
    mGate.Open();
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Feature Name: Feature3"); }));
    EXPECT_EQ(mFeatures[2]->mScript.Count("GetIncrement"), 0);

    mGate.Close();
    select("Feature1");
    EXPECT_TRUE(WaitForGui([&] { return mGate.Waiting() > 0; }));
    CloseWhileTheDeviceIsStuck();  // while it is described
}

TEST_F(BrowserThread, DescribesWhileItAsksWhatIsOnScreen)
{
    for (int i = 0; i < 20; ++i) {
        Show(LxGenRefreshAutomatic);
        // No event was processed since the thread was started, so it may be asking.
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Feature1"));
        EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Increment: 1"); }));
        mBrowser->Close();
    }
}

// Asking whether a row is on screen

TEST_F(BrowserThread, TheQuestionWhetherARowIsOnScreenIsAnsweredByTheGui)
{
    Show(LxGenRefreshManual);
    const QModelIndex first = mBrowser->Cell("Feature0");
    const QModelIndex last = mBrowser->Cell("Feature59");
    GenBrowserTree *tree = mBrowser->Tree();
    std::atomic<int> answers{-1};
    std::thread asker([&] {
        const bool seesFirst = emit tree->IsVisibleSignal(first);
        const bool seesLast = emit tree->IsVisibleSignal(last);
        answers = (seesFirst ? 1 : 0) + (seesLast ? 2 : 0);
    });
    EXPECT_TRUE(WaitForGui([&] { return answers >= 0; }));
    asker.join();
    EXPECT_EQ(answers, 1);
}

TEST_F(BrowserThread, AQuestionThatIsTakenAwayIsAnsweredWithNo)
{
    Show(LxGenRefreshManual);
    std::atomic<int> answer{-1};
    GenBrowserTree *tree = mBrowser->Tree();
    const QModelIndex cell = mBrowser->Cell("Feature0");
    std::thread asker([&] { answer = (emit tree->IsVisibleSignal(cell)) ? 1 : 0; });
    EXPECT_TRUE(WaitFor([&] {
        QCoreApplication::removePostedEvents(tree, QEvent::MetaCall);
        return answer >= 0;
    }));
    asker.join();
    EXPECT_EQ(answer, 0);
}

TEST_F(BrowserThread, ARowOfAHiddenWindowCountsAsOnScreenSoClosingMustEndIt)
{
    Show(LxGenRefreshAutomatic);
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > 1 && Threads() == 1; }));
    mBrowser->GetQWidget()->hide();
    QCoreApplication::processEvents();
    EXPECT_TRUE(mBrowser->Tree()->IsVisibleSlot(mBrowser->Cell("Feature0")));
    EXPECT_FALSE(mBrowser->Tree()->IsVisibleSlot(mBrowser->Cell("Feature59")));
    const int reads = Reads(0);
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > reads; }));
    mBrowser->Close();
    ExpectNoThread();
    EXPECT_FALSE(mFeatures[0]->HasSinks());
}

// Ending

TEST_F(BrowserThread, EndsAtOnceInItsPause)
{
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        // The shortest of some: the machine may stand still at any time, but not every time.
        qint64 shortest = std::numeric_limits<qint64>::max();
        for (int i = 0; i < 3; ++i) {
            Show(mode);
            EXPECT_TRUE(WaitForGui([&] { return Reads(0) > 1; }));
            QElapsedTimer clock;
            clock.start();
            mBrowser->Close();
            shortest = std::min(shortest, clock.elapsed());
        }
        EXPECT_LT(shortest, 1900);  // the pause of the automatic mode is longer
    }
}

TEST_F(BrowserThread, EndsWhileItWaitsForTheGui)
{
    for (int i = 0; i < 20; ++i) {
        mBrowser->SetRefreshMode(LxGenRefreshAutomatic);
        mBrowser->SetGenParameterArray(&mArray);
        EXPECT_NE(mBrowser->Model(), nullptr);  // the thread has started and asks; no event was processed
        mBrowser->SetGenParameterArray(nullptr);
        EXPECT_FALSE(mFeatures[0]->HasSinks());
    }
}

TEST_F(BrowserThread, GoesOnInAnotherContentOfTheWindow)
{
    mBrowser->SetGenParameterArray(&mArray);
    const QPointer<GenBrowserTree> plain = mBrowser->Tree();  // of a plain widget, which nobody opened
    EXPECT_NE(plain->model(), nullptr);
    mBrowser->ShowModeless();
    EXPECT_NE(mBrowser->Tree(), plain.data());
    EXPECT_TRUE(!plain || !plain->model());
    mFeatures[0]->mValue = 7;
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Value("Feature0") == "7 "; }));
}

TEST_F(BrowserThread, AReadingIsGivenUpAtTheNextCallOfTheDevice)
{
    Show(LxGenRefreshAutomatic);
    mFeatures[2]->mScript.OnCall([this](const std::string &aCall) {
        if (aCall == "IsAvailable") {
            mGate.Pass();
        }
    });
    mGate.Close();
    EXPECT_TRUE(WaitForGui([&] { return mGate.Waiting() > 0; }));
    const int readable = mFeatures[2]->mScript.Count("IsReadable");
    CloseWhileTheDeviceIsStuck();
    EXPECT_EQ(mFeatures[2]->mScript.Count("IsReadable"), readable);
}

TEST_F(BrowserThread, ANotificationIsGivenUpAtTheNextCallOfTheDevice)
{
    Show(LxGenRefreshManual);
    PutGate();
    mGate.Close();
    std::thread notifier([&] { mFeatures[2]->Notify(); });
    EXPECT_TRUE(WaitForGui([&] { return mGate.Waiting() > 0; }));
    const int available = mFeatures[2]->mScript.Count("IsAvailable");
    CloseWhileTheDeviceIsStuck();
    notifier.join();
    EXPECT_EQ(mFeatures[2]->mScript.Count("IsAvailable"), available);
}

TEST_F(BrowserThread, TheHostMayUseTheWindowWhileItEnds)
{
    // A timer of the host fires within the events that are processed until the thread has ended.
    FakeArray other;
    other.AddCategory("General");
    other.Add<FakeInteger>("Other");
    for (int i = 0; i < 4; ++i) {
        Show(LxGenRefreshAutomatic);
        SetDelay(milliseconds(20));
        EXPECT_TRUE(WaitForGui([&] { return Reads(0) > 1; }));
        bool done = false;
        QTimer::singleShot(0, mBrowser->GetQWidget(), [&, i] {
            done = true;
            switch (i) {
                case 0:
                    mBrowser->SetGenParameterArray(nullptr);
                    break;
                case 1:
                    mBrowser->SetGenParameterArray(&other);
                    break;
                case 2:
                    mBrowser->Close();
                    break;
                default:
                    mBrowser.reset();
            }
        });
        mBrowser->SetRefreshMode(LxGenRefreshPolling);
        EXPECT_TRUE(done);
        if (mBrowser) {
            EXPECT_EQ(mBrowser->Outline(), i == 1 ? "General(Other)" : "");
            mBrowser->SetGenParameterArray(nullptr);
            EXPECT_FALSE(mFeatures[0]->HasSinks());
        }
        SetDelay(milliseconds(0));
    }
    EXPECT_FALSE(mFeatures[0]->HasSinks());
}

TEST_F(BrowserThread, ButtonsThatArePressedWhileItEndsDoNothing)
{
    Show(LxGenRefreshAutomatic);
    SetDelay(milliseconds(20));
    EXPECT_TRUE(WaitForGui([&] { return Reads(0) > 1; }));
    bool done = false;
    QTimer::singleShot(0, mBrowser->GetQWidget(), [&] {
        done = true;
        mBrowser->ClickButton("OptionsButton");  // would open a dialog
        mBrowser->ClickButton("CollapseButton");
        emit mBrowser->VisibilityCombo()->activated(2);
    });
    mBrowser->SetGenParameterArray(nullptr);
    EXPECT_TRUE(done);
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityBeginner);
}

TEST_F(BrowserThread, TheOptionsDialogDoesNotStopIt)
{
    Show(LxGenRefreshPolling);
    bool polled = false;
    OnNextModal([&](QWidget *aWidget) {
        const int polls = mArray.mScript.Count("Poll");
        polled = WaitForGui([&] { return mArray.mScript.Count("Poll") > polls + 1; });
        aWidget->close();
    });
    mBrowser->ClickButton("OptionsButton");
    EXPECT_TRUE(polled);
}

// Slow and lost devices

TEST_F(BrowserThread, ADeviceThatIsStuckDoesNotKeepTheUserFromSearchingScrollingAndClosing)
{
    mArray.mOnPoll = [this] { mFeatures[0]->Notify(); };
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        Show(mode);
        PutGate();
        mGate.Close();
        EXPECT_TRUE(WaitForGui([&] { return mGate.Waiting() > 0; }));
        QTest::keyClicks(mBrowser->SearchBar(), "feature5");
        QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
        EXPECT_EQ(mBrowser->Current(), "Feature50");
        EXPECT_TRUE(mBrowser->Description()->toPlainText().contains("The Feature50"));
        mBrowser->Tree()->verticalScrollBar()->setValue(mBrowser->Tree()->verticalScrollBar()->maximum());
        mBrowser->ClickButton("CollapseButton");
        mBrowser->ClickButton("ExpandButton");
        EXPECT_FALSE(Grab(mBrowser->GetQWidget()).isNull());
        EXPECT_GT(mGate.Waiting(), 0);
        CloseWhileTheDeviceIsStuck();
    }
}

TEST_F(BrowserThread, ADeviceThatIsLostKeepsItsLastValuesAndComesBackWithSelectionScrollingAndExpansion)
{
    mArray.AddCategory("Closed");
    mArray.Add<FakeInteger>("Inside", "Root\\Closed");
    Show(LxGenRefreshPolling);
    // The thread has read everything: from now on only notifications and the test's own calls read.
    EXPECT_TRUE(WaitForGui([&] { return mArray.mScript.Count("Poll") > 0; }));
    const int place = mBrowser->Tree()->verticalScrollBar()->maximum() / 2;
    mBrowser->Tree()->collapse(mBrowser->Cell("Closed"));
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Feature30"));
    mBrowser->Tree()->verticalScrollBar()->setValue(place);
    const auto set = [&](bool aIsLost) {
        for (FakeInteger *feature : mFeatures) {
            aIsLost ? feature->mScript.Fail("GetValue", LxResult(LxResultCode::NotConnected, "a.cpp:1 Device lost"))
                    : feature->mScript.Succeed("GetValue");
        }
        mArray.mAccessMode = aIsLost ? 1 : 0;
        std::thread([&] {
            for (FakeInteger *feature : mFeatures) {
                feature->Notify();
            }
        }).join();
    };
    set(true);
    QCoreApplication::processEvents();  // what the notifications sent
    EXPECT_EQ(mBrowser->Value("Feature59"), "0 ");
    EXPECT_FALSE(mBrowser->Cell("Feature59").data(Qt::ToolTipRole).toString().contains("lost"));
    mBrowser->Refresh();
    EXPECT_EQ(mBrowser->Cell("Feature59").data(Qt::ToolTipRole), "Error reading value: Device lost")
        << "who asks is told";
    EXPECT_EQ(mArray.mScript.Count("InvalidateCache"), 0);
    set(false);
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Value("Feature59") == "0 "; }));
    EXPECT_EQ(mBrowser->Current(), "Feature30");
    EXPECT_EQ(mBrowser->Tree()->verticalScrollBar()->value(), place);
    EXPECT_FALSE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Closed")));
}

}  // namespace
