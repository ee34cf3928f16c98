// Which editor a feature has, what it starts with and what it writes.

#include <QtTest/QSignalSpy>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "EditorsTest.h"
#include "Frame/RecordingNativeWindowApi.h"

namespace
{

// Which editor

TEST_F(Editors, EveryKindHasItsEditor)
{
    mArray.Add<FakeInteger>("Integer");
    mArray.Add<FakeInteger>("GevSCDA");
    mArray.Add<FakeEnum>("Enum").Add("Off", 0);
    mArray.Add<FakeBoolean>("Boolean");
    mArray.Add<FakeString>("String");
    mArray.Add<FakeFloat>("Float");
    mArray.Add<FakeCommand>("Command");
    mArray.Add<FakeRegister>("Register");
    Show();
    EXPECT_NE(Open<QSpinBox64>("Integer"), nullptr);
    EXPECT_NE(Open<QLineEdit>("GevSCDA"), nullptr);
    EXPECT_NE(Open<QComboBox>("Enum"), nullptr);
    EXPECT_NE(Open<QComboBox>("Boolean"), nullptr);
    EXPECT_NE(Open<QLineEdit>("String"), nullptr);
    EXPECT_NE(Open<QDoubleSpinBox>("Float"), nullptr);
    EXPECT_NE(Open<QPushButton>("Command"), nullptr);
    EXPECT_FALSE(qobject_cast<QPushButton *>(mBrowser->Editor())->autoDefault());
    EXPECT_EQ(
        mBrowser->Tree()->itemDelegate()->createEditor(mBrowser->Tree(), QStyleOptionViewItem(),
                                                       mBrowser->Cell("Register", GenBrowserTreeModel::ValueColumn)),
        nullptr);
    EXPECT_EQ(mBrowser->Tree()->itemDelegate()->createEditor(mBrowser->Tree(), QStyleOptionViewItem(),
                                                             mBrowser->Cell("General")),
              nullptr);
}

TEST_F(Editors, AnEditorIsBoldWhereTheFeatureSelectsOthers)
{
    FakeInteger &selected = mArray.Add<FakeInteger>("Selected");
    mArray.Add<FakeInteger>("Selector").mAttributes.mSelected = {&selected};
    Show();
    EXPECT_TRUE(Open<QSpinBox64>("Selector")->font().bold());
    EXPECT_FALSE(Open<QSpinBox64>("Selected")->font().bold());
    EXPECT_EQ(mBrowser->Editor()->accessibleName(), "Selected");
}

TEST_F(Editors, TheEditKeyOpensTheEditorOfTheCurrentRow)
{
    mArray.Add<FakeInteger>("Width");
    Show();
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Width"));
    QTest::keyClick(mBrowser->Tree(), Qt::Key_F2);
    EXPECT_NE(mBrowser->Editor(), nullptr);
}

// Integers

TEST_F(Editors, AnIntegerEditorTakesTextLimitsAndIncrementFromTheFeature)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    feature.mMin = -8;
    feature.mMax = 64;
    feature.mIncrement = 4;
    feature.mAttributes.mText = "0x1f";
    Show();
    const auto *box = Open<QSpinBox64>("Width");
    EXPECT_EQ(box->Minimum(), -8);
    EXPECT_EQ(box->Maximum(), 64);
    EXPECT_EQ(box->Step(), 4);
    EXPECT_EQ(box->text(), "0X1F");
}

TEST_F(Editors, AnIntegerInHexadecimalIsWrittenAsItsNumber)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    auto *box = Open<QSpinBox64>("Width");
    Type(box, "1Fh");
    Commit(box);
    EXPECT_EQ(feature.mValue, 31);
    EXPECT_EQ(mBrowser->Value("Width"), "31 ");
}

TEST_F(Editors, TheArrowKeysStepAnInteger)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    feature.mAttributes.mText = "0x1f";
    Show();
    auto *box = Open<QSpinBox64>("Width");
    QTest::keyClick(box, Qt::Key_Up);
    EXPECT_EQ(box->text(), "0x20");
    Commit(box);
    EXPECT_EQ(feature.mValue, 32);
}

