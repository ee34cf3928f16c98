#include "NodeMap/MemoryPort.h"

#include <algorithm>
#include <cassert>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace LxDetail
{

namespace
{

bool Overlaps(uint64_t aAddress, uint64_t aLength, uint64_t aOtherAddress, uint64_t aOtherLength)
{
    return aAddress < aOtherAddress + aOtherLength && aOtherAddress < aAddress + aLength;
}

std::string Hex(uint64_t aAddress)
{
    char text[24];
    std::snprintf(text, sizeof(text), "0x%08" PRIX64, aAddress);
    return text;
}

LxResult NoRegister(uint64_t aAddress)
{
    return LxResult(LxResultCode::InvalidAddress, "There is no register at " + Hex(aAddress) + ".");
}

}  // namespace

void MemoryPort::Map(uint64_t aAddress, uint64_t aLength, bool aWritable)
{
    std::lock_guard lock(mMutex);
    assert(aLength > 0 && aAddress + aLength > aAddress);
    assert(std::none_of(mBlocks.begin(), mBlocks.end(), [&](const auto &aBlock) {
        return Overlaps(aAddress, aLength, aBlock.first, aBlock.second.mBytes.size());
    }));
    mBlocks[aAddress] = Block{std::vector<uint8_t>(aLength), aWritable};
}

void MemoryPort::OnRead(uint64_t aAddress, uint64_t aLength, Hook aHook)
{
    std::lock_guard lock(mMutex);
    mReadHooks.push_back({aAddress, aLength, std::make_shared<Hook>(std::move(aHook))});
}

void MemoryPort::OnWrite(uint64_t aAddress, uint64_t aLength, Hook aHook)
{
    std::lock_guard lock(mMutex);
    mWriteHooks.push_back({aAddress, aLength, std::make_shared<Hook>(std::move(aHook))});
}

LxResult MemoryPort::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    {
        std::lock_guard lock(mMutex);
        if (LxResult result = Check(aAddress, aLength, false); !result.IsOK()) {
            return result;
        }
        if (mReadHooks.empty()) {
            CopyOut(aAddress, aData, aLength);
            return LxResult();
        }
    }
    if (LxResult result = RunHooks(mReadHooks, aAddress, aLength); !result.IsOK()) {
        return result;
    }
    std::lock_guard lock(mMutex);
    CopyOut(aAddress, aData, aLength);
    return LxResult();
}

LxResult MemoryPort::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    {
        std::lock_guard lock(mMutex);
        if (LxResult result = Check(aAddress, aLength, true); !result.IsOK()) {
            return result;
        }
        CopyIn(aAddress, aData, aLength);
    }
    return RunHooks(mWriteHooks, aAddress, aLength);
}

LxResult MemoryPort::RunHooks(const std::vector<HookEntry> &aHooks, uint64_t aAddress, uint32_t aLength)
{
    std::vector<std::shared_ptr<Hook>> hooks;
    {
        std::lock_guard lock(mMutex);
        for (const HookEntry &entry : aHooks) {
            if (Overlaps(aAddress, aLength, entry.mAddress, entry.mLength)) {
                hooks.push_back(entry.mHook);
            }
        }
    }
    for (const auto &hook : hooks) {
        if (LxResult result = (*hook)(*this, aAddress, aLength); !result.IsOK()) {
            return result;
        }
    }
    return LxResult();
}

bool MemoryPort::Peek(uint64_t aAddress, void *aData, uint32_t aLength) const
{
    std::lock_guard lock(mMutex);
    if (!Check(aAddress, aLength, false).IsOK()) {
        return false;
    }
    CopyOut(aAddress, aData, aLength);
    return true;
}

bool MemoryPort::Poke(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    std::lock_guard lock(mMutex);
    if (!Check(aAddress, aLength, false).IsOK()) {
        return false;
    }
    CopyIn(aAddress, aData, aLength);
    return true;
}

uint32_t MemoryPort::Peek32(uint64_t aAddress) const
{
    uint8_t bytes[4] = {};
    Peek(aAddress, bytes, sizeof(bytes));
    return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
           static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

void MemoryPort::Poke32(uint64_t aAddress, uint32_t aValue)
{
    const uint8_t bytes[4] = {static_cast<uint8_t>(aValue >> 24), static_cast<uint8_t>(aValue >> 16),
                              static_cast<uint8_t>(aValue >> 8), static_cast<uint8_t>(aValue)};
    Poke(aAddress, bytes, sizeof(bytes));
}

uint64_t MemoryPort::Peek64(uint64_t aAddress) const
{
    uint8_t bytes[8] = {};
    Peek(aAddress, bytes, sizeof(bytes));
    uint64_t value = 0;
    for (const uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return value;
}

void MemoryPort::Poke64(uint64_t aAddress, uint64_t aValue)
{
    uint8_t bytes[8];
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<uint8_t>(aValue >> (56 - 8 * i));
    }
    Poke(aAddress, bytes, sizeof(bytes));
}

void MemoryPort::PokeString(uint64_t aAddress, uint32_t aLength, const std::string &aText)
{
    std::string bytes = aText.substr(0, aLength);
    bytes.resize(aLength);
    Poke(aAddress, bytes.data(), aLength);
}

std::string MemoryPort::PeekString(uint64_t aAddress, uint32_t aLength) const
{
    std::string bytes(aLength, '\0');
    Peek(aAddress, bytes.data(), aLength);
    return bytes.substr(0, bytes.find('\0'));
}

LxResult MemoryPort::Check(uint64_t aAddress, uint64_t aLength, bool aForWriting) const
{
    if (aAddress + aLength < aAddress) {
        return NoRegister(aAddress);
    }
    const uint64_t end = aAddress + aLength;
    auto block = mBlocks.upper_bound(aAddress);
    if (block != mBlocks.begin()) {
        --block;
    }
    for (uint64_t at = aAddress; at < end; ++block) {
        if (block == mBlocks.end() || at < block->first || at >= block->first + block->second.mBytes.size()) {
            return NoRegister(at);
        }
        if (aForWriting && !block->second.mWritable) {
            return LxResult(LxResultCode::WriteProtected, "The register at " + Hex(at) + " cannot be written.");
        }
        at = block->first + block->second.mBytes.size();
    }
    return LxResult();
}

void MemoryPort::CopyOut(uint64_t aAddress, void *aData, uint64_t aLength) const
{
    auto *data = static_cast<uint8_t *>(aData);
    while (aLength > 0) {
        const auto &[start, block] = *std::prev(mBlocks.upper_bound(aAddress));
        const uint64_t offset = aAddress - start;
        const uint64_t count = std::min<uint64_t>(aLength, block.mBytes.size() - offset);
        std::memcpy(data, block.mBytes.data() + offset, count);
        data += count;
        aAddress += count;
        aLength -= count;
    }
}

void MemoryPort::CopyIn(uint64_t aAddress, const void *aData, uint64_t aLength)
{
    const auto *data = static_cast<const uint8_t *>(aData);
    while (aLength > 0) {
        auto &[start, block] = *std::prev(mBlocks.upper_bound(aAddress));
        const uint64_t offset = aAddress - start;
        const uint64_t count = std::min<uint64_t>(aLength, block.mBytes.size() - offset);
        std::memcpy(block.mBytes.data() + offset, data, count);
        data += count;
        aAddress += count;
        aLength -= count;
    }
}

}  // namespace LxDetail
