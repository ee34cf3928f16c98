// Sending a file through the port.

#include <sys/stat.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QCloseEvent>
#include <QtWidgets/QDialog>
#include <atomic>
#include <memory>

#include "LxGUI/SerialTerminal/SendFileThread.h"
#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"
#include "TerminalTest.h"

namespace
{

class SendFileTest : public TerminalTest
{
protected:
    void SetUp() override
    {
        TerminalTest::SetUp();
        ASSERT_TRUE(mFolder.isValid());
    }
    QString File(const std::string &aBytes)
    {
        const QString path = mFolder.filePath("data");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(aBytes.data(), static_cast<qint64>(aBytes.size())), static_cast<qint64>(aBytes.size()));
        return path;
    }
    static std::string Bytes(size_t aCount)
    {
        std::string bytes;
        for (size_t i = 0; i < aCount; ++i) {
            bytes += static_cast<char>(i * 7 + i / 256);
        }
        return bytes;
    }
    /// The reports of the transcript, without the time.
    QString Reports()
    {
        QString reports = mWnd.Transcript();
        reports.replace(QRegularExpression("\\n[0-9.e-]+s\\n"), "\nTs\n");
        return reports.mid(reports.indexOf("\nTs\n"));
    }
    void ExpectRefused(const QString &aPath)
    {
        const ExpectedBox box;
        mWnd.SendFile(aPath);
        ASSERT_TRUE(WaitForGui([&] { return box.WasShown(); })) << qPrintable(aPath);
        EXPECT_EQ(box.Title(), "Error!");
        EXPECT_EQ(box.Text(), "The following file could not be opened or was empty: '" + aPath + "'.");
        EXPECT_TRUE(mWnd.WaitUntilSent());
        EXPECT_TRUE(mWnd.IsEnabled("SendFileButton"));
        EXPECT_EQ(mWnd.Transcript(), "");
        EXPECT_EQ(Port().Written(), "");
    }

    QTemporaryDir mFolder;
};

/// Makes this process an ordinary user's, who may not read every file, for as long as the object lives.
class OrdinaryUser
{
public:
    OrdinaryUser() : mFormer(geteuid()) { mDone = mFormer != 0 || seteuid(65534) == 0; }
    ~OrdinaryUser() { EXPECT_TRUE(!mDone || seteuid(mFormer) == 0); }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    bool IsDone() const { return mDone; }

private:
    const uid_t mFormer;
    bool mDone = false;
};

}  // namespace

TEST_F(SendFileTest, OneByteIsOneChunk)
{
    mWnd.SendFile(File("x"));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Port().Written(), "x");
    EXPECT_EQ(Port().WriteSizes(), std::vector<uint32_t>({1}));
    EXPECT_EQ(Reports(), "\nTs\n1/1 successfully transmitted bytes (100%)\n");
}

