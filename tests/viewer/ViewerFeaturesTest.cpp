#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>
#include <algorithm>

#include "LxGenICam/LxGenParameterArray.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "ViewerTest.h"

namespace
{

/// The viewer's feature browser beside the picture.
class ViewerFeatures : public Viewer
{
protected:
    void ConnectLive()
    {
        ASSERT_TRUE(QTest::qWaitForWindowActive(mWindow.get(), 20000));
        Viewer::ConnectLive();
        ASSERT_TRUE(WaitForGui([&] { return Find("OffsetX").isValid(); }));
    }
    QWidget *Editor() const { return Tree()->viewport()->findChild<QWidget *>("ValueEditor"); }
    /// Double-clicks a value and gives the field in which it is typed.
    QLineEdit *OpenField(const char *aName)
    {
        Tree()->scrollTo(Find(aName));
        const QPoint place = Tree()->visualRect(Find(aName, 1)).center();
        QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, {}, place);
        QWidget *editor = Editor();
        return editor ? editor->findChild<QLineEdit *>() : nullptr;
    }
    int64_t Integer(const char *aName) const
    {
        int64_t value = -1;
        EXPECT_TRUE(mWindow->Session().Device()->GetParameters()->GetIntegerValue(aName, value).IsOK());
        return value;
    }
};

}  // namespace

TEST_F(ViewerFeatures, AreShownBesideThePictureWhileACameraIsConnected)
{
    EXPECT_FALSE(Dock().isVisible()) << "no camera, no features";
    ConnectLive();
    EXPECT_TRUE(Dock().isVisible());
    EXPECT_GT(Dock().geometry().left(), mWindow->centralWidget()->geometry().right());
    EXPECT_EQ(Value("DeviceUserID"), "Left");
    mWindow->Disconnect();
    EXPECT_FALSE(Dock().isVisible());
    EXPECT_EQ(Tree()->model(), nullptr);
}

TEST_F(ViewerFeatures, ACameraIsReadOnlyWhileTheDockIsOpen)
{
    ConnectLive();
    QTest::keyClick(mWindow.get(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_FALSE(Dock().isVisible());
    EXPECT_EQ(Tree()->model(), nullptr);
    QTest::keyClick(mWindow.get(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(Dock().isVisible());
    EXPECT_EQ(Value("DeviceUserID"), "Left");
    Dock().close();
    EXPECT_FALSE(Action("featuresAction")->isChecked());
    EXPECT_EQ(Tree()->model(), nullptr);
}

TEST_F(ViewerFeatures, AnEditReachesTheCameraWhileItStreams)
{
    ConnectLive();
    const uint64_t delivered = mWindow->Session().Statistics().mDelivered;
    QLineEdit *field = OpenField("OffsetX");
    ASSERT_NE(field, nullptr);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, "64");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(WaitForGui([&] { return Value("OffsetX").startsWith("64"); }));
    EXPECT_EQ(Integer("OffsetX"), 64);
    EXPECT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > delivered + 3; }));
}

TEST_F(ViewerFeatures, KeepTheLastValuesGreyedWhileTheCameraIsUnplugged)
{
    ConnectLive();
    ArrangeTree();
    const QString value = Value("AcquisitionMode");
    ASSERT_FALSE(value.isEmpty());
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return IsVeiled(); }));
    EXPECT_FALSE(mWindow->Session().Device()->IsConnected());
    for (const char *name : {"AcquisitionMode", "AcquisitionFrameRate", "OffsetX"}) {
        EXPECT_FALSE(Value(name).isEmpty()) << name;
        EXPECT_FALSE(Find(name).data(Qt::ToolTipRole).toString().startsWith("Error")) << name;
    }
    EXPECT_EQ(Value("AcquisitionMode"), value);
    ExpectArranged();
    Tree()->verticalScrollBar()->setValue(Tree()->verticalScrollBar()->value() + 1);
    EXPECT_NE(Top(), "AcquisitionMode") << "it can still be looked through";
    Tree()->verticalScrollBar()->setValue(Tree()->verticalScrollBar()->value() - 1);

    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return !IsVeiled(); }));
    ASSERT_TRUE(Find("OffsetX").isValid());
    ExpectArranged();
}