TEST_F(Editors, AnUnreadableIntegerStartsWithItsCachedTextWhichItsUnitMakesUnparsable)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Offset");
    feature.mReadable = false;
    feature.mUnit = "us";
    Show();
    auto *box = Open<QSpinBox64>("Offset");
    EXPECT_EQ(box->text(), "0 US");
    EXPECT_EQ(TypeAndFail(box, "5 us"), "Error parsing value.");
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST_F(Editors, TextInANumberFieldIsRefused)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    EXPECT_EQ(TypeAndFail(Open<QSpinBox64>("Width"), "abc"), "Error parsing value.");
    EXPECT_EQ(TypeAndFail(Open<QSpinBox64>("Width"), "9223372036854775808"), "Error parsing value.");
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST_F(Editors, WhatTheDeviceRefusesIsExplained)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    feature.mScript.Fail("SetValue", LxResult(LxResultCode::OutOfRange, "LxGenInteger.cpp:9 The value is too big."));
    Show();
    EXPECT_EQ(TypeAndFail(Open<QSpinBox64>("Width"), "5000"), "The value is too big.");
    EXPECT_EQ(mBrowser->Value("Width"), "0 ");
}

TEST_F(Editors, AFeatureThatWasLockedMeanwhileIsNotWritten)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    auto *box = Open<QSpinBox64>("Width");
    feature.mWritable = false;
    EXPECT_EQ(TypeAndFail(box, "5"), "Parameter is not (no longer?) writable.");
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
}

TEST_F(Editors, EscapeWritesNothing)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    Show();
    auto *box = Open<QSpinBox64>("Width");
    Type(box, "5");
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Editor() == nullptr; }));
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
    EXPECT_TRUE(mBrowser->IsVisible());
}

// Other kinds

TEST_F(Editors, AnEnumerationOffersItsEntriesWithToolTipsAndWritesTheChosenOne)
{
    FakeEnum &feature = mArray.Add<FakeEnum>("Mode");
    feature.Add("Off", 10);
    feature.Add("On", 11);
    feature.mValue = 11;
    Show();
    auto *box = Open<QComboBox>("Mode");
    ASSERT_EQ(box->count(), 2);
    EXPECT_EQ(box->currentText(), "On");
    EXPECT_EQ(box->itemData(0, Qt::ToolTipRole), "tip of Off");
    box->setCurrentIndex(0);
    Commit(box);
    EXPECT_EQ(feature.mValue, 10);
    EXPECT_EQ(mBrowser->Value("Mode"), "Off");
}

TEST_F(Editors, ABoxWithoutACurrentEntryWrites0)
{
    FakeEnum &feature = mArray.Add<FakeEnum>("Mode");
    feature.Add("Off", 10).mAvailable = false;
    feature.mValue = 10;
    Show();
    auto *box = Open<QComboBox>("Mode");
    EXPECT_EQ(box->currentIndex(), -1);
    Commit(box);
    EXPECT_EQ(feature.mValue, 0);
}

TEST_F(Editors, ABooleanIsChosenFromFalseAndTrue)
{
    FakeBoolean &feature = mArray.Add<FakeBoolean>("Flag");
    Show();
    auto *box = Open<QComboBox>("Flag");
    EXPECT_EQ(box->currentText(), "False");
    box->setCurrentIndex(1);
    Commit(box);
    EXPECT_TRUE(feature.mValue);
}

TEST_F(Editors, AnEditorThatIsFilledAgainKeepsEachEntryAndConnectionOnce)
{
    mArray.Add<FakeEnum>("Mode").Add("Off", 0);
    FakeCommand &command = mArray.Add<FakeCommand>("Go");
    Show();
    auto *box = Open<QComboBox>("Mode");
    emit mBrowser->Model()->dataChanged(mBrowser->Cell("Mode"), mBrowser->Cell("Mode", 1));
    EXPECT_EQ(box->count(), 1);
    auto *button = Open<QPushButton>("Go");
    emit mBrowser->Model()->dataChanged(mBrowser->Cell("Go"), mBrowser->Cell("Go", 1));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(command.mScript.Count("Execute"), 1);
}

