// What the viewer says of the picture and saves of it.

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtTest/QTest>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStatusBar>

#include "LxBuffer/LxPixelSamples.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "ShownFrame.h"
#include "Snapshot.h"
#include "ViewerTest.h"

namespace
{

class ViewerPicture : public Viewer
{
protected:
    /// Connects with a still picture whose pixels all differ from their neighbours.
    void ConnectStill(const char *aFormat = "Mono8", int aWidth = 256, int aHeight = 128)
    {
        ConnectLive();
        Action("liveAction")->trigger();
        LxGenParameterArray &features = *mWindow->Session().Device()->GetParameters();
        ASSERT_TRUE(WaitForGui([&] { return features.SetIntegerValue("Width", aWidth).IsOK(); }));
        ASSERT_TRUE(features.SetIntegerValue("Height", aHeight).IsOK());
        ASSERT_TRUE(features.SetEnumValue("PixelFormat", aFormat).IsOK());
        ASSERT_TRUE(features.SetEnumValue("TestPattern", "GreyHorizontalRamp").IsOK());
        Action("liveAction")->trigger();
        ASSERT_TRUE(WaitForGui([&] {
            const Sent shown = Shown();
            return mWindow->Session().Statistics().mDelivered > 2 && shown.mWidth == static_cast<uint32_t>(aWidth) &&
                   shown.mHeight == static_cast<uint32_t>(aHeight) && LxPixelTypeToString(shown.mType) == aFormat;
        }));
    }
    QWidget *Picture() const { return mWindow->findChild<QWidget *>("picture"); }
    QString Probe() const { return Status("probeStatus"); }
    /// What is said of a point of the window, which is nothing beside the picture.
    QString ProbeAt(const QPoint &aPoint)
    {
        // the move has to be one
        QTest::mouseMove(Picture(), aPoint + QPoint(aPoint.x() > 0 ? -1 : 1, 0));
        QTest::mouseMove(Picture(), aPoint);
        unsigned x = 0;
        unsigned y = 0;
        const bool isPicture = mWindow->Display().PictureAt(aPoint.x(), aPoint.y(), x, y);
        const QString place = isPicture ? QStringLiteral("(%1, %2)  ").arg(x).arg(y) : QString();
        // while the next frame is converted, the text stays that of the last place
        EXPECT_TRUE(WaitForGui([&] { return isPicture ? Probe().startsWith(place) : Probe().isEmpty(); }))
            << Probe().toStdString() << " at " << place.toStdString();
        return Probe();
    }
    /// The last frame as the display got it.
    std::unique_ptr<ShownFrame> KeepFrame()
    {
        auto shown = std::make_unique<ShownFrame>(mWindow->Display());
        auto frame = std::make_shared<LxBuffer>(LxPayloadType::Image);
        EXPECT_TRUE(frame->GetImage()->Alloc(8, 4, LxPixelType::Mono12).IsOK());
        auto *samples = static_cast<uint16_t *>(frame->GetDataPointer());
        for (uint16_t i = 0; i < 32; ++i) {
            samples[i] = static_cast<uint16_t>(i * 100);
        }
        frame->SetBlockID(77);
        shown->Show(frame);
        return shown;
    }
};

struct Probed
{
    int mX = -1;
    int mY = -1;
    QString mRaw;
    QColor mShown;
};

Probed Parse(const QString &aText)
{
    static const QRegularExpression form(R"(^\((\d+), (\d+)\)  raw (.+)  shown (\d+), (\d+), (\d+)$)");
    const QRegularExpressionMatch match = form.match(aText);
    EXPECT_TRUE(match.hasMatch()) << aText.toStdString();
    Probed probed;
    if (match.hasMatch()) {
        probed.mX = match.captured(1).toInt();
        probed.mY = match.captured(2).toInt();
        probed.mRaw = match.captured(3);
        probed.mShown = QColor(match.captured(4).toInt(), match.captured(5).toInt(), match.captured(6).toInt());
    }
    return probed;
}

}  // namespace

