#include "platform/com/Dispatch.h"

#include <algorithm>
#include <limits>

namespace qor {

namespace {

/// What converting an argument came to. Where it failed, the caller learns the position in its own array.
HRESULT Outcome(HRESULT problem, std::uint32_t stored, std::uint32_t* badArgument)
{
    if (problem != S_OK && badArgument)
        *badArgument = stored;
    return problem;
}

std::uint32_t StoredPosition(const DISPPARAMS& arguments, std::uint32_t position)
{
    return arguments.cArgs - 1 - position;
}

} // namespace

HRESULT FindMember(std::span<const DispatchMember> members, OLECHAR** names, std::uint32_t count, DISPID* ids)
{
    if (!names || !ids)
        return E_POINTER;
    std::ranges::fill_n(ids, count, DISPID_UNKNOWN);
    if (count == 0 || !names[0])
        return DISP_E_UNKNOWNNAME;
    const QStringView name(names[0]);
    for (const DispatchMember& member : members) {
        if (name.compare(member.name, Qt::CaseInsensitive) == 0)
            ids[0] = member.id;
    }
    return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT CheckCall(std::span<const DispatchMember> members, DISPID id, std::uint16_t flags, const DISPPARAMS* arguments)
{
    const auto member = std::ranges::find(members, id, &DispatchMember::id);
    if (member == members.end() || (flags & DISPATCH_METHOD) == 0)
        return DISP_E_MEMBERNOTFOUND;
    if (!arguments)
        return E_POINTER;
    if (arguments->cNamedArgs != 0)
        return DISP_E_NONAMEDARGS;
    if (arguments->cArgs != member->argumentCount)
        return DISP_E_BADPARAMCOUNT;
    return arguments->rgvarg || member->argumentCount == 0 ? S_OK : E_POINTER;
}

HRESULT Int16Argument(const DISPPARAMS& arguments, std::uint32_t position, std::int16_t& value,
                      std::uint32_t* badArgument)
{
    const std::uint32_t stored = StoredPosition(arguments, position);
    const VARIANT& variant = arguments.rgvarg[stored];
    if (variant.vt != VT_I2 && variant.vt != VT_I4)
        return Outcome(DISP_E_TYPEMISMATCH, stored, badArgument);
    using Limits = std::numeric_limits<std::int16_t>;
    const std::int32_t given = variant.vt == VT_I2 ? variant.iVal : variant.lVal;
    const bool fits = given >= Limits::min() && given <= Limits::max();
    value = static_cast<std::int16_t>(fits ? given : 0);
    return Outcome(fits ? S_OK : DISP_E_OVERFLOW, stored, badArgument);
}

HRESULT TextIn(const DISPPARAMS& arguments, std::uint32_t position, QString& text, std::uint32_t* badArgument)
{
    const std::uint32_t stored = StoredPosition(arguments, position);
    const VARIANT& variant = arguments.rgvarg[stored];
    if (variant.vt != VT_BSTR)
        return Outcome(DISP_E_TYPEMISMATCH, stored, badArgument);
    text = variant.bstrVal ? QString::fromUtf16(variant.bstrVal) : QString();
    return S_OK;
}

} // namespace qor
