// Replays inputs through LLVMFuzzerTestOneInput when the build has no
// libFuzzer: every file named on the command line, and every file found
// (recursively, in name order) under the folders named. Each input is handed
// over in a buffer of its exact size so a sanitizer sees any over-read.
// Fails when an argument is missing or nothing was run.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

namespace fs = std::filesystem;

bool RunFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::unique_ptr<uint8_t[]> buffer(new uint8_t[bytes.size() ? bytes.size() : 1]);
    std::copy(bytes.begin(), bytes.end(), buffer.get());
    LLVMFuzzerTestOneInput(buffer.get(), bytes.size());
    return true;
}

std::vector<fs::path> FilesUnder(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        const fs::path arg(argv[i]);
        std::error_code error;
        if (fs::is_directory(arg, error)) {
            for (const fs::path& file : FilesUnder(arg)) {
                if (!RunFile(file)) {
                    std::fprintf(stderr, "cannot read %s\n", file.c_str());
                    return 1;
                }
                ++runs;
            }
        } else if (RunFile(arg)) {
            ++runs;
        } else {
            std::fprintf(stderr, "cannot read %s\n", argv[i]);
            return 1;
        }
    }
    std::printf("%d inputs run\n", runs);
    return runs > 0 ? 0 : 1;
}
