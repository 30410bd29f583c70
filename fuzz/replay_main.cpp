#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Feeds every file of a folder to the fuzz target: `fuzz_bmt_replay corpus/bmt`. A folder without
/// files is a failure, or a wrong path would pass for ever.
int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    std::error_code error;
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1], error)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes {std::istreambuf_iterator<char>(file), {}};
        std::printf("%s\n", entry.path().filename().c_str());
        std::fflush(stdout); // so that the last line names the file when the next call crashes
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        ++count;
    }
    std::printf("%d files\n", count);
    return count > 0 ? 0 : 1;
}
