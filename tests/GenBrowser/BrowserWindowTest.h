#pragma once

#include <QtWidgets/QPushButton>

#include "BrowserTest.h"
#include "LxGUI/GenBrowser/GenBrowserOptionsDlg.h"
#include "LxPersistence/LxPropertyList.h"

/// A browser of four features in two categories, one of them for gurus.
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
