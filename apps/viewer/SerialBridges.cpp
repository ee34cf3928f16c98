#include "SerialBridges.h"

#include <QtWidgets/QMessageBox>

#include "LxDevice/LxDeviceSerialPort.h"
#include "ViewerConfiguration.h"

namespace
{

bool IsSame(const LxPropertyList &aOne, const LxPropertyList &aOther)
{
    bool same = aOne.GetCount() == aOther.GetCount();
    for (size_t i = 0; same && i < aOne.GetCount(); ++i) {
        same = aOne.GetAt(i)->GetName() == aOther.GetAt(i)->GetName() &&
               aOne.GetAt(i)->GetValue() == aOther.GetAt(i)->GetValue();
    }
    return same;
}

}  // namespace

std::string SerialBridges::GetListName() const
{
    return "SerialBridges " + mAdapter->GetUniqueID().GetString();
}

QStringList SerialBridges::SetDevice(ILxDeviceAdapter *aAdapter, const ViewerConfiguration &aConfiguration)
{
    mWindow.SetDevice(aAdapter);
    mAdapter = aAdapter;
    QStringList texts;
    if (mAdapter) {
        LxPropertyList list = aConfiguration.Get(GetListName().c_str());
        LxStringList messages;
        mWindow.Load(list, messages);
        for (size_t i = 0; i < messages.GetSize(); ++i) {
            texts << QString::fromUtf8(messages.GetItem(i).GetAscii());
        }
        mWindow.Save(mRestored);
    }
    return texts;
}

bool SerialBridges::HasPorts() const
{
    for (uint32_t port = 0; mAdapter && port <= static_cast<uint32_t>(LxDeviceSerial::Bulk7); ++port) {
        if (LxDeviceSerialPort::IsSupported(mAdapter, static_cast<LxDeviceSerial>(port))) {
            return true;
        }
    }
    return false;
}

void SerialBridges::Show(QWidget *aParent)
{
    mWindow.ShowModeless(aParent);
}

void SerialBridges::Save(ViewerConfiguration &aConfiguration)
{
    LxPropertyList list;
    mWindow.Save(list);
    if (mAdapter && !IsSame(list, mRestored)) {
        aConfiguration.Replace(GetListName().c_str(), list);
        mRestored = list;
    }
}

void ShowBridgeMessages(QWidget *aParent, const QStringList &aMessages)
{
    if (aMessages.isEmpty()) {
        return;
    }
    QStringList sentences;
    for (const QString &message : aMessages) {  // those that end with a sentence of the SDK have another full stop
        sentences << (message.endsWith(QLatin1String("..")) ? message.chopped(1) : message);
    }
    auto *box =
        new QMessageBox(QMessageBox::Warning, QObject::tr("Bridges"),
                        QObject::tr("Not all bridges of the last time could be restored."), QMessageBox::Ok, aParent);
    box->setObjectName(QStringLiteral("bridgeMessages"));
    box->setInformativeText(sentences.join(QStringLiteral("\n\n")));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();  // the camera's picture goes on meanwhile
}
