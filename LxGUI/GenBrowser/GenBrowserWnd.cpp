#include "LxGUI/GenBrowser/GenBrowserWnd.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

#include "LxGUI/Frame/BusyCursor.h"
#include "LxGUI/Frame/EnterKey.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/GenBrowser/FlowLayout.h"
#include "LxGUI/GenBrowser/GenBrowserItemDelegate.h"
#include "LxGUI/GenBrowser/GenBrowserPersistence.h"
#include "LxGUI/GenBrowser/GenBrowserThread.h"
#include "LxGUI/GenBrowser/GenBrowserTreeItem.h"
#include "LxGUI/GenBrowser/GenBrowserTreeModel.h"

namespace
{

constexpr int TreeHeight = 200;
constexpr int DescriptionHeight = 80;
constexpr int LeastDescriptionHeight = 70;
constexpr int NameColumnWidth = 250;
constexpr int ComboWidth = 100;
constexpr int ArrowSize = 9;
// Milliseconds for which a description is waited for before only the name is shown: too short to be noticed.
constexpr int Patience = 15;

bool IsLevel(LxGenVisibility aVisibility)
{
    return aVisibility <= LxGenVisibilityInvisible;
}

QToolButton *MakeButton(QWidget *aParent, const char *aName, const QString &aText, const QString &aAccessibleName)
{
    // No push buttons: in a dialog one of them would be clicked by Enter in the search bar.
    auto *button = new QToolButton(aParent);
    button->setObjectName(QLatin1String(aName));
    button->setText(aText);
    button->setAccessibleName(aAccessibleName);
    button->setToolTip(aAccessibleName);
    button->setFocusPolicy(Qt::StrongFocus);
    PressOnEnter(button);
    return button;
}

}  // namespace

GenBrowserWnd::GenBrowserWnd(LxGenBrowserWnd *aPublic) : mPublic(aPublic) {}

GenBrowserWnd::~GenBrowserWnd()
{
    mIsDestroyed = true;
    SpareTree();
    while (!TearDown()) {
    }
}

bool GenBrowserWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    return QObject::eventFilter(aObject, aEvent);
}

// Layout

void GenBrowserWnd::CreateLayout()
{
    mIsClosed = false;
    SpareTree();
    // The thread and the model still use the views that go now. What a nested call built is ended too.
    const QPointer<GenBrowserWnd> self(this);
    while (!TearDown()) {
        if (!self) {
            return;
        }
    }
    mIsContentDying = false;
    QWidget *parent = BeginLayout();
    auto *main = new QVBoxLayout(parent);
    main->addLayout(CreateButtonRow(parent));
    QWidget *const views = CreateViews(parent);
    main->addLayout(CreateSearchRow(parent));
    main->addWidget(views, 1);
    QWidget::setTabOrder(mSearchBar, parent->findChild<QWidget *>(QStringLiteral("PreviousMatchButton")));
    QWidget::setTabOrder(parent->findChild<QWidget *>(QStringLiteral("NextMatchButton")), mTree);
    QWidget::setTabOrder(mTree, mDescription);
    connect(parent, &QObject::destroyed, this, [this, tree = mTree.data()] {
        if (mTree == tree) {  // not when another content has taken its place
            mIsContentDying = true;
            SpareTree();
            TearDown();
        }
    });
    UpdateControls();
    if (mParameters) {
        Rebuild();  // A host that only takes the widget never opens the window.
    }
}

QLayout *GenBrowserWnd::CreateButtonRow(QWidget *aParent)
{
    auto *row = new FlowLayout;
    QToolButton *options =
        MakeButton(aParent, "OptionsButton", tr("Options"), tr("Choose names, view and refresh mode"));
    mExpandButton = MakeButton(aParent, "ExpandButton", tr("Expand"), tr("Open all categories"));
    mCollapseButton = MakeButton(aParent, "CollapseButton", tr("Collapse"), tr("Close all categories"));
    mRefreshButton = MakeButton(aParent, "RefreshButton", tr("Refresh"), tr("Read all features"));
    for (QToolButton *button : {options, mExpandButton.data(), mCollapseButton.data(), mRefreshButton.data()}) {
        row->addWidget(button);
    }
    auto *visibility = new QWidget(aParent);
    auto *visibilityRow = new QHBoxLayout(visibility);
    visibilityRow->setContentsMargins(0, 0, 0, 0);
    auto *label = new QLabel(tr("Visibility"), visibility);
    visibilityRow->addWidget(label);
    mVisibilityCombo = new QComboBox(visibility);
    mVisibilityCombo->setObjectName(QStringLiteral("VisibilityCombo"));
    mVisibilityCombo->setAccessibleName(tr("Visibility"));
    mVisibilityCombo->addItems({tr("Beginner"), tr("Expert"), tr("Guru")});
    mVisibilityCombo->setMinimumWidth(std::max(ComboWidth, mVisibilityCombo->sizeHint().width()));
    label->setBuddy(mVisibilityCombo);
    visibilityRow->addWidget(mVisibilityCombo);
    row->addWidget(visibility);

    connect(options, SIGNAL(clicked()), this, SLOT(OnOptionsButtonClick()));
    connect(mExpandButton, SIGNAL(clicked()), this, SLOT(OnExpandButtonClick()));
    connect(mCollapseButton, SIGNAL(clicked()), this, SLOT(OnCollapseButtonClick()));
    connect(mRefreshButton, SIGNAL(clicked()), this, SLOT(OnRefreshButtonClick()));
    connect(mVisibilityCombo, SIGNAL(activated(int)), this, SLOT(OnVisibilityComboChange(int)));
    return row;
}

