#include "LxGUI/SerialBridgeManager/SerialBridgeRules.h"

#include <QtWidgets/QComboBox>
#include <algorithm>
#include <set>

#include "LxGUI/Frame/Text.h"

QString FormatBaudRate(uint32_t aBaudRate)
{
    return QStringLiteral("%1 baud").arg(aBaudRate);
}

QString FormatSummary(const LxSerialPortConfiguration &aConfiguration)
{
    QString parity = QStringLiteral("invalid");
    switch (aConfiguration.mParity) {
        case LxSerialParity::None:
            parity = QStringLiteral("no");
            break;
        case LxSerialParity::Even:
            parity = QStringLiteral("even");
            break;
        case LxSerialParity::Odd:
            parity = QStringLiteral("odd");
            break;
    }
    return QStringLiteral("%1 baud, %2 parity, %3 bits, %4 stop bit%5")
        .arg(QString::number(aConfiguration.mBaudRate), parity, QString::number(aConfiguration.mByteSize),
             QString::number(aConfiguration.mStopBits), aConfiguration.mStopBits < 2 ? QString() : QStringLiteral("s"));
}

QString FormatFailure(const QString &aMessage, const LxResult &aResult)
{
    return QStringLiteral("%1\n%2: %3")
        .arg(aMessage, ToQString(aResult.GetCodeString()), ToQString(aResult.GetDescription()));
}

QStringList SelectCOMPorts(const QStringList &aNames)
{
    std::set<uint32_t> numbers;
    for (const QString &name : aNames) {
        const QString rest = name.mid(3);
        const bool digits = std::all_of(rest.begin(), rest.end(), [](QChar aCharacter) {
            return aCharacter >= QLatin1Char('0') && aCharacter <= QLatin1Char('9');
        });
        bool good = false;
        const uint32_t number = rest.toUInt(&good);
        if (name.startsWith(QLatin1String("COM")) && digits && good) {
            numbers.insert(number);
        }
    }
    QStringList ports;
    for (const uint32_t number : numbers) {
        ports << QStringLiteral("COM%1").arg(number);
    }
    return ports;
}

QString ParityToText(LxSerialParity aParity)
{
    switch (aParity) {
        case LxSerialParity::None:
            return QStringLiteral("None");
        case LxSerialParity::Odd:
            return QStringLiteral("Odd");
        case LxSerialParity::Even:
            return QStringLiteral("Even");
    }
    return QString();
}

bool ParityFromText(const QString &aText, LxSerialParity &aParity)
{
    for (const LxSerialParity parity : {LxSerialParity::None, LxSerialParity::Odd, LxSerialParity::Even}) {
        if (aText == ParityToText(parity)) {
            aParity = parity;
            return true;
        }
    }
    return false;
}

void SelectData(QComboBox *aCombo, uint32_t aData)
{
    const int index = aCombo->findData(aData);
    if (index >= 0) {
        aCombo->setCurrentIndex(index);
    }
}
