#include "library.h"

#include <utility>

#include "config/config_common.h"
#include "config/config_mqsa.h"
#include "execution/test_common.h"
#include "execution/test_group.h"
#include "execution/test_mqsa.h"
#include "foundation/class_registry.h"
#include "foundation/registration.h"
#include "guide/test_guide_form.h"
#include "mqsa/result_mqsa.h"
#include "results/limit_data.h"
#include "results/result_common.h"
#include "views/result_table.h"

namespace vorex {

namespace {

template <typename Class>
std::shared_ptr<LibraryObject> Make() {
    return std::make_shared<Class>();
}

template <typename Class>
std::shared_ptr<LibraryObject> MakeElement() {
    return Class::Create();
}

std::shared_ptr<LibraryObject> MakeLimitView() {
    const auto& make = Services().createLimitView;
    return make ? make() : nullptr;
}

constexpr ClassEntry kClasses[] = {
    {"GGlobals", Make<GGlobals>},
    {"CRegisterDll", Make<CRegisterDll>},
    {"CTestCommon", MakeElement<CTestCommon>},
    {"CTestGroup", MakeElement<CTestGroup>},
    {"CTestMQSA", MakeElement<CTestMQSA>},
    {"CConfigCommon", Make<CConfigCommon>},
    {"CConfigMQSA", Make<CConfigMQSA>},
    {"CLimitData", Make<CLimitData>},
    {"CResultCommon", Make<CResultCommon>},
    {"CResultMQSA", Make<CResultMQSA>},
    {"CResultTestGroup", Make<CResultTestGroup>},
    {"FZRD47500TestGuide", Make<FZRD47500TestGuide>},
    {"VorexView.XLimitView", MakeLimitView},
    {"XResultListView", Make<XResultListView>},
    {"XResultFlxGrid", Make<XResultFlxGrid>},
};

}  // namespace

void InstallLibrary(HostServices services) {
    InstallServices(std::move(services));
    InstallClasses(kClasses);
}

}  // namespace vorex
