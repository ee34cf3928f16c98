#include "LxGUI/Display/PictureAccessible.h"

#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtWidgets/QAccessibleWidget>

#include "LxGUI/Display/DisplayWnd.h"
#include "LxGUI/Frame/AccessibleFactory.h"

namespace
{

// The display of a widget that has one: such widgets are plain ones, dialogs, or whatever a host has.
constexpr const char *DisplayProperty = "_lx_display";

class PictureAccessible : public QAccessibleWidget
{
public:
    PictureAccessible(QWidget *aWidget, DisplayWnd *aDisplay)
        : QAccessibleWidget(aWidget, aWidget->isWindow() ? QAccessible::Dialog : QAccessible::Graphic),
          mDisplay(aDisplay)
    {
    }

    QString text(QAccessible::Text aKind) const override
    {
        const QString text = QAccessibleWidget::text(aKind);
        return aKind == QAccessible::Description && text.isEmpty() ? Describe() : text;
    }

private:
    QString Describe() const
    {
        const QSize picture = mDisplay ? mDisplay->PictureSize() : QSize();
        if (picture.isEmpty()) {
            return DisplayWnd::tr("No picture");
        }
        const QString size = DisplayWnd::tr("%1 x %2 pixels").arg(picture.width()).arg(picture.height());
        if (mDisplay->GetZoom().mMode == DisplayGeometry::ZoomFit) {
            return DisplayWnd::tr("%1, fitted into the window").arg(size);
        }
        return DisplayWnd::tr("%1, zoom %2 %").arg(size).arg(100.0 * mDisplay->GetZoom().mFactor, 0, 'f', 0);
    }

    const QPointer<DisplayWnd> mDisplay;
};

QAccessibleInterface *CreateInterface(const QString & /*aClass*/, QObject *aObject)
{
    const QVariant display = aObject->property(DisplayProperty);
    auto *widget = display.isValid() ? qobject_cast<QWidget *>(aObject) : nullptr;
    return widget ? new PictureAccessible(widget, qobject_cast<DisplayWnd *>(display.value<QPointer<QObject>>()))
                  : nullptr;
}

}  // namespace

void MakePictureAccessible(QWidget *aWidget, DisplayWnd *aDisplay)
{
    static const AccessibleFactory factory(CreateInterface);
    aWidget->setProperty(DisplayProperty, QVariant::fromValue(QPointer<QObject>(aDisplay)));
    // what was made for the widget before, because a host gave it a name for example, is made anew
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(aWidget)));
}
