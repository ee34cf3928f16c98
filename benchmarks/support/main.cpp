#include "RunBenchmarks.h"

int main(int aCount, char **aArguments)
{
    return RunBenchmarks(aCount, aArguments);
}
