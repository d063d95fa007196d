#include "media_table.h"

#include "media_error.h"

CVHRTMediaError& CVHRTMediaError::ErrorMedia()
{
    static CVHRTMediaError instance;
    return instance;
}

CVHRTMedia& MediaTable::Find(std::wstring_view name)
{
    m_lastMedia = name;
    const auto found = m_media.find(name);
    if (found != m_media.end())
        return *found->second;
    CVHRTMediaError& error = CVHRTMediaError::ErrorMedia();
    error.Fail(vh::media_no_media);
    return error;
}

bool MediaTable::Add(std::wstring_view name, std::unique_ptr<CVHRTMedia> media)
{
    return m_media.try_emplace(stringx(name), std::move(media)).second;
}
