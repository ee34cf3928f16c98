#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QByteArray>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGUI/Frame/ObjectWatch.h"
#include "LxGUI/Frame/Wnd.h"
#include "LxGUI/SerialTerminal/LoopbackRecord.h"
#include "LxGUI/SerialTerminal/TranscriptFormatter.h"
#include "LxGUI/SerialTerminal/TranscriptView.h"

class ILxDeviceAdapter;
class LxGenParameterArray;
class QBoxLayout;
class SendFileThread;
class SerialTerminalThread;

/// The window behind LxSerialTerminalWnd.
class SerialTerminalWnd : public Wnd
{
    Q_OBJECT

public:
    /// Makes the window show its pending output.
    static constexpr auto ShowEvent = static_cast<QEvent::Type>(7800);

    SerialTerminalWnd();
    ~SerialTerminalWnd() override;

    LxResult SetDevice(ILxDeviceAdapter *aAdapter);
    LxResult SetSerialPort(LxDeviceSerial aPort);
    LxDeviceSerial GetSerialPort() const { return mSelected; }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override;
    bool event(QEvent *aEvent) override;

    // For the threads; from any thread.
    LxDeviceSerialPort &Port() { return mPort; }
    LoopbackRecord &Loopback() { return mLoopback; }
    qsizetype PendingCount() const { return mPendingCount; }
    /// Posts ShowEvent, unless one is on its way. Within a frame after one it does so only when much is pending,
    /// because the window then looks by itself.
    void RequestShow();
    /// Whether the pending output has room for another chunk of the port; what does not fit is dropped.
    /// @param aWait whether to wait for it, but only for a moment.
    bool HasRoom(bool aWait);

public slots:
    void OnBnClickedOthercheck(int aState);
    void OnBnClickedSend();
    void OnBnClickedClear();
    void OnAsciiFormatToggled(bool aChecked);
    void OnHexadecimalFormatToggled(bool aChecked);
    void OnHybridFormatToggled(bool aChecked);
    void OnPortChange(int aIndex);
    void OnSpeedChange(int aIndex);
    void OnLoopbackChange(bool aChecked);
    void OnBrowseFile();
    void OnSendFile();
    void OnSendFileCompleted(bool aReadResult);
    /// Puts bytes into the pending output. From any thread.
    void Render(uint8_t *aBytes, uint32_t aByteCount);
    void RenderText(const QString &aText);

protected:
    void CreateLayout() override;
    void OnOpen() override;
    void OnClose() override;
    void timerEvent(QTimerEvent *aEvent) override;

private:
    void AddPortGroup(QWidget *aParent, QBoxLayout &aLayout);
    void AddSendGroup(QWidget *aParent, QBoxLayout &aLayout);
    void AddFileGroup(QWidget *aParent, QBoxLayout &aLayout);
    void AddTranscriptGroup(QWidget *aParent, QBoxLayout &aLayout);

    LxGenParameterArray *Parameters() const;
    /// Fills the list of ports and shows the selected one; no slot is called.
    void FillPorts();
    void UpdateControls();
    void UpdateSpeed();
    void UpdateLoopback();
    void Reopen();
    void StopAndClose();
    void StopSending();
    /// The bytes to send; false when a text is wrong, which was shown then.
    bool CollectBytes(QByteArray &aBytes);
    bool AppendHexText(const QLineEdit &aEdit, const QString &aError, QByteArray &aBytes);
    void OnEcho(uint8_t *aBytes, uint32_t aByteCount);
    void RenderEcho();
    void ClearTranscript();
    void ShowPending();
    /// With mOutputMutex held.
    void MovePendingToView();
    void SetCursor(Qt::CursorShape aShape);

    ILxDeviceAdapter *mAdapter = nullptr;
    ObjectWatch mWatch;  // of the above
    LxDeviceSerial mSelected = LxDeviceSerial::Serial0;
    LxDeviceSerialPort mPort;
    LoopbackRecord mLoopback;
    std::unique_ptr<SerialTerminalThread> mReceiveThread;  // null while no port is open
    std::unique_ptr<SendFileThread> mSendThread;           // null until a file is sent
    bool mSending = false;

    mutable std::mutex mOutputMutex;  // guards mFormatter; never held while waiting for a thread
    TranscriptFormatter mFormatter;
    std::atomic<qsizetype> mPendingCount = 0;  // of mFormatter, for those that do not hold the mutex
    std::condition_variable mOutputTaken;
    enum class ShowState
    {
        Idle,
        Requested,  // a ShowEvent is on its way
        Promised,   // mShowTimer runs
    };
    std::atomic<ShowState> mShowState = ShowState::Idle;
    QBasicTimer mShowTimer;
    std::mutex mEchoMutex;  // guards mEcho
    QByteArray mEcho;       // bytes of the file that were sent but not rendered

    QPointer<QComboBox> mPortCombo;
    QPointer<QComboBox> mSpeedCombo;
    QPointer<QCheckBox> mLoopbackCheck;
    QPointer<QRadioButton> mSendAsHexadecimal;
    QPointer<QLineEdit> mDataEdit;
    QPointer<QPushButton> mSendButton;
    QPointer<QCheckBox> mCRCheck;
    QPointer<QCheckBox> mLFCheck;
    QPointer<QCheckBox> mNullCheck;
    QPointer<QCheckBox> mOtherCheck;
    QPointer<QLabel> mOtherLabel;
    QPointer<QLineEdit> mOtherEdit;
    QPointer<QLineEdit> mFileEdit;
    QPointer<QPushButton> mBrowseButton;
    QPointer<QPushButton> mSendFileButton;
    QPointer<QCheckBox> mValidationCheck;
    QPointer<QRadioButton> mAsciiFormat;
    QPointer<QRadioButton> mHexadecimalFormat;
    QPointer<QRadioButton> mHybridFormat;
    QPointer<QCheckBox> mEchoCheck;
    QPointer<TranscriptView> mView;
};
