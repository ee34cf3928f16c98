#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

#include "BrowserTest.h"
#include "LxGUI/GenBrowser/GenBrowserOptionsDlg.h"
#include "LxPersistence/LxPropertyList.h"

namespace
{

class BrowserWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        mArray.AddCategory("General");
        mArray.AddCategory("Image");
        mWidth = &mArray.Add<FakeInteger>("Width", "Root\\Image");
        mArray.Add<FakeInteger>("Height", "Root\\Image");
        mGain = &mArray.Add<FakeInteger>("Gain");
        mArray.Add<FakeInteger>("Depth").mAttributes.mVisibility = LxGenVisibilityGuru;
        mBrowser = std::make_unique<TestBrowser>();
    }
    void TearDown() override { mBrowser.reset(); }

    void Show(LxGenRefresh aMode = LxGenRefreshManual)
    {
        mBrowser->SetRefreshMode(aMode);
        mBrowser->SetGenParameterArray(&mArray);
        mBrowser->SetPosition(-1, -1, 500, 500);
        mBrowser->ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mBrowser->GetQWidget()));
    }

    /// What Save() writes, as "Name=Value" joined by blanks.
    QString Saved()
    {
        LxPropertyList list;
        EXPECT_TRUE(mBrowser->Save(list).IsOK());
        QStringList texts;
        for (const LxProperty *property = list.GetFirst(); property; property = list.GetNext()) {
            texts << QString(property->GetName().GetAscii()) + '=' + property->GetValue().GetAscii();
        }
        return texts.join(' ');
    }
    void Load(std::initializer_list<std::pair<const char *, const char *>> aProperties)
    {
        LxPropertyList list;
        for (const auto &[name, value] : aProperties) {
            list.Add(LxProperty(name, value));
        }
        EXPECT_TRUE(mBrowser->Load(list).IsOK());
    }
    /// Chooses in the options dialog and ends it.
    void ChooseOptions(std::function<void(GenBrowserOptionsDlg &)> aChoose, const char *aButton = "OkButton")
    {
        OnNextModal([aChoose, aButton](QWidget *aWidget) {
            auto *dialog = qobject_cast<GenBrowserOptionsDlg *>(aWidget);
            ASSERT_NE(dialog, nullptr);
            aChoose(*dialog);
            QTest::mouseClick(dialog->findChild<QPushButton *>(aButton), Qt::LeftButton);
        });
        mBrowser->ClickButton("OptionsButton");
    }
    /// As a user picks an entry: index and signal.
    static void Pick(QComboBox *aCombo, int aIndex)
    {
        aCombo->setCurrentIndex(aIndex);
        emit aCombo->activated(aIndex);
    }
    static QComboBox *Combo(GenBrowserOptionsDlg &aDialog, const char *aName)
    {
        return aDialog.findChild<QComboBox *>(aName);
    }

    FakeArray mArray;
    FakeInteger *mWidth = nullptr;
    FakeInteger *mGain = nullptr;
    std::unique_ptr<TestBrowser> mBrowser;
};

// Settings

TEST_F(BrowserWindow, StartsAsATreeOfFeatureNamesForBeginnersRefreshedAutomatically)
{
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityBeginner);
    EXPECT_EQ(mBrowser->GetRefreshMode(), LxGenRefreshAutomatic);
    EXPECT_EQ(Saved(), "Visibility=Beginner Names=FeatureNames View=Tree Refresh=AutoRefresh");
    EXPECT_FALSE(mBrowser->HasChanged());
    mBrowser->ResetChanged();
    EXPECT_FALSE(mBrowser->HasChanged());
}

TEST_F(BrowserWindow, AVisibilityThatIsNoLevelIsIgnored)
{
    Show();
    EXPECT_TRUE(mBrowser->SetVisibility(static_cast<LxGenVisibility>(7)).IsOK());
    EXPECT_TRUE(mBrowser->SetVisibility(LxGenVisibilityUndefined).IsOK());
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityBeginner);
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), 0);
}

TEST_F(BrowserWindow, SettingTheVisibilityTakesEffectWithTheNextRebuild)
{
    Show();
    const QPointer<GenBrowserTreeModel> model = mBrowser->Model();
    EXPECT_TRUE(mBrowser->SetVisibility(LxGenVisibilityInvisible).IsOK());
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityInvisible);
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), -1);
    EXPECT_TRUE(mBrowser->SetVisibility(LxGenVisibilityGuru).IsOK());
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), 2);
    EXPECT_EQ(mBrowser->Model(), model);
    EXPECT_FALSE(mBrowser->Cell("Depth").isValid());
    mBrowser->SetGenParameterArray(&mArray);
    EXPECT_TRUE(mBrowser->Cell("Depth").isValid());
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), 2);
}

TEST_F(BrowserWindow, TheVisibilityCanBeSetBeforeTheWindowExists)
{
    EXPECT_TRUE(mBrowser->SetVisibility(LxGenVisibilityGuru).IsOK());
    Show();
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), 2);
    EXPECT_TRUE(mBrowser->Cell("Depth").isValid());
}

