#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

#include "BrowserWindowTest.h"
#include "LxGUI/GenBrowser/GenBrowserWnd.h"

namespace
{

// Building

TEST_F(BrowserWindow, ShowsTheFeaturesOnceAndTheirControls)
{
    Show();
    EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
    EXPECT_TRUE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Image")));
    EXPECT_EQ(mGain->mScript.Count("IsWritable"), 1);
    EXPECT_EQ(mBrowser->Tree()->header()->sectionResizeMode(0), QHeaderView::Stretch);
    EXPECT_NEAR(mBrowser->Tree()->columnWidth(0), mBrowser->Tree()->columnWidth(1), 1);
    EXPECT_TRUE(mBrowser->Button("ExpandButton")->isEnabled());
    EXPECT_TRUE(mBrowser->Button("CollapseButton")->isEnabled());
    EXPECT_TRUE(mBrowser->Button("RefreshButton")->isEnabled());
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "");
    mBrowser->SetRefreshMode(LxGenRefreshAutomatic);
    EXPECT_FALSE(mBrowser->Button("RefreshButton")->isEnabled());
}

TEST_F(BrowserWindow, IsLaidOutAsAToolbarATreeAndADescription)
{
    Show();
    EXPECT_EQ(mBrowser->Button("OptionsButton")->text(), "Options");
    EXPECT_EQ(mBrowser->Button("ExpandButton")->text(), "Expand");
    EXPECT_EQ(mBrowser->Button("CollapseButton")->text(), "Collapse");
    EXPECT_EQ(mBrowser->Button("RefreshButton")->text(), "Refresh");
    EXPECT_EQ(mBrowser->Button("PreviousMatchButton")->arrowType(), Qt::LeftArrow);
    EXPECT_EQ(mBrowser->Button("NextMatchButton")->arrowType(), Qt::RightArrow);
    EXPECT_EQ(mBrowser->Button("NextMatchButton")->iconSize(), QSize(9, 9));
    QStringList labels;
    for (const QLabel *label : mBrowser->GetQWidget()->findChildren<QLabel *>()) {
        labels << label->text();
    }
    EXPECT_EQ(labels, QStringList({"Visibility", "Search"}));
    const QComboBox *const combo = mBrowser->VisibilityCombo();
    EXPECT_EQ(combo->minimumWidth(), 100);
    ASSERT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->itemText(0) + combo->itemText(1) + combo->itemText(2), "BeginnerExpertGuru");
    const QTextEdit *const description = mBrowser->Description();
    EXPECT_TRUE(description->isReadOnly());
    EXPECT_EQ(description->minimumHeight(), 70);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        EXPECT_EQ(description->palette().color(group, QPalette::Base),
                  description->palette().color(group, QPalette::Window));
    }
    const auto *const splitter = mBrowser->GetQWidget()->findChild<QSplitter *>();
    ASSERT_NE(splitter, nullptr);
    EXPECT_EQ(splitter->orientation(), Qt::Vertical);
    EXPECT_EQ(splitter->widget(0), mBrowser->Tree());
    EXPECT_EQ(splitter->widget(1), description);
    EXPECT_NEAR(double(splitter->sizes()[0]) / splitter->sizes()[1], 200.0 / 80, 0.1);
    EXPECT_EQ(mBrowser->GetQWidget()->windowTitle(), "");
}

TEST_F(BrowserWindow, SignalsAndSlotsHaveTheirNames)
{
    Show();
    const auto expectSlots = [](const QObject *aObject, std::initializer_list<const char *> aSlots) {
        for (const char *slot : aSlots) {
            EXPECT_GE(aObject->metaObject()->indexOfSlot(slot), 0) << slot;
        }
    };
    const auto expectSignals = [](const QObject *aObject, std::initializer_list<const char *> aSignals) {
        for (const char *signal : aSignals) {
            EXPECT_GE(aObject->metaObject()->indexOfSignal(signal), 0) << signal;
        }
    };
    const GenBrowserWnd wnd(nullptr);
    expectSlots(&wnd,
                {"OnOptionsButtonClick()", "OnExpandButtonClick()", "OnCollapseButtonClick()", "OnRefreshButtonClick()",
                 "OnVisibilityComboChange(int)", "OnSelectionChanged(const GenBrowserTreeItem*)"});
    expectSlots(mBrowser->SearchBar(), {"Search(QString)", "MoveToNextOccurence()", "MoveToPreviousOccurence()"});
    const GenBrowserOptionsDlg dialog(GenBrowserOptions(), nullptr);
    expectSlots(&dialog, {"OnNamesComboChange(int)", "OnViewComboChange(int)", "accept()", "reject()"});
    expectSlots(mBrowser->Tree(), {"IsVisibleSlot(QModelIndex)"});
    expectSignals(mBrowser->Tree(), {"IsVisibleSignal(QModelIndex)", "OnSelectionChanged(const GenBrowserTreeItem*)"});
    expectSlots(mBrowser->Model(), {"RefreshItemSlot(QModelIndex,QModelIndex)"});
    expectSignals(mBrowser->Model(), {"RefreshItemSignal(QModelIndex,QModelIndex)"});
    expectSlots(mBrowser->Tree()->itemDelegate(), {"closeEditor(QWidget*,QAbstractItemDelegate::EndEditHint)"});
}

