// What comes from the port, and how it is shown.

#include <QtCore/QEvent>
#include <QtGui/QAccessible>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <chrono>
#include <future>
#include <memory>
#include <vector>

#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"
#include "TerminalTest.h"
#include "WaitFor.h"

namespace
{

/// Pixels of the view that differ from its background.
int Ink(const QImage &aImage, const QRect &aRect)
{
    int ink = 0;
    const QRgb paper = aImage.pixel(aImage.width() / 2, aImage.height() - 3);
    for (int y = std::max(0, aRect.top()); y <= std::min(aRect.bottom(), aImage.height() - 1); ++y) {
        for (int x = std::max(0, aRect.left()); x <= std::min(aRect.right(), aImage.width() - 1); ++x) {
            ink += aImage.pixel(x, y) != paper;
        }
    }
    return ink;
}

QString HybridLine(const QString &aHex, const QString &aColumn)
{
    return aHex.leftJustified(51) + aColumn.leftJustified(16);
}

}  // namespace

TEST_F(TerminalTest, ReadsSmallChunksWithATimeout)
{
    ASSERT_TRUE(WaitForGui([&] { return Port().ReadCalls() > 1; }));
    EXPECT_EQ(Port().LastRead(), (std::pair<uint32_t, uint32_t>(64, 250)));
}

TEST_F(TerminalTest, ShowsWhatComesAsText)
{
    Port().Deliver("hello\r\n");
    EXPECT_TRUE(mWnd.Shows("hello\r\n"));
    Port().Deliver(std::string("a\0b", 3));
    EXPECT_TRUE(mWnd.Shows("hello\r\na b"));
}

TEST_F(TerminalTest, ShowsWhatComesInHexadecimal)
{
    mWnd.Mark("HexadecimalFormat");
    Port().Deliver("0123456789");
    EXPECT_TRUE(mWnd.Shows("30 31 32 33 34 35 36 37 38 39 "));
    Port().Deliver("abcdefXY");
    EXPECT_TRUE(mWnd.Shows("30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66 \r\n58 59 "));
}

TEST_F(TerminalTest, ShowsWhatComesInTheHybridFormat)
{
    mWnd.Mark("HybridFormat");
    Port().Deliver("\x41\x20\x0A");
    EXPECT_TRUE(mWnd.Shows(HybridLine("41 20 0a", "A..")));
    Port().Deliver("0123456789abcXY");
    EXPECT_TRUE(mWnd.Shows(HybridLine("41 20 0a 30 31 32 33 34 35 36 37 38 39 61 62 63", "A..0123456789abc") + "\r\n" +
                           HybridLine("58 59", "XY")));
}

TEST_F(TerminalTest, SwitchingTheFormatClearsTheTranscript)
{
    const char *const formats[] = {"HexadecimalFormat", "HybridFormat", "AsciiFormat"};
    for (const char *format : formats) {
        Port().Deliver("text");
        ASSERT_TRUE(WaitForGui([&] { return !mWnd.Transcript().isEmpty(); }));
        mWnd.Mark(format);
        EXPECT_EQ(mWnd.Transcript(), "") << format;
    }
    mWnd.Mark("HybridFormat");
    Port().Deliver("AB");
    ASSERT_TRUE(mWnd.Shows(HybridLine("41 42", "AB")));
    mWnd.Mark("HexadecimalFormat");
    Port().Deliver("C");
    EXPECT_TRUE(mWnd.Shows("43 ")) << "the unfinished line is forgotten, too";
}

TEST_F(TerminalTest, ClearForgetsTheTranscriptAndTheUnfinishedLine)
{
    mWnd.Mark("HybridFormat");
    Port().Deliver("AB");
    ASSERT_TRUE(mWnd.Shows(HybridLine("41 42", "AB")));
    mWnd.Click("ClearButton");
    EXPECT_EQ(mWnd.Transcript(), "");
    Port().Deliver("C");
    EXPECT_TRUE(mWnd.Shows(HybridLine("43", "C")));
}

