// Memory for the nodes of one list: blocks that only grow, and a chain of free nodes. Nodes of one size
// come from it; all blocks go back when it ends.
#pragma once

#include <cstddef>
#include <new>

namespace vh {

class slab_pool {
public:
    slab_pool() = default;
    slab_pool(const slab_pool&) = delete;
    slab_pool& operator=(const slab_pool&) = delete;
    ~slab_pool()
    {
        while (block* old = m_blocks) {
            m_blocks = old->next;
            ::operator delete(old);
        }
    }

    void* take(std::size_t size)
    {
        if (void* node = m_free) {
            m_free = *static_cast<void**>(node);
            return node;
        }
        if (static_cast<std::size_t>(m_end - m_next) < size)
            add_block(size);
        void* node = m_next;
        m_next += size;
        return node;
    }
    void give_back(void* node)
    {
        *static_cast<void**>(node) = m_free;
        m_free = node;
    }

private:
    struct alignas(std::max_align_t) block {
        block* next;
    };
    static constexpr std::size_t first_nodes = 8;
    static constexpr std::size_t largest_block = 64 * 1024;

    void add_block(std::size_t size)
    {
        const std::size_t bytes = sizeof(block) + size * m_nodes;
        auto* made = static_cast<block*>(::operator new(bytes));
        made->next = m_blocks;
        m_blocks = made;
        m_next = reinterpret_cast<char*>(made + 1);
        m_end = m_next + size * m_nodes;
        if (bytes * 2 <= largest_block)
            m_nodes *= 2;
    }

    void* m_free = nullptr;
    char* m_next = nullptr;
    char* m_end = nullptr;
    block* m_blocks = nullptr;
    std::size_t m_nodes = first_nodes;
};

// Lets a standard list draw its nodes from a pool that outlives it.
template <class T>
class slab_allocator {
public:
    using value_type = T;

    explicit slab_allocator(slab_pool& pool) : m_pool(&pool) {}
    template <class Other>
    slab_allocator(const slab_allocator<Other>& other) : m_pool(other.pool())
    {
    }

    T* allocate(std::size_t count)
    {
        if (count != 1)
            throw std::bad_array_new_length();
        return static_cast<T*>(m_pool->take(sizeof(T)));
    }
    void deallocate(T* node, std::size_t) { m_pool->give_back(node); }
    slab_pool* pool() const { return m_pool; }
    template <class Other>
    bool operator==(const slab_allocator<Other>& other) const
    {
        return m_pool == other.pool();
    }

private:
    slab_pool* m_pool;
};

} // namespace vh