TEST_F(ViewerFeatures, ShowWhatTheCameraHasWhenItIsBack)
{
    ConnectLive();
    ArrangeTree();
    LxGenParameterArray *parameters = mWindow->Session().Device()->GetParameters();
    ASSERT_TRUE(parameters->SetIntegerValue("OffsetX", 96).IsOK());
    ASSERT_TRUE(WaitForGui([&] { return Value("OffsetX").startsWith("96"); }));
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return IsVeiled(); }));
    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return !IsVeiled(); }));
    EXPECT_FALSE(Value("OffsetX").isEmpty());
    EXPECT_FALSE(Value("OffsetX").startsWith("96")) << "it has restarted";
}

TEST_F(ViewerFeatures, AreArrangedAsBeforeWhenTheCameraIsConnectedAgainWithOtherFeatures)
{
    ConnectLive();
    ArrangeTree();
    LxString xml = mWindow->Session().Device()->GetGenICamXML();
    QString text = QString::fromUtf8(xml.GetAscii());
    ASSERT_TRUE(text.contains("<pFeature>AcquisitionFrameRate</pFeature>"));
    text.remove("<pFeature>AcquisitionFrameRate</pFeature>");
    mWindow->Disconnect();
    LxSimulatedDevice camera;
    ASSERT_TRUE(LxSimulation::GetDevice(Camera, camera).IsOK());
    camera.mGenICamXML = text.toUtf8().constData();
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    ConnectLive();
    EXPECT_FALSE(Find("AcquisitionFrameRate").isValid());
    ExpectArranged();
}

TEST_F(ViewerFeatures, OpenEditorOutlivesAnUnplugAndWritesNothingByItself)
{
    ConnectLive();
    const int64_t before = Integer("OffsetX");
    QPointer<QLineEdit> field = OpenField("OffsetX");
    ASSERT_TRUE(field);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, "68");
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return IsVeiled(); }));
    LxSimulation::SetDevicePresent(Camera, true);
    ASSERT_TRUE(WaitForGui([&] { return !IsVeiled(); }));
    ASSERT_TRUE(field);
    EXPECT_EQ(field->text(), "68");
    EXPECT_EQ(Integer("OffsetX"), before);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(WaitForGui([&] { return !field; }));
    EXPECT_EQ(Integer("OffsetX"), before);
}

TEST_F(ViewerFeatures, AnEditOfAnUnpluggedCameraEndsInABox)
{
    ConnectLive();
    QPointer<QLineEdit> field = OpenField("OffsetX");
    ASSERT_TRUE(field);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, "68");
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitForGui([&] { return IsVeiled(); }));
    const ExpectedBox box;
    QTest::keyClick(field, Qt::Key_Return);
    ASSERT_TRUE(WaitForGui([&] { return box.WasShown(); }));
    EXPECT_EQ(box.Text(), "Parameter is not (no longer?) writable.");
}

TEST_F(ViewerFeatures, CanBeShownInAWindowOfTheirOwnToo)
{
    EXPECT_FALSE(Action("featureWindowAction")->isEnabled());
    ConnectLive();
    Action("featureWindowAction")->trigger();
    QWidget *browser = mWindow->FeatureWindow().Window().GetQWidget();
    EXPECT_TRUE(browser->isVisible());
    EXPECT_TRUE(browser->isWindow());
    EXPECT_TRUE(browser->windowTitle().contains("Left"));
    EXPECT_GT(mWindow->FeatureWindow().Tree()->model()->rowCount(), 5);
    EXPECT_TRUE(Find("OffsetX").isValid()) << "the one beside the picture stays";
    LxSimulation::SetDevicePresent(Camera, false);
    EXPECT_TRUE(WaitForGui(
        [&] { return mWindow->FeatureWindow().Tree()->findChild<QWidget *>("veil") != nullptr && IsVeiled(); }));
    mWindow->Disconnect();
    EXPECT_FALSE(browser->isVisible());
}

