#pragma once

#include <gtest/gtest.h>

#include <QtCore/QPointer>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QToolButton>
#include <functional>
#include <memory>

#include "FakeFeatures.h"
#include "GuiTest.h"
#include "LxGUI/GenBrowser/GenBrowserSearchBar.h"
#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"
#include "LxGUI/LxGenBrowserWnd.h"

/// A browser that a test can look into.
class TestBrowser : public LxGenBrowserWnd
{
public:
    ~TestBrowser() override
    {
        // A plain widget belongs to whom has got it.
        if (mPlainWidget && !mPlainWidget->parent()) {
            delete mPlainWidget;
        }
    }

    bool IsParameterDisplayed(LxGenParameter *aParameter) override { return !mFilter || mFilter(aParameter); }

    template <class Type>
    Type *Find(const char *aName)
    {
        QWidget *const widget = GetQWidget();
        if (!qobject_cast<QDialog *>(widget)) {
            mPlainWidget = widget;
        }
        return widget->findChild<Type *>(aName);
    }
    GenBrowserTree *Tree() { return Find<GenBrowserTree>("FeatureTree"); }
    GenBrowserTreeModel *Model() { return qobject_cast<GenBrowserTreeModel *>(Tree()->model()); }
    GenBrowserSearchBar *SearchBar() { return Find<GenBrowserSearchBar>("SearchBar"); }
    QToolButton *Button(const char *aName) { return Find<QToolButton>(aName); }
    QComboBox *VisibilityCombo() { return Find<QComboBox>("VisibilityCombo"); }
    QTextEdit *Description() { return Find<QTextEdit>("Description"); }

    /// The cell of a feature or category; invalid when it is not shown.
    QModelIndex Cell(const QString &aName, int aColumn = GenBrowserTreeModel::NameColumn)
    {
        if (!Model()) {
            return QModelIndex();
        }
        const QModelIndexList found =
            Model()->match(Model()->index(0, 0), Qt::DisplayRole, aName, 1,
                           Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive | Qt::MatchWrap);
        return found.isEmpty() ? QModelIndex() : found.first().siblingAtColumn(aColumn);
    }
    QString Value(const QString &aName) { return Cell(aName, GenBrowserTreeModel::ValueColumn).data().toString(); }
    QString Current() { return Tree()->currentIndex().siblingAtColumn(0).data().toString(); }

    /// The tree as one text: "Category(Feature Feature)".
    QString Outline(const QModelIndex &aParent = QModelIndex())
    {
        QStringList rows;
        for (int row = 0; Model() && row < Model()->rowCount(aParent); ++row) {
            const QModelIndex index = Model()->index(row, 0, aParent);
            rows << index.data().toString() + (Model()->rowCount(index) > 0 ? '(' + Outline(index) + ')' : QString());
        }
        return rows.join(' ');
    }

    void ClickButton(const char *aName) { QTest::mouseClick(Button(aName), Qt::LeftButton); }

    /// Opens the editor of a value by a double click.
    QWidget *OpenEditor(const QString &aName)
    {
        const QPoint place = Tree()->visualRect(Cell(aName, GenBrowserTreeModel::ValueColumn)).center();
        QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        return Editor();
    }
    QWidget *Editor()
    {
        for (QWidget *editor : Tree()->viewport()->findChildren<QWidget *>("ValueEditor")) {
            if (editor->isVisible()) {
                return editor;
            }
        }
        return nullptr;
    }

    std::function<bool(LxGenParameter *)> mFilter;

private:
    QPointer<QWidget> mPlainWidget;
};
