#include "LxCameraBridge/ZipFile.h"

#include <zlib.h>

#include <cstdint>

namespace LxDetail
{

namespace
{

constexpr char LocalSignature[] = "PK\x03\x04";
constexpr char CentralSignature[] = "PK\x01\x02";
constexpr char EndSignature[] = "PK\x05\x06";
constexpr size_t LocalSize = 30;
constexpr size_t CentralSize = 46;
constexpr size_t EndSize = 22;
constexpr uint16_t Stored = 0;
constexpr uint16_t Deflated = 8;

uint32_t Get(const std::string &aBytes, size_t aAt, size_t aSize)
{
    uint32_t value = 0;
    for (size_t i = aSize; i-- > 0;) {
        value = value << 8 | static_cast<uint8_t>(aBytes[aAt + i]);
    }
    return value;
}

void Put(std::string &aBytes, uint32_t aValue, size_t aSize)
{
    for (size_t i = 0; i < aSize; ++i) {
        aBytes += static_cast<char>(aValue >> 8 * i);
    }
}

LxResult Broken(const char *aWhy)
{
    return LxResult(LxResultCode::InvalidDataFormat, std::string("The ZIP file is broken: ") + aWhy + ".");
}

uint32_t Crc(const std::string &aBytes)
{
    return static_cast<uint32_t>(
        crc32(0, reinterpret_cast<const Bytef *>(aBytes.data()), static_cast<uInt>(aBytes.size())));
}

bool Inflate(const std::string &aPacked, std::string &aContent)
{
    z_stream stream = {};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        return false;
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(aPacked.data()));
    stream.avail_in = static_cast<uInt>(aPacked.size());
    stream.next_out = reinterpret_cast<Bytef *>(aContent.data());
    stream.avail_out = static_cast<uInt>(aContent.size());
    const int state = inflate(&stream, Z_FINISH);
    const bool complete = state == Z_STREAM_END && stream.avail_out == 0;
    inflateEnd(&stream);
    return complete;
}

}  // namespace

bool IsZip(const std::string &aBytes)
{
    return aBytes.compare(0, 4, LocalSignature, 4) == 0;
}

LxResult ExtractZip(const std::string &aZip, size_t aMaxSize, std::string &aContent)
{
    // The directory at the end has the sizes; the local header may lack them.
    const size_t end = aZip.rfind(std::string(EndSignature, 4));
    if (end == std::string::npos || end + EndSize > aZip.size()) {
        return Broken("it has no directory");
    }
    const size_t central = Get(aZip, end + 16, 4);
    if (central + CentralSize > aZip.size() || aZip.compare(central, 4, CentralSignature, 4) != 0) {
        return Broken("its directory is empty");
    }
    const uint32_t method = Get(aZip, central + 10, 2);
    const uint32_t crc = Get(aZip, central + 16, 4);
    const size_t packedSize = Get(aZip, central + 20, 4);
    const size_t size = Get(aZip, central + 24, 4);
    const size_t local = Get(aZip, central + 42, 4);
    if (local + LocalSize > aZip.size() || aZip.compare(local, 4, LocalSignature, 4) != 0) {
        return Broken("its member is missing");
    }
    const size_t data = local + LocalSize + Get(aZip, local + 26, 2) + Get(aZip, local + 28, 2);
    if (data > aZip.size() || packedSize > aZip.size() - data) {
        return Broken("its member is cut off");
    }
    if (size > aMaxSize) {
        return Broken("its member is too large");
    }
    const std::string packed = aZip.substr(data, packedSize);
    std::string content(size, '\0');
    if (method == Stored && size == packedSize) {
        content = packed;
    }
    else if (method != Deflated || !Inflate(packed, content)) {
        return Broken("its member cannot be unpacked");
    }
    if (Crc(content) != crc) {
        return Broken("the checksum of its member is wrong");
    }
    aContent = std::move(content);
    return LxResult();
}

std::string MakeZip(const std::string &aName, const std::string &aContent)
{
    std::string packed(compressBound(static_cast<uLong>(aContent.size())) + 16, '\0');
    z_stream stream = {};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(aContent.data()));
    stream.avail_in = static_cast<uInt>(aContent.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);

    std::string common;  // the fields that the local and the central header share
    Put(common, 20, 2);
    Put(common, 0, 2);
    Put(common, Deflated, 2);
    Put(common, 0, 4);
    Put(common, Crc(aContent), 4);
    Put(common, static_cast<uint32_t>(packed.size()), 4);
    Put(common, static_cast<uint32_t>(aContent.size()), 4);
    Put(common, static_cast<uint32_t>(aName.size()), 2);
    Put(common, 0, 2);
    std::string zip = std::string(LocalSignature, 4) + common + aName + packed;
    const auto central = static_cast<uint32_t>(zip.size());
    zip += std::string(CentralSignature, 4);
    Put(zip, 20, 2);
    zip.append(common).append(14, '\0').append(aName);
    const uint32_t size = static_cast<uint32_t>(zip.size()) - central;
    zip += std::string(EndSignature, 4);
    Put(zip, 0, 4);
    Put(zip, 1, 2);
    Put(zip, 1, 2);
    Put(zip, size, 4);
    Put(zip, central, 4);
    Put(zip, 0, 2);
    return zip;
}

}  // namespace LxDetail
