// A setup folder of the test's own, with an engine on it.
#pragma once

#include "../../engine/engine.h"
#include "../../engine/files.h"
#include "../../scriptdata/com_object.h"
#include "../support/test.h"

namespace vh::engine::test {

inline void WriteText(const std::wstring& path, std::string_view content)
{
    MakeFolders(FolderOf(path));
    const unique_file file(
        CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    ASSERT_TRUE(file && WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
}

inline bool Exists(const std::wstring& path) { return FactsOf(path).exists(); }

inline FILETIME TimeOf(const std::wstring& path)
{
    const uint64_t time = FactsOf(path).time;
    return {static_cast<DWORD>(time & 0xFFFFFFFF), static_cast<DWORD>(time >> 32)};
}
inline void SetTime(const std::wstring& path, const FILETIME& time)
{
    const unique_file file(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &time));
}

// Names of files and folders below, with backslashes, in order.
inline void ListTree(const std::wstring& folder, const std::wstring& below, std::vector<std::wstring>& names)
{
    for (const Entry& entry : ListFolder(folder)) {
        const std::wstring name = JoinPath(below, entry.name);
        names.push_back(name);
        if (entry.facts.folder())
            ListTree(JoinPath(folder, entry.name), name, names);
    }
}
inline std::vector<std::wstring> Tree(const std::wstring& folder)
{
    std::vector<std::wstring> names;
    ListTree(folder, {}, names);
    return names;
}

// Lives below the temporary folder and goes with the test.
class SetupFolder : vh::test::Pinned {
public:
    SetupFolder()
    {
        wchar_t temp[MAX_PATH + 1] = {};
        GetTempPathW(MAX_PATH, temp);
        static int count = 0;
        m_root = FullPath(std::wstring(temp)) + L"\\vhengine" + std::to_wstring(GetCurrentProcessId()) + L"_" +
                 std::to_wstring(++count);
        RemoveTree(m_root);
        MakeFolders(Setup());
    }
    // A folder that another process made; it stays.
    explicit SetupFolder(std::wstring root) : m_root(std::move(root)), m_stays(true) {}
    ~SetupFolder()
    {
        if (!m_stays)
            RemoveTree(m_root);
    }

    std::wstring Setup(const std::wstring& name = {}) const { return JoinPath(m_root + L"\\setup", name); }
    std::wstring Target(const std::wstring& name = {}) const { return JoinPath(m_root + L"\\target", name); }
    std::wstring Data() const { return m_root + L"\\data"; }
    const std::wstring& Root() const { return m_root; }

    void Payload(const std::wstring& name, std::string_view content) const { WriteText(Setup(name), content); }
    // `members` are the product file's members beside the fixed ones.
    void Product(const std::string& members) const
    {
        WriteText(Setup(L"product.json"), R"({"format": 1, "name": "Probe", "version": "1.0",
            "guid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}", )" +
                                              members + "}");
    }

    Options Given() const
    {
        Options options;
        options.setupFolder = Setup();
        options.targetDir = Target();
        options.dataDir = Data();
        return options;
    }
    std::unique_ptr<Engine> Open() const { return Engine::Open(Given()); }

private:
    std::wstring m_root;
    bool m_stays = false;
};

// Two levels, sizes 10, 20, 30 and 40, the second required.
inline const char* const tree_features = R"("features": [
    {"name": "Core", "required": true, "files": [{"name": "core", "files": ["a.bin"]}]},
    {"name": "Tools", "files": [{"name": "tools", "target": "bin", "files": ["b.bin"]}], "features": [
        {"name": "Extra", "files": [{"name": "extra", "files": ["c.bin"]}]},
        {"name": "Help", "languages": [1033, 1031], "systems": ["windows-7", "windows-10", "windows-11", "server"], "files": [{"name": "help", "files": ["d.bin"]}]}
    ]}])";

inline void MakeTree(const SetupFolder& folder, const std::string& more = {})
{
    folder.Payload(L"a.bin", std::string(10, 'a'));
    folder.Payload(L"b.bin", std::string(20, 'b'));
    folder.Payload(L"c.bin", std::string(30, 'c'));
    folder.Payload(L"d.bin", std::string(40, 'd'));
    folder.Product(R"("languages": [1033, 1031], )" + std::string(tree_features) + more);
}

