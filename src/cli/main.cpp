#include <cstdlib>
#include <iostream>

#include "cli/program.h"
#include "system/system.h"

int main(int argc, char** argv) {
    const bool plain = std::getenv("NO_COLOR") != nullptr;
    vorex::Terminal terminal{std::cout, std::cerr,
                             !plain && vorex::os::IsTerminal(vorex::os::Output::kStandard),
                             vorex::os::IsTerminal(vorex::os::Output::kError)};
    return vorex::RunProgram({argv + 1, argv + argc}, terminal);
}
