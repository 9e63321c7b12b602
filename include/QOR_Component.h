// The binary contract between components and their hosts: identities, result codes, variants and the three
// base interfaces. Plain C++17 without any library; the same on both sides of a shared-library boundary.
//
// An interface is an object whose first word points to a table of functions in the order of declaration.
// Interfaces have no virtual destructor: an object ends itself when its last reference is released.
// Reference counts: every pointer that a call hands out carries one reference, which the receiver releases.
#pragma once

#include <cstdint>

using HRESULT = std::int32_t; ///< 0 or positive: success; negative: failure
using ULONG = std::uint32_t;
using VARIANT_BOOL = std::int16_t; ///< VARIANT_TRUE or VARIANT_FALSE
using OLECHAR = char16_t;          ///< one UTF-16 unit

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

/// The result codes in use, with the values that component hosts know.
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003U);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006U);
inline constexpr HRESULT DISP_E_NONAMEDARGS = static_cast<HRESULT>(0x80020007U);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000AU);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000EU);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110U);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111U);
inline constexpr HRESULT SELFREG_E_CLASS = static_cast<HRESULT>(0x80040201U);

/// The identity of a class or an interface.
struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend constexpr bool operator==(const GUID& left, const GUID& right)
    {
        for (int i = 0; i < 8; ++i) {
            if (left.Data4[i] != right.Data4[i])
                return false;
        }
        return left.Data1 == right.Data1 && left.Data2 == right.Data2 && left.Data3 == right.Data3;
    }
    friend constexpr bool operator!=(const GUID& left, const GUID& right) { return !(left == right); }
};

using CLSID = GUID;
using IID = GUID;

inline constexpr IID IID_IUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch{0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// What a VARIANT holds: the types that the calls of this product take and give.
using VARTYPE = std::uint16_t;
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_I2 = 2;    ///< iVal
inline constexpr VARTYPE VT_I4 = 3;    ///< lVal
inline constexpr VARTYPE VT_BSTR = 8;  ///< bstrVal: zero-terminated UTF-16, owned by the caller
inline constexpr VARTYPE VT_BOOL = 11; ///< boolVal

struct VARIANT
{
    VARTYPE vt;
    std::uint16_t wReserved1;
    std::uint16_t wReserved2;
    std::uint16_t wReserved3;
    union {
        std::int16_t iVal;
        std::int32_t lVal;
        VARIANT_BOOL boolVal;
        const OLECHAR* bstrVal;
        std::uint64_t reserved[2];
    };
};
static_assert(sizeof(VARIANT) == 24, "a variant has the size that component hosts know");

using DISPID = std::int32_t;
using LCID = std::uint32_t;

/// The arguments of a late-bound call, in reverse order: the last argument first.
struct DISPPARAMS
{
    VARIANT* rgvarg;
    DISPID* rgdispidNamedArgs;
    std::uint32_t cArgs;
    std::uint32_t cNamedArgs;
};

inline constexpr std::uint16_t DISPATCH_METHOD = 1;
inline constexpr DISPID DISPID_UNKNOWN = -1;

struct EXCEPINFO; ///< never filled by this product
struct ITypeInfo; ///< never handed out by this product

struct IUnknown
{
    /// S_OK and a counted pointer in *object, or E_NOINTERFACE and null; E_POINTER without a place for it.
    virtual HRESULT QueryInterface(const IID& iid, void** object) = 0;
    /// Returns the references that there are now.
    virtual ULONG AddRef() = 0;
    /// Returns the references left; at 0 the object is gone.
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IDispatch : IUnknown
{
    /// 0 type descriptions; E_POINTER without a place for the number.
    virtual HRESULT GetTypeInfoCount(std::uint32_t* count) = 0;
    /// E_NOTIMPL always.
    virtual HRESULT GetTypeInfo(std::uint32_t index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Looks up a member's name, without regard to case; DISP_E_UNKNOWNNAME and DISPID_UNKNOWN if there is none. Names
    /// of arguments, which may follow it, are not known.
    virtual HRESULT GetIDsOfNames(const IID& reserved, OLECHAR** names, std::uint32_t count, LCID locale,
                                  DISPID* ids) = 0;
    /// Calls a member with all its arguments by position. `result` and `badArgument` may be null; the latter takes the
    /// place of an argument that is refused (DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW). DISP_E_MEMBERNOTFOUND,
    /// DISP_E_BADPARAMCOUNT, DISP_E_NONAMEDARGS, and E_POINTER without arguments.
    virtual HRESULT Invoke(DISPID member, const IID& reserved, LCID locale, std::uint16_t flags, DISPPARAMS* arguments,
                           VARIANT* result, EXCEPINFO* exception, std::uint32_t* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

struct IClassFactory : IUnknown
{
    /// Makes one object and hands out the wanted interface. `outer` must be null (CLASS_E_NOAGGREGATION). E_NOINTERFACE
    /// for another interface, E_POINTER without a place for the pointer, E_FAIL when the object cannot be made; the
    /// reason then goes to standard error.
    virtual HRESULT CreateInstance(IUnknown* outer, const IID& iid, void** object) = 0;
    /// A non-zero `lock` counts one more reason to stay loaded, zero takes one back.
    virtual HRESULT LockServer(std::int32_t lock) = 0;

protected:
    ~IClassFactory() = default;
};
