#include "foundation/registration.h"

#include "foundation/host_services.h"
#include "foundation/utilities.h"

namespace vorex {

void GGlobals::SetPlugInPointer(const std::shared_ptr<IPlugIn>& plugIn) {
    SetPlugIn(plugIn);
}

void CRegisterDll::RegisterApp() {
    if (Services().createDetectorLink) mLink = Services().createDetectorLink();
    if (mLink) mLink->Register();
    FixExposureCaption();
}

void CRegisterDll::CloseApp() {
    if (mLink) mLink->Unregister();
    mLink.reset();
}

}  // namespace vorex
