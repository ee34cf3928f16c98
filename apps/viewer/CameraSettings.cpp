#include "CameraSettings.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtGui/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QStatusBar>

#include "CameraSession.h"
#include "CameraSettingsFile.h"
#include "SaveFileName.h"
#include "Texts.h"
#include "ViewerConfiguration.h"
#include "ViewerLog.h"

namespace
{

constexpr const char *KeptList = "KeptCameraSettings";  // by the unique ID of the camera
const QString SettingsFolderSetting = QStringLiteral("settingsFolder");

// On the worker.
struct Saving
{
    FeatureSettings::Outcome mOutcome;
    LxResult mResult;

    void Run(LxGenParameterArray &aParameters, const CameraIdentity &aCamera, const QString &aFile)
    {
        CameraSettingsFile file{aCamera, {}};
        mOutcome = FeatureSettings::Collect(aParameters, file.mFeatures);
        // a part of the settings does not replace a file that may have all
        mResult = aParameters.GetAccessMode() == 0
                      ? file.Save(aFile)
                      : LxResult(LxResultCode::NotConnected, "The camera stopped answering.");
        if (mResult.IsOK()) {
            qCInfo(LogSettings).noquote() << mOutcome.mCount << "features of" << aCamera.mName << "saved in" << aFile;
        }
        else {
            qCWarning(LogSettings).noquote()
                << "the features of" << aCamera.mName << "are not saved in" << aFile << ':' << Reason(mResult);
        }
    }
};

void Log(const FeatureSettings::Outcome &aOutcome)
{
    for (const QString &problem : aOutcome.mProblems) {
        qCInfo(LogSettings).noquote() << problem;
    }
}

}  // namespace

CameraSettings::CameraSettings(CameraSession &aSession, ViewerConfiguration &aConfiguration, const QString &aFolder,
                               QWidget &aWindow)
    : QObject(&aWindow), mSession(aSession), mConfiguration(aConfiguration), mFolder(aFolder), mWindow(aWindow)
{
}

void CameraSettings::AddActions(QMenu &aFile, QMenu &aCamera)
{
    mLoadAction = aFile.addAction(tr("&Load Camera Settings..."), QKeySequence::Open, this, &CameraSettings::AskLoad);
    mLoadAction->setObjectName(QStringLiteral("loadSettingsAction"));
    mSaveAction = aFile.addAction(tr("Save &Camera Settings..."), QKeySequence(tr("Ctrl+Shift+S")), this,
                                  &CameraSettings::AskSave);
    mSaveAction->setObjectName(QStringLiteral("saveSettingsAction"));
    mKeepAction = aCamera.addAction(tr("&Keep the Settings of This Camera"));
    mKeepAction->setObjectName(QStringLiteral("keepSettingsAction"));
    mKeepAction->setShortcut(QKeySequence(tr("Ctrl+K")));
    mKeepAction->setCheckable(true);
    mKeepAction->setToolTip(
        tr("Saves the settings when the camera is disconnected and restores them when it is "
           "connected again"));
    connect(mKeepAction, &QAction::triggered, this, &CameraSettings::SetKept);
}

void CameraSettings::UpdateActions(bool aIsLinkLost)
{
    const bool connected = mSession.IsConnected();
    mLoadAction->setEnabled(connected && !aIsLinkLost);
    mSaveAction->setEnabled(connected && !aIsLinkLost);
    mKeepAction->setEnabled(connected);
    mKeepAction->setChecked(connected && IsKept());
}

// Settings that are kept

bool CameraSettings::IsKept() const
{
    const LxPropertyList list = mConfiguration.Get(KeptList);
    const LxProperty *kept = list.GetProperty(ToLxString(mSession.Camera().mUniqueID));
    return kept && kept->GetValue() == "Yes";
}

void CameraSettings::SetKept(bool aKept)
{
    LxPropertyList list;
    list.Add(LxProperty(ToLxString(mSession.Camera().mUniqueID), aKept ? "Yes" : "No"));
    mConfiguration.Set(KeptList, list);
}

QString CameraSettings::KeptFile() const
{
    static const QRegularExpression sOdd(QStringLiteral("[^A-Za-z0-9._-]"));
    return QStringLiteral("%1/%2.xml")
        .arg(mFolder, QString(mSession.Camera().mUniqueID).replace(sOdd, QStringLiteral("-")));
}

void CameraSettings::OnConnected()
{
    if (IsKept() && QFileInfo::exists(KeptFile())) {
        LoadFrom(KeptFile());
    }
}

void CameraSettings::OnDisconnecting(bool aIsLinkLost)
{
    if (mSession.IsConnected() && !aIsLinkLost && IsKept()) {
        mSession.StopLive();
        mSession.Ask([camera = mSession.Camera(), file = KeptFile()](LxGenParameterArray &aParameters) {
            Saving().Run(aParameters, camera, file);
        });
    }
}

