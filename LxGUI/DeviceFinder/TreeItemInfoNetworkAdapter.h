#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoInterface.h"

/// A network adapter in the device tree.
class TreeItemInfoNetworkAdapter : public TreeItemInfoInterface
{
public:
    void FillRows(const LxSystem &aSystem, const LxInterface &aInterface) override;
    void ChooseIcon(const LxSystem &aSystem, const LxInterface &aInterface) override;
};
