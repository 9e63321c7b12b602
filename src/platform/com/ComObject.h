// What every component object has: a reference count and QueryInterface.
//
// The editor is a component, not a class that hosts include, because hosts come in several languages and outlive
// versions of the editor: they know an object by the layout of its interface, or by the names of its methods, and a
// class by an identifier that the registry resolves. The editor calls components of its own in the same way, so that a
// site can put another label check or confirmation dialog in their place.
#pragma once

#include "QOR_Component.h"

#include <atomic>

namespace qor {

/// Counts what keeps the library in use: objects and locks.
void AddServerUse();
void ReleaseServerUse();
bool IsServerInUse();

/// An object with IUnknown and one other interface. It starts with one reference and deletes itself with the last.
template <typename Interface>
class ComObject : public Interface
{
public:
    explicit ComObject(const IID& iid) : mIid(iid) { AddServerUse(); }
    virtual ~ComObject() { ReleaseServerUse(); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT QueryInterface(const IID& iid, void** object) final
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != mIid && !OffersBase(iid))
            return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    ULONG AddRef() final { return ++mReferences; }

    ULONG Release() final
    {
        const ULONG left = --mReferences;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    /// Whether the interface derives from another one with this identity.
    virtual bool OffersBase(const IID& /*iid*/) const { return false; }

private:
    IID mIid;
    std::atomic<ULONG> mReferences = 1;
};

/// Owns one reference to an object and releases it.
template <typename Interface>
class ComReference
{
public:
    ComReference() = default;
    ~ComReference() { Reset(); }
    ComReference(ComReference&& other) noexcept : mObject(other.mObject) { other.mObject = nullptr; }
    ComReference& operator=(ComReference&&) = delete;
    ComReference(const ComReference&) = delete;
    ComReference& operator=(const ComReference&) = delete;

    /// Where a call puts the pointer that it hands out.
    void** Receive()
    {
        Reset();
        return reinterpret_cast<void**>(&mObject);
    }
    Interface* operator->() const { return mObject; }
    Interface& operator*() const { return *mObject; }
    explicit operator bool() const { return mObject != nullptr; }

private:
    void Reset()
    {
        if (mObject)
            mObject->Release();
        mObject = nullptr;
    }

    Interface* mObject = nullptr;
};

} // namespace qor
