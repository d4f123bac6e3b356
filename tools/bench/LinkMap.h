// The linker's own account of what went into a DLL.
#pragma once

#include <string>
#include <vector>

namespace kzp::bench {

struct LinkedPart {
    std::string name;  // readable, where the linker knows more than an object file
    size_t bytes;
};

struct LinkMap {
    std::vector<LinkedPart> origins;        // by folder of the project and by run-time library; largest first
    std::vector<LinkedPart> symbols;        // functions and tables; largest first
    std::vector<std::string> initialisers;  // object files whose constructors run when the DLL is loaded
};

// std::runtime_error when the file cannot be read or names no parts.
LinkMap ReadLinkMap(const std::string& path);

}  // namespace kzp::bench
