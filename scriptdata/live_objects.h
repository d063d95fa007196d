// Which objects of a kind live: scripts hand their addresses back, and may do so when they have gone.
#pragma once

#include <algorithm>
#include <mutex>
#include <vector>

namespace vh {

template <class T>
class live_objects {
public:
    void Add(T* object)
    {
        const std::lock_guard guard(m_lock);
        m_objects.push_back(object);
    }
    void Remove(T* object)
    {
        const std::lock_guard guard(m_lock);
        std::erase(m_objects, object);
    }
    // Null when no object of that address lives.
    T* Find(const void* address)
    {
        const std::lock_guard guard(m_lock);
        const auto found = std::find(m_objects.begin(), m_objects.end(), address);
        return found == m_objects.end() ? nullptr : *found;
    }
    // Those of now that fit; they may go meanwhile.
    template <class Fits>
    std::vector<T*> Those(Fits&& fits)
    {
        std::vector<T*> found;
        const std::lock_guard guard(m_lock);
        std::copy_if(m_objects.begin(), m_objects.end(), std::back_inserter(found), fits);
        return found;
    }

private:
    std::mutex m_lock;
    std::vector<T*> m_objects;
};

} // namespace vh
