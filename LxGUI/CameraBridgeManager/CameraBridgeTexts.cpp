#include "LxGUI/CameraBridgeManager/CameraBridgeTexts.h"

namespace
{

/// Where the second separator is; -1 unless there are two, the first not at the beginning.
qsizetype FindSecond(const QString &aText, QChar aSeparator)
{
    const qsizetype first = aText.indexOf(aSeparator);
    return first > 0 ? aText.indexOf(aSeparator, first + 1) : -1;
}

}  // namespace

QString CameraBridgeTexts::ShowTemplate(QString aTemplate)
{
    for (int i = 0; i < 2; ++i) {
        aTemplate.remove(0, aTemplate.indexOf(QLatin1Char('#')) + 1);
    }
    return aTemplate.replace(QLatin1Char('#'), QLatin1Char(' '));
}

QString CameraBridgeTexts::ShowCameraID(QString aCameraID)
{
    aCameraID.remove(0, FindSecond(aCameraID, QLatin1Char('#')) + 1);
    return aCameraID.replace(QLatin1Char('#'), QLatin1Char(' '));
}

QString CameraBridgeTexts::ShowCLProtocolXMLID(const QString &aXMLID)
{
    return aXMLID.mid(FindSecond(aXMLID, QLatin1Char('@')) + 1);
}

QString CameraBridgeTexts::ShowGenCPXMLID(const QString &aXMLID)
{
    const qsizetype second = FindSecond(aXMLID, QLatin1Char('#'));
    if (second < 0) {
        return aXMLID;
    }
    const qsizetype first = aXMLID.indexOf(QLatin1Char('#'));
    return aXMLID.mid(first + 1, second - first - 1) + QStringLiteral(" for ") + aXMLID.mid(second + 1);
}
