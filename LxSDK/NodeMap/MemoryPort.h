#pragma once

// Internal: a register space in memory.

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "NodeMap/RegisterPort.h"

namespace LxDetail
{

/// A sparse register space in memory, in blocks of mapped addresses, with hooks. Thread-safe.
///
/// Reading or writing a byte that is not mapped gives InvalidAddress; writing a read-only block gives WriteProtected;
/// nothing is read or written then. An access may span adjoining blocks.
class MemoryPort : public RegisterPort
{
public:
    /// Called before a read (to bring registers up to date) or after a write of bytes that overlap its range, on the
    /// thread of the access, without the port's lock, so that it may use Peek() and Poke(). A result other than OK
    /// becomes the result of the access; a failing write hook does not undo the write.
    using Hook = std::function<LxResult(MemoryPort &aPort, uint64_t aAddress, uint32_t aLength)>;

    /// Maps zeroed bytes. Overlapping an existing block is a programming error (asserted).
    void Map(uint64_t aAddress, uint64_t aLength, bool aWritable = true);
    void OnRead(uint64_t aAddress, uint64_t aLength, Hook aHook);
    void OnWrite(uint64_t aAddress, uint64_t aLength, Hook aHook);

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;

    /// Access from the device's side: no hooks, no write protection. False when not mapped.
    bool Peek(uint64_t aAddress, void *aData, uint32_t aLength) const;
    bool Poke(uint64_t aAddress, const void *aData, uint32_t aLength);
    /// Big-endian registers of 32 and 64 bits; 0 when not mapped.
    uint32_t Peek32(uint64_t aAddress) const;
    void Poke32(uint64_t aAddress, uint32_t aValue);
    uint64_t Peek64(uint64_t aAddress) const;
    void Poke64(uint64_t aAddress, uint64_t aValue);
    /// A text of at most aLength bytes, filled with zero bytes.
    void PokeString(uint64_t aAddress, uint32_t aLength, const std::string &aText);
    std::string PeekString(uint64_t aAddress, uint32_t aLength) const;

private:
    struct Block
    {
        std::vector<uint8_t> mBytes;
        bool mWritable = true;
    };
    struct HookEntry
    {
        uint64_t mAddress;
        uint64_t mLength;
        std::shared_ptr<Hook> mHook;
    };

    /// Whether every byte of the range is mapped (and writable, when that is asked).
    LxResult Check(uint64_t aAddress, uint64_t aLength, bool aForWriting) const;
    void CopyOut(uint64_t aAddress, void *aData, uint64_t aLength) const;
    void CopyIn(uint64_t aAddress, const void *aData, uint64_t aLength);
    LxResult RunHooks(const std::vector<HookEntry> &aHooks, uint64_t aAddress, uint32_t aLength);

    mutable std::mutex mMutex;  // guards all members below
    std::map<uint64_t, Block> mBlocks;
    std::vector<HookEntry> mReadHooks;
    std::vector<HookEntry> mWriteHooks;
};

}  // namespace LxDetail
