#include "LxGUI/DeviceFinder/DeviceTree.h"

DeviceTree::~DeviceTree()
{
    emit AboutToBeDestroyed(this);
}