TEST_F(BrowserWindow, TheVisibilityComboRebuildsUnlessNothingChanges)
{
    Show();
    const QPointer<GenBrowserTreeModel> before = mBrowser->Model();
    Pick(mBrowser->VisibilityCombo(), 0);
    EXPECT_EQ(mBrowser->Model(), before.data());
    Pick(mBrowser->VisibilityCombo(), 2);
    EXPECT_TRUE(before.isNull());
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityGuru);
    EXPECT_TRUE(mBrowser->Cell("Depth").isValid());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    emit mBrowser->VisibilityCombo()->activated(5);
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityUndefined);
    EXPECT_TRUE(Saved().contains("Visibility=Beginner"));
}

TEST_F(BrowserWindow, AnotherRefreshModeRebuildsAndTheSameDoesNot)
{
    Show();
    const QPointer<GenBrowserTreeModel> before = mBrowser->Model();
    EXPECT_TRUE(mBrowser->SetRefreshMode(LxGenRefreshManual).IsOK());
    EXPECT_FALSE(before.isNull());
    EXPECT_TRUE(mBrowser->SetRefreshMode(LxGenRefreshPolling).IsOK());
    EXPECT_TRUE(before.isNull());
    EXPECT_EQ(mBrowser->GetRefreshMode(), LxGenRefreshPolling);
    EXPECT_TRUE(mBrowser->SetRefreshMode(static_cast<LxGenRefresh>(77)).IsOK());
    EXPECT_EQ(mBrowser->GetRefreshMode(), static_cast<LxGenRefresh>(77));
    EXPECT_TRUE(Saved().contains("Refresh=AutoRefresh"));
}

// Persistence

TEST_F(BrowserWindow, SavesAndLoadsItsOptions)
{
    Load({{"Visibility", "Guru"},
          {"Names", "FeatureNames"},
          {"View", "AlphabeticalList"},
          {"Refresh", "ManualRefresh"}});
    EXPECT_EQ(Saved(), "Visibility=Guru Names=FeatureNames View=AlphabeticalList Refresh=ManualRefresh");
    Load({{"Visibility", "Expert"}, {"View", "Tree"}, {"Names", "DisplayNames"}, {"Refresh", "PollingRefresh"}});
    EXPECT_EQ(Saved(), "Visibility=Expert Names=DisplayNames View=AlphabeticalList Refresh=PollingRefresh");
    Load({{"Visibility", "Invisible"}});
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityInvisible);
    EXPECT_TRUE(Saved().startsWith("Visibility=Invisible"));
}

TEST_F(BrowserWindow, LoadingAnUnknownRefreshModeSelectsAutomatic)
{
    mBrowser->SetRefreshMode(LxGenRefreshManual);
    Load({{"Refresh", "Sometimes"}});
    EXPECT_EQ(mBrowser->GetRefreshMode(), LxGenRefreshAutomatic);
    Load({{"Refresh", "manualrefresh"}});
    EXPECT_EQ(mBrowser->GetRefreshMode(), LxGenRefreshAutomatic);
}

TEST_F(BrowserWindow, LoadingComparesLetterCase)
{
    Load({{"Names", "displaynames"}, {"Visibility", "guru"}, {"View", "alphabeticallist"}});
    EXPECT_EQ(Saved(), "Visibility=Beginner Names=FeatureNames View=Tree Refresh=AutoRefresh");
}

TEST_F(BrowserWindow, LoadingLeavesWhatIsMissingAndTakesTheFirstOfAName)
{
    Load({{"Visibility", "Expert"}, {"Names", "DisplayNames"}, {"Refresh", "ManualRefresh"}});
    Load({});
    Load({{"Unknown", "1"}});
    EXPECT_EQ(Saved(), "Visibility=Expert Names=DisplayNames View=Tree Refresh=ManualRefresh");
    Load({{"Visibility", "Guru"}, {"Visibility", "Beginner"}});
    EXPECT_EQ(mBrowser->GetVisibility(), LxGenVisibilityGuru);
}

TEST_F(BrowserWindow, LoadingIgnoresTheViewWhileDisplayNamesAreShown)
{
    Load({{"Names", "DisplayNames"}, {"View", "AlphabeticalList"}});
    EXPECT_EQ(Saved(), "Visibility=Beginner Names=DisplayNames View=Tree Refresh=AutoRefresh");
}

TEST_F(BrowserWindow, LoadingRebuildsAVisibleWindowOnly)
{
    Load({{"Visibility", "Guru"}});  // no widget yet, and none is made
    Show();
    EXPECT_TRUE(mBrowser->Cell("Depth").isValid());
    Load({{"Visibility", "Beginner"}, {"View", "AlphabeticalList"}});
    EXPECT_EQ(mBrowser->Outline(), "Gain Height Width");
    EXPECT_EQ(mBrowser->VisibilityCombo()->currentIndex(), 0);
    EXPECT_FALSE(mBrowser->Button("ExpandButton")->isEnabled());
}