TEST_F(Editors, AnEntryThatBecomesUnavailableWhileTheBoxIsOpenIsExplained)
{
    FakeEnum &feature = mArray.Add<FakeEnum>("Mode");
    feature.Add("Off", 0);
    feature.Add("On", 1);
    Show();
    auto *box = Open<QComboBox>("Mode");
    box->setCurrentIndex(1);
    feature.mEntries[1]->mAvailable = false;
    feature.mScript.Fail("SetValue", LxResult(LxResultCode::NotAvailable, "The entry On is not available now."));
    const ExpectedBox error;
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_TRUE(WaitForGui([&] { return error.WasShown(); }));
    EXPECT_EQ(error.Text(), "The entry On is not available now.");
    EXPECT_EQ(feature.mValue, 0);
}

TEST_F(Editors, AStringIsEditedAsTheShownText)
{
    FakeString &feature = mArray.Add<FakeString>("Name");
    feature.SetText("old");
    Show();
    auto *edit = Open<QLineEdit>("Name");
    EXPECT_EQ(edit->selectedText(), "old");
    edit->setText(QString::fromUtf8("n\xC3\xA4u"));
    Commit(edit);
    EXPECT_EQ(feature.Text(), "n\xC3\xA4u");
}

TEST_F(Editors, AnIPAddressIsEditedAsDottedText)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("GevSCDA");
    feature.mValue = 0xC0A80001;
    Show();
    auto *edit = Open<QLineEdit>("GevSCDA");
    EXPECT_EQ(edit->text(), "192.168.0.1");
    EXPECT_EQ(TypeAndFail(edit, "192.168.0.256"), "Invalid IP Address.");
    EXPECT_EQ(feature.mScript.Count("SetValue"), 0);
    edit = Open<QLineEdit>("GevSCDA");
    Type(edit, "10.0.0.7");
    Commit(edit);
    EXPECT_EQ(feature.mValue, 0x0A000007);
}

TEST_F(Editors, AFloatKeepsItsValueWhenTheEditorIsOnlyLeft)
{
    FakeFloat &feature = mArray.Add<FakeFloat>("Exposure");
    feature.mMin = 0.001;
    feature.mMax = 0.009;
    feature.mValue = 0.0034;
    Show();
    Commit(Open<QDoubleSpinBox>("Exposure"));
    EXPECT_EQ(feature.mValue, 0.0034);
}

TEST_F(Editors, AFloatIsWritten)
{
    FakeFloat &feature = mArray.Add<FakeFloat>("Exposure");
    feature.mUnit = "us";
    Show();
    auto *box = Open<QDoubleSpinBox>("Exposure");
    Type(box, box->locale().toString(12.5));
    Commit(box);
    EXPECT_EQ(feature.mValue, 12.5);
    EXPECT_EQ(mBrowser->Value("Exposure"), QLocale().toString(12.5, 'g', 6) + " us");
}

TEST_F(Editors, AFloatThatIsRefusedIsExplainedAndReadAgain)
{
    FakeFloat &feature = mArray.Add<FakeFloat>("Exposure");
    Show();
    auto *box = Open<QDoubleSpinBox>("Exposure");
    feature.mScript.Fail("SetValue", LxResult(LxResultCode::OutOfRange, "No."));
    feature.mValue = 3.0;
    EXPECT_EQ(TypeAndFail(box, "7"), "No.");
    EXPECT_EQ(mBrowser->Value("Exposure"), QLocale().toString(3.0, 'g', 6) + " ");
    box = Open<QDoubleSpinBox>("Exposure");
    feature.mWritable = false;
    EXPECT_EQ(TypeAndFail(box, "7"), "Parameter is not (no longer?) writable.");
}

