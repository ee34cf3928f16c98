#pragma once

#include <QtCore/QString>

/// What a bug report needs to know about the machine: versions, renderer, network adapters, limits, rights, devices.
///
/// Searches devices for a second. A line that starts with "! " says what may be in the way and the command that mends
/// it. There must be a QApplication, on whatever platform. GUI thread.
QString SelfCheckReport();
