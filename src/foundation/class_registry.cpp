#include "foundation/class_registry.h"

#include <stdexcept>

#include "foundation/vocabulary.h"

namespace vorex {

namespace {

std::span<const ClassEntry>& Installed() {
    static std::span<const ClassEntry> classes;
    return classes;
}

}  // namespace

void InstallClasses(std::span<const ClassEntry> classes) {
    for (std::size_t i = 0; i < classes.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (classes[i].name == classes[j].name)
                throw std::invalid_argument("class " + std::string(classes[i].name) + " is registered twice");
    Installed() = classes;
}

std::shared_ptr<LibraryObject> CreateObject(std::string_view className) {
    for (const ClassEntry& entry : Installed()) {
        const bool ofHost = entry.name.find('.') != std::string_view::npos;
        if (className == (ofHost ? std::string(entry.name) : ClassName(entry.name))) return entry.make();
    }
    return nullptr;
}

std::string ClassName(std::string_view name) {
    return std::string(kProjectName) + "." + std::string(name);
}

}  // namespace vorex
