#include "convert_command.h"

#include "diagnostics/mapped_file.h"
#include "exit_codes.h"
#include "file_bytes.h"
#include "files/unicode_file.h"
#include "host/console.h"
#include "host/text.h"

namespace tools {

int ConvertFile(const std::wstring& source, const std::wstring& target, unsigned code_page)
{
    const std::wstring path = host::LongPath(source);
    if (vh::ConvertUnicodeFile(stringx(path), stringx(host::LongPath(target)), code_page))
        return exit_done;
    const vh::file_failure& failure = vh::last_file_failure();
    if (failure.code != ERROR_NO_UNICODE_TRANSLATION || failure.path != path)
        ThrowFor(failure.path, failure.code);
    host::Complain(source + L": is no UTF-16 text");
    return exit_found;
}

} // namespace tools
