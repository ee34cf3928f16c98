#include <cstdlib>

#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxGUI/Frame/BusyCursor.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

namespace
{

constexpr const char *IndexName = "CameraBridgeIndex";

}  // namespace

void CameraBridgeManagerWnd::Save(LxConfigurationWriter &aWriter)
{
    LxPropertyList list;
    int index = 0;
    for (const Entry &entry : mBridges) {
        const LxString name = std::to_string(index++);
        if (entry->mBridge->Save(name, aWriter).IsOK()) {
            list.Add(LxProperty(name, static_cast<uint32_t>(entry->mPort)));
        }
    }
    if (list.GetCount() > 0) {
        aWriter.Store(&list, IndexName);
    }
}

LxResult CameraBridgeManagerWnd::Load(LxConfigurationReader &aReader, LxStringList &aErrors)
{
    LxPropertyList list;
    if (const LxResult result = aReader.Restore(IndexName, &list); !result.IsOK()) {
        return result;
    }
    const QPointer<CameraBridgeManagerWnd> self(this);
    Browse(nullptr);  // loading a bridge takes its features away
    if (!self) {
        return LxResult();
    }
    for (const LxProperty *property = list.GetFirst(); property; property = list.GetNext()) {
        // a text that is no number reads as 0, which is the first port
        if (const Entry entry = FindEntry(std::strtoll(property->GetValue().GetAscii(), nullptr, 10))) {
            const BusyCursor cursor;
            LxStringList errors;
            entry->mBridge->Load(property->GetName(), aReader, errors);
            for (size_t i = 0; i < errors.GetSize(); ++i) {
                aErrors.Add(errors.GetItem(i));
            }
        }
    }
    for (const Entry &entry : mBridges) {
        entry->Synchronize();
    }
    FillPortCombo();
    RefreshPanel();
    if (self) {
        UpdateEnabledState();
    }
    return LxResult();
}