QLayout *GenBrowserWnd::CreateSearchRow(QWidget *aParent)
{
    auto *row = new QHBoxLayout;
    auto *label = new QLabel(tr("Search"), aParent);
    mSearchBar = new GenBrowserSearchBar(mTree, aParent);
    mSearchBar->setObjectName(QStringLiteral("SearchBar"));
    mSearchBar->setAccessibleName(tr("Search features by name"));
    mSearchBar->setClearButtonEnabled(true);
    label->setBuddy(mSearchBar);
    QToolButton *previous = MakeButton(aParent, "PreviousMatchButton", QString(), tr("Previous match"));
    QToolButton *next = MakeButton(aParent, "NextMatchButton", QString(), tr("Next match"));
    previous->setArrowType(Qt::LeftArrow);
    next->setArrowType(Qt::RightArrow);
    auto *arrows = new QWidget(aParent);
    arrows->setLayoutDirection(Qt::LeftToRight);  // as the arrows point
    auto *arrowRow = new QHBoxLayout(arrows);
    arrowRow->setContentsMargins(0, 0, 0, 0);
    for (QToolButton *button : {previous, next}) {
        button->setIconSize(QSize(ArrowSize, ArrowSize));
        arrowRow->addWidget(button);
    }
    row->addWidget(label);
    row->addWidget(mSearchBar, 1);
    row->addWidget(arrows);
    connect(previous, SIGNAL(clicked()), mSearchBar, SLOT(MoveToPreviousOccurence()));
    connect(next, SIGNAL(clicked()), mSearchBar, SLOT(MoveToNextOccurence()));
    return row;
}

QWidget *GenBrowserWnd::CreateViews(QWidget *aParent)
{
    auto *splitter = new QSplitter(Qt::Vertical, aParent);
    mTree = new GenBrowserTree(splitter);
    mTree->setObjectName(QStringLiteral("FeatureTree"));
    mTree->setAccessibleName(tr("Features"));
    mDescription = new QTextEdit(splitter);
    mDescription->setObjectName(QStringLiteral("Description"));
    mDescription->setAccessibleName(tr("Description of the selected feature"));
    mDescription->setReadOnly(true);
    mDescription->setTabChangesFocus(true);
    mDescription->setMinimumHeight(LeastDescriptionHeight);
    mDescription->setAlignment(Qt::AlignTop);
    mDescription->setLineWrapMode(QTextEdit::WidgetWidth);
    QPalette palette = mDescription->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        palette.setColor(group, QPalette::Base, palette.color(group, QPalette::Window));
    }
    mDescription->setPalette(palette);
    mDescription->setText(tr("This is where the description stuff goes."));
    splitter->setSizes({TreeHeight, DescriptionHeight});
    connect(mTree, SIGNAL(OnSelectionChanged(const GenBrowserTreeItem *)), this,
            SLOT(OnSelectionChanged(const GenBrowserTreeItem *)));
    return splitter;
}

void GenBrowserWnd::UpdateControls()
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return;
    }
    if (mVisibilityCombo) {
        mVisibilityCombo->setCurrentIndex(static_cast<int>(mVisibility));
    }
    for (QToolButton *button : {mExpandButton.data(), mCollapseButton.data()}) {
        if (button) {
            button->setEnabled(mOptions.mTreeView);
        }
    }
    if (mRefreshButton) {
        mRefreshButton->setEnabled(mOptions.mRefresh == LxGenRefreshManual);
    }
}

