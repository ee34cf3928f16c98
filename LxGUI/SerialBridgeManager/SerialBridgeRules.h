#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <array>
#include <cstdint>

#include "LxBase/LxResult.h"
#include "LxSerial/LxSerialPortConfiguration.h"

class QComboBox;

// The rules of the serial bridge manager that need no window.

/// The rates that the manager shows and a COM port dialog offers, in baud.
constexpr std::array<uint32_t, 10> StandardBaudRates = {9600,  14400,  19200,  28800,  38400,
                                                        57600, 115200, 230400, 460800, 921600};
/// The rates that a Camera Link bridge can be fixed at: two fewer.
constexpr std::array<uint32_t, 8> SelectableBaudRates = {9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};

/// "9600 baud".
QString FormatBaudRate(uint32_t aBaudRate);
/// "9600 baud, no parity, 8 bits, 1 stop bit".
QString FormatSummary(const LxSerialPortConfiguration &aConfiguration);
/// "Message", a line break, the code of a failure, ": " and its description.
QString FormatFailure(const QString &aMessage, const LxResult &aResult);

/// Of the names of the host's serial ports those that are "COM" and a number, by number, as "COM3".
QStringList SelectCOMPorts(const QStringList &aNames);

/// "None", "Odd" or "Even", as it is saved; empty for any other number.
QString ParityToText(LxSerialParity aParity);
/// False, and the parity unchanged, for any other text.
bool ParityFromText(const QString &aText, LxSerialParity &aParity);

/// Selects the first item with this data; when there is none the selection stays.
void SelectData(QComboBox *aCombo, uint32_t aData);
