// The call table against the export table and the public headers.
#include <regex>

#include "../support/temp_folder.h"
#include "../support/test.h"
#include "host/call_record.h"
#include "host/call_signature.h"
#include "host/constants.h"
#include "host/host_object.h"
#include "host/text.h"

namespace host {

namespace {

std::vector<std::string> ExportNames()
{
    const std::string text = vh::test::BytesOf(VHRT_SOURCE_DIR "/exports/VHRT.def");
    const std::regex row(R"((\w+) @\d+)");
    std::vector<std::string> names;
    for (std::sregex_iterator match(text.begin(), text.end(), row), end; match != end; ++match)
        names.push_back((*match)[1]);
    return names;
}

struct Declaration {
    std::string result;
    // Types without names and blanks.
    std::vector<std::string> types;
};

std::vector<std::string> TypesOf(const std::string& parameters)
{
    std::vector<std::string> types;
    std::istringstream list(parameters);
    std::string parameter;
    while (std::getline(list, parameter, ',')) {
        parameter = std::regex_replace(parameter, std::regex(R"(\s+)"), " ");
        parameter = std::regex_replace(parameter, std::regex(R"(^ | ?\w+$)"), "");
        if (!parameter.empty())
            types.push_back(parameter);
    }
    return types;
}

std::map<std::string, Declaration> Declarations()
{
    std::map<std::string, Declaration> declarations;
    const std::regex comment(R"(/\*[^*]*\*+(?:[^/*][^*]*\*+)*/)");
    const std::regex function(R"(VHRT_FUNCTION\(([^)]*)\)\s*(\w+)\(([^)]*)\);)");
    for (const auto& header : std::filesystem::directory_iterator(VHRT_SOURCE_DIR "/exports/vhrt")) {
        const std::string text = std::regex_replace(vh::test::BytesOf(header.path()), comment, "");
        for (std::sregex_iterator match(text.begin(), text.end(), function), end; match != end; ++match)
            declarations[(*match)[2]] = {(*match)[1], TypesOf((*match)[3])};
    }
    return declarations;
}

const std::string integer = "int16_t|u?int32_t|uint8_t|wchar_t|FileHandle";
const std::string wide_reference = R"(int64_t\*|ListHandle\*|FILETIME\*|\w+\*\*)";
const std::string wide_integer = R"(int64_t|ListHandle|HWND|HANDLE|HMODULE|\w+\*)";

const std::string reference = R"(u?int32_t\*)", text = R"(wchar_t\*)";

// C types that fit the slots of each kind, in order.
const std::map<Kind, std::vector<std::string>> types_that_fit = {
    {Kind::Context, {R"(ObjectContext\*)"}},
    {Kind::Host, {R"(ISetupHost\*)"}},
    {Kind::Services, {R"(IServiceProvider\*)"}},
    {Kind::Null, {R"(const void\*)"}},
    {Kind::Int, {integer}},
    {Kind::SizeOf, {integer}},
    {Kind::AtMost, {integer}},
    {Kind::InOutInt, {reference}},
    {Kind::OutInt, {reference}},
    {Kind::InOutInt64, {wide_reference}},
    {Kind::OutInt64, {wide_reference}},
    {Kind::Buffer, {text, "int32_t"}},
    {Kind::BufferOf, {text, "int32_t"}},
    {Kind::ValueOf, {text, reference}},
    {Kind::BufferInOut, {text, reference}},
    {Kind::OutText, {text}},
    {Kind::InOutText, {text + R"(|void\*)"}},
    {Kind::Text, {"const " + text}},
    {Kind::Texts, {"const " + text + R"( const\*)"}},
    {Kind::OutTexts, {text + R"(\*)"}},
    {Kind::Narrow, {R"(const char\*)"}},
    {Kind::NarrowArray, {R"(const char\* const\*)"}},
    {Kind::Int64, {wide_integer + R"(|const char\* const\*|char\*\*)"}},
    {Kind::Variant, {R"((const )?VARIANT\*)"}},
    {Kind::OutVariant, {R"(VARIANT\*)"}},
    {Kind::InOutBstr, {R"(BSTR\*)"}},
    {Kind::Block, {R"((const )?void\*)"}},
    {Kind::BytesInOut, {R"(void\*)", R"(int32_t\*)"}},
    {Kind::Record, {R"(VHRT\w+\*|const INSTALLERINFO\*)"}}};

std::string ResultThatFits(Result result)
{
    if (result == Result::None)
        return "void";
    return result == Result::Int ? "int32_t" : R"(int64_t|HANDLE|\w+\*+)";
}

} // namespace

TEST(CallTable, HasEveryExportOnceAndNothingElse)
{
    std::vector<std::string> rows;
    for (const CallRow& row : CallTable())
        rows.emplace_back(row.name);
    EXPECT_EQ(rows.size(), 294u);
    EXPECT_EQ(rows, ExportNames());
}

TEST(CallTable, GivesEveryFunctionAScriptNameOfItsOwn)
{
    std::set<std::string> names;
    for (const CallRow& row : CallTable())
        EXPECT_TRUE(names.emplace(ParseCall(row).ScriptName()).second) << row.name;
}

TEST(CallTable, LeavesTheNamesOfConstantsAndServicesAlone)
{
    std::set<std::string> names;
    for (const CallRow& row : CallTable())
        names.emplace(ParseCall(row).ScriptName());
    for (const Service& service : ServiceTable())
        EXPECT_TRUE(names.insert(Utf8(service.name)).second) << Utf8(service.name);
    std::size_t place = 0;
    for (const ConstantGroup& group : ConstantTable())
        for (const Constant& constant : group.constants) {
            EXPECT_TRUE(names.emplace(constant.name).second) << constant.name;
            EXPECT_EQ(place, FindConstant(Wide(constant.name))) << constant.name;
            EXPECT_EQ(constant.value, ConstantValue(place++)) << constant.name;
        }
    EXPECT_EQ(ConstantCount(), place);
    for (const wchar_t* other : {L"", L"A", L"ListTypeStringX", L"ListTypeStrin", L"listtypestring", L"ZZ"})
        EXPECT_FALSE(FindConstant(other)) << Utf8(other);
}

TEST(CallTable, PassesTheTypesThatTheHeadersDeclare)
{
    const auto declarations = Declarations();
    for (const CallRow& row : CallTable()) {
        SCOPED_TRACE(row.name);
        const Call call = ParseCall(row);
        ASSERT_TRUE(declarations.contains(row.name));
        const Declaration& declared = declarations.at(row.name);
        EXPECT_TRUE(std::regex_match(declared.result, std::regex(ResultThatFits(call.result)))) << declared.result;
        std::vector<std::string> fitting;
        for (const Argument& argument : call.arguments)
            for (const std::string& type : types_that_fit.at(argument.kind))
                fitting.push_back(type);
        ASSERT_EQ(fitting.size(), declared.types.size());
        for (std::size_t i = 0; i < fitting.size(); ++i)
            EXPECT_TRUE(std::regex_match(declared.types[i], std::regex(fitting[i])))
                << "argument " << i << ": " << declared.types[i];
    }
}

TEST(CallTable, NamesOutputsApartAndReferencesThatExist)
{
    for (const CallRow& row : CallTable()) {
        SCOPED_TRACE(row.name);
        const Call call = ParseCall(row);
        std::set<std::string> names{"result"};
        for (const Argument& argument : call.arguments) {
            EXPECT_TRUE(argument.name.empty() || names.insert(argument.name).second) << argument.name;
            if (argument.kind == Kind::Record) {
                EXPECT_NO_THROW(RecordNamed(argument.detail));
            }
        }
        for (const Argument& argument : call.arguments)
            EXPECT_TRUE(argument.kind == Kind::Record || argument.detail.empty() || names.contains(argument.detail))
                << argument.detail;
    }
}

TEST(CallTable, RejectsRowsThatSayNothingCallable)
{
    EXPECT_THROW(ParseCall({"F", "long", ""}), std::invalid_argument);
    for (const char* bad : {"context, list:handel", "int", "info:record", "list:int64 x", "text:text, count:at_most",
                            "a:buffer,a:buffer,a:buffer,a:buffer,a:buffer,a:buffer,a:buffer,a:buffer,a:buffer"})
        EXPECT_THROW(ParseCall({"F", "int", bad}), std::invalid_argument) << bad;
}

} // namespace host
