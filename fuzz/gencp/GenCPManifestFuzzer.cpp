// What a GenCP camera says of its XML files, with arbitrary bytes for the memory behind its bootstrap registers.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "LxCameraBridge/GenCPManifest.h"
#include "LxCameraBridge/GenCPPacket.h"

using namespace LxDetail;

namespace
{

constexpr uint64_t TableAddress = 0x10000;

/// Its memory from the table on is the input.
class Camera : public CameraRegisters
{
public:
    Camera(const uint8_t *aData, size_t aSize) : mMemory(aData), mSize(aSize) {}

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override
    {
        if (aAddress == GenCP::RegManifestAddress && aLength == 8) {
            const uint8_t address[8] = {0, 0, 0, 0, 0, TableAddress >> 16, 0, 0};
            std::memcpy(aData, address, sizeof(address));
            return LxResult();
        }
        const uint64_t offset = aAddress - TableAddress;
        if (aAddress < TableAddress || offset > mSize || aLength > mSize - offset) {
            return LxResultCode::InvalidAddress;
        }
        std::copy_n(mMemory + offset, aLength, static_cast<uint8_t *>(aData));
        return LxResult();
    }
    LxResult Write(uint64_t, const void *, uint32_t) override { return LxResultCode::WriteProtected; }
    LxResult Ping() override { return LxResult(); }

private:
    const uint8_t *mMemory;
    size_t mSize;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize)
{
    Camera camera(aData, aSize);
    std::string name;
    ReadGenCPString(camera, TableAddress, name);
    std::vector<GenCPFile> files;
    if (!ReadGenCPManifest(camera, files).IsOK()) {
        return 0;
    }
    if (files.empty()) {
        std::abort();
    }
    for (const GenCPFile &file : files) {
        const std::string id = MakeGenCPXMLID(file, name, "Model");
        std::string xml;
        if (std::count(id.begin(), id.end(), '#') != 2 || (!ReadGenCPFile(camera, file, xml).IsOK() && !xml.empty())) {
            std::abort();
        }
    }
    return 0;
}
