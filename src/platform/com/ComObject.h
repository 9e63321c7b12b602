// What every component object has: counted references and the finding of its interfaces.
#pragma once

#include "QOR_Component.h"

#include <atomic>

namespace qor {

/// Counts what keeps the library in use: objects and locks.
void AddServerUse();
void ReleaseServerUse();
bool IsServerInUse();

/// An object that offers IUnknown and one interface more. It starts with one reference and deletes itself at
/// none.
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

/// A counted reference to an object; it releases what it holds.
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
