// The class BusinessRules as hosts see it.
#pragma once

#include "editor/BusinessRules.h"
#include "platform/com/Dispatch.h"
#include "QOR_DIR_Node.h"

namespace qor {

class BusinessRulesObject final : public DispatchObject<_BusinessRules>
{
public:
    BusinessRulesObject();

    HRESULT ShowNodeEditor(std::int16_t configId, std::int16_t partitionId, std::int16_t nodeNumber,
                           VARIANT_BOOL* result) override;

protected:
    HRESULT Call(DISPID member, const DISPPARAMS& arguments, VARIANT* result, std::uint32_t* badArgument) override;

private:
    bool LoadInto(EditorForm& form, std::int16_t nodeNumber);
    void RunEditor(std::int16_t configId, std::int16_t partitionId, std::int16_t nodeNumber);

    BusinessRules mRules;
};

} // namespace qor
