#include "LxDevice/LxDevice.h"

LxDeviceEventSink::~LxDeviceEventSink() = default;

void LxDeviceEventSink::OnLinkDisconnected(LxDevice *) {}

void LxDeviceEventSink::OnLinkReconnected(LxDevice *) {}

LxDevice::LxDevice() = default;

LxDevice::~LxDevice() = default;
