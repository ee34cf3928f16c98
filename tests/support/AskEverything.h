#pragma once

#include <algorithm>
#include <vector>

#include "LxGenICam/LxGenBoolean.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterList.h"
#include "LxGenICam/LxGenRegister.h"
#include "LxGenICam/LxGenString.h"

/// Calls every operation of a feature, for descriptions that are wrong: nothing of it may do harm.
inline void AskEverything(LxGenParameter &aFeature)
{
    LxString text;
    int64_t integer = 0;
    double real = 0;
    bool answer = false;
    int representation = 0;
    LxGenParameterList list;
    aFeature.GetSelectedParameters(list);
    aFeature.GetSelectingParameters(list);
    aFeature.IsImplemented(answer);
    aFeature.IsAvailable(answer);
    aFeature.IsReadable(answer);
    aFeature.IsWritable(answer);
    aFeature.ToString();
    aFeature.FromString("1");
    if (auto *number = dynamic_cast<LxGenInteger *>(&aFeature)) {
        number->GetValue(integer);
        number->GetMin(integer);
        number->GetMax(integer);
        number->GetIncrement(integer);
        number->GetUnit(text);
        number->GetRepresentation(representation);
        number->SetValue(integer);
    }
    if (auto *number = dynamic_cast<LxGenFloat *>(&aFeature)) {
        number->GetValue(real);
        number->GetMin(real);
        number->GetMax(real);
        number->SetValue(0.5);
    }
    if (auto *command = dynamic_cast<LxGenCommand *>(&aFeature)) {
        command->IsDone(answer);
        command->Execute();
    }
    if (auto *string = dynamic_cast<LxGenString *>(&aFeature)) {
        string->GetMaxLength(integer);
        string->SetValue("text");
    }
    if (auto *bytes = dynamic_cast<LxGenRegister *>(&aFeature)) {
        if (bytes->GetLength(integer).IsOK() && integer > 0) {
            std::vector<uint8_t> data(static_cast<size_t>(std::min<int64_t>(integer, 1 << 20)));
            bytes->Get(data.data(), static_cast<int64_t>(data.size()));
            bytes->Set(data.data(), static_cast<int64_t>(data.size()));
        }
    }
    if (auto *choice = dynamic_cast<LxGenEnum *>(&aFeature)) {
        int64_t count = 0;
        choice->GetValue(text);
        choice->GetEntriesCount(count);
        for (int64_t i = 0; i < std::min<int64_t>(count, 100); ++i) {
            const LxGenEnumEntry *entry = nullptr;
            if (choice->GetEntryByIndex(i, &entry).IsOK() && entry->GetValue(integer).IsOK()) {
                entry->IsAvailable(answer);
                choice->SetValue(integer);
            }
        }
    }
}
