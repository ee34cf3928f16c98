// Nothing that comes from the network harms the camera.

#include <random>

#include "EmulatorClient.h"
#include "WaitFor.h"

namespace LxEmulator
{
namespace
{

/// Some random bytes, some commands with random payloads, some good commands with a few bytes changed.
Bytes MakeGarbage(std::mt19937 &aRandom)
{
    const auto byte = [&aRandom] { return static_cast<uint8_t>(aRandom()); };
    const auto fill = [&](size_t aSize) {
        Bytes bytes(aSize);
        std::generate(bytes.begin(), bytes.end(), byte);
        return bytes;
    };
    if (aRandom() % 4 == 0) {
        return fill(aRandom() % 600);
    }
    static const std::vector<uint16_t> codes = {0x0002, 0x0004, 0x0040, 0x0080, 0x0082, 0x0084,
                                                0x0086, 0x0089, 0x00C0, 0x0100, 0x1234};
    // Not a write: a random one could change what the next test lines rely on; writes are denied without control.
    Bytes command = EmulatorClient::MakeCommand(codes[aRandom() % codes.size()], static_cast<uint16_t>(aRandom()),
                                                fill(aRandom() % 64 * (aRandom() % 2 ? 4 : 1)), byte());
    for (uint32_t i = aRandom() % 4; i > 0; --i) {
        command[aRandom() % command.size()] = byte();
    }
    return command;
}

TEST(Garbage, CameraAnswersStill)
{
    EmulatedCamera camera(MakeOptions());
    ASSERT_TRUE(camera.Start().IsOK());
    EmulatorClient noise;
    EmulatorClient client;
    std::mt19937 random(20);
    uint64_t sent = 0;
    for (int i = 0; i < 100; ++i) {
        for (int j = 0; j < 50; ++j, ++sent) {
            noise.SendBytes(MakeGarbage(random));
        }
        ASSERT_EQ(3000u, client.ReadRegister(0x0938)) << "after " << sent << " datagrams";
        while (noise.ReceiveBytes(std::chrono::milliseconds(0))) {
        }
    }
    EXPECT_GT(camera.GetControlStatistics().mInvalid, 500u);
}

TEST(Garbage, CameraAnswersStillWhenItComesFromTheOneInControl)
{
    EmulatedCamera camera(MakeOptions());
    ASSERT_TRUE(camera.Start().IsOK());
    EmulatorClient client;
    std::mt19937 random(21);
    for (int i = 0; i < 50; ++i) {
        client.SendBytes(EmulatorClient::MakeCommand(0x0082, client.NextId(), Words({0x0A00, 2}), 0));
        for (int j = 0; j < 50; ++j) {
            client.SendBytes(MakeGarbage(random));
        }
        EmulatorClient other;
        ASSERT_EQ(248u, other.Ask(0x0002, {}).mPayload.size());
        while (client.ReceiveBytes(std::chrono::milliseconds(0))) {
        }
    }
}

TEST(Garbage, DatagramsOfEverySizeAreTaken)
{
    EmulatedCamera camera(MakeOptions());
    ASSERT_TRUE(camera.Start().IsOK());
    EmulatorClient client;
    for (size_t size : {0, 1, 7, 8, 9, 575, 576, 577, 1500, 9000, 65507}) {
        client.SendBytes(Bytes(size, 0x42));
    }
    EXPECT_EQ(3000u, client.ReadRegister(0x0938));
}

}  // namespace
}  // namespace LxEmulator
