#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace vorex {

/// Base of every class that can be created by name.
class LibraryObject {
  public:
    virtual ~LibraryObject() = default;
};

/// One row of the registry: the class name without the project name, and the function that makes it. A name
/// with a "." is the full name of a host class.
struct ClassEntry {
    std::string_view name;
    std::shared_ptr<LibraryObject> (*make)();
};

/// Installs the list of classes, which must exist until the program ends. Throws std::invalid_argument, and
/// changes nothing, when a name occurs twice.
void InstallClasses(std::span<const ClassEntry> classes);

/// A new object of a class named "VorexZRD47500Test.CTestCommon"; empty when the name is unknown.
std::shared_ptr<LibraryObject> CreateObject(std::string_view className);

/// As `CreateObject`, seen as an interface; empty also when the class does not offer it.
template <typename Interface>
std::shared_ptr<Interface> CreateObjectAs(std::string_view className) {
    return std::dynamic_pointer_cast<Interface>(CreateObject(className));
}

/// Full name of a class of the library.
std::string ClassName(std::string_view name);

}  // namespace vorex