TEST_F(ViewerFeatures, OptionsSurviveARestart)
{
    ConnectLive();
    auto *combo = Dock().findChild<QComboBox *>("VisibilityCombo");
    QTest::keyClick(combo, Qt::Key_Down);
    ASSERT_EQ(Dock().Browser().Window().GetVisibility(), LxGenVisibilityExpert);
    OnNextModal([](QWidget *aDialog) {
        auto *refresh = aDialog->findChild<QComboBox *>("RefreshCombo");
        QTest::keyClick(refresh, Qt::Key_Down);
        QTest::mouseClick(aDialog->findChild<QWidget *>("OkButton"), Qt::LeftButton);
    });
    QTest::mouseClick(Dock().findChild<QToolButton *>("OptionsButton"), Qt::LeftButton);
    ASSERT_EQ(Dock().Browser().Window().GetRefreshMode(), LxGenRefreshManual);
    Action("featuresAction")->trigger();
    mWindow->close();

    Restart();
    EXPECT_EQ(Dock().Browser().Window().GetVisibility(), LxGenVisibilityExpert);
    EXPECT_EQ(Dock().Browser().Window().GetRefreshMode(), LxGenRefreshManual);
    EXPECT_EQ(mWindow->FeatureWindow().Window().GetVisibility(), LxGenVisibilityBeginner) << "has options of its own";
    EXPECT_FALSE(Action("featuresAction")->isChecked());
    Viewer::ConnectLive();
    EXPECT_FALSE(Dock().isVisible());
}

TEST_F(ViewerFeatures, WhatAnotherVersionHasSavedIsKept)
{
    const QByteArray saved =
        "<LxConfiguration version=\"1\"><PropertyList name=\"Later\"><Property name=\"A\" value=\"B\"/></PropertyList>"
        "<PropertyList name=\"FeatureDock\"><Property name=\"Refresh\" value=\"ManualRefresh\"/>"
        "<Property name=\"Colour\" value=\"Blue\"/></PropertyList></LxConfiguration>";
    const QString path = mFolder.filePath("viewer.xml");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(saved) == saved.size());
    file.close();
    Restart();
    EXPECT_EQ(mWindow->ConfigurationError(), "");
    EXPECT_EQ(Dock().Browser().Window().GetRefreshMode(), LxGenRefreshManual);
    mWindow->close();
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.Load(path.toUtf8().constData()).IsOK());
    LxPropertyList list;
    ASSERT_TRUE(reader.Restore("Later", &list).IsOK());
    EXPECT_EQ(list.GetProperty("A")->GetValue(), LxString("B"));
    ASSERT_TRUE(reader.Restore("FeatureDock", &list).IsOK());
    EXPECT_EQ(list.GetProperty("Colour")->GetValue(), LxString("Blue"));
    EXPECT_EQ(list.GetProperty("Visibility")->GetValue(), LxString("Beginner"));
}

TEST_F(ViewerFeatures, OptionsThatCannotBeReadAreReportedAndKept)
{
    const QString path = mFolder.filePath("viewer.xml");
    const QByteArray broken = "<LxConfiguration version=\"1\"><Prop";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(broken) == broken.size());
    file.close();
    Restart();
    EXPECT_TRUE(mWindow->ConfigurationError().contains(path)) << mWindow->ConfigurationError().toStdString();
    EXPECT_EQ(Dock().Browser().Window().GetRefreshMode(), LxGenRefreshAutomatic);
    mWindow->close();
    QFile aside(path + ".unreadable");
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_EQ(aside.readAll(), broken);
    Restart();
    EXPECT_EQ(mWindow->ConfigurationError(), "") << "the options were saved anew";
}

TEST_F(ViewerFeatures, ACameraThatIsStuckKeepsNobodyFromLookingAroundAndClosing)
{
    ConnectLive();
    // an access takes far longer than anything that follows, also on a busy machine, unless events go on
    constexpr int stuckTime = 60000;
    LxSimulation::FreezeDevice(Camera, stuckTime);
    qint64 longest = 0;
    QElapsedTimer clock;
    clock.start();
    bool isClosing = false;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        longest = std::max(longest, clock.restart());
        if (isClosing) {
            LxSimulation::ThawDevice(Camera);
        }
    });
    pulse.start(1);
    QTest::keyClicks(Dock().findChild<QLineEdit *>("SearchBar"), "gain");
    EXPECT_TRUE(Current().contains("Gain"));
    QTest::keyClick(Tree(), Qt::Key_PageDown);
    QTest::keyClick(Tree(), Qt::Key_PageUp);
    Tree()->verticalScrollBar()->setValue(0);
    QApplication::processEvents();
    isClosing = true;
    mWindow->close();  // processes events until nobody reads the camera any more
    EXPECT_FALSE(mWindow->isVisible());
    longest = std::max(longest, clock.elapsed());
    RecordProperty("longest_ms", static_cast<int>(longest));
    EXPECT_LT(longest, stuckTime / 2);
    LxSimulation::ThawDevice(Camera);
}
