#pragma once

#include <QtCore/QString>
#include <utility>
#include <vector>

#include "LxPersistence/LxPropertyList.h"

/// The viewer's options as named property lists in a file of the user's configuration folder.
///
/// What this viewer does not know, lists and properties of another version, is kept. Not synchronised.
class ViewerConfiguration
{
public:
    explicit ViewerConfiguration(const QString &aFile);
    /// In the user's configuration folder.
    static QString DefaultFile();

    /// Reads the file; that there is none yet is no error. A file that cannot be read is put aside under another name.
    /// @return empty, or what the user is to be told.
    QString Load();
    /// Writes the file if anything has changed since Load().
    /// @return empty, or what the user is to be told.
    QString Save();

    /// The list of this name; empty when there is none.
    LxPropertyList Get(const char *aName) const;
    /// Changes the properties of a list.
    void Set(const char *aName, const LxPropertyList &aList);
    /// Puts a list in the place of the one of this name.
    void Replace(const char *aName, const LxPropertyList &aList);

private:
    LxPropertyList *Find(const LxString &aName);
    QString PutAside(const QString &aReason);

    const QString mFile;
    std::vector<std::pair<LxString, LxPropertyList>> mLists;
    bool mHasChanged = false;
    bool mMayWrite = true;
};
