// Script files: text by lines, binary by bytes, behind numeric handles.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "../diagnostics/file.h"

// Results that scripts tell apart; -1 stands for every other failure and for the end of a file.
enum : int32_t {
    FileErrorUrlNotReadable = -2,
    FileErrorWrongType = -500,
    FileErrorBadHandle = -501,
};

class CVHFile {
public:
    CVHFile() = default;
    CVHFile(const CVHFile&) = delete;
    CVHFile& operator=(const CVHFile&) = delete;
    virtual ~CVHFile() = default;

    // Modes 1 to 5 as in vhrt.h; -1 or -2 when it fails.
    virtual int32_t Open(const wchar_t* path, int32_t mode, bool create);
    virtual int32_t Close();
    virtual int32_t ReadLine(stringx&) { return FileErrorWrongType; }
    virtual int32_t GetLine(wchar_t*, int32_t*) { return FileErrorWrongType; }
    virtual int32_t WriteLine(std::wstring_view) { return FileErrorWrongType; }
    virtual int32_t ReadBytes(uint8_t*, uint32_t, uint32_t, uint32_t) { return FileErrorWrongType; }
    virtual int32_t SeekBytes(int32_t, int32_t) { return FileErrorWrongType; }
    virtual int32_t WriteBytes(const uint8_t*, uint32_t, uint32_t, uint32_t) { return FileErrorWrongType; }

    // 0, or the result of a mode and path that can't go together.
    static int32_t CheckMode(std::wstring_view path, int32_t mode);

protected:
    vh::file m_file;
};

class CVHTextFile final : public CVHFile {
public:
    int32_t Open(const wchar_t* path, int32_t mode, bool create) override;
    int32_t ReadLine(stringx& line) override;
    int32_t GetLine(wchar_t* buffer, int32_t* size) override;
    int32_t WriteLine(std::wstring_view text) override;

    bool wide() const { return m_wide; }
    void set_mark_on_create() { m_markOnCreate = true; }

private:
    // A line as it stands in the content; one of the two by the file's kind.
    struct raw_line {
        std::wstring_view wide;
        std::string_view narrow;
    };

    int32_t TakeLine(raw_line& line);
    int32_t GetLineSize(int32_t* size);
    int32_t Fill();
    int32_t FillFromStream();
    bool FindMarkAtAddress();
    bool TakeBuffer(std::size_t bytes);
    void AppendLineEnd();

    bool m_wide = false;
    bool m_markOnCreate = false;
    // The whole content from the first line read on, with a line end behind it.
    std::unique_ptr<char[]> m_buffer;
    const char* m_cursor = nullptr;
    uint32_t m_dataSize = 0;
    // The line fetched ahead by a size query.
    int32_t m_lineResult = 0;
    stringx m_pendingLine;
    bool m_pendingValid = false;
    // The bytes of the line being written; kept for its room.
    std::string m_output;
};

class CVHBinaryFile final : public CVHFile {
public:
    int32_t ReadBytes(uint8_t* buffer, uint32_t size, uint32_t offset, uint32_t count) override;
    int32_t SeekBytes(int32_t distance, int32_t origin) override;
    int32_t WriteBytes(const uint8_t* buffer, uint32_t size, uint32_t offset, uint32_t count) override;
};

// Stands in for a file that no handle leads to.
class CVHFileError final : public CVHFile {
public:
    static CVHFileError& Instance();

    int32_t Open(const wchar_t*, int32_t, bool) override { return FileErrorBadHandle; }
    int32_t Close() override { return FileErrorBadHandle; }
    int32_t ReadLine(stringx&) override { return FileErrorBadHandle; }
    int32_t GetLine(wchar_t*, int32_t*) override { return FileErrorBadHandle; }
    int32_t WriteLine(std::wstring_view) override { return FileErrorBadHandle; }
    int32_t ReadBytes(uint8_t*, uint32_t, uint32_t, uint32_t) override { return FileErrorBadHandle; }
    int32_t SeekBytes(int32_t, int32_t) override { return FileErrorBadHandle; }
    int32_t WriteBytes(const uint8_t*, uint32_t, uint32_t, uint32_t) override { return FileErrorBadHandle; }
};

// The open files of one context.
class FileTable {
public:
    // The file's handle, -1 or -2.
    int32_t Open(const wchar_t* path, int32_t mode, bool create);
    int32_t Close(int32_t handle);
    // CVHFileError for an unknown handle.
    CVHFile& Find(int32_t handle);

private:
    std::map<int32_t, std::unique_ptr<CVHFile>> m_files;
    uint32_t m_counter = 6;
};
