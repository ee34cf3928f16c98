// Runs a fuzz target over the files of its corpus and over mutations of them made with a fixed seed.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *aData, size_t aSize);

int main(int argc, char **argv)
{
    constexpr int mutationsPerFile = 2000;
    std::mt19937 random(20240229);
    size_t runs = 0;
    size_t files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) {
                continue;
            }
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<uint8_t> seed((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
            ++files;
            LLVMFuzzerTestOneInput(seed.data(), seed.size());
            ++runs;
            for (int n = 0; n < mutationsPerFile; ++n) {
                std::vector<uint8_t> data = seed;
                for (unsigned change = random() % 4 + 1; change > 0; --change) {
                    const size_t position = data.empty() ? 0 : random() % data.size();
                    switch (random() % 4) {
                        case 0:
                            data.insert(data.begin() + static_cast<std::ptrdiff_t>(position),
                                        static_cast<uint8_t>(random()));
                            break;
                        case 1:
                            if (!data.empty()) {
                                data.erase(data.begin() + static_cast<std::ptrdiff_t>(position));
                            }
                            break;
                        case 2:
                            data.resize(position);
                            break;
                        default:
                            if (!data.empty()) {
                                data[position] = static_cast<uint8_t>(random());
                            }
                    }
                }
                // an exactly sized allocation, so that the address sanitizer sees every byte read beyond the end
                const std::vector<uint8_t> exact(data);
                LLVMFuzzerTestOneInput(exact.data(), exact.size());
                ++runs;
            }
        }
    }
    std::printf("%zu inputs from %zu files\n", runs, files);
    return files > 0 ? 0 : 1;
}
