#include "FuzzTarget.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

/// Runs a fuzz target on every file of a folder. A property that doesn't hold ends the program.
int main(int, char** argv)
{
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator{argv[1]}) {
        std::cout << file.path().filename().string() << std::endl; // the last one told is the one that failed
        std::ifstream stream{file.path(), std::ios::binary};
        const std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
        // An allocation of its own, to the byte: a read past the end shows under the address sanitizer.
        const auto copy = std::make_unique<std::uint8_t[]>(bytes.size());
        std::ranges::copy(bytes, copy.get());
        LLVMFuzzerTestOneInput(copy.get(), bytes.size());
        ++count;
    }
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