void GenBrowserWnd::OnOpen()
{
    mIsClosed = false;
    if (mParameters && !mModel) {
        Rebuild();
    }
}

void GenBrowserWnd::OnClose()
{
    mIsClosed = true;
    SpareTree();
    TearDown();
}

// Building and ending

void GenBrowserWnd::Rebuild()
{
    if (!TearDown() || mIsDestroyed || mIsClosed || mIsContentDying || !mParameters || !mTree) {
        return;
    }
    if (!OwnedApplication::CanMakeWidgets()) {
        return;  // the application has gone before the window
    }
    const BusyCursor busy;
    Build();
}

void GenBrowserWnd::Build()
{
    const quint64 generation = mGeneration;
    const QPointer<GenBrowserWnd> self(this);
    mTree->setSortingEnabled(!mOptions.mTreeView);
    if (!mOptions.mTreeView) {
        mTree->sortByColumn(GenBrowserTreeModel::NameColumn, Qt::AscendingOrder);
    }
    auto model = std::make_unique<GenBrowserTreeModel>(this, mParameters, mOptions.mTreeView, mOptions.mDisplayNames,
                                                       mVisibility);
    if (!self || generation != mGeneration || !mTree) {
        return;  // The host used the window when it was asked which features to show.
    }
    mModel = model.release();
    mDelegate = new GenBrowserItemDelegate(this, mModel);
    mTree->setItemDelegate(mDelegate);
    mTree->ReplaceModel(mModel).reset();
    mTree->setColumnWidth(GenBrowserTreeModel::NameColumn, NameColumnWidth);
    mTree->header()->setSectionResizeMode(QHeaderView::Stretch);
    mTree->expandAll();
    if (mOptions.mRefresh != LxGenRefreshManual) {
        mThread = new GenBrowserThread(mTree, mModel, mParameters, mOptions.mRefresh);
        connect(mThread, &GenBrowserThread::Described, this, [this] { ShowDescription(); });
        mThread->start();
    }
    if (mDescription) {
        mDescription->clear();
    }
    UpdateControls();
}

bool GenBrowserWnd::IsStillBusy() const
{
    return (mThread && !mThread->wait(QDeadlineTimer(0))) || (mModel && mModel->HasRunningCalls());
}

void GenBrowserWnd::AnswerThread()
{
    if (OwnedApplication::CanMakeWidgets() && !mIsContentDying && Widget()) {
        QCoreApplication::processEvents();
    }
    else if (mTree) {
        // Taking away the questions of the thread answers them.
        QCoreApplication::removePostedEvents(mTree, QEvent::MetaCall);
    }
}

bool GenBrowserWnd::TearDown()
{
    const QPointer<GenBrowserWnd> self(this);
    const quint64 generation = ++mGeneration;
    ++mTearDowns;
    if (mModel) {
        mModel->Stop();
    }
    if (mThread) {
        mThread->RequestStop();
    }
    bool answeredLast = !mModel;
    while (IsStillBusy() || !answeredLast) {
        answeredLast = !IsStillBusy();
        AnswerThread();
        if (!self) {
            return false;
        }
        if (generation != mGeneration) {
            --mTearDowns;
            return false;
        }
    }
    if (mThread) {
        mThread->wait();
        delete std::exchange(mThread, nullptr);
    }
    DeleteModel();
    --mTearDowns;
    return true;
}

void GenBrowserWnd::DeleteModel()
{
    if (mSearchBar) {
        mSearchBar->ForgetMatches();
    }
    if (mTree && mModel && !OwnedApplication::CanMakeWidgets()) {
        // A view without an application does not even stand another model: it keeps this one, empty, for good.
        const QSignalBlocker unheard(mModel);
        mModel->Clear();
        std::exchange(mModel, nullptr)->setParent(mTree);
        std::exchange(mDelegate, nullptr)->setParent(mTree);
        return;
    }
    std::unique_ptr<QItemSelectionModel> selection;
    if (mTree && mModel) {
        selection = mTree->ReplaceModel(nullptr);  // closes the editors while their delegate and model live
    }
    GenBrowserTreeModel *const model = std::exchange(mModel, nullptr);
    GenBrowserItemDelegate *const delegate = std::exchange(mDelegate, nullptr);
    if (delegate && delegate->IsWriting()) {
        model->Clear();
        if (mTree) {
            mTree->setItemDelegate(nullptr);
        }
        delegate->setParent(nullptr);
        delegate->DeleteWhenWritten(selection.release());
        delegate->DeleteWhenWritten(model);
        delegate->DeleteWhenWritten(delegate);
        return;
    }
    selection.reset();
    delete model;
    delete delegate;
}

