#include "LxGUI/SerialTerminal/SerialTerminalWnd.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QFileDialog>
#include <chrono>
#include <utility>

#include "LxDevice/ILxDeviceAdapter.h"
#include "LxGUI/Frame/MessageBoxes.h"
#include "LxGUI/Frame/OwnedApplication.h"
#include "LxGUI/Frame/Text.h"
#include "LxGUI/SerialTerminal/PortFeatures.h"
#include "LxGUI/SerialTerminal/SendBytes.h"
#include "LxGUI/SerialTerminal/SendFileThread.h"
#include "LxGUI/SerialTerminal/SerialTerminalThread.h"

namespace
{

// The window offers the UARTs and seven bulk ports; the eighth can only be selected by the host.
constexpr LxDeviceSerial Ports[] = {LxDeviceSerial::Serial0, LxDeviceSerial::Serial1, LxDeviceSerial::Bulk0,
                                    LxDeviceSerial::Bulk1,   LxDeviceSerial::Bulk2,   LxDeviceSerial::Bulk3,
                                    LxDeviceSerial::Bulk4,   LxDeviceSerial::Bulk5,   LxDeviceSerial::Bulk6};

// A chunk of the port has at most five lines.
constexpr qsizetype AlmostFull = TranscriptFormatter::Capacity - 5 * TranscriptFormatter::HybridLine;
constexpr qsizetype Much = TranscriptFormatter::Capacity / 2;
constexpr std::chrono::milliseconds LongestWait{20};

constexpr char HexHint[] =
    "Bytes must be provided as pairs of hexadecimal digits\r\n"
    "separated by spaces.\r\n\r\n"
    "Example: 03 64 70 6D AB 43 72 01 02";

}  // namespace

SerialTerminalWnd::SerialTerminalWnd()
{
    SetTitle("Device Serial Communication");
}

SerialTerminalWnd::~SerialTerminalWnd()
{
    StopAndClose();
}

// The device and its ports

LxResult SerialTerminalWnd::SetDevice(ILxDeviceAdapter *aAdapter)
{
    mAdapter = aAdapter;
    mWatch.SetAdapter(this, aAdapter, [this] { SetDevice(nullptr); });
    FillPorts();
    if (IsOpen()) {
        Reopen();  // The port of the device that it had must not outlive it.
    }
    else {
        UpdateSpeed();
        UpdateLoopback();
    }
    if (!mAdapter) {
        return LxResultCode::OK;
    }
    for (const LxDeviceSerial port : Ports) {
        if (LxDeviceSerialPort::IsSupported(mAdapter, port)) {
            return LxResultCode::OK;
        }
    }
    return LxResultCode::NoSerialPort;
}

LxResult SerialTerminalWnd::SetSerialPort(LxDeviceSerial aPort)
{
    if (!mAdapter) {
        mSelected = aPort;
        return LxResultCode::OK;
    }
    if (!LxDeviceSerialPort::IsSupported(mAdapter, aPort)) {
        return LxResultCode::Unavailable;
    }
    mSelected = aPort;
    if (mPortCombo) {
        // The number of the port is the index on purpose, also where the list leaves ports out.
        const QSignalBlocker blocker(mPortCombo);
        mPortCombo->setCurrentIndex(static_cast<int>(aPort));
    }
    if (Widget() && Widget()->isVisible()) {
        Reopen();
    }
    return LxResultCode::OK;
}

LxGenParameterArray *SerialTerminalWnd::Parameters() const
{
    return mAdapter ? mAdapter->GetParameters() : nullptr;
}

