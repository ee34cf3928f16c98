// GenDC containers, on arbitrary bytes: every byte of every image that is handed out is read.

#include <cstdlib>
#include <memory>

#include "LxBuffer/GenDCDescriptor.h"
#include "LxBuffer/LxGenDCContainer.h"

namespace
{

namespace GenDC = LxDetail::GenDC;

void Require(bool aCondition)
{
    if (!aCondition) {
        std::abort();
    }
}

uint8_t ReadImages(const ILxGenDCContainer &aContainer)
{
    uint8_t sum = 0;
    for (uint32_t c = 0; c < aContainer.GetComponentCount(); ++c) {
        const ILxGenDCComponent *component = aContainer.GetComponent(c);
        for (uint32_t p = 0; p < component->GetPartCount(); ++p) {
            const ILxGenDCImage *image = component->GetPart(p)->GetImage();
            if (!image) {
                continue;
            }
            const uint64_t needed =
                LxPixelTypeGetImageSize(image->GetPixelType(), image->GetWidth(), image->GetHeight(),
                                        image->GetPaddingX(), image->GetPaddingY());
            Require(needed > 0 && needed <= image->GetDataSize());
            const auto *data = static_cast<const uint8_t *>(image->GetDataPointer());
            for (uint64_t i = 0; i < image->GetDataSize(); ++i) {
                sum = static_cast<uint8_t>(sum + data[i]);
            }
        }
        Require(component->GetPart(component->GetPartCount()) == nullptr);
    }
    Require(aContainer.GetComponent(aContainer.GetComponentCount()) == nullptr);
    return sum;
}

// What was parsed is built and parsed again to the same, where it lies as it is built.
void TryBuilding(const GenDC::Descriptor &aDescriptor)
{
    constexpr uint64_t most = 1 << 16;
    uint64_t size = 0;
    for (const GenDC::Component &component : aDescriptor.mComponents) {
        for (const GenDC::Part &part : component.mParts) {
            if (part.mDataSize > most || (size += part.mDataSize) > most) {
                return;
            }
        }
    }
    GenDC::Descriptor built = aDescriptor;
    std::vector<uint8_t> bytes = GenDC::Build(built);
    bytes.resize(bytes.size() + built.mDataSize);
    GenDC::Descriptor again;
    Require(GenDC::Parse(bytes, again).IsOK() && again == built);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    GenDC::Descriptor descriptor;
    const bool parsed = GenDC::Parse({aData, aSize}, descriptor).IsOK();
    std::shared_ptr<const LxGenDCContainer> container;
    const std::shared_ptr<const void> memory(std::shared_ptr<const void>(), aData);
    Require(LxGenDCContainer::Parse(memory, aSize, container).IsOK() == parsed);
    if (parsed) {
        Require(container->GetSize() <= aSize);
        Require(ReadImages(*container) == ReadImages(*container));
        TryBuilding(descriptor);
    }
    return 0;
}
