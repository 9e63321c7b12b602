// The called side of a late-bound call: members found by name, arguments taken from variants.
#pragma once

#include "platform/com/ComObject.h"
#include "platform/runtime/Text.h"

#include <span>

namespace qor {

/// A member that can be called by name.
struct DispatchMember
{
    DISPID id;
    QLatin1String name;
    std::uint32_t argumentCount;
};

/// GetIDsOfNames over a table of members, without regard to case. Argument names are not known.
HRESULT FindMember(std::span<const DispatchMember> members, OLECHAR** names, std::uint32_t count, DISPID* ids);

/// Checks a call against the table: DISP_E_MEMBERNOTFOUND, DISP_E_NONAMEDARGS, DISP_E_BADPARAMCOUNT or S_OK.
HRESULT CheckCall(std::span<const DispatchMember> members, DISPID id, std::uint16_t flags, const DISPPARAMS* arguments);

/// Argument `position` (from 0, in the order of declaration) of a checked call. An integer that does not fit is
/// DISP_E_OVERFLOW, any other type than the wanted one DISP_E_TYPEMISMATCH; then the position in the caller's array,
/// which has the last argument first, goes to *badArgument when that is not null.
HRESULT Int16Argument(const DISPPARAMS& arguments, std::uint32_t position, std::int16_t& value,
                      std::uint32_t* badArgument);
HRESULT TextIn(const DISPPARAMS& arguments, std::uint32_t position, QString& text, std::uint32_t* badArgument);

/// IDispatch without type information, over a table of members.
template <typename Interface>
class DispatchObject : public ComObject<Interface>
{
public:
    DispatchObject(const IID& iid, std::span<const DispatchMember> members)
        : ComObject<Interface>(iid), mMembers(members)
    {
    }

    HRESULT GetTypeInfoCount(std::uint32_t* count) final
    {
        if (!count)
            return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(std::uint32_t /*index*/, LCID /*locale*/, ITypeInfo** typeInfo) final
    {
        if (typeInfo)
            *typeInfo = nullptr;
        return E_NOTIMPL;
    }
    HRESULT GetIDsOfNames(const IID& /*reserved*/, OLECHAR** names, std::uint32_t count, LCID /*locale*/,
                          DISPID* ids) final
    {
        return FindMember(mMembers, names, count, ids);
    }
    HRESULT Invoke(DISPID member, const IID& /*reserved*/, LCID /*locale*/, std::uint16_t flags, DISPPARAMS* arguments,
                   VARIANT* result, EXCEPINFO* /*exception*/, std::uint32_t* badArgument) final
    {
        if (const HRESULT problem = CheckCall(mMembers, member, flags, arguments); problem != S_OK)
            return problem;
        return Call(member, *arguments, result, badArgument);
    }

protected:
    bool OffersBase(const IID& iid) const final { return iid == IID_IDispatch; }

    /// Runs a member with as many arguments as its table entry says.
    virtual HRESULT Call(DISPID member, const DISPPARAMS& arguments, VARIANT* result, std::uint32_t* badArgument) = 0;

private:
    std::span<const DispatchMember> mMembers;
};

} // namespace qor
