#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QTextEdit>
#include <memory>

#include "LxGUI/Frame/ObjectWatch.h"
#include "LxGUI/Frame/Wnd.h"
#include "LxGUI/GenBrowser/GenBrowserOptionsDlg.h"
#include "LxGUI/GenBrowser/GenBrowserSearchBar.h"
#include "LxGUI/GenBrowser/GenBrowserTree.h"
#include "LxGUI/LxGenBrowserWnd.h"

class GenBrowserItemDelegate;
class GenBrowserThread;
class GenBrowserTreeModel;
class QToolButton;

/// The window behind LxGenBrowserWnd.
///
/// With an array and a layout it has a model, a delegate and, unless the mode is manual, a refresh thread. They are
/// made by Rebuild() and ended by TearDown(). TearDown() processes events, so anything may happen within it, even
/// another rebuild, the end of the window, or both; what comes last counts.
class GenBrowserWnd : public Wnd
{
    Q_OBJECT

public:
    /// @param aPublic asked which features to show; may be null, then all.
    explicit GenBrowserWnd(LxGenBrowserWnd *aPublic);
    ~GenBrowserWnd() override;

    void SetGenParameterArray(LxGenParameterArray *aParameters);
    void SetVisibility(LxGenVisibility aVisibility);
    LxGenVisibility GetVisibility() const { return mVisibility; }
    void SetRefreshMode(LxGenRefresh aMode);
    LxGenRefresh GetRefreshMode() const { return mOptions.mRefresh; }
    void Refresh();
    void Save(LxPropertyList &aList) const;
    void Load(LxPropertyList &aList);
    bool HasChanged() const { return mHasChanged; }
    void ResetChanged() { mHasChanged = false; }

    bool IsParameterDisplayed(LxGenParameter *aParameter);
    HWND NativeParent() const { return ParentHandle(); }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

public slots:
    void OnOptionsButtonClick();
    void OnExpandButtonClick();
    void OnCollapseButtonClick();
    void OnRefreshButtonClick();
    void OnVisibilityComboChange(int aIndex);
    void OnSelectionChanged(const GenBrowserTreeItem *aItem);

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;

private:
    QLayout *CreateButtonRow(QWidget *aParent);
    QLayout *CreateSearchRow(QWidget *aParent);
    QWidget *CreateViews(QWidget *aParent);

    void Rebuild();
    void Build();
    void UpdateControls();
    /// Ends the thread, the model and the delegate.
    /// @return false when, meanwhile, the window was destroyed or something else tore it down or rebuilt it.
    bool TearDown();
    bool IsStillBusy() const;
    /// Shows what the thread has to say of the selected feature.
    /// @return false while it has nothing.
    bool ShowDescription(int aMilliseconds = 0);
    /// Lets the refresh thread get its answers, or makes it go on without.
    void AnswerThread();
    void DeleteModel();
    /// Keeps the tree alive for a view function of it that is on the stack: what carries it is about to go.
    void SpareTree();

    LxGenBrowserWnd *const mPublic;
    LxGenParameterArray *mParameters = nullptr;
    ObjectWatch mWatch;  // of the above
    LxGenVisibility mVisibility = LxGenVisibilityBeginner;
    GenBrowserOptions mOptions;
    bool mHasChanged = false;

    GenBrowserTreeModel *mModel = nullptr;
    GenBrowserItemDelegate *mDelegate = nullptr;
    GenBrowserThread *mThread = nullptr;
    bool mIsClosed = false;        // by Close(); nothing is built until the window is shown again
    bool mIsDestroyed = false;     // nothing is built any more
    bool mIsContentDying = false;  // its widgets can get no events
    int mTearDowns = 0;            // calls of TearDown() that run
    quint64 mGeneration = 0;       // grows with every tear-down

    QPointer<GenBrowserTree> mTree;
    QPointer<GenBrowserSearchBar> mSearchBar;
    QPointer<QTextEdit> mDescription;
    QPointer<QComboBox> mVisibilityCombo;
    QPointer<QToolButton> mExpandButton;
    QPointer<QToolButton> mCollapseButton;
    QPointer<QToolButton> mRefreshButton;
};