// Building

TEST_F(BrowserWindow, ShowsTheFeaturesOnceAndTheirControls)
{
    Show();
    EXPECT_EQ(mBrowser->Outline(), "Image(Width Height) General(Gain)");
    EXPECT_TRUE(mBrowser->Tree()->isExpanded(mBrowser->Cell("Image")));
    EXPECT_EQ(mGain->mScript.Count("IsWritable"), 1);
    EXPECT_EQ(mBrowser->Tree()->header()->sectionResizeMode(0), QHeaderView::Stretch);
    EXPECT_TRUE(mBrowser->Button("ExpandButton")->isEnabled());
    EXPECT_TRUE(mBrowser->Button("CollapseButton")->isEnabled());
    EXPECT_TRUE(mBrowser->Button("RefreshButton")->isEnabled());
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "");
    mBrowser->SetRefreshMode(LxGenRefreshAutomatic);
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

TEST_F(BrowserWindow, TheLastSelectedFeatureIsDescribedWhenTheDeviceIsSlow)
{
    Show();
    mGain->mScript.SetDelay(std::chrono::milliseconds(30));
    mWidth->mScript.SetDelay(std::chrono::milliseconds(30));
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Gain"));
    EXPECT_EQ(mBrowser->Description()->toPlainText(), "The Gain");
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Width"));
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Gain"));
    EXPECT_TRUE(WaitForGui([&] { return mBrowser->Description()->toPlainText().contains("Feature Name: Gain"); }));
    mBrowser->Tree()->setCurrentIndex(mBrowser->Cell("Width"));
    mBrowser->SetGenParameterArray(nullptr);  // while it is described
    EXPECT_FALSE(mWidth->HasSinks());
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

// Options

TEST_F(BrowserWindow, TheOptionsDialogShowsTheSettings)
{
    Load({{"Refresh", "ManualRefresh"}, {"View", "AlphabeticalList"}});
    Show();
    ChooseOptions(
        [](GenBrowserOptionsDlg &aDialog) {
            EXPECT_EQ(aDialog.windowTitle(), "Browser Options");
            EXPECT_EQ(Combo(aDialog, "NamesCombo")->currentText(), "Feature Names");
            EXPECT_EQ(Combo(aDialog, "NamesCombo")->itemText(1), "Display Names");
            EXPECT_EQ(Combo(aDialog, "ViewCombo")->currentText(), "Alphabetical List");
            EXPECT_EQ(Combo(aDialog, "ViewCombo")->itemText(0), "Tree");
            EXPECT_TRUE(Combo(aDialog, "ViewCombo")->isEnabled());
            EXPECT_EQ(Combo(aDialog, "RefreshCombo")->currentText(), "Manual");
            EXPECT_EQ(Combo(aDialog, "RefreshCombo")->itemText(0), "Polling");
            EXPECT_EQ(Combo(aDialog, "RefreshCombo")->itemText(1), "Automatic");
        },
        "CancelButton");
}

TEST_F(BrowserWindow, ChoosingDisplayNamesSwitchesTheViewToTreeAndDisablesIt)
{
    Load({{"Refresh", "ManualRefresh"}, {"View", "AlphabeticalList"}});
    Show();
    ChooseOptions([](GenBrowserOptionsDlg &aDialog) {
        QComboBox *view = Combo(aDialog, "ViewCombo");
        Pick(Combo(aDialog, "NamesCombo"), 1);
        EXPECT_EQ(view->currentIndex(), 0);
        EXPECT_FALSE(view->isEnabled());
        Pick(Combo(aDialog, "NamesCombo"), 0);
        EXPECT_EQ(view->currentIndex(), 0);
        EXPECT_TRUE(view->isEnabled());
        Pick(Combo(aDialog, "NamesCombo"), 1);
    });
    EXPECT_EQ(Saved(), "Visibility=Beginner Names=DisplayNames View=Tree Refresh=ManualRefresh");
    EXPECT_EQ(mBrowser->Outline(), "The Image(The Width The Height) The General(The Gain)");
}

TEST_F(BrowserWindow, AcceptedOptionsThatDifferAreAppliedAndOthersAreNot)
{
    Show();
    const QPointer<GenBrowserTreeModel> before = mBrowser->Model();
    ChooseOptions([](GenBrowserOptionsDlg &) {});
    EXPECT_FALSE(before.isNull());
    ChooseOptions([](GenBrowserOptionsDlg &aDialog) { Pick(Combo(aDialog, "ViewCombo"), 1); }, "CancelButton");
    EXPECT_FALSE(before.isNull());
    ChooseOptions([](GenBrowserOptionsDlg &aDialog) { Pick(Combo(aDialog, "ViewCombo"), 1); });
    EXPECT_TRUE(before.isNull());
    EXPECT_EQ(mBrowser->Outline(), "Gain Height Width");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
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
