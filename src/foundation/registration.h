#pragma once

#include <memory>

#include "foundation/class_registry.h"
#include "foundation/detector_service.h"
#include "foundation/host_contract.h"

namespace vorex {

/// The entry through which the host's plug-in object registers.
class GGlobals : public LibraryObject {
  public:
    /// Keeps the plug-in of this library; any other is ignored.
    void SetPlugInPointer(const std::shared_ptr<IPlugIn>& plugIn);
};

/// Registration with the detector link, from the start to the end of the application.
class CRegisterDll : public LibraryObject {
  public:
    /// [once, at start] Registers and fixes the exposure caption.
    void RegisterApp();
    /// [at end] Unregisters, if `RegisterApp` was called.
    void CloseApp();

  private:
    std::shared_ptr<IDetectorLink> mLink;
};

}  // namespace vorex
