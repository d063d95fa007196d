#include "answers.h"

#include <nlohmann/json.hpp>

#include "engine/product/json_reader.h"
#include "text.h"

namespace host {

namespace {

using Json = nlohmann::ordered_json;
using vh::engine::JsonFile;
using vh::engine::JsonPlace;

constexpr std::size_t most_answers = 100000;
constexpr std::size_t most_values = 10000;
constexpr int64_t most_number = 0x7FFFFFFF;

std::vector<std::wstring> TextsAt(const JsonPlace& at, const char* key)
{
    std::vector<std::wstring> texts;
    at.Each(key, most_answers, [&](const JsonPlace& text) { texts.push_back(text.Text()); });
    return texts;
}

std::optional<std::vector<std::wstring>> SelectionAt(const JsonPlace& at)
{
    if (!at.Has("selection"))
        return std::nullopt;
    return TextsAt(at, "selection");
}

ControlValue ReadValue(const JsonPlace& values, const char* key, const JsonPlace& at)
{
    if (at.IsNull())
        at.Fail(L"is a password, which answers do not keep: write it here");
    if (at.IsTruth())
        return at.Truth();
    if (at.IsText())
        return at.Text();
    if (at.IsList())
        return TextsAt(values, key);
    return at.Number(-1, most_number);
}

Answer ReadAnswer(const JsonPlace& at)
{
    at.Keys({"dialog", "control", "code", "values", "selection", "help", "result", "path"});
    Answer answer;
    answer.place = Wide(at.place());
    answer.dialog = at.At("dialog").Name();
    answer.selection = SelectionAt(at);
    if (answer.dialog == browse_function) {
        answer.result = static_cast<int>(at.At("result").Number(-most_number, most_number));
        answer.path = at.Text("path");
        return answer;
    }
    answer.code = static_cast<int>(at.Number("code", 0, 0, 0xFFFF));
    answer.control = at.Truth("help", false) ? int{Answer::help} : static_cast<int>(at.At("control").Number(1, 0xFFFF));
    at.Members("values", most_values, [&](const std::string& key, const JsonPlace& value) {
        const int control = std::atoi(key.c_str());
        if (control < 1 || control > 0xFFFF || std::to_string(control) != key)
            value.Fail(L"a value wants the number of its control as its name");
        answer.values.emplace(control, ReadValue(at.At("values"), key.c_str(), value));
    });
    return answer;
}

Json JsonOf(const std::vector<std::wstring>& texts)
{
    Json list = Json::array();
    for (const std::wstring& text : texts)
        list.push_back(Utf8(text));
    return list;
}

std::string ShortOf(const std::wstring& text, const std::wstring& target)
{
    return Utf8(text == target && !target.empty() ? target_word : text);
}

struct ValueWriter {
    const std::wstring& target;

    Json operator()(const HiddenValue&) const { return nullptr; }
    Json operator()(bool on) const { return on; }
    Json operator()(int64_t number) const { return number; }
    Json operator()(const std::wstring& text) const { return ShortOf(text, target); }
    Json operator()(const std::vector<std::wstring>& texts) const { return JsonOf(texts); }
};

Json JsonOf(const Answer& answer, const std::wstring& target)
{
    Json json{{"dialog", Utf8(answer.dialog)}};
    if (answer.dialog == browse_function) {
        json["result"] = answer.result;
        json["path"] = ShortOf(answer.path, target);
    } else if (answer.control == Answer::help) {
        json["help"] = true;
    } else {
        json["control"] = answer.control;
    }
    if (answer.code)
        json["code"] = answer.code;
    for (const auto& [control, value] : answer.values)
        json["values"][std::to_string(control)] = std::visit(ValueWriter{target}, value);
    if (answer.selection)
        json["selection"] = JsonOf(*answer.selection);
    return json;
}

} // namespace

Answers ReadAnswers(const std::wstring& file)
{
    const JsonFile json(file, JsonFile::Faults::thrown);
    const JsonPlace root = json.Root();
    root.Keys({"format", "product", "name", "version", "language", "target", "selection", "variables", "dialogs"});
    root.At("format").Number(1, 1);
    Answers answers;
    answers.guid = root.At("product").Name();
    answers.name = root.Text("name");
    answers.version = root.Text("version");
    answers.language = static_cast<int>(root.Number("language", 0, 0, 0xFFFF));
    answers.target = root.Text("target");
    answers.selection = SelectionAt(root);
    root.Members("variables", most_values, [&](const std::string& name, const JsonPlace& value) {
        answers.variables[Wide(name)] = value.IsNull() ? std::nullopt : std::optional(value.Text());
    });
    if (root.Has("dialogs"))
        answers.dialogs.emplace();
    root.Each("dialogs", most_answers, [&](const JsonPlace& at) { answers.dialogs->push_back(ReadAnswer(at)); });
    return answers;
}

std::string TextOf(const Answers& answers)
{
    Json json{{"format", 1},
              {"product", Utf8(answers.guid)},
              {"name", Utf8(answers.name)},
              {"version", Utf8(answers.version)},
              {"language", answers.language},
              {"target", Utf8(answers.target)}};
    if (answers.selection)
        json["selection"] = JsonOf(*answers.selection);
    json["variables"] = Json::object();
    for (const auto& [name, value] : answers.variables)
        json["variables"][Utf8(name)] = value ? Json(Utf8(*value)) : Json(nullptr);
    if (answers.dialogs) {
        json["dialogs"] = Json::array();
        for (const Answer& answer : *answers.dialogs)
            json["dialogs"].push_back(JsonOf(answer, answers.target));
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace host