TEST_F(BrowserWindow, ButtonsFollowTheModeBeforeThereIsAnArray)
{
    mBrowser->ShowModeless();
    EXPECT_TRUE(mBrowser->Button("ExpandButton")->isEnabled());
    EXPECT_TRUE(mBrowser->Button("CollapseButton")->isEnabled());
    EXPECT_FALSE(mBrowser->Button("RefreshButton")->isEnabled());
}

TEST_F(BrowserWindow, WithoutAnArrayIsEmptyAndHarmless)
{
    mBrowser->ShowModeless();
    EXPECT_EQ(mBrowser->Model(), nullptr);
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "This is where the description stuff goes.");
    mBrowser->Refresh();
    mBrowser->ClickButton("ExpandButton");
    mBrowser->ClickButton("CollapseButton");
    mBrowser->SearchBar()->setText("x");
    QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
    mBrowser->SetRefreshMode(LxGenRefreshManual);
    mBrowser->ClickButton("RefreshButton");
    Pick(mBrowser->VisibilityCombo(), 1);
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityExpert);
}

TEST_F(BrowserWindow, TakingTheArrayAwayEmptiesTheWindow)
{
    Show(LxGenRefreshPolling);
    mBrowser->SetGenParameterArray(nullptr);
    EXPECT_EQ(mBrowser->Model(), nullptr);
    EXPECT_FALSE(mGain->HasSinks());
    mBrowser->Refresh();
}

TEST_F(BrowserWindow, TheHostDecidesWhichFeaturesAreShown)
{
    std::vector<LxGenParameter *> asked;
    mBrowser->mFilter = [&](LxGenParameter *aParameter) {
        asked.push_back(aParameter);
        return aParameter != mWidth;
    };
    Show();
    EXPECT_EQ(mBrowser->Outline(), "Image(Height) General(Gain)");
    EXPECT_EQ(asked.size(), 3u);  // not those that are hidden anyway
}

TEST_F(BrowserWindow, AHostThatTakesTheArrayAwayWhenItIsAskedIsSurvived)
{
    mBrowser->mFilter = [&](LxGenParameter *) {
        mBrowser->mFilter = nullptr;
        mBrowser->SetGenParameterArray(nullptr);
        return true;
    };
    Show();
    EXPECT_EQ(mBrowser->Model(), nullptr);
}

TEST_F(BrowserWindow, CanBeShownAgainAfterClosing)
{
    for (int i = 0; i < 3; ++i) {
        Show(LxGenRefreshAutomatic);
        EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
        mBrowser->Close();
        EXPECT_EQ(mBrowser->Model(), nullptr);
        EXPECT_FALSE(mGain->HasSinks());
    }
}

TEST_F(BrowserWindow, StaysEmptyWhileItIsClosed)
{
    Show();
    mBrowser->Close();
    mBrowser->SetRefreshMode(LxGenRefreshPolling);
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_EQ(mBrowser->Model(), nullptr);
    mBrowser->ShowModeless();
    EXPECT_NE(mBrowser->Model(), nullptr);
}

TEST_F(BrowserWindow, WorksInAWidgetThatTheHostTakesWithoutOpeningTheWindow)
{
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    layout->addWidget(mBrowser->GetQWidget());
    host.show();
    EXPECT_EQ(mBrowser->Model(), nullptr);
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
    mBrowser->SetGenParameterArray(nullptr);
    EXPECT_EQ(mBrowser->Model(), nullptr);
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_NE(mBrowser->Model(), nullptr);
}

TEST_F(BrowserWindow, AnArrayThatCameBeforeTheWidgetIsShownInIt)
{
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
}

