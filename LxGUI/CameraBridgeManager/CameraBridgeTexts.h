#pragma once

#include <QtCore/QString>

/// How the identifiers of the SDK are shown. The full texts go to the SDK.
namespace CameraBridgeTexts
{

/// Without the first two fields, the others joined by blanks.
QString ShowTemplate(QString aTemplate);
/// Without the first two fields, unless the first one is empty; the others joined by blanks.
QString ShowCameraID(QString aCameraID);
/// What follows the second '@', unless the text begins with one.
QString ShowCLProtocolXMLID(const QString &aXMLID);
/// "a#b#c" as "b for c"; everything else as it is.
QString ShowGenCPXMLID(const QString &aXMLID);

}  // namespace CameraBridgeTexts
