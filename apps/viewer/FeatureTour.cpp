#include "FeatureTour.h"

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeView>
#include <cstdio>

#include "FeatureDock.h"
#include "HeadlessTour.h"
#include "LxPersistence/LxPropertyList.h"
#include "ViewerWindow.h"

namespace
{

constexpr int Gap = 6;  // between the editors in their picture

/// A part of what a widget shows, in the pixels of its screen.
QPixmap CutOut(const QPixmap &aPicture, const QRect &aPlace)
{
    const qreal scale = aPicture.devicePixelRatio();
    const QRectF place(QPointF(aPlace.topLeft()) * scale, QSizeF(aPlace.size()) * scale);
    QPixmap part = aPicture.copy(place.toAlignedRect());
    part.setDevicePixelRatio(1);
    return part;
}

}  // namespace

FeatureTour::FeatureTour(HeadlessTour &aTour, ViewerWindow &aWindow) : mTour(aTour), mWindow(aWindow) {}

bool FeatureTour::Run()
{
    mWindow.ShowFeatureWindow();
    mBrowser = mWindow.FeatureWindow().Window().GetQWidget();
    const bool done =
        mTour.WaitUntil(QStringLiteral("the features"), [&] { return Find("DeviceControl").isValid(); }) &&
        ShowTree() && ShowSearch() && ShowOptions() && ShowEditors() && ShowList() && ShowError();
    SetOptions("Beginner", "Tree");
    mWindow.FeatureWindow().Close();
    return done;
}

QTreeView *FeatureTour::Tree() const
{
    return mWindow.FeatureWindow().Tree();
}

QModelIndex FeatureTour::Find(const char *aName) const
{
    const QAbstractItemModel *model = Tree()->model();
    const QModelIndexList found =
        model ? model->match(model->index(0, 0), Qt::DisplayRole, QLatin1String(aName), 1,
                             Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive | Qt::MatchWrap)
              : QModelIndexList();
    return found.isEmpty() ? QModelIndex() : found.first();
}

void FeatureTour::SetOptions(const char *aVisibility, const char *aView)
{
    LxPropertyList list;
    list.Add(LxProperty("Visibility", aVisibility));
    list.Add(LxProperty("View", aView));
    mWindow.FeatureWindow().Window().Load(list);
}

bool FeatureTour::ShowTree()
{
    Tree()->setCurrentIndex(Find("Width"));
    return mTour.Shoot(mBrowser, QStringLiteral("features"));
}

bool FeatureTour::ShowSearch()
{
    auto *search = mBrowser->findChild<QLineEdit *>(QStringLiteral("SearchBar"));
    search->setFocus();
    search->setText(QStringLiteral("gain"));
    const bool done = mTour.Shoot(mBrowser, QStringLiteral("features-search"));
    search->clear();
    return done;
}

bool FeatureTour::ShowOptions()
{
    // the dialog is modal: this runs inside its loop
    bool done = false;
    QTimer::singleShot(0, mBrowser, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        done = dialog && mTour.Shoot(dialog, QStringLiteral("features-options"));
        if (dialog) {
            dialog->reject();
        }
    });
    mBrowser->findChild<QAbstractButton *>(QStringLiteral("OptionsButton"))->click();
    return done;
}

QPixmap FeatureTour::PictureOfEditor(const char *aName)
{
    const QModelIndex index = Find(aName).siblingAtColumn(1);
    QTreeView *const tree = Tree();
    tree->setCurrentIndex(index);
    tree->scrollTo(index, QAbstractItemView::PositionAtCenter);
    tree->edit(index);
    auto *editor = tree->viewport()->findChild<QWidget *>(QStringLiteral("ValueEditor"));
    if (!editor) {
        std::fprintf(stderr, "the tour found no editor for %s\n", aName);
        return QPixmap();
    }
    QRect place(tree->viewport()->mapTo(tree, tree->visualRect(index).topLeft()), tree->visualRect(index).size());
    place.setLeft(0);
    place.setRight(tree->width() - 1);
    auto *const choices = qobject_cast<QComboBox *>(editor);
    if (choices) {
        choices->showPopup();
        QApplication::processEvents();
        const QRect popup = choices->view()->window()->geometry();
        place |= QRect(tree->mapFromGlobal(popup.topLeft()), popup.size());
    }
    const QPixmap picture = CutOut(HeadlessTour::Picture(tree), place.adjusted(0, -Gap, 0, Gap));
    if (choices) {
        choices->hidePopup();
    }
    tree->reset();  // ends the editor without writing
    tree->expandAll();
    QCoreApplication::sendPostedEvents(editor, QEvent::DeferredDelete);
    return picture;
}

bool FeatureTour::ShowEditors()
{
    SetOptions("Guru", "Tree");
    QList<QPixmap> pictures;
    QSize size;
    for (const char *name : {"SimBoolean", "SimInteger", "SimFloat", "SimString", "SimIntegerMAC",
                             "GevPersistentIPAddress", "TimestampLatch", "SimEnumeration"})
    {
        if (!Find(name).isValid()) {
            std::printf("the camera has no %s to show an editor for\n", name);
            continue;
        }
        const QPixmap picture = PictureOfEditor(name);
        if (picture.isNull()) {
            return false;
        }
        pictures << picture;
        size = QSize(picture.width(), size.height() + picture.height() + Gap);
    }
    if (pictures.isEmpty()) {
        return true;
    }
    QPixmap all(size);
    all.fill(Tree()->palette().color(QPalette::Window));
    QPainter painter(&all);
    int top = 0;
    for (const QPixmap &picture : pictures) {
        painter.drawPixmap(0, top, picture);
        top += picture.height() + Gap;
    }
    painter.end();
    return mTour.Save(all, QStringLiteral("features-editors"));
}

bool FeatureTour::ShowList()
{
    SetOptions("Expert", "AlphabeticalList");
    return mTour.Shoot(mBrowser, QStringLiteral("features-list"));
}

bool FeatureTour::ShowError()
{
    SetOptions("Guru", "Tree");
    const QModelIndex failing = Find("SimFailing");
    if (!failing.isValid()) {
        std::printf("the camera has no feature that fails\n");
        return true;
    }
    Tree()->scrollTo(failing, QAbstractItemView::PositionAtCenter);
    return mTour.WaitUntil(QStringLiteral("the failing feature"), [&] {
        return Find("SimFailing").data(Qt::ToolTipRole).toString().contains(QLatin1Char(':'));
    }) && mTour.Shoot(mBrowser, QStringLiteral("features-error"));
}
