#pragma once

#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

/// Gives the application a dark palette whose grey is darker than the ground of lists, as long as it lives.
class DarkPalette
{
public:
    DarkPalette()
    {
        QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, QColor(0xfc, 0xfc, 0xfc));
        }
        palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
        QApplication::setPalette(palette);
    }
    ~DarkPalette() { QApplication::setPalette(mBefore); }
    DarkPalette(const DarkPalette &) = delete;
    DarkPalette &operator=(const DarkPalette &) = delete;

private:
    const QPalette mBefore = QApplication::palette();
};