TEST_F(TerminalTest, KeepsTheNewestTextInWholeUnits)
{
    const struct
    {
        const char *mFormat;
        qsizetype mUnit;
        qsizetype mBytes;
    } formats[] = {{"HexadecimalFormat", 50, 16}, {"HybridFormat", 69, 16}, {"AsciiFormat", 1, 1}};
    for (const auto &format : formats) {
        mWnd.Mark(format.mFormat);
        // Portions that fit, so that nothing is dropped: whole lines that tell their number.
        qsizetype lines = 0;
        while (lines * format.mUnit < 80000) {
            std::string bytes;
            for (int i = 0; i < 100; ++i, ++lines) {
                char line[24];
                std::snprintf(line, sizeof(line), "%016d", static_cast<int>(lines));
                bytes += std::string(line).substr(16 - static_cast<size_t>(format.mBytes));
            }
            const int reads = Port().ReadCalls();
            Port().Deliver(bytes);
            ASSERT_TRUE(WaitForGui([&] { return Port().IsDrained() && Port().ReadCalls() > reads; }));
            ASSERT_LE(mWnd.Transcript().size(), 32767);
        }
        char last[24];
        std::snprintf(last, sizeof(last), "%016d", static_cast<int>(lines - 1));
        const QString end = QString(last).right(format.mBytes);
        if (format.mBytes == 1) {
            ASSERT_TRUE(WaitForGui([&] { return mWnd.Transcript().endsWith("0123456789"); }));
        }
        else {
            const QString hex = QString::fromLatin1(end.toLatin1().toHex(' ')) + ' ';
            ASSERT_TRUE(WaitForGui([&] { return mWnd.Transcript().contains(hex); })) << format.mFormat;
        }
        EXPECT_GT(mWnd.Transcript().size(), 32767 / 2);
        EXPECT_EQ(mWnd.Transcript().size() % format.mUnit, 0) << format.mFormat;
    }
}

TEST_F(TerminalTest, AFloodIsShownInOrder)
{
    for (const char *format : {"AsciiFormat", "HexadecimalFormat", "HybridFormat"}) {
        mWnd.Mark(format);
        Port().Flood(true);
        const uint64_t start = Port().BytesRead();
        ASSERT_TRUE(WaitForGui([&] { return Port().BytesRead() > start + 500000; }));
        Port().Flood(false);
        ASSERT_TRUE(WaitForGui([&] { return mWnd.Transcript().size() > 20000; }));
        EXPECT_LE(mWnd.Transcript().size(), 32767);
        if (mWnd.Check("EchoCheck")->isChecked() || QString(format) == "AsciiFormat") {
            continue;
        }
        // Whole lines of the sixteen bytes that follow one another.
        const QStringList lines = mWnd.Transcript().split("\r\n");
        for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
            bool ok = false;
            uint expected = lines[i].left(2).toUInt(&ok, 16);
            for (int k = 0; k < 16; ++k, ++expected) {
                ASSERT_EQ(lines[i].mid(3 * k, 2).toUInt(&ok, 16), expected % 256) << qPrintable(lines[i]);
                ASSERT_TRUE(ok);
            }
        }
    }
}

TEST_F(TerminalTest, FewCharactersAreShownFourTimesASecondAtMost)
{
    const EventCounter shows(qApp, SerialTerminalWnd::ShowEvent);
    qsizetype bytes = 0;
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(WaitForGui([&] {
        if (bytes - mWnd.Transcript().size() < 40) {
            Port().Deliver("x");
            ++bytes;
        }
        return shows.mCount >= 5;
    }));
    EXPECT_GE(clock.elapsed(), 4 * 250);
    EXPECT_TRUE(mWnd.Shows(QString(bytes, 'x')));
}

TEST_F(TerminalTest, ManyCharactersAreShownAtOnce)
{
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; i <= 40; ++i) {
        Port().Deliver(std::string(64, 'x'));
        ASSERT_TRUE(WaitForGui([&] { return mWnd.Transcript().size() == 64 * i; }));
    }
    EXPECT_LT(clock.elapsed(), 40 * 250) << "not four times a second";
}

TEST_F(TerminalTest, ReadErrorsAreSurvivedSlowly)
{
    Port().FailReads(LxResultCode::Failed);
    const int reads = Port().ReadCalls();
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(WaitForGui([&] { return Port().ReadCalls() >= reads + 4; }));
    EXPECT_GE(clock.elapsed(), 2 * 250) << "a quarter of a second after each error";
    Port().FailReads(LxResult());
    Port().Deliver("alive");
    EXPECT_TRUE(mWnd.Shows("alive"));
}

TEST_F(TerminalTest, ATimeoutIsNoErrorToWaitFor)
{
    Port().FailReads(LxResultCode::SerialTimeout);
    const int reads = Port().ReadCalls();
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(WaitForGui([&] { return Port().ReadCalls() >= reads + 50; }));
    EXPECT_LT(clock.elapsed(), 50 * 250);
    Port().FailReads(LxResult());
}

