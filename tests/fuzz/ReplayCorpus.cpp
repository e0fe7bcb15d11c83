#include "FuzzTarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <sysexits.h>
#include <vector>

namespace stillgate
{

namespace fs = std::filesystem;

namespace
{

std::vector<fs::path> filesOf(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator{folder}) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

/// False if the file can't be read. A property that doesn't hold ends the program.
bool replay(const fs::path& file)
{
    std::cout << file.filename().string() << std::endl; // the last one told is the one that failed
    std::ifstream stream{file, std::ios::binary};
    const std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
    if (!stream.is_open() || stream.bad())
        return false;
    // An allocation of its own, to the byte: a read past the end shows under the address sanitizer.
    const auto copy = std::make_unique<std::uint8_t[]>(bytes.size());
    std::ranges::copy(bytes, copy.get());
    LLVMFuzzerTestOneInput(copy.get(), bytes.size());
    return true;
}

} // namespace

} // namespace stillgate

/// Runs a fuzz target on every file of a folder.
int main(int argc, char** argv)
{
    using namespace stillgate;

    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return EX_USAGE;
    }
    const auto files = filesOf(argv[1]);
    if (files.empty()) {
        std::cerr << "No file in " << argv[1] << "\n";
        return EX_NOINPUT;
    }
    return std::ranges::all_of(files, replay) ? EX_OK : EX_NOINPUT;
}
