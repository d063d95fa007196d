// The skin of one context's dialogs: whether there is one, whether it is on, and what its records say.
#pragma once

#include <memory>

#include "../skin/skin_attr.h"
#include "../skin/skin_files.h"
#include "../skin/skin_painter.h"

namespace vh {

class DialogSkin {
public:
    // Loads the file unless a skin of this process is there already. `directory` serves while it is read.
    bool Start(const stringx& file, uint16_t language, const stringx& directory);
    // The skin goes with the last context that has it.
    void End();

    bool loaded() const { return m_loaded; }
    bool enabled() const { return m_enabled; }
    // A skin that is not there can't be switched on.
    void Enable(bool on)
    {
        if (!on || m_loaded)
            m_enabled = on;
    }

    // A record for a dialog, with the language and font of the skin.
    SkinAttr Record(HWND window, const stringx& section, const stringx& brand) const;
    bool Apply(const SkinAttr& attr) const { return ApplySkin(m_skin, attr); }

    // The width and height in dialog units that skins are drawn for.
    static bool Fits(HWND dialog);

private:
    std::shared_ptr<Skin> m_skin;
    skin_copy m_copy;
    uint16_t m_language = 0;
    bool m_loaded = false;
    bool m_enabled = false;
};

} // namespace vh
