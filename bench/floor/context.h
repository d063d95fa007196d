// What the bare twins keep between calls: the plainest containers that do the same.
#pragma once

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "../../Src/inc/engine_features.h"
#include "../../exports/vhrt.h"
#include "../../scriptdata/unique.h"

namespace twin {

// A list type of the twins alone: a vector that keeps its room.
inline constexpr int32_t vector_type = 1;

class list {
public:
    virtual ~list() = default;
    virtual int64_t Count() const = 0;
    virtual void AddNumber(int32_t) {}
    virtual void AddText(const wchar_t*) {}
    virtual int64_t Next(wchar_t*, int32_t) { return -1; }
    virtual int64_t FindNumber(int32_t) { return -1; }
    virtual int64_t FindText(const wchar_t*) { return -1; }
    virtual void First() {}
    virtual void Clear() = 0;
};

// One script-built item, with its children by name.
struct item {
    std::wstring name, display_name, description, misc_text, text17, text18;
    bool visible = true;
    bool selected = false;
    int64_t size = 0;
    std::map<std::wstring, std::unique_ptr<item>> children;
};

struct media {
    std::map<std::wstring, ISetupFeature*> features;
    item root;
};

} // namespace twin

struct ObjectContext {
    std::map<int64_t, std::unique_ptr<twin::list>> lists;
    std::map<int32_t, vh::unique_file> files;
    std::map<std::wstring, twin::media> media;
    ISetupFeatures* features = nullptr;
};
