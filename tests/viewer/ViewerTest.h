#pragma once

#include <gtest/gtest.h>

#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeView>
#include <memory>

#include "FeatureDock.h"
#include "GuiTest.h"
#include "LxSimulation/LxSimulation.h"
#include "ViewerWindow.h"

/// Writes a file's name into a file dialog, as QFileDialog::selectFile() does unless the field has got the focus.
inline void EnterFile(QWidget *aDialog, const QString &aFile)
{
    auto *field = aDialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(field, nullptr);
    field->setText(aFile);
}

/// A viewer whose options are in a folder of their own.
class ViewerBase : public testing::Test
{
protected:
    ViewerBase()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, mFolder.path());
        QCursor::setPos(0, 0);  // a window that opens below the mouse takes it for a move
    }
    /// Ends the viewer, if there is one, and starts it anew.
    void Restart()
    {
        mWindow.reset();
        mWindow = std::make_unique<ViewerWindow>(mFolder.filePath("viewer.xml"));
        mWindow->show();
    }
    /// Of the image on the screen, as the camera sent it; nothing as long as there is none. A frame that has been
    /// delivered is on its way there.
    struct Sent
    {
        uint32_t mWidth = 0;
        uint32_t mHeight = 0;
        LxPixelType mType = LxPixelType::None;
    };
    Sent Shown() const
    {
        const std::shared_ptr<const LxBuffer> frame = mWindow->Shown().Frame();
        if (!frame) {
            return {};
        }
        const LxImage raw = ShownFrame::RawImage(*frame);
        return {raw.GetWidth(), raw.GetHeight(), raw.GetPixelType()};
    }
    QString Status(const char *aName) const { return mWindow->findChild<QLabel *>(aName)->text(); }
    QAction *Action(const char *aName) const { return mWindow->findChild<QAction *>(aName); }

    FeatureDock &Dock() const { return mWindow->Features(); }
    QTreeView *Tree() const { return Dock().Browser().Tree(); }
    QModelIndex Find(const char *aName, int aColumn = 0) const
    {
        const QAbstractItemModel *model = Tree()->model();
        const QModelIndexList found =
            model ? model->match(model->index(0, 0), Qt::DisplayRole, QLatin1String(aName), 1,
                                 Qt::MatchExactly | Qt::MatchRecursive | Qt::MatchCaseSensitive | Qt::MatchWrap)
                  : QModelIndexList();
        return found.isEmpty() ? QModelIndex() : found.first().siblingAtColumn(aColumn);
    }
    QString Value(const char *aName) const { return Find(aName, 1).data().toString(); }
    QString Current() const { return Tree()->currentIndex().siblingAtColumn(0).data().toString(); }
    QString Top() const { return Tree()->indexAt(QPoint(0, 0)).siblingAtColumn(0).data().toString(); }
    bool IsVeiled() const { return Tree()->findChild<QWidget *>("veil") != nullptr; }

    /// Brings the tree into a state that no rebuild leaves it in.
    void ArrangeTree()
    {
        Tree()->collapse(Find("DeviceControl"));
        Tree()->setCurrentIndex(Find("OffsetX", 1));
        Tree()->scrollTo(Find("AcquisitionMode"), QAbstractItemView::PositionAtTop);
        ASSERT_EQ(Top(), "AcquisitionMode");
    }
    void ExpectArranged()
    {
        EXPECT_EQ(Current(), "OffsetX");
        EXPECT_EQ(Tree()->currentIndex().column(), 1);
        EXPECT_EQ(Top(), "AcquisitionMode");
        EXPECT_FALSE(Tree()->isExpanded(Find("DeviceControl")));
        EXPECT_TRUE(Tree()->isExpanded(Find("AcquisitionControl")));
    }

    const QTemporaryDir mFolder;
    std::unique_ptr<ViewerWindow> mWindow;
};

/// A viewer in front of a simulated host with one adapter and one camera.
class Viewer : public ViewerBase
{
protected:
    static constexpr const char *Camera = "02:00:00:00:01:01";
    static constexpr const char *Address = "192.168.7.20";

    void SetUp() override
    {
        QStandardPaths::setTestModeEnabled(true);
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth7";
        adapter.mAddresses = {{"192.168.7.1", "255.255.255.0"}};
        ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
        LxSimulatedDevice camera;
        camera.mUserDefinedName = "Left";
        camera.mMACAddress = Camera;
        camera.mIPAddress = Address;
        camera.mSubnetMask = "255.255.255.0";
        camera.mInterfaces = {"eth7"};
        ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
        Restart();
    }
    void TearDown() override
    {
        mWindow.reset();
        LxSimulation::Clear();
        LxSimulation::Disable();
    }

    void ConnectLive()
    {
        mWindow->Connect(Address);
        ASSERT_TRUE(WaitForGui([&] { return mWindow->Session().Statistics().mDelivered > 2 && Shown().mWidth > 0; }));
    }

    /// Waits for the viewer's failure box, closes it and gives its texts.
    void ExpectFailure(const QString &aAddress, QString &aHeadline, QString &aAdvice)
    {
        bool shown = false;
        OnNextModal([&](QWidget *aWidget) {
            auto *box = qobject_cast<QMessageBox *>(aWidget);
            ASSERT_NE(box, nullptr);
            aHeadline = box->text();
            aAdvice = box->informativeText();
            shown = true;
            box->reject();
        });
        mWindow->Connect(aAddress);
        EXPECT_TRUE(WaitForGui([&] { return shown; }));
    }
};
