#include "LxSystem/LxNetworkAdapter.h"

LxNetworkAdapter::~LxNetworkAdapter() = default;
