// What may happen around an open editor and under the box about a failed write.

#include <QtTest/QSignalSpy>

#include "EditorsTest.h"

namespace
{

/// The features "Width", which the device refuses to write, and "Height".
class EditorBox : public Editors
{
protected:
    void SetUp() override
    {
        Editors::SetUp();
        mWidth = &mArray.Add<FakeInteger>("Width");
        mWidth->mScript.Fail("SetValue", LxResult(LxResultCode::OutOfRange, "No."));
        mArray.Add<FakeInteger>("Height");
    }
    QSpinBox64 *OpenWidth() { return Open<QSpinBox64>("Width"); }

    FakeInteger *mWidth = nullptr;
};

TEST_F(EditorBox, ComesOnceForAFailedWrite)
{
    Show();
    EXPECT_EQ(TypeAndFail(OpenWidth(), "5"), "No.");
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(mWidth->mScript.Count("SetValue"), 1);
}

TEST_F(EditorBox, ComesAfterTheRowWasRepainted)
{
    Show();
    QSignalSpy spy(mBrowser->Model(), &QAbstractItemModel::dataChanged);
    qsizetype changesAtBox = -1;
    CommitAndDoInBox(OpenWidth(), [&] { changesAtBox = spy.size(); });
    EXPECT_EQ(changesAtBox, 1);
}

TEST_F(EditorBox, SurvivesARebuild)
{
    Show();
    CommitAndDoInBox(OpenWidth(), [&] {
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->SetGenParameterArray(nullptr);
        QCoreApplication::processEvents();
    });
    EXPECT_EQ(mBrowser->Model(), nullptr);
}

TEST_F(EditorBox, SurvivesTheEndOfTheWindow)
{
    Show();
    CommitAndDoInBox(OpenWidth(), [&] { mBrowser.reset(); });
}

TEST_F(EditorBox, SurvivesTheEndOfAHostsWidget)
{
    auto host = std::make_unique<QWidget>();
    mBrowser->SetGenParameterArray(&mArray);
    mBrowser->Create(host.get());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(host.get()));
    CommitAndDoInBox(OpenWidth(), [&] {
        host.reset();
        QCoreApplication::processEvents();
        EXPECT_FALSE(mWidth->HasSinks());
    });
}

TEST_F(EditorBox, SurvivesThatTheWindowIsShownAnew)
{
    Show();
    CommitAndDoInBox(OpenWidth(), [&] {
        mBrowser->Close();
        mBrowser->ShowModeless();
        QCoreApplication::processEvents();
    });
    EXPECT_EQ(mBrowser->Value("Width"), "0 ");
    EXPECT_NE(OpenWidth(), nullptr);
}

// The view commits the editor when another row becomes current, and goes on with both rows afterwards.
TEST_F(EditorBox, SurvivesARebuildWhenAnotherCurrentRowBroughtItUp)
{
    Show();
    Type(OpenWidth(), "abc");
    bool wasShown = false;
    const auto rebuild = [&] {
        mBrowser->SetGenParameterArray(&mArray);
        QCoreApplication::processEvents();
    };
    DoInNextBox(rebuild, wasShown);
    mBrowser->SearchBar()->setText("Height");
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(mBrowser->Outline(), "General(Width Height)");
    EXPECT_EQ(mBrowser->Editor(), nullptr);
}

TEST_F(EditorBox, ComesWithoutAWindowToo)
{
    GenBrowserTreeModel model(nullptr, &mArray, false, false, LxGenVisibilityGuru);
    const GenBrowserItemDelegate delegate(nullptr, &model);
    QSpinBox64 box;
    box.SetText("abc");
    const ExpectedBox error;
    delegate.setModelData(&box, &model, model.index(0, 1));
    EXPECT_TRUE(error.WasShown());  // when the call returns, the user has seen it
    EXPECT_EQ(error.Text(), "Error parsing value.");
    EXPECT_EQ(mWidth->mScript.Count("SetValue"), 0);
}

// The end of what is edited

TEST_F(Editors, AFeatureThatIsTakenAwayWhileItIsEditedIsNotWritten)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    auto *box = Open<QSpinBox64>("Width");
    Type(box, "5");
    mBrowser->SetGenParameterArray(nullptr);
    EXPECT_EQ(mBrowser->Editor(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST_F(Editors, ClosingTheWindowWhileAFeatureIsEditedWritesNothing)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    Type(Open<QSpinBox64>("Width"), "5");
    mBrowser->Close();
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST_F(Editors, AHostThatTakesTheArrayAwayWithinAWriteIsSurvived)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    feature.mNotifies = false;
    Show();
    feature.mScript.OnCall([&](const std::string &aCall) {
        if (aCall == "SetValue") {
            mBrowser->SetGenParameterArray(nullptr);
        }
    });
    auto *box = Open<QSpinBox64>("Width");
    Type(box, "5");
    QTest::keyClick(box, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(mBrowser->Model(), nullptr);
    EXPECT_EQ(feature.mValue, 5);
}

}  // namespace
