// A bitmap on the main window.
#pragma once

#include "../object.h"
#include "gdi.h"
#include "main_window.h"
#include "reveal.h"

namespace vh::engine {

class BitmapObject final : public engine_object<BitmapObject, ISetupBitmap>, private PaintedThing {
public:
    BitmapObject(std::shared_ptr<Core> core, unique_bitmap picture, long placement, long transparent);
    ~BitmapObject() override;

    HRESULT STDMETHODCALLTYPE SetPosition(long x, long y) override;

private:
    void Paint(HDC to, const RECT& client) const override;
    bool Advance() override;
    RECT PlaceIn(const RECT& client) const;
    void PaintPlain(HDC to, const RECT& client) const;
    void PaintTiles(HDC to, const RECT& client) const;

    unique_bitmap m_picture;
    SIZE m_size;
    long m_placement;
    long m_transparent;
    // The effect that it comes with, and how far that is.
    long m_effect;
    int m_step = 1;
    POINT m_at{};
};

} // namespace vh::engine