void GenBrowserWnd::SpareTree()
{
    if (mDelegate && mDelegate->IsWriting() && mTree) {
        mTree->setParent(nullptr);
        mDelegate->DeleteWhenWritten(mTree);
    }
}

// Operations

void GenBrowserWnd::SetGenParameterArray(LxGenParameterArray *aParameters)
{
    mParameters = aParameters;
    mWatch.Set(this, "an array of features", {aParameters}, [this] { SetGenParameterArray(nullptr); });
    Rebuild();
}

void GenBrowserWnd::SetVisibility(LxGenVisibility aVisibility)
{
    if (IsLevel(aVisibility)) {
        mVisibility = aVisibility;
        UpdateControls();
    }
}

void GenBrowserWnd::SetRefreshMode(LxGenRefresh aMode)
{
    if (aMode != mOptions.mRefresh) {
        mOptions.mRefresh = aMode;
        UpdateControls();
        Rebuild();
    }
}

void GenBrowserWnd::Refresh()
{
    if (mParameters && mModel && !mModel->IsStopping() && OwnedApplication::CanMakeWidgets()) {
        mModel->RefreshAll();
    }
}

void GenBrowserWnd::Save(LxPropertyList &aList) const
{
    SaveBrowserOptions(mVisibility, mOptions, aList);
}

void GenBrowserWnd::Load(LxPropertyList &aList)
{
    LoadBrowserOptions(aList, mVisibility, mOptions);
    UpdateControls();
    if (Widget() && Widget()->isVisible()) {
        Rebuild();
    }
}

bool GenBrowserWnd::IsParameterDisplayed(LxGenParameter *aParameter)
{
    return !mPublic || mPublic->IsParameterDisplayed(aParameter);
}

// Slots. While a tear-down processes events they do nothing: what they would work on is about to go.

void GenBrowserWnd::OnOptionsButtonClick()
{
    if (mTearDowns > 0) {
        return;
    }
    const QPointer<GenBrowserWnd> self(this);
    const QPointer<GenBrowserOptionsDlg> dialog = new GenBrowserOptionsDlg(mOptions, Content());
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!self || !dialog) {
        return;
    }
    const GenBrowserOptions options = dialog->Options();
    delete dialog;
    if (accepted && options != mOptions) {
        const BusyCursor busy;
        mOptions = options;
        UpdateControls();
        Rebuild();
    }
}

void GenBrowserWnd::OnExpandButtonClick()
{
    if (mTearDowns == 0 && mTree) {
        const BusyCursor busy;
        mTree->expandAll();
    }
}

void GenBrowserWnd::OnCollapseButtonClick()
{
    if (mTearDowns == 0 && mTree) {
        const BusyCursor busy;
        mTree->collapseAll();
    }
}

void GenBrowserWnd::OnRefreshButtonClick()
{
    if (mTearDowns == 0 && mModel) {
        const BusyCursor busy;
        mModel->RefreshAll();
    }
}

void GenBrowserWnd::OnVisibilityComboChange(int aIndex)
{
    if (mTearDowns > 0) {
        return;
    }
    const LxGenVisibility visibility =
        aIndex >= 0 && aIndex <= 3 ? static_cast<LxGenVisibility>(aIndex) : LxGenVisibilityUndefined;
    if (visibility != mVisibility) {
        const BusyCursor busy;
        mVisibility = visibility;
        Rebuild();
    }
}

// The device may be asked for the limits of a feature, so the thread makes the description where there is one.
void GenBrowserWnd::OnSelectionChanged(const GenBrowserTreeItem *aItem)
{
    if (mTearDowns > 0 || !mDescription) {
        return;
    }
    if (!mThread) {
        const BusyCursor busy;
        mDescription->setHtml(aItem->Description());
        return;
    }
    const bool mayBeQuick = mThread->Describe(aItem);
    const QDeadlineTimer patience(mayBeQuick ? Patience : 0);
    while (!ShowDescription(1)) {
        if (patience.hasExpired()) {
            mDescription->setHtml(QLatin1String("<h3>") + aItem->DisplayName() + QLatin1String("</h3>"));
            return;
        }
        QCoreApplication::sendPostedEvents(mTree, QEvent::MetaCall);  // what the thread may be asking
    }
}

bool GenBrowserWnd::ShowDescription(int aMilliseconds)
{
    const std::optional<QString> text = mThread ? mThread->TakeDescription(aMilliseconds) : std::nullopt;
    if (text && mDescription) {
        mDescription->setHtml(*text);
    }
    return text.has_value();
}
