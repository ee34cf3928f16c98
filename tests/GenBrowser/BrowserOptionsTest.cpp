// The settings of the browser: set, saved, loaded, chosen in the options dialog.

#include "BrowserWindowTest.h"

namespace
{

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

TEST_F(BrowserWindow, TheOptionsDialogKeepsAListOfDisplayNamesThatWasLoaded)
{
    Load({{"Refresh", "ManualRefresh"}, {"View", "AlphabeticalList"}});
    Load({{"Names", "DisplayNames"}});
    Show();
    ChooseOptions([](GenBrowserOptionsDlg &aDialog) {
        EXPECT_EQ(Combo(aDialog, "ViewCombo")->currentText(), "Alphabetical List");
        EXPECT_FALSE(Combo(aDialog, "ViewCombo")->isEnabled());
    });
    EXPECT_EQ(mBrowser->Outline(), "The Gain The Height The Width");
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

}  // namespace