TEST_F(ViewerPicture, ProbesThePixelUnderTheMouse)
{
    ConnectStill();
    const QPoint middle = Picture()->rect().center();
    const Probed probed = Parse(ProbeAt(middle));
    EXPECT_NEAR(probed.mX, 128, 2);
    EXPECT_NEAR(probed.mY, 64, 2);
    EXPECT_EQ(probed.mRaw, QString::number(probed.mShown.red())) << "8 bits are shown as they are";
    EXPECT_EQ(probed.mShown.green(), probed.mShown.red());
    const Probed right = Parse(ProbeAt(middle + QPoint(40, 0)));
    EXPECT_GT(right.mX, probed.mX);
    EXPECT_GT(right.mRaw.toInt(), probed.mRaw.toInt()) << "a ramp";
}

TEST_F(ViewerPicture, ProbesWhatIsOnTheScreenAtEveryZoomAndScroll)
{
    ConnectStill("Mono8", 1024, 512);
    const auto check = [this](const char *aWhat) {
        const QImage shot = Picture()->grab().toImage();
        int found = 0;
        for (int x = 3; x < Picture()->width() - 20; x += 37) {
            const QPoint point(x, Picture()->height() / 2 + x % 7);
            const QColor seen = shot.pixelColor(point);
            const QString text = ProbeAt(point);
            if (text.isEmpty()) {
                continue;  // beside the picture
            }
            ++found;
            EXPECT_EQ(Parse(text).mShown, seen) << aWhat << ' ' << x;
        }
        EXPECT_GT(found, 8) << aWhat;
    };
    check("fit");
    Action("zoomOneToOneAction")->trigger();
    check("1:1");
    for (int i = 0; i < 4; ++i) {
        Action("zoomInAction")->trigger();
    }
    auto *bar = mWindow->findChild<QScrollBar *>("horizontalScrollBar");
    ASSERT_FALSE(bar->isHidden());
    check("zoomed in");
    bar->setValue(bar->maximum() / 3);
    check("scrolled");
    bar->setValue(bar->maximum());
    check("at the end");
}

TEST_F(ViewerPicture, ProbesRawValuesOfMoreBitsThanAreShown)
{
    ConnectStill("Mono12p");
    const Probed probed = Parse(ProbeAt(Picture()->rect().center() + QPoint(60, 0)));
    EXPECT_GT(probed.mRaw.toInt(), 255);
    EXPECT_EQ(probed.mRaw.toInt() >> 4, probed.mShown.red()) << "the most significant bits are shown";
}

TEST_F(ViewerPicture, ProbesColoursByName)
{
    ConnectStill("BayerRG8");
    const QString raw = Parse(ProbeAt(Picture()->rect().center())).mRaw;
    EXPECT_TRUE(raw.startsWith("R ") || raw.startsWith("G ") || raw.startsWith("B ")) << raw.toStdString();
    mWindow->Disconnect();
    ConnectStill("RGB8");
    const Probed probed = Parse(ProbeAt(Picture()->rect().center()));
    EXPECT_EQ(
        probed.mRaw,
        QStringLiteral("R %1 G %2 B %3").arg(probed.mShown.red()).arg(probed.mShown.green()).arg(probed.mShown.blue()));
}

TEST_F(ViewerPicture, ProbesGenDCContainers)
{
    ASSERT_TRUE(LxSimulation::SetPayloadType(Camera, LxPayloadType::GenDC).IsOK());
    ConnectStill();
    const Probed probed = Parse(ProbeAt(Picture()->rect().center()));
    EXPECT_EQ(probed.mRaw, QString::number(probed.mShown.red()));
}

TEST_F(ViewerPicture, ProbesNothingBesideThePictureAndWithoutOne)
{
    ConnectStill();
    ASSERT_FALSE(ProbeAt(Picture()->rect().center()).isEmpty());
    QTest::mouseMove(Picture(), QPoint(Picture()->width() / 2, 1));
    EXPECT_TRUE(WaitForGui([&] { return Probe().isEmpty(); })) << "above a picture that is wider than the window";
    ASSERT_FALSE(ProbeAt(Picture()->rect().center()).isEmpty());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(Picture(), &leave);
    EXPECT_TRUE(Probe().isEmpty());
    ASSERT_FALSE(ProbeAt(Picture()->rect().center()).isEmpty());
    mWindow->Disconnect();
    EXPECT_TRUE(WaitForGui([&] { return Probe().isEmpty(); }));
}