TEST(SerialTerminalTranscript, TheWindowShowsItOnItsEvent)
{
    SerialTerminalWnd wnd;
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    auto *view = wnd.GetQWidget()->findChild<TranscriptView *>("Transcript");
    uint8_t bytes[] = {'a', 'b'};
    wnd.Render(bytes, 2);
    EXPECT_EQ(view->Text(), "");
    EXPECT_EQ(wnd.PendingCount(), 2);
    QEvent show(static_cast<QEvent::Type>(7800));
    QCoreApplication::sendEvent(&wnd, &show);
    EXPECT_EQ(view->Text(), "ab");
    EXPECT_EQ(wnd.PendingCount(), 0);
    wnd.Render(bytes, 2);
    wnd.RenderText("\nreport\n");
    EXPECT_EQ(view->Text(), "abab\nreport\n") << "what came before the report stands before it";
}

TEST(SerialTerminalTranscript, TheWindowLooksByItselfAFrameAfterItWasAsked)
{
    SerialTerminalWnd wnd;
    const EventCounter shows(&wnd, SerialTerminalWnd::ShowEvent);
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    const auto *view = wnd.GetQWidget()->findChild<TranscriptView *>("Transcript");
    std::vector<uint8_t> bytes(20000, 'x');
    const auto receive = [&](uint32_t aCount) {
        wnd.Render(bytes.data(), aCount);
        wnd.RequestShow();
        QCoreApplication::sendPostedEvents(&wnd, SerialTerminalWnd::ShowEvent);
    };
    receive(100);
    EXPECT_EQ(shows.mCount, 1);
    EXPECT_EQ(view->Text().size(), 100);
    receive(100);
    EXPECT_EQ(shows.mCount, 1) << "not asked for each chunk";
    EXPECT_TRUE(WaitForGui([&] { return view->Text().size() == 200; })) << "nor does it wait for another";
    EXPECT_EQ(shows.mCount, 1);
    receive(100);
    EXPECT_EQ(shows.mCount, 2);
    receive(20000);
    EXPECT_EQ(shows.mCount, 3) << "much is taken at once";
    EXPECT_EQ(view->Text().size(), 20300);
}

