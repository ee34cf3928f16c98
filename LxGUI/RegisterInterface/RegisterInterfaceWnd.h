#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLineEdit>

#include "LxGUI/Frame/ObjectWatch.h"
#include "LxGUI/Frame/Wnd.h"

class LxDeviceGEV;

/// The window behind LxRegisterInterfaceWnd.
class RegisterInterfaceWnd : public Wnd
{
    Q_OBJECT

public:
    RegisterInterfaceWnd();
    ~RegisterInterfaceWnd() override;

    /// Not owned; null is allowed.
    void SetDevice(LxDeviceGEV *aDevice);

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;

public slots:
    void OnReadButtonClicked();
    void OnWriteButtonClicked();

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;

private:
    /// A field of the window and the text that it takes over when the content is built anew.
    struct OutputField
    {
        QPointer<QLineEdit> mEdit;
        QString mText;

        void SetText(const QString &aText);
        void Show();
    };

    QGroupBox *CreateReadGroup(QWidget *aParent);
    QGroupBox *CreateWriteGroup(QWidget *aParent);
    /// Reads a field; shows a warning and returns false when its text is no number.
    bool ParseField(const QLineEdit *aEdit, const char *aWarning, uint32_t &aValue);

    LxDeviceGEV *mDevice = nullptr;
    ObjectWatch mWatch;  // of the above
    QPointer<QLineEdit> mReadAddressEdit;
    OutputField mReadValue;
    OutputField mReadResult;
    QPointer<QLineEdit> mWriteAddressEdit;
    QPointer<QLineEdit> mWriteValueEdit;
    OutputField mWriteResult;
};