TEST_F(SendFileTest, ChunksHave256Bytes)
{
    for (const size_t size : {256u, 512u, 700u}) {
        const size_t before = Port().WriteSizes().size();
        const size_t written = Port().Written().size();
        mWnd.SendFile(File(Bytes(size)));
        ASSERT_TRUE(mWnd.WaitUntilSent());
        const std::vector<uint32_t> all = Port().WriteSizes();
        const std::vector<uint32_t> sizes(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
        std::vector<uint32_t> expected(size / 256, 256);
        if (size % 256 != 0) {
            expected.push_back(static_cast<uint32_t>(size % 256));
        }
        EXPECT_EQ(sizes, expected) << "no empty chunk at the end";
        EXPECT_EQ(Port().Written().substr(written), Bytes(size));
    }
}

TEST_F(SendFileTest, TheControlsWaitForTheEnd)
{
    mWnd.SendFile(File("text"));
    EXPECT_TRUE(mWnd.IsSending());
    for (const char *name : {"SendButton", "BrowseButton", "SendFileButton"}) {
        EXPECT_FALSE(mWnd.IsEnabled(name)) << name;
    }
    mWnd.Mark("OtherCheck");
    EXPECT_FALSE(mWnd.IsEnabled("SendButton")) << "another reason to look at the controls";
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(mWnd.GetQWidget()->cursor().shape(), Qt::ArrowCursor);
    for (const char *name : {"SendButton", "BrowseButton", "SendFileButton"}) {
        EXPECT_TRUE(mWnd.IsEnabled(name)) << name;
    }
}

TEST_F(SendFileTest, TheReportHasTheTime)
{
    mWnd.SendFile(File("text"));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    const QRegularExpression form(
        "^\\n[0-9]+(\\.[0-9]+)?(e-[0-9]+)?s\\n4/4 successfully transmitted bytes \\(100%\\)\\n$");
    EXPECT_TRUE(form.match(mWnd.Transcript()).hasMatch()) << qPrintable(mWnd.Transcript());
}

TEST_F(SendFileTest, EchoesTheBytesBeforeTheReport)
{
    mWnd.Mark("EchoCheck");
    const std::string bytes = "0123456789\n" + std::string(600, 'x');
    mWnd.SendFile(File(bytes));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(mWnd.Transcript().left(static_cast<qsizetype>(bytes.size())), QString::fromStdString(bytes));
    EXPECT_EQ(Reports(), "\nTs\n611/611 successfully transmitted bytes (100%)\n");
}

TEST_F(SendFileTest, EchoedChunksAreTheirOwnBytes)
{
    mWnd.Mark("EchoCheck");
    mWnd.Mark("HexadecimalFormat");
    const std::string bytes = Bytes(4096);
    mWnd.SendFile(File(bytes));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    const QByteArray hex = QByteArray::fromStdString(bytes).toHex(' ');
    EXPECT_EQ(mWnd.Transcript().left(4096 * 50 / 16).remove("\r\n").trimmed().toLatin1(), hex);
}

TEST_F(SendFileTest, ALoopbackThatReturnsAllIsFullyReported)
{
    Port().LoopBack();
    mWnd.Mark("ValidationCheck");
    mWnd.SendFile(File(Bytes(5000)));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_TRUE(
        mWnd.Transcript().endsWith("5000/5000 successfully transmitted bytes (100%)\n"
                                   "5000/5000 bytes received from loopback (100%)\n"));
    mWnd.Click("ClearButton");
    mWnd.SendFile(File(Bytes(300)));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_TRUE(mWnd.Transcript().endsWith("300/300 bytes received from loopback (100%)\n")) << "counted anew";
}

TEST_F(SendFileTest, LostBytesAreSkipped)
{
    Port().LoopBack(100);
    mWnd.Mark("ValidationCheck");
    std::string bytes;
    for (int i = 0; i < 1000; ++i) {
        bytes += static_cast<char>(i % 251);
    }
    mWnd.SendFile(File(bytes));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_TRUE(mWnd.Transcript().endsWith("990/1000 bytes received from loopback (99%)\n"))
        << qPrintable(mWnd.Transcript());
}

TEST_F(SendFileTest, WithoutLoopbackNothingMatches)
{
    mWnd.Mark("ValidationCheck");
    mWnd.SendFile(File(Bytes(300)));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Reports(),
              "\nTs\n300/300 successfully transmitted bytes (100%)\n0/300 bytes received from loopback (0%)\n");
}

TEST_F(SendFileTest, WithoutValidationTheLoopbackIsNotReported)
{
    mWnd.Mark("HexadecimalFormat");
    mWnd.SendFile(File(Bytes(3)));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Reports(), "\nTs\n3/3 successfully transmitted bytes (100%)\n");
}

TEST_F(SendFileTest, FailingWritesOnlyCount)
{
    Port().FailWrites(LxResultCode::NotConnected);
    mWnd.SendFile(File(Bytes(300)));
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Reports(), "\nTs\n0/300 successfully transmitted bytes (0%)\n");
}

TEST_F(SendFileTest, AClosedPortGetsNothingButTheFileIsRead)
{
    mDevice.mOpenResult = LxResultCode::Busy;
    mWnd.SetSerialPort(LxDeviceSerial::Serial0);
    ASSERT_FALSE(mWnd.IsEnabled("SendFileButton"));
    mWnd.Find<QLineEdit>("FileEdit")->setText(File(std::string(300, 'x')));
    mWnd.Mark("EchoCheck");
    mWnd.Find<QPushButton>("SendFileButton")->setEnabled(true);
    mWnd.Click("SendFileButton");
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Reports(), "\nTs\n0/300 successfully transmitted bytes (0%)\n");
    EXPECT_TRUE(mWnd.Transcript().startsWith(QString(300, 'x') + '\n')) << "the whole file was read";
    EXPECT_FALSE(mWnd.IsEnabled("SendFileButton"));
}

TEST_F(SendFileTest, FilesThatCannotBeSentAreRefused)
{
    ExpectRefused(QString());
    ExpectRefused("/no/such/file");
    ExpectRefused(mFolder.path());
    ExpectRefused(File(""));
    ExpectRefused("/etc/hostname/below/a/file");
    ExpectRefused(mFolder.filePath("<b>no file</b> %1"));
    ExpectRefused("/dev/zero");
    ExpectRefused(QString(5000, 'x'));
}

