#include "ViewerConfiguration.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "Texts.h"

namespace
{

QString FileText(const char *aText)
{
    return QCoreApplication::translate("ViewerConfiguration", aText);
}

LxString PathOf(const QString &aFile)
{
    return LxString(QFile::encodeName(aFile).constData());
}

}  // namespace

ViewerConfiguration::ViewerConfiguration(const QString &aFile) : mFile(aFile) {}

QString ViewerConfiguration::DefaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QStringLiteral("/viewer.xml");
}

QString ViewerConfiguration::Load()
{
    mLists.clear();
    mHasChanged = false;
    mMayWrite = true;
    if (!QFileInfo::exists(mFile)) {
        return QString();
    }
    LxConfigurationReader reader;
    if (const LxResult result = reader.Load(PathOf(mFile)); !result.IsOK()) {
        return PutAside(Reason(result));
    }
    const LxStringList names = reader.GetNames();
    for (size_t i = 0; i < names.GetSize(); ++i) {
        LxPropertyList list;
        if (reader.Restore(names.GetItem(i), &list).IsOK()) {
            mLists.emplace_back(names.GetItem(i), list);
        }
    }
    return QString();
}

QString ViewerConfiguration::PutAside(const QString &aReason)
{
    const QString head =
        FileText("The options of the viewer cannot be read from %1. %2").arg(QDir::toNativeSeparators(mFile), aReason) +
        QStringLiteral("\n\n");
    QString aside = mFile + QStringLiteral(".unreadable");
    for (int i = 2; QFileInfo::exists(aside); ++i) {
        aside = mFile + QStringLiteral(".unreadable%1").arg(i);
    }
    mMayWrite = QFile::rename(mFile, aside);
    return head + (mMayWrite
                       ? FileText("The file is kept as %1. The viewer starts with its default options.")
                             .arg(QDir::toNativeSeparators(aside))
                       : FileText("The viewer starts with its default options and does not save them, so that the "
                                  "file stays as it is."));
}

QString ViewerConfiguration::Save()
{
    if (!mHasChanged || !mMayWrite) {
        return QString();
    }
    LxConfigurationWriter writer;
    for (const auto &[name, list] : mLists) {
        writer.Store(&list, name);
    }
    QDir().mkpath(QFileInfo(mFile).path());
    if (const LxResult result = writer.Save(PathOf(mFile)); !result.IsOK()) {
        return FileText("The options of the viewer cannot be saved in %1. %2")
            .arg(QDir::toNativeSeparators(mFile), Reason(result));
    }
    mHasChanged = false;
    return QString();
}

LxPropertyList ViewerConfiguration::Get(const char *aName) const
{
    for (const auto &[name, list] : mLists) {
        if (name == aName) {
            return list;
        }
    }
    return LxPropertyList();
}

LxPropertyList *ViewerConfiguration::Find(const LxString &aName)
{
    for (auto &[name, list] : mLists) {
        if (name == aName) {
            return &list;
        }
    }
    return nullptr;
}

void ViewerConfiguration::Set(const char *aName, const LxPropertyList &aList)
{
    LxPropertyList *known = Find(aName);
    if (!known) {
        known = &mLists.emplace_back(aName, LxPropertyList()).second;
    }
    for (size_t i = 0; i < aList.GetCount(); ++i) {
        const LxProperty &property = *aList.GetAt(i);
        if (LxProperty *old = known->GetProperty(property.GetName()); !old) {
            known->Add(property);
            mHasChanged = true;
        }
        else if (!(old->GetValue() == property.GetValue())) {
            old->SetValue(property.GetValue());
            mHasChanged = true;
        }
    }
}

void ViewerConfiguration::Replace(const char *aName, const LxPropertyList &aList)
{
    if (LxPropertyList *known = Find(aName)) {
        *known = aList;
    }
    else {
        mLists.emplace_back(aName, aList);
    }
    mHasChanged = true;
}
