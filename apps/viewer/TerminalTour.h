#pragma once

class HeadlessTour;
class LxSerialTerminalWnd;

/// The part of the tour that shows the serial terminal, on a simulated frame grabber.
class TerminalTour
{
public:
    explicit TerminalTour(HeadlessTour &aTour) : mTour(aTour) {}

    /// False, with the reason on the error output, when a step did not come about. Replaces what is simulated.
    bool Run();

private:
    bool TourFormats(LxSerialTerminalWnd &aTerminal);
    bool TourFile(LxSerialTerminalWnd &aTerminal);
    /// Types a line for the console behind the port and waits for its answer.
    bool Say(LxSerialTerminalWnd &aTerminal, const char *aLine);

    HeadlessTour &mTour;
};
