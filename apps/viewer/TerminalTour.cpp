#include "TerminalTour.h"

#include <QtCore/QTemporaryFile>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QWidget>

#include "HeadlessTour.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "TourGrabber.h"

namespace
{

/// A console that answers lines, at Serial0, and an echo at the pace of the line at Serial1.
void ConnectPeers()
{
    auto console = std::make_shared<LxSimulatedSerialScript>();
    console->Add("HELP\r", "EXP ?    exposure time\r\nGAIN ?   gain\r\nTEMP ?   temperature\r\nOK\r\n");
    console->Add("TEMP ?\r",
                 "38.5 \xB0"
                 "C\r\nOK\r\n");
    TourGrabber::SetPeer(LxDeviceSerial::Serial0, console);
    TourGrabber::SetPeer(LxDeviceSerial::Serial1, std::make_shared<LxSimulatedSerialEcho>());
    LxSimulatedSerialConditions conditions;
    conditions.mPaced = true;
    conditions.mCapacity = 256;  // so that the file is not sent before it is back
    TourGrabber::SetConditions(LxDeviceSerial::Serial1, conditions);
}

template <class Type>
Type *Find(LxSerialTerminalWnd &aTerminal, const char *aName)
{
    return aTerminal.GetQWidget()->findChild<Type *>(QLatin1String(aName));
}

void Click(LxSerialTerminalWnd &aTerminal, const char *aName)
{
    Find<QAbstractButton>(aTerminal, aName)->click();
}

}  // namespace

bool TerminalTour::Run()
{
    const TourGrabber grabber;
    if (!grabber.GetDevice()) {
        return false;
    }
    ConnectPeers();
    LxSerialTerminalWnd terminal;
    terminal.SetDevice(grabber.GetAdapter());
    terminal.ShowModeless();
    return TourFormats(terminal) && TourFile(terminal);
}

bool TerminalTour::Say(LxSerialTerminalWnd &aTerminal, const char *aLine)
{
    auto *view = Find<QWidget>(aTerminal, "Transcript");
    const QImage before = view->grab().toImage();
    Find<QLineEdit>(aTerminal, "DataEdit")->setText(QLatin1String(aLine));
    Click(aTerminal, "SendButton");
    return mTour.WaitUntil(QStringLiteral("the answer of the console"),
                           [&] { return view->grab().toImage() != before; });
}

bool TerminalTour::TourFormats(LxSerialTerminalWnd &aTerminal)
{
    Click(aTerminal, "CRCheck");
    Click(aTerminal, "EchoCheck");
    const std::pair<const char *, const char *> formats[] = {{"AsciiFormat", "terminal-ascii"},
                                                             {"HexadecimalFormat", "terminal-hexadecimal"},
                                                             {"HybridFormat", "terminal-hybrid"}};
    for (const auto &[format, picture] : formats) {
        Click(aTerminal, format);
        if (!Say(aTerminal, "HELP") || !Say(aTerminal, "TEMP ?") ||
            !mTour.Shoot(aTerminal.GetQWidget(), QLatin1String(picture)))
        {
            return false;
        }
    }
    return true;
}

bool TerminalTour::TourFile(LxSerialTerminalWnd &aTerminal)
{
    QTemporaryFile file;
    if (!file.open()) {
        return false;
    }
    for (int i = 1; i <= 400; ++i) {
        file.write(QStringLiteral("line %1 of a file that comes back\r\n").arg(i).toLatin1());
    }
    file.flush();
    aTerminal.SetSerialPort(LxDeviceSerial::Serial1);
    Click(aTerminal, "AsciiFormat");
    Click(aTerminal, "EchoCheck");
    Click(aTerminal, "ValidationCheck");
    Find<QLineEdit>(aTerminal, "FileEdit")->setText(file.fileName());
    Click(aTerminal, "SendFileButton");
    QWidget *window = aTerminal.GetQWidget();
    const QScrollBar *bar = Find<QAbstractScrollArea>(aTerminal, "Transcript")->verticalScrollBar();
    return mTour.WaitUntil(QStringLiteral("the middle of the file"), [bar] { return bar->maximum() > 150; }) &&
           mTour.Shoot(window, QStringLiteral("terminal-sending")) &&
           mTour.WaitUntil(QStringLiteral("the end of the file"),
                           [&] { return Find<QWidget>(aTerminal, "SendFileButton")->isEnabled(); }) &&
           mTour.Shoot(window, QStringLiteral("terminal-sent"));
}