TEST_F(SendFileTest, APipeIsRefusedAndNotWaitedFor)
{
    const QString path = mFolder.filePath("pipe");
    ASSERT_EQ(mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    ExpectRefused(path);
}

TEST_F(SendFileTest, AnUnreadableFileIsRefused)
{
    const QString path = File("secret");
    ASSERT_EQ(chmod(path.toLocal8Bit().constData(), 0), 0);
    ASSERT_EQ(chmod(mFolder.path().toLocal8Bit().constData(), 0755), 0);  // the file can be seen
    const OrdinaryUser user;
    if (!user.IsDone()) {
        GTEST_SKIP() << "root of this system cannot be another user";
    }
    ExpectRefused(path);
}

TEST_F(SendFileTest, AFileThatVanishesMeanwhileIsSentWhole)
{
    Port().HoldWrites(true);
    const std::string bytes = Bytes(20000);
    mWnd.SendFile(File(bytes));
    ASSERT_TRUE(WaitForGui([&] { return Port().IsWriting(); }));
    ASSERT_TRUE(QFile::remove(mFolder.filePath("data")));
    Port().HoldWrites(false);
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Port().Written(), bytes);
}

TEST_F(SendFileTest, AFileThatIsCutMeanwhileEndsThere)
{
    Port().HoldWrites(true);
    mWnd.SendFile(File(Bytes(100000)));
    ASSERT_TRUE(WaitForGui([&] { return Port().IsWriting(); }));
    ASSERT_EQ(truncate(mFolder.filePath("data").toLocal8Bit().constData(), 100), 0);
    Port().HoldWrites(false);
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_LT(Port().Written().size(), 100000u);
    EXPECT_TRUE(mWnd.Transcript().contains("/100000 successfully transmitted bytes ("));
}

TEST_F(SendFileTest, APortThatDisappearsMeanwhileEndsQuietly)
{
    Port().HoldWrites(true);
    mWnd.SendFile(File(Bytes(10000)));
    ASSERT_TRUE(WaitForGui([&] { return Port().IsWriting(); }));
    Port().FailReads(LxResultCode::NotConnected);
    Port().FailWrites(LxResultCode::NotConnected);
    Port().HoldWrites(false);
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Reports(), "\nTs\n0/10000 successfully transmitted bytes (0%)\n");
}

TEST_F(SendFileTest, ClosingTheDialogEndsTheSending)
{
    QFile large(mFolder.filePath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(qint64{1} << 40));  // more than could be sent
    Port().HoldWrites(true);
    mWnd.SendFile(large.fileName());
    ASSERT_TRUE(WaitForGui([&] { return Port().IsWriting(); }));
    Port().HoldWrites(false);
    mWnd.GetQWidget()->close();
    EXPECT_EQ(mDevice.OpenCount(), 0u);
    EXPECT_GT(Port().Written().size(), 0u);
    EXPECT_TRUE(WaitForGui([&] { return mWnd.Transcript().contains("/1099511627776 successfully transmitted"); }))
        << "what was sent is reported";
}

TEST_F(SendFileTest, ACloseEventStopsASendingThatTheHostKeepsOpen)
{
    QWidget host;
    mWnd.Create(&host);
    QFile large(mFolder.filePath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(qint64{1} << 40));
    mWnd.SendFile(large.fileName());
    ASSERT_TRUE(WaitForGui([&] { return Port().Written().size() > 0; }));
    QCloseEvent event;
    QCoreApplication::sendEvent(&host, &event);
    EXPECT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(mDevice.OpenCount(), 1u) << "only the sending ended";
    mWnd.Close();
}

TEST_F(SendFileTest, ChangingThePortEndsTheSending)
{
    mDevice.mPorts.insert(LxDeviceSerial::Serial1);
    mWnd.SetDevice(&mDevice);
    QFile large(mFolder.filePath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(qint64{1} << 40));
    mWnd.SendFile(large.fileName());
    ASSERT_TRUE(WaitForGui([&] { return Port().Written().size() > 0; }));
    QElapsedTimer clock;
    clock.start();
    mWnd.PortCombo()->setCurrentIndex(1);
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_EQ(Port().mPort, LxDeviceSerial::Serial1);
    EXPECT_TRUE(mWnd.WaitUntilSent());
    EXPECT_TRUE(mWnd.IsEnabled("SendFileButton"));
    EXPECT_TRUE(mWnd.Transcript().contains("/1099511627776 successfully transmitted"));
    mWnd.SendFile(File("again"));
    EXPECT_TRUE(mWnd.WaitUntilSent());
    EXPECT_EQ(Port().Written(), "again");
}

