#pragma once

// A browser on the node map of a device: simulated, emulated, or somebody else's.

#include <QtTest/QAbstractItemModelTester>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>

#include "BrowserTest.h"
#include "LxGUI/GenBrowser/GenBrowserTreeWalk.h"
#include "LxGUI/GenBrowser/QSpinBox64.h"
#include "LxPersistence/LxPropertyList.h"

class DeviceBrowser : public TestBrowser
{
public:
    /// Shows a device as "Tree" or "AlphabeticalList", with all its features.
    void Show(LxGenParameterArray *aParameters, LxGenRefresh aMode, const char *aView = "Tree")
    {
        LxPropertyList list;
        list.Add(LxProperty("Visibility", "Invisible"));
        list.Add(LxProperty("View", aView));
        Load(list);
        SetRefreshMode(aMode);
        SetGenParameterArray(aParameters);
        SetPosition(-1, -1, 500, 500);
        ShowModeless();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(GetQWidget()));
        mTester =
            std::make_unique<QAbstractItemModelTester>(Model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    /// The names of the features that are shown, sorted.
    QStringList ShownFeatures()
    {
        QStringList names;
        GenBrowserTreeWalk walk(*Model());
        for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
            if (const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(index); item->Parameter()) {
                names.append(item->Name());
            }
        }
        names.sort();
        return names;
    }
    /// The errors that are shown, as "Name: error".
    QStringList Errors()
    {
        QStringList errors;
        GenBrowserTreeWalk walk(*Model());
        for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
            if (const GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(index); !item->ErrorMsg().isEmpty()) {
                errors.append(item->Name() + ": " + item->ErrorMsg());
            }
        }
        return errors;
    }

    /// Opens the editor of a feature, which is brought on screen.
    template <class Type>
    Type *Open(const char *aName)
    {
        Tree()->scrollTo(Cell(aName));
        auto *editor = qobject_cast<Type *>(OpenEditor(aName));
        EXPECT_NE(editor, nullptr) << aName;
        return editor;
    }
    /// Types into the editor of a feature and ends it with Enter.
    template <class Type>
    void Enter(const char *aName, const QString &aText)
    {
        Type *const editor = Open<Type>(aName);
        ASSERT_NE(editor, nullptr);
        QTest::keySequence(editor, QKeySequence::SelectAll);
        QTest::keyClicks(editor, aText);
        End(editor);
    }
    /// Chooses another entry of an enumeration or a boolean than the current one; returns its text.
    QString ChooseOther(const char *aName)
    {
        auto *const box = Open<QComboBox>(aName);
        if (!box || box->count() < 2) {
            ADD_FAILURE() << aName << " offers no other choice";
            return QString();
        }
        box->setCurrentIndex(box->currentIndex() == 0 ? 1 : 0);
        const QString chosen = box->currentText();
        End(box);
        return chosen;
    }
    void Press(const char *aName)
    {
        auto *const button = Open<QPushButton>(aName);
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
        End(button);
    }

    /// Searches, scrolls from end to end and closes, and has everything painted on the way.
    void Browse()
    {
        mTester.reset();  // which walks the whole model at every change
        for (const char *text : {"s", "si", "gain", "width", "e", ""}) {
            SearchBar()->setText(QString::fromLatin1(text));
            EXPECT_FALSE(Grab(GetQWidget()).isNull());
            QTest::keyClick(SearchBar(), Qt::Key_Return);
            EXPECT_FALSE(Grab(GetQWidget()).isNull());
        }
        QScrollBar *const bar = Tree()->verticalScrollBar();
        for (int step = 0; step <= 10; ++step) {
            bar->setValue(bar->maximum() * step / 10);
            EXPECT_FALSE(Grab(GetQWidget()).isNull());
        }
        Close();
    }

private:
    static void End(QWidget *aEditor)
    {
        const QPointer<QWidget> editor(aEditor);
        QTest::keyClick(aEditor, Qt::Key_Return);
        EXPECT_TRUE(WaitForGui([&] { return !editor || !editor->isVisible(); }));
    }

    std::unique_ptr<QAbstractItemModelTester> mTester;
};

/// The names of the features of an array that a browser has to show when it shows everything, sorted.
inline QStringList ExpectedFeatures(const LxGenParameterArray &aParameters)
{
    QStringList names;
    for (uint32_t i = 0; i < aParameters.GetCount(); ++i) {
        LxGenParameter *const parameter = aParameters[i];
        LxString name;
        LxString path;
        EXPECT_TRUE(parameter->GetName(name).IsOK() && parameter->GetCategory(path).IsOK());
        const std::string category = path.GetString().substr(path.GetString().rfind('\\') + 1);
        int64_t entries = 1;
        if (const auto *enumeration = dynamic_cast<LxGenEnum *>(parameter)) {
            enumeration->GetEntriesCount(entries);
        }
        if (parameter->IsImplemented() && aParameters.GetCategory(LxString(category)) && entries > 0) {
            names.append(QString(name.GetAscii()));
        }
    }
    names.sort();
    return names;
}
