#include "RendererChoice.h"

#include <QtCore/QSettings>
#include <QtGui/QAction>
#include <QtGui/QActionGroup>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStatusBar>

#include "LxGUI/LxDisplayWnd.h"

namespace
{

const QString OpenGLSetting = QStringLiteral("openGL");

QString OpenGLDescription()
{
    return QStringLiteral("%1, %2").arg(QString::fromUtf8(LxDisplayWnd::GetRenderer().GetAscii()),
                                        QString::fromUtf8(LxDisplayWnd::GetRendererVersion().GetAscii()));
}

bool IsOpenGLUsable()
{
    return LxDisplayWnd::GetHighestRendererMode() >= LxRendererModeOpenGL;
}

}  // namespace

RendererChoice::RendererChoice(LxDisplayWnd &aDisplay, QMenu &aMenu, QStatusBar &aBar, QObject *aParent)
    : QObject(aParent), mDisplay(aDisplay), mBadge(new QLabel)
{
    QMenu *menu = aMenu.addMenu(tr("Re&nderer"));
    menu->setObjectName(QStringLiteral("rendererMenu"));
    auto *group = new QActionGroup(this);
    mSoftware = group->addAction(tr("&Software"));
    mSoftware->setObjectName(QStringLiteral("softwareAction"));
    mOpenGL = group->addAction(tr("&OpenGL"));
    mOpenGL->setObjectName(QStringLiteral("openGLAction"));
    for (QAction *action : {mSoftware, mOpenGL}) {
        action->setCheckable(true);
        menu->addAction(action);
    }
    mSoftware->setChecked(true);
    connect(group, &QActionGroup::triggered, this, [this](QAction *aAction) {
        Choose(aAction == mOpenGL);
        QSettings().setValue(OpenGLSetting, aAction == mOpenGL);
    });
    // asking OpenGL takes a moment, which only those spend who look
    connect(menu, &QMenu::aboutToShow, this, &RendererChoice::Describe);

    mBadge->setObjectName(QStringLiteral("rendererStatus"));
    aBar.addPermanentWidget(mBadge);
    if (QSettings().value(OpenGLSetting, false).toBool()) {
        Choose(true);
    }
    else {
        UpdateBadge(tr("Drawn by the processor; View > Renderer changes it"));
    }
}

void RendererChoice::Describe()
{
    mOpenGL->setEnabled(IsOpenGLUsable());
    mOpenGL->setText(IsOpenGLUsable() ? QString(OpenGLDescription()).replace(QLatin1Char('&'), QLatin1String("&&"))
                                      : tr("OpenGL (not usable on this machine)"));
}

void RendererChoice::Choose(bool aOpenGL)
{
    const bool wasOpenGL = mDisplay.GetRendererMode() == LxRendererModeOpenGL;
    const LxResult result = mDisplay.SetRendererMode(aOpenGL ? LxRendererModeOpenGL : LxRendererModeSoftware);
    if (!result.IsOK()) {
        UpdateBadge(tr("OpenGL cannot be used here: %1 Drawn by the processor instead (%2).")
                        .arg(QString::fromUtf8(result.GetDescription().GetAscii()), OpenGLDescription()),
                    true);
    }
    else if (aOpenGL) {
        UpdateBadge(OpenGLDescription());
    }
    else {
        if (wasOpenGL) {
            mDisplay.ZoomFit();  // as it was seen; the wheel may have turned meanwhile
        }
        UpdateBadge(tr("Drawn by the processor, as chosen"));
    }
}

void RendererChoice::UpdateBadge(const QString &aReason, bool aIsFallback)
{
    const bool openGL = mDisplay.GetRendererMode() == LxRendererModeOpenGL;
    (openGL ? mOpenGL : mSoftware)->setChecked(true);
    mBadge->setText(openGL ? tr("OpenGL") : aIsFallback ? tr("Software (no OpenGL)") : tr("Software"));
    mBadge->setToolTip(aReason);
    emit Changed();
}
