// Everything at once, at random: edits, rebuilds, refresh modes, devices lost and back, windows closed. What it proves,
// it proves under the sanitizers. LXGUI_STRESS_SECONDS sets how long (3), LXGUI_STRESS_SEED which (random).

#include <QtCore/QElapsedTimer>
#include <QtCore/QSemaphore>
#include <QtCore/QTimer>
#include <QtTest/QAbstractItemModelTester>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QScrollBar>
#include <iostream>
#include <random>

#include "BrowserTest.h"
#include "LxPersistence/LxPropertyList.h"

namespace
{

int FromEnvironment(const char *aName, int aDefault)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(aName, &isSet);
    return isSet ? value : aDefault;
}

/// A device of all kinds of features that a thread of its own changes, loses and brings back.
class Device
{
public:
    explicit Device(unsigned aSeed) : mRandom(aSeed)
    {
        for (const char *name : {"General", "Image", "Gain"}) {
            mArray.AddCategory(name);
        }
        const char *paths[] = {"Root\\General", "Root\\Image", "Root\\Image\\Gain"};
        for (int i = 0; i < 12; ++i) {
            const std::string number = std::to_string(i);
            const char *path = paths[i % 3];
            Keep(mArray.Add<FakeInteger>("Integer" + number, path));
            Keep(mArray.Add<FakeFloat>("Float" + number, path));
            Keep(mArray.Add<FakeBoolean>("Boolean" + number, path));
            Keep(mArray.Add<FakeString>("String" + number, path));
            Keep(mArray.Add<FakeCommand>("Command" + number, path));
            FakeEnum &mode = mArray.Add<FakeEnum>("Mode" + number, path);
            mode.Add("Off", 0);
            mode.Add("On", 1).mVisibility = LxGenVisibilityExpert;
            Keep(mode);
        }
        mArray.mOnPoll = [this] { mNotify[mPolled++ % mNotify.size()](); };
        mThread = std::thread([this] { Run(); });
    }
    /// Lets the device change a few features more, so that neither it nor the user is alone for long.
    void TakeTurns()
    {
        if (mTurns.available() < Turns) {
            mTurns.release(Turns);
        }
    }
    ~Device()
    {
        mStop = true;
        mThread.join();
    }

    FakeArray mArray;

private:
    static constexpr int Turns = 8;     // of the device in each step of the user
    static constexpr int Patience = 5;  // milliseconds until it goes on by itself, as a user may stand still

    template <class Feature>
    void Keep(Feature &aFeature)
    {
        mNotify.push_back([&aFeature] { aFeature.Notify(); });
        mLose.push_back([&aFeature](bool aIsLost) {
            aIsLost ? aFeature.mScript.Fail("IsAvailable", LxResult(LxResultCode::NotConnected, "x.cpp:1 lost"))
                    : aFeature.mScript.Succeed("IsAvailable");
        });
        mLock.push_back([&aFeature](bool aIsWritable) { aFeature.mWritable = aIsWritable; });
        aFeature.mScript.SetDelay(std::chrono::microseconds(mNotify.size() % 20 == 0 ? 50 : 0));
    }
    void Run()
    {
        bool isLost = false;
        while (!mStop) {
            const size_t feature = mRandom() % mNotify.size();
            switch (mRandom() % 40) {
                case 0:
                    isLost = !isLost;
                    mArray.mAccessMode = isLost ? 1 : 0;
                    for (size_t i = 0; i < mLose.size() && !mStop; ++i) {
                        mLose[i](isLost);
                        mNotify[i]();
                    }
                    break;
                case 1:
                    mLock[feature](mRandom() % 4 != 0);
                    break;
                default:
                    mNotify[feature]();
                    mTurns.tryAcquire(1, Patience);
            }
        }
    }

    std::minstd_rand mRandom;
    std::vector<std::function<void()>> mNotify;
    std::vector<std::function<void(bool)>> mLose;
    std::vector<std::function<void(bool)>> mLock;
    std::atomic<size_t> mPolled{0};
    std::atomic<bool> mStop{false};
    QSemaphore mTurns;
    std::thread mThread;
};