TEST_F(ViewerPicture, SavesASnapshotAsPngAndRaw)
{
    EXPECT_FALSE(Action("snapshotAction")->isEnabled());
    ConnectStill();
    ASSERT_TRUE(WaitForGui([&] { return Action("snapshotAction")->isEnabled(); }));
    const auto save = [&](const QString &aFile) {
        OnNextModal([&](QWidget *aWidget) {
            auto *dialog = qobject_cast<QFileDialog *>(aWidget);
            ASSERT_NE(dialog, nullptr);
            EXPECT_TRUE(dialog->selectedFiles().value(0).contains("256x128_Mono8.png"));
            EnterFile(dialog, aFile);
            QMetaObject::invokeMethod(dialog, "accept");
        });
        Action("snapshotAction")->trigger();
    };
    const QString png = mFolder.filePath("shot.png");
    save(png);
    const QImage picture(png);
    ASSERT_EQ(picture.size(), QSize(256, 128));
    const QString raw = mFolder.filePath("shot.raw");
    save(raw);
    QFile file(raw);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_EQ(bytes.size(), 256 * 128);
    for (int x = 0; x < 256; x += 5) {
        EXPECT_EQ(qRed(picture.pixel(x, 64)), static_cast<uint8_t>(bytes[64 * 256 + x])) << x;
    }
}