inline HRESULT MoveAll(const Engine& engine) { return engine.Host().query<ISetupFeatureHost>()->Move(nullptr); }

inline com_ptr<ISetupFeature> Feature(const Engine& engine, std::initializer_list<const wchar_t*> path)
{
    com_ptr<ISetupFeatures> features;
    engine.Host().query<ISetupFeatureHost>()->GetFeatures(features.put());
    com_ptr<ISetupFeature> item;
    for (const wchar_t* name : path) {
        if (item)
            item->GetChildren(features.put());
        const variant key(name);
        if (FAILED(features->Item(key.get(), item.put())))
            return {};
    }
    return item;
}

inline short Selected(const Engine& engine, std::initializer_list<const wchar_t*> path)
{
    short selected = -1;
    if (const auto item = Feature(engine, path))
        item->GetSelected(&selected);
    return selected;
}

template <class Interface>
com_ptr<Interface> ServiceOf(const Engine& engine, const GUID& service = null_service)
{
    com_ptr<Interface> found;
    engine.Services()->QueryService(service, iid_of<Interface>, found.put_void());
    return found;
}

// A file, or a folder, that somebody has open.
inline unique_file Hold(const std::wstring& path, DWORD share = 0)
{
    return unique_file(
        CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

inline HRESULT Copy(const Engine& engine, const wchar_t* source, const wchar_t* target, unsigned long flags,
                    bool logged = false)
{
    com_ptr<ISetupCopyJob> job;
    const HRESULT code =
        ServiceOf<ISetupFileOps>(engine)->CreateCopyJob(bstr(source).get(), bstr(target).get(), flags, job.put());
    const auto log = logged ? ServiceOf<ISetupLog>(engine) : com_ptr<ISetupLog>();
    return FAILED(code) ? code : job->Run(log.get(), nullptr);
}

// What a script gets of an object by a name, or by none (the default member), in text form; "<none>" when the object
// has none of that name.
inline std::wstring PropertyText(IDispatch* object, const wchar_t* name, WORD flags = DISPATCH_PROPERTYGET,
                                 std::vector<variant> arguments = {})
{
    auto* given = const_cast<wchar_t*>(name);
    DISPID id = DISPID_VALUE;
    DISPPARAMS passed{arguments.empty() ? nullptr : &arguments.front().get(), nullptr,
                      static_cast<UINT>(arguments.size()), 0};
    variant value;
    if (!object || (*name && FAILED(object->GetIDsOfNames(GUID_NULL, &given, 1, 0, &id))) ||
        FAILED(object->Invoke(id, GUID_NULL, 0, flags, &passed, value.put(), nullptr, nullptr)))
        return L"<none>";
    if (value.type() == VT_DISPATCH)
        return L"object";
    if (value.type() == VT_BOOL)
        value.change(VT_I2);
    value.change(VT_BSTR);
    return std::wstring(value.text());
}

inline std::wstring LastReason(const Engine& engine)
{
    for (auto message = engine.Messages().rbegin(); message != engine.Messages().rend(); ++message)
        if (message->severity == Severity::error)
            return message->Text();
    return {};
}

// A test on the tree of MakeTree with an engine on it, which goes before the folder does.
class OnTree : public testing::Test {
protected:
    void SetUp() override
    {
        MakeTree(folder);
        engine = folder.Open();
    }
    // Installs all that is selected and ends the run. Result: its log.
    std::wstring Install()
    {
        EXPECT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
        return End();
    }
    std::wstring End()
    {
        engine->Commit();
        const std::wstring log = engine->LogFile();
        engine.reset();
        return log;
    }
    // The next run over the same folder, once this one has ended.
    void Reopen(Options options)
    {
        engine.reset();
        engine = Engine::Open(std::move(options));
    }
    void Reopen() { Reopen(folder.Given()); }

    SetupFolder folder;
    std::unique_ptr<Engine> engine;
};

} // namespace vh::engine::test
