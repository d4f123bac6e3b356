// What a DLL's file says about itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kzp::bench {

struct PeSection {
    std::string name;
    std::uint32_t fileBytes;
    std::uint32_t memoryBytes;
};

struct PeImport {
    std::string dll;
    size_t functions;
};

struct PeImage {
    size_t fileBytes = 0;
    std::vector<PeSection> sections;
    std::vector<PeImport> imports;  // load-time ones
};

// Reads a 64-bit image; std::runtime_error when it is none.
PeImage ReadPeImage(const std::wstring& path);

}  // namespace kzp::bench