TEST_F(BrowserWindow, SurvivesTheEndOfTheHostsWidgetWhileItReads)
{
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        auto host = std::make_unique<QWidget>();
        mBrowser->SetRefreshMode(mode);
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->Create(host.get());
        host.reset();
        EXPECT_FALSE(mGain->HasSinks());
    }
    auto host = std::make_unique<QWidget>();
    mBrowser->GetQWidget()->setParent(host.get());  // taken, never opened
    host.reset();
    EXPECT_FALSE(mGain->HasSinks());
}

TEST_F(BrowserWindow, RunsAsAModalDialog)
{
    mBrowser->SetGenParameterArray(&mArray);
    OnNextModal([this](QWidget *aWidget) {
        EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
        qobject_cast<QDialog *>(aWidget)->reject();
    });
    EXPECT_EQ(mBrowser->ShowModal().GetCode(), 0x4002u);
    EXPECT_EQ(mBrowser->Model(), nullptr);
    EXPECT_FALSE(mGain->HasSinks());
}

// Toolbar

TEST_F(BrowserWindow, ExpandAndCollapseOpenAndCloseTheCategories)
{
    Show();
    mBrowser->ClickButton("CollapseButton");
    EXPECT_FALSE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Image")));
    mBrowser->ClickButton("ExpandButton");
    EXPECT_TRUE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Image")));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(BrowserWindow, InManualModeOnlyRefreshReadsTheValues)
{
    Show();
    mGain->mValue = 7;
    EXPECT_EQ(mBrowser->Value("Gain"), "0 ");
    EXPECT_EQ(mGain->mScript.Count("GetValue"), 1);
    mBrowser->ClickButton("RefreshButton");
    EXPECT_EQ(mBrowser->Value("Gain"), "7 ");
    mGain->mValue = 8;
    mBrowser->Refresh();
    EXPECT_EQ(mBrowser->Value("Gain"), "8 ");
    EXPECT_EQ(mGain->mScript.Count("GetValue"), 3);
}

TEST_F(BrowserWindow, RefreshReadsInAnyMode)
{
    Show(LxGenRefreshAutomatic);
    mGain->mValue = 7;
    mBrowser->Refresh();
    EXPECT_EQ(mBrowser->Value("Gain"), "7 ");
}

TEST_F(BrowserWindow, HasNoButtonThatEnterInTheSearchBarWouldPress)
{
    Show();
    EXPECT_TRUE(mBrowser->GetQWidget()->findChildren<QPushButton *>().isEmpty());
    mBrowser->SearchBar()->setFocus();
    QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
    QTest::keyClick(mBrowser->Tree(), Qt::Key_Return);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_TRUE(mBrowser->IsVisible());
}

TEST_F(BrowserWindow, EveryControlHasANameAndAPlaceInTheTabOrder)
{
    Show();
    const char *order[] = {"OptionsButton",   "ExpandButton", "CollapseButton",      "RefreshButton",
                           "VisibilityCombo", "SearchBar",    "PreviousMatchButton", "NextMatchButton",
                           "FeatureTree",     "Description"};
    QStringList expected;
    for (const char *name : order) {
        QWidget *control = mBrowser->Find<QWidget>(name);
        ASSERT_NE(control, nullptr) << name;
        EXPECT_FALSE(control->accessibleName().isEmpty()) << name;
        expected << name;
    }
    QStringList visited;
    QWidget *first = mBrowser->Find<QWidget>("OptionsButton");
    QWidget *widget = first;
    do {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && expected.contains(widget->objectName())) {
            visited << widget->objectName();
        }
        widget = widget->nextInFocusChain();
    } while (widget != first);
    EXPECT_EQ(visited, expected);
}

// Description

TEST_F(BrowserWindow, TheSelectedFeatureIsDescribed)
{
    Show();
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Gain"));
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Feature Name: Gain"); }));
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Image"));
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Type: Category"); }));
    const QString before = mBrowser->Description()->toPlainText();
    mBrowser->Tree()->clearSelection();
    QCoreApplication::processEvents();
    EXPECT_EQ(mBrowser->Description()->toPlainText(), before);
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "");
}

// Search

