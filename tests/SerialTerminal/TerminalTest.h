#pragma once

#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <string>

#include "GuiTest.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "LxGUI/SerialTerminal/TranscriptView.h"
#include "SerialDevice.h"

/// Counts the events of a kind that an object gets; all objects, when it is the application.
class EventCounter : public QObject
{
public:
    EventCounter(QObject *aWatched, int aType) : mType(aType) { aWatched->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        mCount += aEvent->type() == mType;
        return false;
    }

    int mCount = 0;

private:
    const int mType;
};

/// A terminal that a test uses as a user does.
class Terminal : public LxSerialTerminalWnd
{
public:
    template <class Type>
    Type *Find(const char *aName)
    {
        return GetQWidget()->findChild<Type *>(aName);
    }
    QComboBox *PortCombo() { return Find<QComboBox>("PortCombo"); }
    QComboBox *SpeedCombo() { return Find<QComboBox>("SpeedCombo"); }
    QCheckBox *Check(const char *aName) { return Find<QCheckBox>(aName); }
    TranscriptView *View() { return Find<TranscriptView>("Transcript"); }
    QString Transcript() { return View()->Text(); }
    bool IsEnabled(const char *aName) { return Find<QWidget>(aName)->isEnabled(); }

    QStringList Ports() { return Texts(PortCombo()); }
    QStringList Speeds() { return Texts(SpeedCombo()); }
    void Type(const char *aName, const QString &aText)
    {
        auto *edit = Find<QLineEdit>(aName);
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        if (aText == QString::fromLatin1(aText.toLatin1())) {
            QTest::keyClicks(edit, aText);
        }
        else {
            edit->insert(aText);  // what no key of the test keyboard gives
        }
    }
    void Click(const char *aName) { QTest::mouseClick(Find<QPushButton>(aName), Qt::LeftButton); }
    /// Clicks the mark of a check box or radio button, where the style puts it.
    void Mark(const char *aName)
    {
        auto *button = Find<QAbstractButton>(aName);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
    }
    void Send(const char *aText)
    {
        Type("DataEdit", QString::fromUtf8(aText));
        Click("SendButton");
    }
    void SendFile(const QString &aPath)
    {
        Find<QLineEdit>("FileEdit")->setText(aPath);
        Click("SendFileButton");
    }
    bool IsSending() { return GetQWidget()->cursor().shape() == Qt::WaitCursor; }
    bool WaitUntilSent()
    {
        return WaitForGui([this] { return !IsSending(); });
    }
    /// Waits until the transcript is this text; reports what it is otherwise.
    testing::AssertionResult Shows(const QString &aText)
    {
        return WaitForGui([&] { return Transcript() == aText; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << '"' << Transcript().toStdString() << '"';
    }
    testing::AssertionResult ShowsInAll(const QString &aPart)
    {
        return WaitForGui([&] { return Transcript().contains(aPart); })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << '"' << Transcript().toStdString() << '"';
    }

private:
    static QStringList Texts(const QComboBox *aCombo)
    {
        QStringList texts;
        for (int i = 0; i < aCombo->count(); ++i) {
            texts << aCombo->itemText(i);
        }
        return texts;
    }
};

/// An open terminal on a device with one port.
class TerminalTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mWnd.SetDevice(&mDevice).IsOK());
        ASSERT_TRUE(mWnd.ShowModeless().IsOK());
    }
    ScriptedPort &Port() { return mDevice.Port(); }

    SerialDevice mDevice;
    Terminal mWnd;
};
