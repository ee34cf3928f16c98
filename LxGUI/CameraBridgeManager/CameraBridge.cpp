#include "LxGUI/CameraBridgeManager/CameraBridge.h"

#include "LxGUI/CameraBridgeManager/CameraBridgeTexts.h"
#include "LxGUI/Frame/Text.h"
#include "LxGenICam/LxGenParameterArray.h"

CameraBridge::CameraBridge(LxDevice *aDevice, LxDeviceSerial aPort, LxStream *aStream)
    : mPort(aPort), mBridge(std::make_unique<LxCameraBridge>(aDevice, aPort, aStream))
{
}

CameraBridge::~CameraBridge() = default;

void CameraBridge::Reset()
{
    mBridge->Disconnect();
    mTemplates.clear();
    mXMLIDs.clear();
    mTemplateIndex = 0;
    for (QString *text : {&mTemplateText, &mXMLIDText, &mCameraFilePath, &mCameraIDText, &mStatusText}) {
        text->clear();
    }
}

void CameraBridge::Synchronize()
{
    LxString text;
    LxString templateText;
    LxString xmlID;
    if (mBridge->GetKelvraCameraFilePath(text).IsOK()) {
        mMode = ModeCameraFile;
        mCameraFilePath = ToQString(text);
    }
    else if (mBridge->GetCLProtocolCameraID(text).IsOK() && mBridge->GetCLProtocolTemplate(templateText).IsOK() &&
             mBridge->GetCLProtocolXMLID(xmlID).IsOK())
    {
        mMode = ModeCLProtocol;
        mTemplateText = CameraBridgeTexts::ShowTemplate(ToQString(templateText));
        mCameraIDText = CameraBridgeTexts::ShowCameraID(ToQString(text));
        mXMLIDText = CameraBridgeTexts::ShowCLProtocolXMLID(ToQString(xmlID));
    }
    else if (mBridge->GetGenCPXMLID(text).IsOK()) {
        mMode = ModeGenCP;
        mXMLIDText = CameraBridgeTexts::ShowGenCPXMLID(ToQString(text));
    }
    else {
        Reset();
        return;
    }
    UpdateStatus();
}

void CameraBridge::UpdateStatus()
{
    const LxGenParameterArray *parameters = mBridge->GetParameters();
    mStatusText = parameters ? QStringLiteral("Connected, %1 parameters available").arg(parameters->GetCount())
                             : QStringLiteral("Not initialized");
}
