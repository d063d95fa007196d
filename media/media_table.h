// The media of one context by name.
#pragma once

#include <map>
#include <memory>

#include "media.h"

class MediaTable {
public:
    // The media, or CVHRTMediaError with its error set; never fails. The name is remembered either way.
    CVHRTMedia& Find(std::wstring_view name);
    // False when the name is taken.
    bool Add(std::wstring_view name, std::unique_ptr<CVHRTMedia> media);
    // The name that was asked for last.
    const stringx& last_media() const { return m_lastMedia; }
    void Clear()
    {
        m_media.clear();
        m_lastFound = nullptr;
    }

private:
    // Names compare by unit: case counts.
    std::map<stringx, std::unique_ptr<CVHRTMedia>, vh::text_less> m_media;
    stringx m_lastMedia;
    // What stands under that name, while something does.
    CVHRTMedia* m_lastFound = nullptr;
};
