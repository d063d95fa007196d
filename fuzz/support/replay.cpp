// Runs a fuzzer's target as a plain program over the files that it is given.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** names)
{
    int done = 0;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(names[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++done;
        }
    std::printf("%d inputs\n", done);
    return done ? 0 : 1;
}