void SerialTerminalWnd::FillPorts()
{
    if (!mPortCombo || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    const QSignalBlocker blocker(mPortCombo);
    mPortCombo->clear();
    for (const LxDeviceSerial port : Ports) {
        if (LxDeviceSerialPort::IsSupported(mAdapter, port)) {
            mPortCombo->addItem(ToQString(LxDeviceSerialToString(port)), static_cast<uint>(port));
        }
    }
    const int index = mPortCombo->findData(static_cast<uint>(mSelected));
    mPortCombo->setCurrentIndex(index < 0 && mPortCombo->count() > 0 ? 0 : index);
}

void SerialTerminalWnd::OnPortChange(int aIndex)
{
    if (aIndex < 0 || !mPortCombo) {
        return;
    }
    mSelected = static_cast<LxDeviceSerial>(mPortCombo->itemData(aIndex).toUInt());
    Reopen();
}

void SerialTerminalWnd::UpdateSpeed()
{
    if (!mSpeedCombo || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    LxGenParameter *feature = FindSpeedFeature(Parameters(), mSelected);
    const SpeedChoices choices = feature ? ReadSpeed(*feature) : SpeedChoices();
    const QSignalBlocker blocker(mSpeedCombo);
    mSpeedCombo->clear();
    mSpeedCombo->addItems(choices.mTexts);
    mSpeedCombo->setCurrentIndex(choices.mCurrent);
    mSpeedCombo->setEnabled(feature != nullptr);
}

void SerialTerminalWnd::UpdateLoopback()
{
    if (!mLoopbackCheck || !OwnedApplication::CanMakeWidgets()) {
        return;
    }
    LxGenParameter *feature = FindLoopbackFeature(Parameters(), mSelected);
    mLoopbackCheck->setChecked(feature && ReadFlag(*feature));
    mLoopbackCheck->setEnabled(feature != nullptr);
}

void SerialTerminalWnd::OnSpeedChange(int aIndex)
{
    LxGenParameter *feature = FindSpeedFeature(Parameters(), mSelected);
    if (aIndex >= 0 && feature && mSpeedCombo && !WriteSpeed(*feature, mSpeedCombo->currentText()).IsOK()) {
        UpdateSpeed();
    }
}

void SerialTerminalWnd::OnLoopbackChange(bool aChecked)
{
    LxGenParameter *feature = FindLoopbackFeature(Parameters(), mSelected);
    if (!feature || !WriteFlag(*feature, aChecked).IsOK()) {
        UpdateLoopback();
    }
}

// Opening and closing

void SerialTerminalWnd::OnOpen()
{
    Reopen();
    if (IsDialog() && mDataEdit) {
        mDataEdit->setFocus();  // can take it now that the port is open
    }
}

void SerialTerminalWnd::OnClose()
{
    StopAndClose();
    UpdateControls();
}

void SerialTerminalWnd::Reopen()
{
    if (mAdapter && mPortCombo && mPortCombo->currentIndex() >= 0 &&
        !LxDeviceSerialPort::IsSupported(mAdapter, mSelected)) {
        mSelected = static_cast<LxDeviceSerial>(mPortCombo->currentData().toUInt());
    }
    SelectBulkPort(Parameters(), mSelected);
    StopAndClose();
    if (mAdapter) {
        mPort.Open(mAdapter, mSelected);
        // Started whatever came of that: reading fails then, slowly.
        mReceiveThread = std::make_unique<SerialTerminalThread>(this);
        mReceiveThread->start(QThread::TimeCriticalPriority);
    }
    UpdateControls();
    UpdateSpeed();
    UpdateLoopback();
}

void SerialTerminalWnd::StopSending()
{
    mSendThread.reset();
    mSending = false;
}

void SerialTerminalWnd::StopAndClose()
{
    StopSending();
    mReceiveThread.reset();
    mPort.Close();
    ShowPending();
}

bool SerialTerminalWnd::eventFilter(QObject *aObject, QEvent *aEvent)
{
    if (aEvent->type() == QEvent::Close && aObject == Widget() && mSendThread) {
        mSendThread->Stop();
    }
    return QObject::eventFilter(aObject, aEvent);
}

void SerialTerminalWnd::UpdateControls()
{
    if (!OwnedApplication::CanMakeWidgets()) {
        return;
    }
    const bool open = mPort.IsOpened();
    const bool idle = open && !mSending;
    const std::pair<QWidget *, bool> controls[] = {
        {mDataEdit, open},     {mSendButton, idle},     {mFileEdit, open},
        {mBrowseButton, idle}, {mSendFileButton, idle}, {mValidationCheck, open},
    };
    for (const auto &[widget, enabled] : controls) {
        if (widget) {
            widget->setEnabled(enabled);
        }
    }
    if (mOtherCheck && mOtherLabel && mOtherEdit) {
        mOtherLabel->setEnabled(mOtherCheck->isChecked());
        mOtherEdit->setEnabled(mOtherCheck->isChecked());
    }
}

void SerialTerminalWnd::SetCursor(Qt::CursorShape aShape)
{
    if (Widget()) {
        Widget()->setCursor(aShape);
    }
}

// Sending typed bytes

void SerialTerminalWnd::OnBnClickedOthercheck(int /*aState*/)
{
    UpdateControls();
}

void SerialTerminalWnd::OnBnClickedSend()
{
    QByteArray bytes;
    if (!mDataEdit || !CollectBytes(bytes)) {
        return;
    }
    auto *data = reinterpret_cast<uint8_t *>(bytes.data());
    const auto count = static_cast<uint32_t>(bytes.size());
    if (mEchoCheck->isChecked()) {
        Render(data, count);
    }
    SetCursor(Qt::WaitCursor);
    uint32_t written = 0;
    mPort.Write(data, count, written);
    SetCursor(Qt::ArrowCursor);
}

bool SerialTerminalWnd::CollectBytes(QByteArray &aBytes)
{
    if (!mSendAsHexadecimal->isChecked()) {
        aBytes = BytesOfText(mDataEdit->text());
    }
    else if (!AppendHexText(*mDataEdit, QStringLiteral("Error parsing send data string."), aBytes)) {
        return false;
    }
    const std::pair<const QCheckBox *, char> trailers[] = {{mCRCheck, '\r'}, {mLFCheck, '\n'}, {mNullCheck, '\0'}};
    for (const auto &[check, byte] : trailers) {
        if (check->isChecked()) {
            aBytes.append(byte);
        }
    }
    return !mOtherCheck->isChecked() ||
           AppendHexText(*mOtherEdit, QStringLiteral("Error parsing other trailer string."), aBytes);
}

bool SerialTerminalWnd::AppendHexText(const QLineEdit &aEdit, const QString &aError, QByteArray &aBytes)
{
    if (AppendHexBytes(aEdit.text(), aBytes)) {
        return true;
    }
    ShowCritical(Widget(), aError + QLatin1String("\r\n\r\n") + QLatin1String(HexHint));
    return false;
}

// Sending a file

void SerialTerminalWnd::OnBrowseFile()
{
    const QString path = QFileDialog::getOpenFileName(Widget(), tr("Send file data"), QStringLiteral("/home"));
    if (mFileEdit && !path.isEmpty()) {
        mFileEdit->setText(path);
    }
}

void SerialTerminalWnd::OnSendFile()
{
    if (!mFileEdit) {
        return;
    }
    SetCursor(Qt::WaitCursor);
    StopSending();
    mSendThread = std::make_unique<SendFileThread>(this, mFileEdit->text());
    mSendThread->SetEcho(mEchoCheck->isChecked());
    if (mValidationCheck->isChecked()) {
        mLoopback.Reset();
        mSendThread->SetLoopback(true);
    }
    mSending = true;
    UpdateControls();
    connect(mSendThread.get(), SIGNAL(completed(bool)), this, SLOT(OnSendFileCompleted(bool)));
    connect(mSendThread.get(), SIGNAL(printText(const QString &)), this, SLOT(RenderText(const QString &)));
    // Directly, because the bytes are gone when a queued call arrives.
    connect(mSendThread.get(), &SendFileThread::printBytes, this, &SerialTerminalWnd::OnEcho, Qt::DirectConnection);
    mSendThread->start(QThread::TimeCriticalPriority);
}

void SerialTerminalWnd::OnEcho(uint8_t *aBytes, uint32_t aByteCount)
{
    const std::lock_guard lock(mEchoMutex);
    if (mEcho.isEmpty()) {
        QMetaObject::invokeMethod(this, &SerialTerminalWnd::RenderEcho, Qt::QueuedConnection);
    }
    mEcho.append(reinterpret_cast<const char *>(aBytes), static_cast<qsizetype>(aByteCount));
}

void SerialTerminalWnd::RenderEcho()
{
    QByteArray bytes;
    {
        const std::lock_guard lock(mEchoMutex);
        bytes.swap(mEcho);
    }
    Render(reinterpret_cast<uint8_t *>(bytes.data()), static_cast<uint32_t>(bytes.size()));
}

void SerialTerminalWnd::OnSendFileCompleted(bool aReadResult)
{
    mSending = false;
    UpdateControls();
    SetCursor(Qt::ArrowCursor);
    if (!aReadResult && IsOpen()) {
        const QString path = mSendThread ? mSendThread->Path() : QString();
        ShowError(Widget(),
                  tr("The following file could not be opened or was empty: ") + QLatin1Char('\'') + path +
                      QLatin1String("'."),
                  QStringLiteral("Error!"));
    }
}

// The transcript

void SerialTerminalWnd::Render(uint8_t *aBytes, uint32_t aByteCount)
{
    const std::lock_guard lock(mOutputMutex);
    mFormatter.Add(aBytes, aByteCount);
    mPendingCount = mFormatter.PendingCount();
}

void SerialTerminalWnd::RenderText(const QString &aText)
{
    const std::lock_guard lock(mOutputMutex);
    MovePendingToView();
    mFormatter.StartLine();
    if (mView) {
        mView->AppendText(aText);
    }
}

bool SerialTerminalWnd::HasRoom(bool aWait)
{
    if (mPendingCount < AlmostFull) {
        return true;
    }
    std::unique_lock lock(mOutputMutex);
    return mOutputTaken.wait_for(lock, aWait ? LongestWait : std::chrono::milliseconds(0),
                                 [this] { return mPendingCount < AlmostFull; });
}

void SerialTerminalWnd::RequestShow()
{
    if (mShowState == ShowState::Promised && mPendingCount < Much) {
        return;
    }
    if (mShowState.exchange(ShowState::Requested) != ShowState::Requested) {
        QCoreApplication::postEvent(this, new QEvent(ShowEvent));
    }
}

bool SerialTerminalWnd::event(QEvent *aEvent)
{
    if (aEvent->type() == ShowEvent) {
        // A port in full flow would ask again for each of its chunks, and have the window take them one by one.
        mShowTimer.start(TranscriptView::FrameTime, this);
        mShowState = ShowState::Promised;
        ShowPending();
        return true;
    }
    return Wnd::event(aEvent);
}

void SerialTerminalWnd::timerEvent(QTimerEvent *aEvent)
{
    if (aEvent->timerId() == mShowTimer.timerId()) {
        mShowTimer.stop();
        mShowState = ShowState::Idle;
        ShowPending();
    }
    else {
        Wnd::timerEvent(aEvent);
    }
}

void SerialTerminalWnd::ShowPending()
{
    const std::lock_guard lock(mOutputMutex);
    MovePendingToView();
}

void SerialTerminalWnd::MovePendingToView()
{
    const TranscriptUpdate update = mFormatter.Take(mView ? QStringView(mView->Text()) : QStringView());
    mPendingCount = 0;
    if (mView && OwnedApplication::CanMakeWidgets()) {
        mView->Apply(update);
    }
    mOutputTaken.notify_one();
}

void SerialTerminalWnd::ClearTranscript()
{
    const std::lock_guard lock(mOutputMutex);
    mFormatter.SetFormat(!mAsciiFormat                     ? TranscriptFormat::Ascii
                         : mHexadecimalFormat->isChecked() ? TranscriptFormat::Hexadecimal
                         : mHybridFormat->isChecked()      ? TranscriptFormat::Hybrid
                                                           : TranscriptFormat::Ascii);
    mPendingCount = 0;
    if (mView) {
        mView->Clear();
    }
}

void SerialTerminalWnd::OnBnClickedClear()
{
    ClearTranscript();
}

void SerialTerminalWnd::OnAsciiFormatToggled(bool /*aChecked*/)
{
    ClearTranscript();
}

void SerialTerminalWnd::OnHexadecimalFormatToggled(bool /*aChecked*/)
{
    ClearTranscript();
}

void SerialTerminalWnd::OnHybridFormatToggled(bool /*aChecked*/)
{
    ClearTranscript();
}