TEST_F(ViewerPicture, ASnapshotReplacesNoFileWithoutAQuestion)
{
    ConnectStill();
    ASSERT_TRUE(WaitForGui([&] { return Action("snapshotAction")->isEnabled(); }));
    QFile file(mFolder.filePath("shot.png"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("another picture");
    file.close();
    const auto save = [&](QMessageBox::StandardButton aAnswer) {
        QString asked;
        OnNextModal([&](QWidget *aWidget) {
            EnterFile(aWidget, mFolder.filePath("shot"));  // gets its ending after the dialog
            OnNextModal([&, aAnswer](QWidget *aBox) {
                auto *box = qobject_cast<QMessageBox *>(aBox);
                ASSERT_NE(box, nullptr);
                asked = box->text();
                if (aAnswer == QMessageBox::No) {
                    OnNextModal([&](QWidget *aAgain) { qobject_cast<QDialog *>(aAgain)->reject(); });
                }
                box->button(aAnswer)->click();
            });
            static_cast<QDialog *>(qobject_cast<QFileDialog *>(aWidget))->done(QDialog::Accepted);
        });
        Action("snapshotAction")->trigger();
        EXPECT_TRUE(asked.contains("shot.png already exists")) << asked.toStdString();
    };
    save(QMessageBox::No);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "another picture");
    file.close();
    save(QMessageBox::Yes);
    EXPECT_EQ(QImage(file.fileName()).size(), QSize(256, 128));
}

TEST_F(ViewerPicture, ASnapshotThatCannotBeSavedIsExplained)
{
    ConnectStill();
    ASSERT_TRUE(WaitForGui([&] { return Action("snapshotAction")->isEnabled(); }));
    const auto shown = KeepFrame();
    const Snapshot snapshot(*shown);
    ASSERT_FALSE(snapshot.IsEmpty());
    EXPECT_FALSE(snapshot.SavePicture("/nowhere/at/all.png").isEmpty());
    EXPECT_FALSE(snapshot.SaveRaw("/nowhere/at/all.raw").isEmpty());
    EXPECT_FALSE(snapshot.SaveRaw("/dev/full/x").isEmpty());
    QString said;
    OnNextModal([&](QWidget *aWidget) {
        auto *dialog = qobject_cast<QFileDialog *>(aWidget);
        ASSERT_NE(dialog, nullptr);
        OnNextModal([&](QWidget *aBox) {
            auto *box = qobject_cast<QMessageBox *>(aBox);
            ASSERT_NE(box, nullptr);
            said = box->text();
            box->reject();
        });
        EnterFile(dialog, mFolder.filePath(QString(300, 'x') + ".png"));  // longer than a name may be
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
    });
    Action("snapshotAction")->trigger();
    EXPECT_TRUE(said.contains("cannot be written")) << said.toStdString();
}

TEST_F(ViewerPicture, ASnapshotIsTheFrameThatWasSeenWithItsRawBytes)
{
    const auto shown = KeepFrame();
    const Snapshot snapshot(*shown);
    EXPECT_EQ(snapshot.SuggestedName(), "frame77_8x4_Mono12");
    shown->Show(std::make_shared<LxBuffer>(LxPayloadType::Raw));  // nothing to show: the last one stays
    EXPECT_NE(shown->Frame(), nullptr);
    const QString raw = mFolder.filePath("frame.raw");
    EXPECT_TRUE(snapshot.SaveRaw(raw).isEmpty());
    QFile file(raw);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_EQ(bytes.size(), 64);
    EXPECT_EQ(static_cast<uint8_t>(bytes[2 * 31]) | static_cast<uint8_t>(bytes[2 * 31 + 1]) << 8, 3100);
    shown->Clear();
    EXPECT_EQ(shown->Frame(), nullptr);
    EXPECT_TRUE(Snapshot(*shown).IsEmpty());
}

TEST_F(ViewerPicture, CountsFramesLostDroppedAndLateApart)
{
    ConnectStill();
    EXPECT_TRUE(WaitForGui([&] { return Status("lostStatus") == "0 lost"; }));
    ASSERT_TRUE(LxSimulation::SkipFrames(Camera, 3).IsOK());
    EXPECT_TRUE(WaitForGui([&] { return Status("lostStatus") == "3 lost"; })) << Status("lostStatus").toStdString();
    ASSERT_TRUE(LxSimulation::DamageFrames(Camera, 2).IsOK());
    EXPECT_TRUE(WaitForGui([&] { return Status("lostStatus") == "5 lost"; })) << Status("lostStatus").toStdString();
    EXPECT_TRUE(WaitForGui([&] {
        return mWindow->findChild<QLabel *>("lostStatus")->toolTip() ==
               "Frames lost on the wire: 3 never came, 2 came with gaps";
    }));
    // a busy machine has some of the others too
    EXPECT_TRUE(WaitForGui([&] {
        return Status("droppedStatus") == QStringLiteral("%1 dropped").arg(mWindow->Session().Statistics().mDropped);
    }));
    EXPECT_EQ(mWindow->Shown().DroppedCount(), 0u) << "drawing by the processor nobody waits for the screen";
    EXPECT_TRUE(WaitForGui(
        [&] { return Status("lateStatus") == QStringLiteral("%1 late").arg(mWindow->Shown().LateCount()); }));

    ShownFrame shown(mWindow->Display());
    auto frame = std::make_shared<LxBuffer>(LxPayloadType::Image);
    ASSERT_TRUE(frame->GetImage()->Alloc(4, 4, LxPixelType::Mono8).IsOK());
    const auto now =
        static_cast<uint64_t>(std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count());
    frame->SetReceptionTime(now - 200'000'000);
    shown.Show(frame);
    EXPECT_EQ(shown.LateCount(), 1u);
    frame->SetReceptionTime(0);
    shown.Show(frame);
    EXPECT_EQ(shown.LateCount(), 1u) << "unknown";
    shown.ResetCounts();
    EXPECT_EQ(shown.LateCount(), 0u);
}

TEST_F(ViewerPicture, ZoomsWhereZoomingDoesSomething)
{
    for (const char *name : {"zoomOneToOneAction", "zoomFitAction", "zoomInAction", "zoomOutAction"}) {
        EXPECT_FALSE(Action(name)->isEnabled()) << name;
    }
    ConnectStill();
    for (const char *name : {"zoomOneToOneAction", "zoomFitAction", "zoomInAction", "zoomOutAction"}) {
        EXPECT_TRUE(Action(name)->isEnabled()) << name;
        EXPECT_FALSE(Action(name)->toolTip().contains("OpenGL")) << name;
    }
}
