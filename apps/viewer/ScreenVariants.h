#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Settings of other people's screens, for pictures of the windows there. Each variant changes one thing.
namespace ScreenVariants
{

/// Names of the variants, among them "plain", which changes nothing.
QStringList Names();

/// Sets what must be there before the application is made; the name of no variant sets nothing.
void Prepare(const QString &aName);

/// Sets the rest; windows that exist follow. False when there is no such variant.
bool Apply(const QString &aName);

}  // namespace ScreenVariants
