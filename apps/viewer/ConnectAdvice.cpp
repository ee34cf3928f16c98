#include "ConnectAdvice.h"

#include <QtCore/QCoreApplication>

#include "Texts.h"

namespace
{

QString Text(const char *aText)
{
    return QCoreApplication::translate("ConnectAdvice", aText);
}

// The advice by the kind of failure, then what the SDK itself says, which names addresses and reasons.
QString WithReason(const QString &aAdvice, const LxResult &aResult)
{
    return aAdvice + QStringLiteral("\n\n") + Reason(aResult);
}

}  // namespace

ConnectAdvice AdviseOnConnect(const LxResult &aResult, const QString &aCamera)
{
    switch (static_cast<LxResultCode>(aResult.GetCode())) {
        case LxResultCode::Timeout:
        case LxResultCode::NotConnected:
        case LxResultCode::NotFound:
            return {Text("%1 does not answer.").arg(aCamera),
                    Text("Check that it has power, that its cable is plugged in and that it is on a subnet of this "
                         "computer. A firewall must let UDP port 3956 pass. Then search again."),
                    Reason(aResult)};
        case LxResultCode::AccessDenied:
        case LxResultCode::Busy:
            return {Text("%1 is controlled by another application.").arg(aCamera),
                    Text("Close the other application, or disconnect the camera there. After a crash the camera frees "
                         "itself within a few seconds."),
                    Reason(aResult)};
        case LxResultCode::Unavailable:
            return {Text("%1 cannot be reached as it is configured.").arg(aCamera),
                    WithReason(Text("Give the camera an address on the subnet of the network adapter, or let both get "
                                    "their addresses automatically."),
                               aResult)};
        case LxResultCode::GenICamError:
            return {Text("The description that %1 gives of itself cannot be read.").arg(aCamera),
                    WithReason(Text("The camera's firmware may be damaged. Ask its maker for an update."), aResult)};
        case LxResultCode::NotSupported:
            return {Text("There is no way to connect to %1.").arg(aCamera),
                    WithReason(Text("Choose a GigE Vision or USB3 Vision camera."), aResult)};
        default:
            return {Text("%1 could not be connected.").arg(aCamera), WithReason(Text("Try again."), aResult)};
    }
}

ExitCode FailureOf(const LxResult &aResult)
{
    switch (static_cast<LxResultCode>(aResult.GetCode())) {
        case LxResultCode::Timeout:
        case LxResultCode::NotConnected:
        case LxResultCode::NotFound:
            return ExitCode::NotFound;
        default:
            return ExitCode::ConnectFailed;
    }
}

ConnectAdvice AdviseOnStream(const LxResult &aResult, const QString &aCamera)
{
    return {Text("%1 is connected but sends no pictures.").arg(aCamera),
            WithReason(Text("Check the acquisition settings of the camera."), aResult)};
}