TEST(SerialTerminalTranscript, APortWaitsForRoomButNotForAWindowThatDoesNotShow)
{
    SerialTerminalWnd wnd;
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    EXPECT_TRUE(wnd.HasRoom(false));
    std::vector<uint8_t> bytes(32767, 'x');
    wnd.Render(bytes.data(), 32000);
    EXPECT_TRUE(wnd.HasRoom(false)) << "for a chunk of the port";
    wnd.Render(bytes.data(), 700);
    EXPECT_FALSE(wnd.HasRoom(false));
    EXPECT_FALSE(wnd.HasRoom(true)) << "nobody shows it";
    auto room = std::async(std::launch::async, [&wnd] { return WaitFor([&wnd] { return wnd.HasRoom(true); }); });
    wnd.RequestShow();
    EXPECT_TRUE(WaitForGui([&] { return room.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    EXPECT_TRUE(room.get());
    EXPECT_EQ(wnd.PendingCount(), 0);
}

TEST(SerialTerminalTranscript, AReportStaysWhenTheHybridLineGoesOn)
{
    SerialTerminalWnd wnd;
    wnd.ShowModeless(static_cast<QWidget *>(nullptr));
    wnd.GetQWidget()->findChild<QRadioButton *>("HybridFormat")->click();
    auto *view = wnd.GetQWidget()->findChild<TranscriptView *>("Transcript");
    uint8_t bytes[] = {'a', 'b'};
    wnd.Render(bytes, 2);
    wnd.RenderText("\n1s\n");
    wnd.Render(bytes, 2);
    QEvent show(static_cast<QEvent::Type>(7800));
    QCoreApplication::sendEvent(&wnd, &show);
    EXPECT_EQ(view->Text(), HybridLine("61 62", "ab") + "\n1s\n" + HybridLine("61 62", "ab"));
}

TEST_F(TerminalTest, StartsAnewWhenItIsShownAgain)
{
    mWnd.Mark("HybridFormat");
    Port().Deliver("AB");
    ASSERT_TRUE(mWnd.Shows(HybridLine("41 42", "AB")));
    mWnd.Close();
    EXPECT_EQ(mDevice.OpenCount(), 0u);
    mWnd.ShowModeless();
    EXPECT_EQ(mWnd.Transcript(), "");
    EXPECT_TRUE(mWnd.Find<QRadioButton>("AsciiFormat")->isChecked());
    Port().Deliver("CD");
    EXPECT_TRUE(mWnd.Shows("CD"));
}

TEST_F(TerminalTest, WhatCameLastIsShownWhenThePortCloses)
{
    Port().Deliver("last words");
    ASSERT_TRUE(WaitForGui([&] { return Port().BytesRead() == 10; }));
    mWnd.Close();
    EXPECT_EQ(mWnd.Transcript(), "last words");
}

TEST(SerialTerminalHost, AWidgetOfTheHostMayGoAtAnyTime)
{
    SerialDevice device;
    Terminal wnd;
    wnd.SetDevice(&device);
    auto host = std::make_unique<QWidget>();
    wnd.Create(host.get());
    device.Port().Deliver("hosted");
    ASSERT_TRUE(wnd.Shows("hosted"));
    device.Port().Flood(true);
    host.reset();
    EXPECT_EQ(device.OpenCount(), 0u);
    EXPECT_EQ(wnd.SetSerialPort(LxDeviceSerial::Serial0).GetCode(), 0u);
    EXPECT_EQ(device.OpenCount(), 0u) << "nothing is visible";
    wnd.ShowModeless();
    EXPECT_EQ(device.OpenCount(), 1u);
}

// The view

TEST_F(TerminalTest, TheViewScrollsToTheNewestText)
{
    std::string lines;
    for (int i = 0; i < 200; ++i) {
        lines += "line " + std::to_string(i) + "\r\n";
    }
    Port().Deliver(lines);
    ASSERT_TRUE(mWnd.ShowsInAll("line 199"));
    QScrollBar *bar = mWnd.View()->verticalScrollBar();
    ASSERT_TRUE(WaitForGui([&] { return bar->maximum() > 100 && bar->value() == bar->maximum(); }));
    mWnd.View()->setFocus();
    QTest::keyClick(mWnd.View(), Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
    QTest::keyClick(mWnd.View(), Qt::Key_PageDown);
    EXPECT_EQ(bar->value(), bar->pageStep());
    Port().Deliver("more");
    EXPECT_TRUE(WaitForGui([&] { return bar->value() == bar->maximum(); }));
}

TEST_F(TerminalTest, TheViewCannotBeTypedInto)
{
    Port().Deliver("text");
    ASSERT_TRUE(mWnd.Shows("text"));
    mWnd.View()->setFocus();
    QTest::keyClicks(mWnd.View(), "x");
    QTest::keyClick(mWnd.View(), Qt::Key_Backspace);
    QTest::keyClick(mWnd.View(), Qt::Key_Delete);
    EXPECT_EQ(mWnd.Transcript(), "text");
}

TEST(TranscriptView, PaintsItsTextInItsPlace)
{
    TranscriptView view;
    view.resize(400, 200);
    view.show();
    view.AppendText("XX\r\n  YY");
    const QImage image = Grab(view.viewport());
    EXPECT_GT(Ink(image, view.RectOfIndex(0)), 5);
    EXPECT_GT(Ink(image, view.RectOfIndex(6)), 5);
    EXPECT_EQ(Ink(image, view.RectOfIndex(4)), 0) << "a blank";
    EXPECT_EQ(view.RectOfIndex(6).top() - view.RectOfIndex(0).top(), view.fontMetrics().lineSpacing());
    for (const qsizetype index : {0, 1, 4, 7}) {
        EXPECT_EQ(view.IndexAtPoint(view.RectOfIndex(index).topLeft() + QPoint(1, 3)), index);
    }
    EXPECT_EQ(view.IndexAtPoint(QPoint(5, 1000)), 8);
    EXPECT_EQ(view.IndexAtPoint(QPoint(5, -1000)), 0);
}

TEST(TranscriptView, PaintsTheNewestTextAlsoBeforeItsTurn)
{
    TranscriptView view;
    view.resize(400, 100);
    view.show();
    view.AppendText(QString(50, '\n'));
    Grab(view.viewport());
    view.AppendText("XX");
    const QImage image = Grab(view.viewport());
    EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
    EXPECT_GT(Ink(image, view.RectOfIndex(50)), 5);
}

TEST(TranscriptView, PaintsOnceAFrameHoweverOftenTheTextChanges)
{
    TranscriptView view;
    view.resize(400, 100);
    view.show();
    EventCounter paints(view.viewport(), QEvent::Paint);
    ASSERT_TRUE(WaitForGui([&] { return paints.mCount > 0; }));
    QElapsedTimer clock;
    clock.start();
    for (paints.mCount = 0; paints.mCount < 20;) {
        view.AppendText("more\n");  // with another row to scroll to
        QCoreApplication::processEvents();
        ASSERT_LT(clock.elapsed(), 60000);
    }
    EXPECT_GE(clock.elapsed(), 18 * 15) << "milliseconds; a frame has 16";
}

TEST(TranscriptView, SelectsWithTheMouseAndCopiesLines)
{
    TranscriptView view;
    view.resize(400, 200);
    view.show();
    view.AppendText("one\r\ntwo three\r\n");
    QWidget *port = view.viewport();
    const auto at = [&view](qsizetype aIndex) { return view.RectOfIndex(aIndex).topLeft() + QPoint(1, 3); };
    const QImage before = Grab(port);
    QTest::mousePress(port, Qt::LeftButton, Qt::NoModifier, at(1));
    QTest::mouseMove(port, at(8));
    QMouseEvent drag(QEvent::MouseMove, at(8), port->mapToGlobal(at(8)), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(port, &drag);
    QTest::mouseRelease(port, Qt::LeftButton, Qt::NoModifier, at(8));
    EXPECT_EQ(view.SelectedText(), "ne\ntwo");
    EXPECT_NE(Grab(port), before) << "the selection is seen";
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "ne\ntwo");
    QTest::mouseDClick(port, Qt::LeftButton, Qt::NoModifier, at(10));
    EXPECT_EQ(view.SelectedText(), "three");
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view.SelectedText(), "one\ntwo three\n");
    QTest::mouseClick(port, Qt::LeftButton, Qt::NoModifier, at(0));
    EXPECT_EQ(view.SelectedText(), "");
}

TEST(TranscriptView, KeepsTheSelectionOnItsTextWhenTheTranscriptMoves)
{
    TranscriptView view;
    view.AppendText("0123456789");
    view.Select(4, 7);
    view.Apply({3, 2, "abc"});
    EXPECT_EQ(view.Text(), "34567abc");
    EXPECT_EQ(view.SelectedText(), "456");
    view.Apply({3, 0, ""});
    EXPECT_EQ(view.SelectedText(), "6");
    view.Apply({5, 0, ""});
    EXPECT_EQ(view.SelectedText(), "");
    EXPECT_EQ(view.Text(), "");
}

TEST(TranscriptView, HasAMenu)
{
    TranscriptView view;
    view.show();
    view.AppendText("text");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), view.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(view.viewport(), &event);
    auto *menu = view.findChild<QMenu *>();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), "Copy");
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
    EXPECT_EQ(menu->actions()[1]->text(), "Select All");
    menu->actions()[1]->trigger();
    EXPECT_EQ(view.SelectedText(), "text");
    menu->close();
}

