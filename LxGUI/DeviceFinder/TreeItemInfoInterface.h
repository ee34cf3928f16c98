#pragma once

#include "LxGUI/DeviceFinder/TreeItemInfo.h"

class LxInterface;
class LxSystem;

/// An interface of the host in the device tree.
class TreeItemInfoInterface : public TreeItemInfo
{
public:
    ~TreeItemInfoInterface() override;

    bool IsDevice() const override { return false; }
    bool IsInterface() const override { return true; }
    virtual void FillRows(const LxSystem &aSystem, const LxInterface &aInterface) = 0;
    virtual void ChooseIcon(const LxSystem &aSystem, const LxInterface &aInterface) = 0;

    /// One of LxInterfaceType.
    int GetInterfaceType() const { return mInterfaceType; }
    /// Takes over everything from the interface.
    void Refill(const LxSystem &aSystem, const LxInterface &aInterface);

private:
    int mInterfaceType = 0;
};
