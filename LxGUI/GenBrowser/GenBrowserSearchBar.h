#pragma once

#include <QtCore/QList>
#include <QtCore/QModelIndex>
#include <QtWidgets/QLineEdit>

class GenBrowserTree;

/// Finds features by name: the first match while the user types, the next one on Enter.
class GenBrowserSearchBar : public QLineEdit
{
    Q_OBJECT

public:
    /// @param aTree lives as long as the search bar.
    GenBrowserSearchBar(GenBrowserTree *aTree, QWidget *aParent);

    /// Forgets the matches: the model is about to go.
    void ForgetMatches();
    const QList<QModelIndex> &Matches() const { return mMatches; }

public slots:
    void Search(const QString &aQuery);
    void MoveToNextOccurence();
    void MoveToPreviousOccurence();

private:
    void Move(qsizetype aStep);
    void FindMatches(const QString &aQuery);

    GenBrowserTree *const mTree;
    QList<QModelIndex> mMatches;
    qsizetype mPosition = 0;  // of the current match
};
