#pragma once

#include <observerbase/iobserver.h>
#include <valuecore/tree.h>
#include <valuecore/valuebase.h>

#include <cstddef>
#include <memory>

/// Handle on a value of the tree. Null until the value is found, and null again once the value is gone.
template <typename T>
class ValuePtr
{
public:
    ValuePtr() = default;
    ValuePtr(T* value) { *this = value; }

    ValuePtr& operator=(T* value)
    {
        m_value = value;
        m_lifeline = value ? value->lifeline() : std::weak_ptr<void>();
        return *this;
    }
    ValuePtr& operator=(std::nullptr_t)
    {
        Reset();
        return *this;
    }

    /// Looks the value up; true if it is there and of the right type, otherwise the handle is null.
    bool GetFromTree(const QString& path, Tree* tree = Tree::Instance())
    {
        *this = tree->Find<T>(path);
        return get() != nullptr;
    }

    void Reset()
    {
        m_value = nullptr;
        m_lifeline.reset();
    }

    T* get() const { return m_lifeline.expired() ? nullptr : m_value; }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    explicit operator bool() const { return get() != nullptr; }

private:
    T* m_value = nullptr;
    std::weak_ptr<void> m_lifeline;
};

/// Handle on a value of the tree that keeps a client subscribed to the value for as long as it points to it. After the
/// handle was reset, pointed elsewhere or destroyed, the client is not called any more.
///
/// The client stands in front of the handle in the value's list of observers: on the notice of a deletion the client
/// still sees the value through the handle, which lets go of it right afterwards. A client holds one such handle per
/// value: the first of two that goes would end the subscription of both.
template <typename T>
class ValueObservingPtr final : public IObserver
{
public:
    /// `client` is not owned and outlives the handle.
    explicit ValueObservingPtr(IObserver* client)
        : m_client(client)
    {}
    ~ValueObservingPtr() override { Reset(); }
    ValueObservingPtr(const ValueObservingPtr&) = delete;
    ValueObservingPtr& operator=(const ValueObservingPtr&) = delete;

    ValueObservingPtr& operator=(T* value)
    {
        if (value != get()) {
            Reset();
            m_value = value;
            attach();
        }
        return *this;
    }
    ValueObservingPtr& operator=(std::nullptr_t)
    {
        Reset();
        return *this;
    }

    /// Looks the value up; true if it is there and of the right type, otherwise the handle is null.
    bool GetFromTree(const QString& path, Tree* tree = Tree::Instance())
    {
        *this = tree->Find<T>(path);
        return get() != nullptr;
    }

    void Reset()
    {
        if (T* const value = get()) {
            value->DeleteObserver(m_client);
            value->DeleteObserver(this);
        }
        m_value.Reset();
    }

    T* get() const { return m_value.get(); }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    explicit operator bool() const { return get() != nullptr; }

    void Update(Observable*, TChangeCode code) override
    {
        if (code == TChangeCode::StateChanged && get() && get()->GetState() == TValueState::Deleted) {
            Reset();
        }
    }

private:
    void attach()
    {
        if (T* const value = get()) {
            value->AddObserver(m_client);
            value->AddObserver(this);
        }
    }

    IObserver* const m_client;
    ValuePtr<T> m_value;
};
