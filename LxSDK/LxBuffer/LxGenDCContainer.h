#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxBuffer/ILxGenDC.h"

/// A GenDC container in memory (EMVA GenICam Generic Data Container, versions 1.x), read where it lies: nothing is
/// copied.
///
/// Part images are uncompressed two-dimensional parts (header type 0x4200) of components that the device does not call
/// invalid and whose data are in the container itself (flow 0). A part with a format of no size, or with lines that
/// begin within a byte, has no image. Never changes, so that any thread may read it.
class LX_API LxGenDCContainer : public ILxGenDCContainer
{
public:
    /// Reads the descriptor of a container. What it says is believed only where it fits the memory: after success every
    /// image can be read as a whole. Unknown kinds of parts and newer minor versions are taken as they come.
    /// @param aData the first byte of the descriptor; is kept as long as the container. With an owner that does nothing
    ///        the memory must outlive the container. It must not change meanwhile.
    /// @param aSize the bytes that may be read from there; more than the container has do not matter.
    /// @param aContainer the container; on failure as it was.
    /// @return InvalidArgument for a null pointer; InvalidDataFormat when it is no container, when sizes, counts or
    ///         offsets are wrong, headers or data overlap, an image is larger than its data or the end is missing;
    ///         NotSupported for another major version than 1; BufferIncomplete when the descriptor is a preliminary
    ///         one, whose values may still change; NoMemory.
    static LxResult Parse(std::shared_ptr<const void> aData, uint64_t aSize,
                          std::shared_ptr<const LxGenDCContainer> &aContainer);
    ~LxGenDCContainer() override;

    /// The number of the container; it grows by one from container to container.
    uint64_t GetID() const;
    /// In bytes, from the first of the descriptor to the last of the data.
    uint64_t GetSize() const;
    uint32_t GetComponentCount() const override;
    const ILxGenDCComponent *GetComponent(uint32_t aIndex) const override;

private:
    class Data;
    explicit LxGenDCContainer(std::unique_ptr<Data> aData);

    const std::unique_ptr<Data> mData;
};
