// A file mapped into memory as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "../scriptdata/last_failure.h"
#include "../scriptdata/late_fallbacks.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"

namespace vh {

struct view_traits {
    using value_type = void*;
    static void* none() { return nullptr; }
    static void close(void* view) { UnmapViewOfFile(view); }
};
using unique_view = unique<view_traits>;

namespace late {

// Systems of old have only the narrow ones.
inline constinit late_function<decltype(CreateFileW)> create_file(kernel32, "CreateFileW");
inline constinit late_function<decltype(CreateFileA)> create_file_narrow(kernel32, "CreateFileA");
inline constinit late_function<decltype(CreateFileMappingW)> create_mapping(kernel32, "CreateFileMappingW");
inline constinit late_function<decltype(CreateFileMappingA)> create_mapping_narrow(kernel32, "CreateFileMappingA");

} // namespace late

} // namespace vh

// Nobody else can open the file while it is open here.
class vhmapfilex {
public:
    vhmapfilex() = default;
    vhmapfilex(const stringx& path, uint32_t size, bool writable) { open(path, size, writable); }
    vhmapfilex(const vhmapfilex&) = delete;
    vhmapfilex& operator=(const vhmapfilex&) = delete;
    virtual ~vhmapfilex() { close(); }

    // `size` bytes; 0 means the whole of a file that is read, and comes back as its size. A file to be written is
    // emptied first and needs a size. False: the cause is in last_file_failure(), and what was opened stays so until
    // the next call or the end of this object. An empty file can't be mapped.
    bool open(const stringx& path, uint32_t& size, bool writable);
    // A file that was written ends where its size is. Does nothing after an open that failed.
    void close();

    bool is_mapped() const { return m_mapped; }
    uint32_t size() const { return m_size; }
    // Makes the content shorter; a larger size changes nothing.
    void set_size(uint32_t size);
    std::span<std::byte> bytes() const { return {static_cast<std::byte*>(m_view.get()), m_size}; }

private:
    bool map(const stringx& path, uint32_t& size);

    // In the order in which they have to be opened.
    vh::unique_file m_file;
    vh::unique_handle m_mapping;
    vh::unique_view m_view;
    bool m_mapped = false;
    bool m_writable = false;
    uint32_t m_size = 0;
};
