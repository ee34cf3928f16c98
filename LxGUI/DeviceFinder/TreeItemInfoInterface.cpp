#include "LxGUI/DeviceFinder/TreeItemInfoInterface.h"

#include "LxSystem/LxInterface.h"

TreeItemInfoInterface::~TreeItemInfoInterface() = default;

void TreeItemInfoInterface::Refill(const LxSystem &aSystem, const LxInterface &aInterface)
{
    ClearRows();
    SetIdentity(aInterface.GetDisplayID(), aInterface.GetUniqueID());
    mInterfaceType = aInterface.GetType();
    FillRows(aSystem, aInterface);
    ChooseIcon(aSystem, aInterface);
}
