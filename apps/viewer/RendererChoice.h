#pragma once

#include <QtCore/QObject>

class LxDisplayWnd;
class QAction;
class QLabel;
class QMenu;
class QStatusBar;

/// Lets the user choose how the picture is drawn, and says in the status bar how it is. The choice is remembered.
class RendererChoice : public QObject
{
    Q_OBJECT

public:
    /// Adds a submenu to a menu and a badge to a status bar. The display must outlive the object.
    RendererChoice(LxDisplayWnd &aDisplay, QMenu &aMenu, QStatusBar &aBar, QObject *aParent);

signals:
    /// The renderer may be another one.
    void Changed();

private:
    void Describe();
    void Choose(bool aOpenGL);
    void UpdateBadge(const QString &aReason, bool aIsFallback = false);

    LxDisplayWnd &mDisplay;
    QAction *mSoftware;
    QAction *mOpenGL;
    QLabel *mBadge;
};
