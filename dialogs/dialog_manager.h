// What a context keeps for its dialogs.
#pragma once

#include "../Src/inc/script_values.h"
#include "../scriptdata/stringx.h"

class CDialogManager {
public:
    explicit CDialogManager(ObjectContext& owner) : m_owner(&owner) {}

    // The skin to load when dialogs are shown; may be empty.
    void SetSkin(std::wstring_view file) { m_skinFile = file; }
    const stringx& skin_file() const { return m_skinFile; }
    ObjectContext& owner() const { return *m_owner; }

private:
    ObjectContext* m_owner;
    stringx m_skinFile;
};
