#include <benchmark/benchmark.h>

#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <pugixml.hpp>
#include <string>

#include "files/element_file.h"
#include "load_alone.h"
#include "workbench.h"

namespace vorex::bench {

namespace {

/// A line of /proc/self/status in bytes: "VmRSS" now, "VmHWM" the most so far.
double ResidentBytes(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name)) return std::stod(line.substr(name.size() + 1)) * 1024;
    throw std::runtime_error("/proc/self/status has no " + std::string(name));
}

}  // namespace

int PrintLoad(std::string_view what, const std::string& path) {
    const Scratch scratch;
    Install();
    const double before = ResidentBytes("VmRSS");
    const std::clock_t begin = std::clock();
    std::unique_ptr<ElementFile> file;
    pugi::xml_document document;
    if (what == kLoadElements)
        file = ElementFile::Load(path);
    else if (!document.load_file(path.c_str()))
        return 1;
    const std::clock_t end = std::clock();
    std::cout << static_cast<double>(end - begin) / CLOCKS_PER_SEC << ' '
              << static_cast<int64_t>(ResidentBytes("VmHWM") - before) << std::endl;
    return 0;
}

}  // namespace vorex::bench

int main(int argc, char** argv) {
    using namespace vorex::bench;
    try {
        if (argc == 3 && (argv[1] == kLoadElements || argv[1] == kLoadXmlOnly))
            return PrintLoad(argv[1], argv[2]);
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
