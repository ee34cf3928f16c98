#include "RunBenchmarks.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace
{

class LineReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &aRuns) override
    {
        for (const Run &run : aRuns) {
            const std::string name = GetName(run);
            if (run.error_occurred) {
                std::fprintf(stderr, "%s failed: %s\n", name.c_str(), run.error_message.c_str());
                mFailed = true;
                continue;
            }
            Print(name, run.GetAdjustedRealTime(), benchmark::GetTimeUnitString(run.time_unit));
            for (const auto &[counter, value] : run.counters) {
                const size_t unit = FindUnit(counter);
                Print(name + ":" + counter.substr(0, unit), value.value,
                      unit == std::string::npos ? "1" : counter.substr(unit + 1));
            }
        }
    }

    bool mFailed = false;

private:
    static std::string GetName(const Run &aRun)
    {
        const std::string &arguments = aRun.run_name.args;
        return aRun.run_name.function_name + (arguments.empty() ? "" : "/" + arguments);
    }
    /// Where the blank or the underscore in front of the unit is.
    static size_t FindUnit(const std::string &aCounter)
    {
        const size_t blank = aCounter.rfind(' ');
        return blank == std::string::npos && aCounter.ends_with("_ms") ? aCounter.size() - 3 : blank;
    }
    static void Print(std::string aName, double aValue, const std::string &aUnit)
    {
        std::replace(aName.begin(), aName.end(), ' ', '-');
        std::printf(aValue >= 1000 ? "%s %.0f %s\n" : "%s %.4g %s\n", aName.c_str(), aValue, aUnit.c_str());
        std::fflush(stdout);
    }
};

}  // namespace

int RunBenchmarks(int aCount, char **aArguments)
{
    benchmark::Initialize(&aCount, aArguments);
    if (benchmark::ReportUnrecognizedArguments(aCount, aArguments)) {
        return 1;
    }
    LineReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.mFailed ? 1 : 0;
}
