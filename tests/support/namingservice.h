#pragma once

#include <omniORB4/Naming.hh>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

namespace ZelkoTest {

/// A naming service with names of one part, which resolves them and does nothing else. Its functions may be called on
/// any thread.
class NamingService final : public POA_CosNaming::NamingContext, public PortableServer::RefCountServantBase
{
public:
    /// Gives a name to an object, in place of the one that had it.
    void name(const std::string& name, CORBA::Object_ptr object)
    {
        const std::lock_guard lock(m_mutex);
        m_objects[name] = CORBA::Object::_duplicate(object);
    }

    /// Holds every question back until it is set back.
    void setHeld(bool held)
    {
        const std::lock_guard lock(m_mutex);
        m_held = held;
        m_changed.notify_all();
    }

    int questions() const
    {
        const std::lock_guard lock(m_mutex);
        return m_questions;
    }

    CORBA::Object_ptr resolve(const CosNaming::Name& name) override
    {
        std::unique_lock lock(m_mutex);
        ++m_questions;
        m_changed.wait(lock, [this] { return !m_held; });
        const auto found = m_objects.find(name.length() == 1 ? name[0].id.in() : "");
        if (found == m_objects.end()) {
            throw CosNaming::NamingContext::NotFound(CosNaming::NamingContext::missing_node, name);
        }
        return CORBA::Object::_duplicate(found->second);
    }

    void bind(const CosNaming::Name&, CORBA::Object_ptr) override {}
    void rebind(const CosNaming::Name&, CORBA::Object_ptr) override {}
    void bind_context(const CosNaming::Name&, CosNaming::NamingContext_ptr) override {}
    void rebind_context(const CosNaming::Name&, CosNaming::NamingContext_ptr) override {}
    void unbind(const CosNaming::Name&) override {}
    CosNaming::NamingContext_ptr new_context() override { return CosNaming::NamingContext::_nil(); }
    CosNaming::NamingContext_ptr bind_new_context(const CosNaming::Name&) override { return new_context(); }
    void destroy() override {}
    void list(CORBA::ULong, CosNaming::BindingList_out, CosNaming::BindingIterator_out) override {}

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::string, CORBA::Object_var> m_objects;
    bool m_held = false;
    int m_questions = 0;
};

} // namespace ZelkoTest
