#include "LxGUI/SerialTerminal/SendBytes.h"

QByteArray BytesOfText(const QString &aText)
{
    QByteArray bytes;
    bytes.reserve(aText.size());
    for (const QChar character : aText) {
        bytes.append(character.unicode() < 256 ? static_cast<char>(character.unicode()) : '\0');
    }
    return bytes;
}

bool AppendHexBytes(const QString &aText, QByteArray &aBytes)
{
    QByteArray bytes;
    const QString text = aText.toUpper();
    QString token;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool blank = text[i] == QLatin1Char(' ');
        if (!blank) {
            token.append(text[i]);
        }
        if (blank || i + 1 == text.size()) {
            bool ok = false;
            const uint value = token.toUInt(&ok, 16);
            if (!ok || value > 0xFF) {
                return false;
            }
            bytes.append(static_cast<char>(value));
            token.clear();
        }
    }
    aBytes.append(bytes);
    return true;
}
