// Takes libFuzzer's place where it is not at hand: runs a fuzz target once on every file of the
// folders that are named. An input that breaks something ends the process.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

int main(int argc, char *argv[])
{
    // What the program and Qt have to say does not count.
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
        return EXIT_FAILURE;
    }
    setenv("QT_LOGGING_RULES", "*=false", 0);
    if (LLVMFuzzerInitialize != nullptr) {
        LLVMFuzzerInitialize(&argc, &argv);
    }
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string input(std::istreambuf_iterator<char>(file), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.data()), // NOLINT
                                   input.size());
        }
    }
    return EXIT_SUCCESS;
}
