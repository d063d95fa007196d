// The objects of a kind that live: scripts hand their addresses back, and may do so when they have gone. Who finds one
// keeps it until he is done with it, since what he asks of it may end it.
#pragma once

#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

namespace vh {

template <class T>
class live_objects {
public:
    void Add(std::shared_ptr<T> object)
    {
        const std::lock_guard guard(m_lock);
        m_objects.push_back(std::move(object));
    }
    // It goes now, or when nobody uses it any more.
    void Remove(const T* object)
    {
        std::shared_ptr<T> removed;
        const std::lock_guard guard(m_lock);
        if (const auto place = Place(object); place != m_objects.end()) {
            removed = std::move(*place);
            m_objects.erase(place);
        }
    }
    // Null when no object of that address lives.
    std::shared_ptr<T> Find(const void* address)
    {
        const std::lock_guard guard(m_lock);
        const auto place = Place(address);
        return place == m_objects.end() ? nullptr : *place;
    }
    // The newest that fits, or none.
    template <class Fits>
    std::shared_ptr<T> Newest(Fits&& fits)
    {
        const std::lock_guard guard(m_lock);
        const auto found = std::find_if(m_objects.rbegin(), m_objects.rend(),
                                        [&](const std::shared_ptr<T>& object) { return fits(*object); });
        return found == m_objects.rend() ? nullptr : *found;
    }
    // Those of now that fit; they may end meanwhile.
    template <class Fits>
    std::vector<std::shared_ptr<T>> Those(Fits&& fits)
    {
        std::vector<std::shared_ptr<T>> found;
        const std::lock_guard guard(m_lock);
        std::copy_if(m_objects.begin(), m_objects.end(), std::back_inserter(found),
                     [&](const std::shared_ptr<T>& object) { return fits(*object); });
        return found;
    }

private:
    auto Place(const void* address)
    {
        return std::find_if(m_objects.begin(), m_objects.end(),
                            [address](const std::shared_ptr<T>& object) { return object.get() == address; });
    }

    std::mutex m_lock;
    std::vector<std::shared_ptr<T>> m_objects;
};

} // namespace vh
