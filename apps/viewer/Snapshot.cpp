#include "Snapshot.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QSettings>
#include <QtGui/QImageWriter>
#include <QtWidgets/QMessageBox>

#include "LxBuffer/LxBuffer.h"
#include "SaveFileName.h"
#include "ShownFrame.h"

namespace
{

const QString FolderSetting = QStringLiteral("snapshotFolder");

QString SnapshotText(const char *aText)
{
    return QObject::tr(aText);
}

bool EndsIn(const QString &aFile, const char *aEnding)
{
    return QFileInfo(aFile).suffix().compare(QLatin1String(aEnding), Qt::CaseInsensitive) == 0;
}

}  // namespace

Snapshot::Snapshot(ShownFrame &aFrame) : mPicture(aFrame.Picture(mFrame)) {}

QString Snapshot::SuggestedName() const
{
    const LxImage raw = ShownFrame::RawImage(*mFrame);
    const QString format = raw.GetDataPointer() ? QString::fromUtf8(LxPixelTypeToString(raw.GetPixelType()).GetAscii())
                                                : QStringLiteral("H264");
    return QStringLiteral("frame%1_%2x%3_%4")
        .arg(mFrame->GetBlockID())
        .arg(mPicture.width())
        .arg(mPicture.height())
        .arg(format);
}

QString Snapshot::SavePicture(const QString &aFile) const
{
    QSaveFile file(aFile);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    QImageWriter writer(&file, "png");
    if (!writer.write(mPicture)) {
        return writer.errorString();
    }
    return file.commit() ? QString() : file.errorString();
}

QString Snapshot::SaveRaw(const QString &aFile) const
{
    const LxImage raw = ShownFrame::RawImage(*mFrame);
    const ILxH264AccessUnit *unit = mFrame->GetH264AccessUnit();
    const auto *data =
        static_cast<const char *>(unit && !raw.GetDataPointer() ? unit->GetDataPointer() : raw.GetDataPointer());
    const uint64_t size = unit && !raw.GetDataPointer()
                              ? unit->GetDataSize()
                              : LxPixelTypeGetImageSize(raw.GetPixelType(), raw.GetWidth(), raw.GetHeight(),
                                                        raw.GetPaddingX(), raw.GetPaddingY());
    QSaveFile file(aFile);
    if (!file.open(QIODevice::WriteOnly) || file.write(data, static_cast<qint64>(size)) != static_cast<qint64>(size)) {
        return file.errorString();
    }
    return file.commit() ? QString() : file.errorString();
}

void Snapshot::Save(QWidget *aParent) const
{
    const QString picture = SnapshotText("Picture as shown (*.png)");
    const QString raw = SnapshotText("Raw data of the camera (*.raw)");
    const QDir folder(QSettings().value(FolderSetting, QDir::homePath()).toString());
    // the ending decides; the chosen kind where there is none
    const auto complete = [&](const QString &aName, const QString &aFilter) {
        return EndsIn(aName, "raw") || EndsIn(aName, "png") ? aName
                                                            : aName + QLatin1String(aFilter == raw ? ".raw" : ".png");
    };
    const QString name = AskSaveFileName(aParent, SnapshotText("Save Snapshot"),
                                         folder.filePath(SuggestedName() + QStringLiteral(".png")),
                                         picture + QStringLiteral(";;") + raw, complete);
    if (name.isEmpty()) {
        return;
    }
    QSettings().setValue(FolderSetting, QFileInfo(name).absolutePath());
    const QString error = EndsIn(name, "raw") ? SaveRaw(name) : SavePicture(name);
    if (!error.isEmpty()) {
        QMessageBox::warning(aParent, SnapshotText("Snapshot not saved"),
                             SnapshotText("%1 cannot be written: %2").arg(QDir::toNativeSeparators(name), error));
    }
}
