#include "LxSystem/LxUSBHostController.h"

LxUSBHostController::~LxUSBHostController() = default;
