#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

/// Gives each stored input, of the files and folders that are named, to the fuzz target once, as an ordinary
/// program, so that faults found earlier do not return. Ends with 1 when there is nothing to replay or an
/// input cannot be read.
int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i)
        if (fs::is_directory(argv[i]))
            inputs.insert(inputs.end(), fs::directory_iterator(argv[i]), fs::directory_iterator());
        else
            inputs.emplace_back(argv[i]);
    std::sort(inputs.begin(), inputs.end());  // the same order on every machine
    for (const fs::path& path : inputs) {
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            std::fprintf(stderr, "%s: cannot be read\n", path.string().c_str());
            return 1;
        }
        const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        // Named before the call, so that a crash shows which input it was.
        std::printf("%s\n", path.filename().string().c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(content.data()), content.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