TEST_F(SendFileTest, DestroyingTheWindowEndsTheSending)
{
    SerialDevice device;
    QFile large(mFolder.filePath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(qint64{1} << 40));
    {
        Terminal wnd;
        wnd.SetDevice(&device);
        wnd.ShowModeless();
        wnd.Mark("EchoCheck");
        wnd.SendFile(large.fileName());
        ASSERT_TRUE(WaitForGui([&] { return device.Port().Written().size() > 0; }));
    }
    EXPECT_EQ(device.OpenCount(), 0u);
    QCoreApplication::processEvents();
}

TEST_F(SendFileTest, TheThreadsAreTimeCritical)
{
    struct Priorities
    {
        std::atomic<int> mReading{-1};
        std::atomic<int> mWriting{-1};
    };
    const auto seen = std::make_shared<Priorities>();  // a call of the observer may outlive the test
    Port().SetObserver(
        [seen](bool aWriting) { (aWriting ? seen->mWriting : seen->mReading) = QThread::currentThread()->priority(); });
    mWnd.SendFile(File("text"));
    EXPECT_TRUE(WaitForGui([&] { return seen->mReading == QThread::TimeCriticalPriority; }));
    EXPECT_TRUE(WaitForGui([&] { return seen->mWriting == QThread::TimeCriticalPriority; }));
    Port().SetObserver(nullptr);
    EXPECT_TRUE(mWnd.WaitUntilSent());
}

TEST_F(SendFileTest, WhatIsStoppedBeforeItsFirstChunkIsReportedNevertheless)
{
    SerialTerminalWnd wnd;
    SendFileThread thread(&wnd, File("text"));
    QStringList reports;
    bool completed = false;
    QObject::connect(&thread, &SendFileThread::printText, qApp, [&](const QString &aText) { reports << aText; });
    QObject::connect(&thread, &SendFileThread::completed, qApp, [&](bool aResult) { completed = aResult; });
    thread.SetLoopback(true);
    thread.Stop();
    thread.start();
    ASSERT_TRUE(WaitForGui([&] { return completed; }));
    ASSERT_EQ(reports.size(), 3);
    EXPECT_EQ(reports[1], "0/4 successfully transmitted bytes (0%)\n");
    EXPECT_EQ(reports[2], "0/0 bytes received from loopback (nan%)\n") << "of nothing";
}

// Everything at once

TEST_F(SendFileTest, TheWindowMayBeTreatedAnyhowWhileBytesFlow)
{
    mDevice.mPorts = {LxDeviceSerial::Serial0, LxDeviceSerial::Serial1, LxDeviceSerial::Bulk0};
    mWnd.SetDevice(&mDevice);
    const QString path = File(Bytes(20000));
    const char *const formats[] = {"AsciiFormat", "HexadecimalFormat", "HybridFormat"};
    for (int round = 0; round < 9; ++round) {
        Port().LoopBack(round % 2 == 0 ? 0 : 7);
        Port().Flood(round % 3 == 0);
        if (!mWnd.Check("ValidationCheck")->isChecked()) {
            mWnd.Mark("ValidationCheck");
            mWnd.Mark("EchoCheck");
        }
        mWnd.SendFile(path);
        mWnd.Mark(formats[round % 3]);
        ASSERT_TRUE(WaitForGui([&] { return Port().BytesRead() > 1000; }));
        mWnd.Find<QLineEdit>("DataEdit")->setText("typed");
        QMetaObject::invokeMethod(mWnd.Find<QPushButton>("SendButton"), "click");
        mWnd.Click("ClearButton");
        switch (round % 4) {
            case 0:
                mWnd.PortCombo()->setCurrentIndex((mWnd.PortCombo()->currentIndex() + 1) % 3);
                break;
            case 1:
                mWnd.Close();
                mWnd.ShowModeless();
                break;
            case 2:
                mWnd.SetDevice(nullptr);
                mWnd.SetDevice(&mDevice);
                break;
            default:
                mWnd.GetQWidget()->close();
                mWnd.ShowModeless();
        }
        EXPECT_EQ(mDevice.OpenCount(), 1u);
    }
    Port().Flood(false);
    ASSERT_TRUE(mWnd.WaitUntilSent());
    mWnd.Mark("AsciiFormat");
    Port().Deliver("end");
    EXPECT_TRUE(mWnd.ShowsInAll("end"));
}
