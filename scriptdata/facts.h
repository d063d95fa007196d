// The numbered setup facts that the library reads, and how it reads them.
#pragma once

#include "../Src/inc/engine_services.h"
#include "com_ptr.h"
#include "variant.h"

namespace vh {

enum setup_fact : long {
    fact_launching_file = 2,
    fact_text1 = 3,
    fact_text2 = 4,
    fact_flag5 = 5,
    fact_text3 = 6,
    fact_text4 = 7,
    fact_text5 = 8,
    fact_flag1 = 9,
    fact_silent = 10,
    fact_flag4 = 11,
    fact_command_line = 12,
    fact_set_source_dir = 16,
    fact_language = 18,
    fact_status_option = 19,
    fact_skin_file = 21,
    fact_keep_package_location = 22,
    fact_dialog_hook = 24,
    fact_has_package_location = 29,
    fact_installer_session = 35,
    fact_silent_ex = 36,
    fact_parent_search = 40,
    fact_external_ui = 43,
    fact_package_location = 44,
};

// One fact. `known` says whether the engine answered.
struct fact {
    fact(ISetupInfo* info, setup_fact number) : known(info && SUCCEEDED(info->GetFact(number, value.put()))) {}

    // Exactly the engine's true.
    bool truth() const { return known && value.get().boolVal == VARIANT_TRUE; }
    bool is_text() const { return known && value.type() == VT_BSTR; }
    std::wstring_view text() const { return known ? value.text() : std::wstring_view(); }
    long number() { return known && SUCCEEDED(value.change(VT_I4)) ? value.get().lVal : 0; }

    variant value;
    bool known;
};

} // namespace vh