TEST_F(Editors, AButtonRunsItsCommandAndWritesNothing)
{
    FakeCommand &feature = mArray.Add<FakeCommand>("Go");
    Show();
    auto *button = Open<QPushButton>("Go");
    EXPECT_EQ(button->text(), "Go");
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(feature.mScript.Count("Execute"), 1);
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(feature.mScript.Count("Execute"), 2);
    Commit(button);
    EXPECT_EQ(feature.mScript.Count("Execute"), 2);
}

TEST_F(Editors, ResettingTheDeviceIsPostedToTheNativeParent)
{
    mArray.Add<FakeCommand>("DeviceReset");
    mArray.Add<FakeCommand>("Go");
    const auto parent = reinterpret_cast<HWND>(uintptr_t(0x77));
    RecordingNativeWindowApi api(parent);
    mBrowser->SetGenParameterArray(&mArray);
    mBrowser->ShowModeless(parent);
    api.mCalls.clear();
    GenBrowserTreeModel::Item(mBrowser->Cell("Go"))->Execute();
    EXPECT_TRUE(api.mCalls.empty());
    GenBrowserTreeModel::Item(mBrowser->Cell("DeviceReset"))->Execute();
    ASSERT_EQ(api.mCalls.size(), 1u);
    EXPECT_EQ(api.mCalls[0], "PostMessageA(parent, 19457, 0, 0x00000000)");
}

TEST_F(Editors, ResettingTheDeviceWithoutANativeParentPostsNothing)
{
    mArray.Add<FakeCommand>("DeviceReset");
    RecordingNativeWindowApi api(nullptr);
    Show();
    api.mCalls.clear();
    GenBrowserTreeModel::Item(mBrowser->Cell("DeviceReset"))->Execute();
    EXPECT_TRUE(api.mCalls.empty());
}

// The edited row and what happens around it

TEST_F(Editors, RefreshesLeaveTheEditedRowAlone)
{
    FakeInteger &feature = mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("Height");
    Show();
    auto *box = Open<QSpinBox64>("Width");
    Type(box, "42");
    feature.mValue = 7;
    QSignalSpy spy(mBrowser->Model(), &QAbstractItemModel::dataChanged);
    mBrowser->Refresh();
    feature.Notify();
    EXPECT_EQ(box->text(), "42");
    EXPECT_EQ(spy.size(), 1);  // the other row
    Commit(box);
    EXPECT_EQ(feature.mValue, 42);
    EXPECT_FALSE(mBrowser->Model()->EditIndex().isValid());
}

TEST_F(Editors, TheRowIsRefreshedAgainAfterItsEditorWasClosedByProgram)
{
    mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("Height");
    Show();
    Open<QSpinBox64>("Width");
    EXPECT_TRUE(mBrowser->Model()->EditIndex().isValid());
    mBrowser->SearchBar()->setText("Height");
    EXPECT_FALSE(mBrowser->Model()->EditIndex().isValid());
}

TEST_F(Editors, ClosingAnEarlierEditorKeepsTheOpenOneGuarded)
{
    mArray.Add<FakeInteger>("Width");
    mArray.Add<FakeInteger>("Height");
    Show();
    QAbstractItemDelegate *const delegate = mBrowser->Tree()->itemDelegate();
    const auto open = [&](const QModelIndex &aIndex) {
        return std::unique_ptr<QWidget>(delegate->createEditor(nullptr, QStyleOptionViewItem(), aIndex));
    };
    const auto close = [&](QWidget *aEditor) { emit delegate->closeEditor(aEditor, QAbstractItemDelegate::NoHint); };
    const std::unique_ptr<QWidget> first = open(mBrowser->Cell("Width", 1));
    const std::unique_ptr<QWidget> second = open(mBrowser->Cell("Height", 1));
    close(first.get());
    EXPECT_EQ(mBrowser->Model()->EditIndex(), mBrowser->Cell("Height", 1));
    close(second.get());
    EXPECT_FALSE(mBrowser->Model()->EditIndex().isValid());
}

}  // namespace
