#include "LxGUI/SerialTerminal/TranscriptRows.h"

#include <algorithm>

namespace
{

constexpr int TabColumns = 8;

int ColumnsOf(QChar aCharacter, int aColumn)
{
    return aCharacter == QLatin1Char('\t') ? TabColumns - aColumn % TabColumns : 1;
}

}  // namespace

std::vector<TranscriptRow> LayOutRows(QStringView aText, int aColumns)
{
    std::vector<TranscriptRow> rows;
    qsizetype start = 0;
    int column = 0;
    for (qsizetype i = 0; i < aText.size(); ++i) {
        const QChar character = aText[i];
        if (character == QLatin1Char('\n') || character == QLatin1Char('\r')) {
            rows.push_back({start, i - start});
            if (character == QLatin1Char('\r') && i + 1 < aText.size() && aText[i + 1] == QLatin1Char('\n')) {
                ++i;
            }
            start = i + 1;
            column = 0;
            continue;
        }
        int columns = ColumnsOf(character, column);
        if (column + columns > aColumns && i > start) {
            rows.push_back({start, i - start});
            start = i;
            column = 0;
            columns = ColumnsOf(character, column);
        }
        column += columns;
    }
    rows.push_back({start, aText.size() - start});
    return rows;
}

QString RowText(QStringView aRow)
{
    QString text;
    text.reserve(aRow.size());
    for (const QChar character : aRow) {
        if (character == QLatin1Char('\t')) {
            text.append(QString(ColumnsOf(character, static_cast<int>(text.size())), QLatin1Char(' ')));
        }
        else {
            text.append(character.category() == QChar::Other_Control ? QChar(0xB7) : character);
        }
    }
    return text;
}

int ColumnOf(QStringView aRow, qsizetype aIndex)
{
    int column = 0;
    for (const QChar character : aRow.first(std::min(aIndex, aRow.size()))) {
        column += ColumnsOf(character, column);
    }
    return column;
}

qsizetype IndexAt(QStringView aRow, double aColumn)
{
    int column = 0;
    for (qsizetype i = 0; i < aRow.size(); ++i) {
        const int columns = ColumnsOf(aRow[i], column);
        if (aColumn < column + columns / 2.0) {
            return i;
        }
        column += columns;
    }
    return aRow.size();
}
