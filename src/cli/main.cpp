#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "cli/program.h"

int main(int argc, char** argv) {
    const bool plain = std::getenv("NO_COLOR") != nullptr;
    vorex::Terminal terminal{std::cout, std::cerr, !plain && isatty(STDOUT_FILENO) != 0,
                             isatty(STDERR_FILENO) != 0};
    return vorex::RunProgram({argv + 1, argv + argc}, terminal);
}
