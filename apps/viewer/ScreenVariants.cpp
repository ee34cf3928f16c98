#include "ScreenVariants.h"

#include <QtCore/QLocale>
#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

namespace
{

constexpr int LargeFontSize = 16;  // points

/// Dark colours as desktops hand them to applications.
QPalette DarkPalette()
{
    QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
    const QColor text(0xfc, 0xfc, 0xfc);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText, QPalette::ToolTipText})
    {
        palette.setColor(role, text);
    }
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    palette.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
    palette.setColor(QPalette::ToolTipBase, QColor(0x31, 0x36, 0x3b));
    palette.setColor(QPalette::Highlight, QColor(0x1d, 0x6f, 0xa5));
    palette.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
    palette.setColor(QPalette::PlaceholderText, QColor(0xa1, 0xa9, 0xb1));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0x6e, 0x71, 0x75));
    }
    return palette;
}

void UseLargeFont()
{
    QFont font = QApplication::font();
    font.setPointSize(LargeFontSize);
    QApplication::setFont(font);
}

struct Variant
{
    const char *mName;
    const char *mScale;  // for QT_SCALE_FACTOR, or null
    void (*mApply)();    // or null
};

constexpr Variant Variants[] = {
    {"plain", nullptr, nullptr},
    {"scale-1.5", "1.5", nullptr},
    {"scale-2", "2", nullptr},
    {"dark", nullptr, [] { QApplication::setPalette(DarkPalette()); }},
    {"large-font", nullptr, UseLargeFont},
    {"right-to-left", nullptr, [] { QApplication::setLayoutDirection(Qt::RightToLeft); }},
    {"decimal-comma", nullptr, [] { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }},
};

const Variant *Find(const QString &aName)
{
    for (const Variant &variant : Variants) {
        if (aName == QLatin1String(variant.mName)) {
            return &variant;
        }
    }
    return nullptr;
}

}  // namespace

QStringList ScreenVariants::Names()
{
    QStringList names;
    for (const Variant &variant : Variants) {
        names << QLatin1String(variant.mName);
    }
    return names;
}

void ScreenVariants::Prepare(const QString &aName)
{
    const Variant *variant = Find(aName);
    if (variant && variant->mScale) {
        qputenv("QT_SCALE_FACTOR", variant->mScale);
    }
}

bool ScreenVariants::Apply(const QString &aName)
{
    const Variant *variant = Find(aName);
    if (variant && variant->mApply) {
        variant->mApply();
    }
    return variant != nullptr;
}