TEST_F(BrowserWindow, EveryKeystrokeSearchesAgain)
{
    Show();
    QTest::keyClicks(mBrowser->SearchBar(), "h");
    EXPECT_EQ(mBrowser->Current(), "Width");
    EXPECT_EQ(mBrowser->SearchBar()->Matches().size(), 2);
    QTest::keyClicks(mBrowser->SearchBar(), "E");
    EXPECT_EQ(mBrowser->Current(), "Height");
    EXPECT_EQ(mBrowser->SearchBar()->Matches().size(), 1);
    QTest::keyClicks(mBrowser->SearchBar(), "x");
    EXPECT_TRUE(mBrowser->SearchBar()->Matches().isEmpty());
    EXPECT_TRUE(mBrowser->Tree()->selectionModel()->selectedIndexes().isEmpty());
}

TEST_F(BrowserWindow, EnterMovesToTheNextMatchAndWrapsAround)
{
    Show();
    mBrowser->SearchBar()->setText("h");
    QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
    EXPECT_EQ(mBrowser->Current(), "Height");
    QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
    EXPECT_EQ(mBrowser->Current(), "Width");
    mBrowser->ClickButton("PreviousMatchButton");
    EXPECT_EQ(mBrowser->Current(), "Height");
    mBrowser->ClickButton("PreviousMatchButton");
    EXPECT_EQ(mBrowser->Current(), "Width");
    mBrowser->ClickButton("NextMatchButton");
    EXPECT_EQ(mBrowser->Current(), "Height");
}

TEST_F(BrowserWindow, WithoutMatchesNextAndPreviousDoNothing)
{
    Show();
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Gain"));
    mBrowser->ClickButton("NextMatchButton");
    mBrowser->ClickButton("PreviousMatchButton");
    EXPECT_EQ(mBrowser->Current(), "Gain");
}

TEST_F(BrowserWindow, CategoriesAreNotMatchedButOpenedForTheirMatches)
{
    Show();
    mBrowser->ClickButton("CollapseButton");
    mBrowser->SearchBar()->setText("Image");
    EXPECT_TRUE(mBrowser->SearchBar()->Matches().isEmpty());
    mBrowser->SearchBar()->setText("gai");
    EXPECT_TRUE(mBrowser->Tree()->isExpanded(mBrowser->Cell("General")));
    EXPECT_FALSE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Image")));
}

TEST_F(BrowserWindow, AnEmptyQueryClearsTheSelection)
{
    Show();
    QSignalSpy spy(mBrowser->Model(), &QAbstractItemModel::layoutChanged);
    mBrowser->SearchBar()->setText("Gain");
    mBrowser->SearchBar()->clear();
    EXPECT_TRUE(mBrowser->SearchBar()->Matches().isEmpty());
    EXPECT_TRUE(mBrowser->Tree()->selectionModel()->selectedIndexes().isEmpty());
    EXPECT_EQ(spy.size(), 2);
}

TEST_F(BrowserWindow, TheShownNameIsSearched)
{
    Load({{"Names", "DisplayNames"}, {"Refresh", "ManualRefresh"}});
    Show();
    mBrowser->SearchBar()->setText("the g");
    EXPECT_EQ(mBrowser->Current(), "The Gain");
}

TEST_F(BrowserWindow, MatchesAreForgottenWhenTheFeaturesAreShownAnew)
{
    Show();
    mBrowser->SearchBar()->setText("h");
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_TRUE(mBrowser->SearchBar()->Matches().isEmpty());
    QTest::keyClick(mBrowser->SearchBar(), Qt::Key_Return);
}

TEST_F(BrowserWindow, TheListStaysSortedWhateverHeaderIsClicked)
{
    Load({{"Refresh", "AutoRefresh"}, {"View", "AlphabeticalList"}});
    Show(LxGenRefreshAutomatic);
    QTest::mouseClick(mBrowser->Tree()->header()->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 5));
    EXPECT_EQ(mBrowser->Outline(), "Gain Height Width");
}

// The model under a tester, in both views, while everything happens to it

TEST_F(BrowserWindow, TheModelKeepsItsPromisesUnderRefreshEditsAndSearch)
{
    for (const char *view : {"Tree", "AlphabeticalList"}) {
        Load({{"View", view}});
        Show(LxGenRefreshPolling);
        const QAbstractItemModelTester tester(mBrowser->Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        mBrowser->Refresh();
        mBrowser->SearchBar()->setText("i");
        ASSERT_NE(mBrowser->OpenEditor("Gain"), nullptr);
        mWidth->mValue = 9;
        mWidth->Notify();
        QTest::keyClick(mBrowser->Editor(), Qt::Key_Return);
        const int polls = mArray.mScript.Count("Poll");
        EXPECT_TRUE(WaitForGui([&] { return mArray.mScript.Count("Poll") > polls + 2; }));
        mBrowser->Close();
    }
}

}  // namespace