TEST(TranscriptView, WrapsLinesAtItsWidth)
{
    TranscriptView view;
    view.resize(200, 100);
    view.show();
    view.AppendText(QString(1000, 'x'));
    ASSERT_TRUE(WaitForGui([&] { return view.verticalScrollBar()->maximum() > 0; }));
    const int narrow = view.verticalScrollBar()->maximum();
    EXPECT_EQ(view.verticalScrollBar()->value(), narrow);
    view.resize(400, 100);
    EXPECT_LT(view.verticalScrollBar()->maximum(), narrow);
    EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum()) << "the end stays in view";
}

TEST(TranscriptView, IsReadByAssistiveTechnology)
{
    TranscriptView view;
    view.setAccessibleName("Transcript");
    view.resize(400, 200);
    view.show();
    view.AppendText("one\r\ntwo");
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::EditableText);
    EXPECT_TRUE(interface->state().readOnly);
    EXPECT_EQ(interface->text(QAccessible::Name), "Transcript");
    EXPECT_EQ(interface->text(QAccessible::Value), "one\r\ntwo");
    QAccessibleTextInterface *text = interface->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->characterCount(), 8);
    EXPECT_EQ(text->text(5, 8), "two");
    text->setSelection(0, 5, 8);
    EXPECT_EQ(view.SelectedText(), "two");
    int start = 0;
    int end = 0;
    text->selection(0, &start, &end);
    EXPECT_EQ(text->selectionCount(), 1);
    EXPECT_EQ(start, 5);
    EXPECT_EQ(end, 8);
    const QRect rect = text->characterRect(6);
    EXPECT_EQ(text->offsetAtPoint(rect.topLeft() + QPoint(1, 3)), 6);
}
