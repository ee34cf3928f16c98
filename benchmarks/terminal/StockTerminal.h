#pragma once

#include <string>

/// How many bytes a second a stock terminal, picocom in xterm, takes from a pseudo terminal that is flooded, and shows.
struct StockTerminal
{
    double mBytesPerSecond = 0;  ///< 0: it could not be measured.
    std::string mReason;         ///< Why not.
};

/// Measured once in a program, which takes some seconds.
const StockTerminal &MeasureStockTerminal();