class Stress
{
public:
    explicit Stress(unsigned aSeed) : mRandom(aSeed), mDevice(aSeed + 1)
    {
        // Boxes about failed edits are ended like a user does.
        QObject::connect(&mBoxes, &QTimer::timeout, [] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                box->accept();
            }
        });
        mBoxes.start(5);
    }

    void Step()
    {
        if (!mBrowser) {
            mBrowser = std::make_unique<TestBrowser>();
            mBrowser->SetPosition(-1, -1, 400, 400);
        }
        switch (mRandom() % 16) {
            case 0:
                mBrowser->SetGenParameterArray(mRandom() % 3 == 0 ? nullptr : &mDevice.mArray);
                break;
            case 1:
                mBrowser->SetRefreshMode(static_cast<LxGenRefresh>(mRandom() % 3));
                break;
            case 2:
                mBrowser->Close();
                break;
            case 3:
                if (mRandom() % 3 == 0) {
                    mBrowser.reset();
                }
                break;
            case 4:
            case 5:
                mBrowser->ShowModeless();
                break;
            case 6:
                Load();
                break;
            case 7:
                emit mBrowser->VisibilityCombo()->activated(static_cast<int>(mRandom() % 3));
                break;
            case 8:
                mBrowser->SearchBar()->setText(QString::number(mRandom() % 12));
                break;
            case 9:
                mBrowser->SearchBar()->MoveToNextOccurence();
                break;
            case 10:
                mBrowser->Refresh();
                break;
            case 11:
                mBrowser->Tree()->verticalScrollBar()->setValue(static_cast<int>(mRandom() % 200));
                break;
            case 12:
                if (mBrowser->Model() && !mTester) {
                    mTester = new QAbstractItemModelTester(
                        mBrowser->Model(), QAbstractItemModelTester::FailureReportingMode::Fatal, mBrowser->Model());
                }
                break;
            default:
                Edit();
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 3);
        mDevice.TakeTurns();
    }

private:
    void Load()
    {
        LxPropertyList list;
        list.Add(LxProperty("View", mRandom() % 2 ? "Tree" : "AlphabeticalList"));
        list.Add(LxProperty("Names", mRandom() % 2 ? "FeatureNames" : "DisplayNames"));
        mBrowser->Load(list);
    }
    void Edit()
    {
        if (QWidget *editor = mBrowser->Editor()) {
            QTest::keyClicks(editor, QString::number(mRandom() % 200));
            QTest::keyClick(editor, mRandom() % 3 ? Qt::Key_Return : Qt::Key_Escape);
            return;
        }
        const QStringList kinds = {"Integer", "Float", "Boolean", "String", "Command", "Mode"};
        const QString name = kinds[static_cast<int>(mRandom() % 6)] + QString::number(mRandom() % 12);
        QModelIndex cell = mBrowser->Cell(name, GenBrowserTreeModel::ValueColumn);
        if (cell.flags() & Qt::ItemIsEditable) {
            mBrowser->Tree()->setCurrentIndex(cell);
            QTest::keyClick(mBrowser->Tree(), Qt::Key_F2);
        }
    }

    std::minstd_rand mRandom;
    Device mDevice;
    QTimer mBoxes;
    std::unique_ptr<TestBrowser> mBrowser;
    QPointer<QAbstractItemModelTester> mTester;
};

TEST(BrowserStress, SurvivesEverythingAtOnce)
{
    const int seconds = FromEnvironment("LXGUI_STRESS_SECONDS", 3);
    const auto seed = static_cast<unsigned>(FromEnvironment("LXGUI_STRESS_SEED", int(std::random_device()() >> 1)));
    std::cout << "LXGUI_STRESS_SEED=" << seed << std::endl;
    Stress stress(seed);
    QElapsedTimer clock;
    clock.start();
    int steps = 0;
    for (; clock.elapsed() < seconds * 1000; ++steps) {
        stress.Step();
    }
    std::cout << steps << " steps" << std::endl;
    EXPECT_GT(steps, 0);
}

}  // namespace
