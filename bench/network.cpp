// Downloads from the test server: the bench is started by it, and finds its port in the environment.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "../diagnostics/file.h"
#include "../diagnostics/inet_file.h"
#include "areas.h"
#include "bare_download.h"
#include "modules.h"

namespace bench {

namespace {

constexpr DWORD first_step = 1500;

// Shows no dialog for a failure.
class give_up final : public vh::inet_retry_handler {
    DWORD on_error(vh::inet_file&) override { return ERROR_CANCELLED; }
};

// One place for what is downloaded, touched before anything is measured.
class download_buffer {
public:
    explicit download_buffer(DWORD size) : m_bytes(std::make_shared<char[]>(size)), m_size(size) {}
    char* get() const { return m_bytes.get(); }
    DWORD size() const { return m_size; }

private:
    std::shared_ptr<char[]> m_bytes;
    DWORD m_size;
};

std::wstring Address(const char* port, DWORD size)
{
    return L"http://127.0.0.1:" + std::wstring(port, port + std::char_traits<char>::length(port)) + L"/file.bin?size=" +
           std::to_wstring(size);
}

// All of the buffer has to come: a row on less would say nothing.
void Expect(DWORD wanted, int64_t count)
{
    if (count == wanted)
        return;
    std::printf("a download brings %lld bytes instead of %lu\n", static_cast<long long>(count), wanted);
    std::exit(3);
}

// One open, one read, one close.
work ByFile(const std::wstring& address, const download_buffer& into)
{
    return {[=](long) {
        give_up handler;
        vh::file file;
        file.set_retry_handler(&handler);
        file.open(address.c_str(), GENERIC_READ, 0, 0, OPEN_EXISTING);
        Expect(into.size(), file.read_bytes(into.get(), into.size()));
    }};
}

// A script's way: blocks, and a call for each.
work ByReadBytes(const std::wstring& address, const download_buffer& into)
{
    constexpr DWORD block = 40 * first_step;
    return {[=](long) {
        const auto read = BENCH_GET(Library(), _ReadBytes);
        const context setup(Library());
        const auto file =
            static_cast<FileHandle>(BENCH_GET(Library(), _OpenFile)(setup, address.c_str(), FileReadBytes, 0));
        int64_t count = 0;
        for (int64_t more = 1; more > 0 && count < into.size(); count += more)
            more = read(setup, file, into.get(), into.size(), static_cast<uint32_t>(count), block);
        Expect(into.size(), count);
        BENCH_GET(Library(), _CloseFile)(setup, file);
    }};
}

work ByBareLoop(const std::wstring& address, const download_buffer& into, signals how = signals::always)
{
    return {[=](long) {
        bare_download download(address.c_str(), how);
        Expect(into.size(), download.Read(into.get(), into.size(), first_step));
    }};
}

// What the small reads at the start cost anyway: ten seconds of them, then the rest at full speed.
work ByBareWindow(const std::wstring& address, const download_buffer& into)
{
    return {[=](long) {
        bare_download download(address.c_str(), signals::from_other_threads);
        Expect(into.size(), download.Read(into.get(), into.size(), first_step, 10000, 1 << 20));
    }};
}

work Once(work made, int rounds = 0)
{
    made.units = 1;
    made.rounds = rounds;
    return made;
}

} // namespace

void Network(suite& s)
{
    const char* const port = std::getenv("VHRT_HTTP_PORT");
    if (!port) {
        s.Leave("downloads", "not measured: no server, see docs/performance.md");
        return;
    }
    const download_buffer ten(s.quick() ? 1'000'000 : 10'000'000);
    const std::wstring address = Address(port, ten.size());
    const work plain = Once(ByBareLoop(address, ten));
    s.Compare("one read of all, to a plain loop", 1.1, Once(ByFile(address, ten)), plain);
    s.Compare("the same, to a loop without signals", std::nullopt, Once(ByFile(address, ten)),
              Once(ByBareLoop(address, ten, signals::from_other_threads)));
    s.Compare("_OpenFile and _ReadBytes, to a plain loop", 1.1, Once(ByReadBytes(address, ten)), plain);

    if (s.quick()) {
        s.Leave("200 MB", "not in a quick run: takes ten seconds a time");
        return;
    }
    // A slow start fills the window at any speed of the machine.
    const download_buffer large(200'000'000);
    const std::wstring large_address = Address(port, large.size()) + L"&drip=1&until=20000000";
    s.Compare("200 MB, to 10 s of small reads and the rest", 1.05, Once(ByFile(large_address, large), 3),
              Once(ByBareWindow(large_address, large)));
}

} // namespace bench
