// Replays inputs through LLVMFuzzerTestOneInput when the build has no
// libFuzzer: every file named on the command line, and every file found
// (recursively, in name order) under the folders named. Each input is handed
// over in a buffer of its exact size so a sanitizer sees any over-read.
// Fails when an argument cannot be read or nothing was run.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (!fs::is_directory(argv[i], error)) {
            inputs.emplace_back(argv[i]);
            continue;
        }
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(argv[i]))
            if (entry.is_regular_file())
                files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        inputs.insert(inputs.end(), files.begin(), files.end());
    }
    for (const fs::path& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "cannot read %s\n", path.c_str());
            return 1;
        }
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::unique_ptr<uint8_t[]> buffer(new uint8_t[bytes.empty() ? 1 : bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), buffer.get());
        LLVMFuzzerTestOneInput(buffer.get(), bytes.size());
    }
    std::printf("%zu inputs run\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
