#pragma once

/// Runs the registered benchmarks that the command line asks for and prints one line for each figure: name, value and
/// unit, with blanks between them and none inside.
///
/// The first figure of a benchmark is its time; each counter follows as "benchmark:counter". A counter is named with
/// its unit behind a blank, counters["longest ms"], or behind "_" when that is ms; without a unit it is a ratio, unit
/// "1".
///
/// @return for main(): 0, or 1 when a benchmark failed; it says why on the standard error output.
int RunBenchmarks(int aCount, char **aArguments);
