#include "media_table.h"

#include "media_error.h"

CVHRTMediaError& CVHRTMediaError::ErrorMedia()
{
    static CVHRTMediaError instance;
    return instance;
}

CVHRTMedia& MediaTable::Find(std::wstring_view name)
{
    // Scripts use one media many times in a row.
    if (m_lastFound && m_lastMedia.view() == name)
        return *m_lastFound;
    m_lastMedia = name;
    const auto found = m_media.find(name);
    m_lastFound = found == m_media.end() ? nullptr : found->second.get();
    if (m_lastFound)
        return *m_lastFound;
    CVHRTMediaError& error = CVHRTMediaError::ErrorMedia();
    error.Fail(vh::media_no_media);
    return error;
}

bool MediaTable::Add(std::wstring_view name, std::unique_ptr<CVHRTMedia> media)
{
    return m_media.try_emplace(stringx(name), std::move(media)).second;
}
