#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace vorex::test {

/// What a command of the system prints, such as a tool that reads a PDF.
inline std::string PrintedBy(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char part[4096];
    while (std::size_t size = fread(part, 1, sizeof part, pipe.get())) text.append(part, size);
    return text;
}

}  // namespace vorex::test
