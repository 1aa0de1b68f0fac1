// The main() of the replay tests, which do not need libFuzzer. It runs a fuzz target once on every
// file of the folder given as argument. An input that violates a requirement aborts the process.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

int main(int argc, char *argv[])
{
    if (LLVMFuzzerInitialize != nullptr) {
        LLVMFuzzerInitialize(&argc, &argv);
    }
    for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> input(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    return 0;
}
