#pragma once

#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <memory>

#include "GuiTest.h"
#include "LxBase/LxStringList.h"
#include "LxGUI/SerialBridgeManager/SerialBridgeManagerWnd.h"
#include "LxPersistence/LxPropertyList.h"
#include "PseudoTerminal.h"
#include "SimulatedGrabber.h"

/// The window over a simulated frame grabber with the ports Serial0 (rates known), Serial1 (no rates), Bulk0 and Bulk1;
/// COM3 and COM11 of the host are pseudo terminals.
class BridgeManagerFixture : public testing::Test
{
protected:
    static LxSimulatedDevice MakeValues()
    {
        LxSimulatedDevice values = SimulatedGrabber::MakeValues(0b1111);
        values.mUart1Speed = LxSimulatedSpeed::None;
        return values;
    }

    BridgeManagerFixture()
    {
        LxSerialBridge::SetCOMPortPath("COM3", mTerminal.GetName());
        LxSerialBridge::SetCOMPortPath("COM11", mOther.GetName());
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<LxSimulatedSerialEcho>());
        mWnd = std::make_unique<SerialBridgeManagerWnd>();
        mWnd->SetPortLister([] { return QStringList({"COM11", "ttyS0", "COM3", "COM4"}); });
    }
    ~BridgeManagerFixture() override
    {
        mWnd.reset();
        LxSerialBridge::SetCOMPortPath("COM3", "");
        LxSerialBridge::SetCOMPortPath("COM11", "");
    }

    void Show()
    {
        mWnd->SetDevice(mGrabber.GetAdapter());
        ASSERT_TRUE(mWnd->ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
    }
    template <class Control>
    Control *Find(const char *aName)
    {
        return mWnd->GetQWidget()->findChild<Control *>(aName);
    }
    QComboBox *Combo(const char *aName) { return Find<QComboBox>(aName); }
    QString Text(const char *aLabel) { return Find<QLabel>(aLabel)->text(); }
    void Press(const char *aRadio) { QTest::mouseClick(Find<QRadioButton>(aRadio), Qt::LeftButton, {}, {8, 8}); }
    bool IsChecked(const char *aRadio) { return Find<QRadioButton>(aRadio)->isChecked(); }
    void SelectPort(const char *aName)
    {
        Combo("PortSelectionCombo")->setCurrentIndex(Combo("PortSelectionCombo")->findText(aName));
    }
    void SelectCOMPort(const char *aName) { Combo("PortCombo")->setCurrentIndex(Combo("PortCombo")->findText(aName)); }
    /// The boxes that are enabled, and the one that is checked in brackets.
    QString Rates()
    {
        QStringList rates;
        for (const QCheckBox *check : mWnd->GetQWidget()->findChildren<QCheckBox *>()) {
            const QString rate = check->text().section(' ', 0, 0);
            if (check->isEnabled() || check->isChecked()) {
                rates << (check->isChecked() ? '[' + rate + ']' : rate);
            }
        }
        return rates.join(' ');
    }
    std::string SaveText()
    {
        LxPropertyList list;
        mWnd->Save(list);
        std::string text;
        for (LxProperty *property = list.GetFirst(); property; property = list.GetNext()) {
            text += property->GetName().GetString() + "=" + property->GetValue().GetString() + ";";
        }
        return text;
    }
    void SaveScreenshot(const char *aName)
    {
        const QByteArray folder = qgetenv("LXGUI_SCREENSHOTS");
        if (!folder.isEmpty()) {
            mWnd->GetQWidget()->grab().save(QString::fromLocal8Bit(folder) + '/' + aName + ".png");
        }
    }

    SimulatedGrabber mGrabber{MakeValues()};
    PseudoTerminal mTerminal;
    PseudoTerminal mOther;
    std::unique_ptr<SerialBridgeManagerWnd> mWnd;
};