// Files

void CameraSettings::AskSave()
{
    const QDir folder(QSettings().value(SettingsFolderSetting, QDir::homePath()).toString());
    const auto complete = [](const QString &aName, const QString &) {
        return QFileInfo(aName).suffix().isEmpty() ? aName + QStringLiteral(".xml") : aName;
    };
    const QString file =
        AskSaveFileName(&mWindow, tr("Save Camera Settings"), folder.filePath(QFileInfo(KeptFile()).fileName()),
                        tr("Camera settings (*.xml)"), complete);
    if (!file.isEmpty()) {
        QSettings().setValue(SettingsFolderSetting, QFileInfo(file).absolutePath());
        SaveTo(file);
    }
}

void CameraSettings::AskLoad()
{
    const QString folder = QSettings().value(SettingsFolderSetting, QDir::homePath()).toString();
    const QString file = QFileDialog::getOpenFileName(&mWindow, tr("Load Camera Settings"), folder,
                                                      tr("Camera settings (*.xml);;All files (*)"));
    if (!file.isEmpty()) {
        QSettings().setValue(SettingsFolderSetting, QFileInfo(file).absolutePath());
        LoadFrom(file);
    }
}

template <class Work, class Answer>
void CameraSettings::WithoutStream(Work aWork, Answer aAnswer)
{
    const bool live = mSession.IsLive();
    mSession.StopLive();
    mSession.Ask(std::move(aWork), std::move(aAnswer));
    if (live) {
        mSession.StartLive();
    }
}

void CameraSettings::SaveTo(const QString &aFile)
{
    const auto saving = std::make_shared<Saving>();
    WithoutStream(
        [saving, camera = mSession.Camera(), aFile](LxGenParameterArray &aParameters) {
            saving->Run(aParameters, camera, aFile);
        },
        [this, saving, aFile] {
            if (saving->mResult.IsOK()) {
                Tell(tr("Settings saved: %1.").arg(saving->mOutcome.mCount), saving->mOutcome);
            }
            else {
                QMessageBox::warning(
                    &mWindow, tr("Settings not saved"),
                    tr("%1 cannot be written. %2").arg(QDir::toNativeSeparators(aFile), Reason(saving->mResult)));
            }
            emit Done();
        });
}

void CameraSettings::LoadFrom(const QString &aFile)
{
    const auto file = std::make_shared<CameraSettingsFile>();
    if (const LxResult result = file->Load(aFile); !result.IsOK()) {
        QMessageBox::warning(&mWindow, tr("Settings not loaded"),
                             tr("%1 cannot be read. %2").arg(QDir::toNativeSeparators(aFile), Reason(result)));
        emit Done();
        return;
    }
    const auto outcome = std::make_shared<FeatureSettings::Outcome>();
    WithoutStream(
        [outcome, file, camera = mSession.Camera(), aFile](LxGenParameterArray &aParameters) {
            *outcome = FeatureSettings::Restore(aParameters, file->mFeatures);
            if (!outcome->mProblems.isEmpty() && file->mCamera.mModel != camera.mModel) {
                outcome->mProblems.prepend(
                    tr("The settings are those of another model, %1.").arg(file->mCamera.mModel));
            }
            qCInfo(LogSettings).noquote() << outcome->mCount << "features of" << camera.mName << "restored from"
                                          << aFile << ',' << outcome->mProblems.size() << "problems";
            Log(*outcome);
        },
        [this, outcome] {
            Tell(tr("Settings restored: %1.").arg(outcome->mCount), *outcome);
            emit Done();
        });
}

// What went well is a line in the status bar; what did not is a list that does not keep the picture from going on.
void CameraSettings::Tell(const QString &aHeadline, const FeatureSettings::Outcome &aOutcome)
{
    if (aOutcome.mProblems.isEmpty()) {
        qobject_cast<QMainWindow *>(&mWindow)->statusBar()->showMessage(aHeadline, 10000);
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, tr("Camera settings"), aHeadline, QMessageBox::Ok, &mWindow);
    box->setObjectName(QStringLiteral("settingsMessages"));
    box->setTextFormat(Qt::PlainText);
    constexpr qsizetype shown = 8;
    QString problems = aOutcome.mProblems.mid(0, shown).join(QLatin1Char('\n'));
    if (aOutcome.mProblems.size() > shown) {
        problems += QLatin1Char('\n') + tr("and %1 more, see the details").arg(aOutcome.mProblems.size() - shown);
        box->setDetailedText(aOutcome.mProblems.join(QLatin1Char('\n')));
    }
    box->setInformativeText(problems);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
