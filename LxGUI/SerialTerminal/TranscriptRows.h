#pragma once

#include <QtCore/QString>
#include <vector>

/// A row of a text as it is shown: some of its characters, without those that end a line.
struct TranscriptRow
{
    qsizetype mStart;
    qsizetype mLength;

    qsizetype End() const { return mStart + mLength; }
};

/// Lays a text out in rows of at most so many columns. CR LF, CR and LF end a line; a tab goes to the next multiple of
/// 8 columns. There is always at least one row, and an empty one after the end of the last line.
std::vector<TranscriptRow> LayOutRows(QStringView aText, int aColumns);

/// What a row shows: blanks for a tab, a middle dot for a control character.
QString RowText(QStringView aRow);
/// The column at which the character at an index of a row begins.
int ColumnOf(QStringView aRow, qsizetype aIndex);
/// The index of the character whose left edge is nearest to a place, in columns.
qsizetype IndexAt(QStringView aRow, double aColumn);
