#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfoInterface.h"

/// A USB host controller in the device tree.
class TreeItemInfoUSBHostController : public TreeItemInfoInterface
{
public:
    void FillRows(const LxSystem &aSystem, const LxInterface &aInterface) override;
    void ChooseIcon(const LxSystem &aSystem, const LxInterface &aInterface) override;
};
