#include "editor/LabelCheck.h"

#include "platform/com/Dispatch.h"
#include "rules/Validation.h"

#include <array>

namespace qor {

namespace {

constexpr DISPID validateTextId = 2; // the second operation of the interface
constexpr std::array members{DispatchMember{validateTextId, QLatin1String("ValidateText"), 1}};

class LabelCheck final : public DispatchObject<IDispatch>
{
public:
    LabelCheck() : DispatchObject(IID_IDispatch, members) {}

protected:
    HRESULT Call(DISPID /*member*/, const DISPPARAMS& arguments, VARIANT* result, std::uint32_t* badArgument) override
    {
        QString text;
        if (const HRESULT problem = TextIn(arguments, 0, text, badArgument); problem != S_OK)
            return problem;
        if (result)
            *result = BooleanResult(IsAcceptableLabel(text));
        return S_OK;
    }
};

} // namespace

IDispatch* MakeLabelCheck()
{
    return new LabelCheck;
}

} // namespace qor
