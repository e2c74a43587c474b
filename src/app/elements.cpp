#include "app/elements.h"

#include <algorithm>
#include <utility>

#include "execution/test_group.h"
#include "foundation/vocabulary.h"

namespace vorex {

void ForEachElement(const std::vector<std::shared_ptr<ITestElement>>& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit) {
    for (const auto& element : elements) {
        visit(element);
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            ForEachElement(container->NewEnum(), visit);
    }
}

std::vector<std::shared_ptr<CTestMQSA>> SurveysOf(
    const std::vector<std::shared_ptr<ITestElement>>& elements) {
    std::vector<std::shared_ptr<CTestMQSA>> surveys;
    ForEachElement(elements, [&](const auto& element) {
        if (auto survey = std::dynamic_pointer_cast<CTestMQSA>(element)) surveys.push_back(std::move(survey));
    });
    return surveys;
}

void RollUpGroups(const std::vector<std::shared_ptr<ITestElement>>& elements,
                  const ISelectedStandards* selected) {
    for (const auto& element : elements)
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(element))
            group->UpdateGroupStatus(selected);
}

bool AnyFailed(const std::vector<std::shared_ptr<ITestElement>>& elements) {
    return std::any_of(elements.begin(), elements.end(), [](const auto& element) {
        const auto filter = element->Filter();
        if (filter && !filter->Evaluate()) return false;
        if (const auto result = element->Result()) return result->Status() == kFailed;
        const auto container = std::dynamic_pointer_cast<ITestContainer>(element);
        return container && AnyFailed(container->NewEnum());
    });
}

}  // namespace vorex
