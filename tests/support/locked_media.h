// A media some of whose items can't be changed, and which does something else meanwhile.
#pragma once

#include "../../media/script_media.h"
#include "../../runtime/context.h"
#include "test.h"

namespace vh::test {

class LockedMedia : public CVHScriptMedia {
public:
    // Under the name "M".
    static LockedMedia& AddTo(ObjectContext& context)
    {
        auto made = std::make_unique<LockedMedia>();
        LockedMedia& media = *made;
        context.media.Add(L"M", std::move(made));
        return media;
    }
    int32_t IsPartlySelected(text item, bool& truth) override
    {
        Do(on_look);
        truth = locked.contains(std::wstring(item));
        return 0;
    }
    int32_t SelectItem(text item, bool truth, ObjectContext* context) override
    {
        Do(on_select);
        return refused == item ? vh::media_selection_refused : CVHScriptMedia::SelectItem(item, truth, context);
    }

    std::set<std::wstring> locked;
    std::wstring refused;
    // Each is done once.
    std::function<void()> on_look;
    std::function<void()> on_select;

private:
    static void Do(std::function<void()>& what)
    {
        if (const auto now = std::exchange(what, nullptr))
            now();
    }
};

} // namespace vh::test
