// Replays inputs through LLVMFuzzerTestOneInput when the build has no libFuzzer: every file named, and every
// file under the folders named (recursively, in name order), each in a buffer of its exact size so a sanitizer
// sees any over-read. Fails when an argument cannot be read or nothing was run.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const auto first = inputs.size();
        if (std::error_code error; !fs::is_directory(argv[i], error))
            inputs.emplace_back(argv[i]);
        else
            for (const auto& entry : fs::recursive_directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    inputs.push_back(entry.path());
        std::sort(inputs.begin() + long(first), inputs.end());
    }
    for (const fs::path& path : inputs) {
        std::error_code error;
        const size_t size = fs::file_size(path, error);
        const auto buffer = std::make_unique<uint8_t[]>(error ? 1 : std::max<size_t>(size, 1));
        if (error || !std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(buffer.get()), long(size))) {
            std::fprintf(stderr, "cannot read %s\n", path.c_str());
            return 1;
        }
        LLVMFuzzerTestOneInput(buffer.get(), size);
    }
    std::printf("%zu inputs run\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
