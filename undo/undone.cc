// Writes and reads Undo's own record; the only place of Undo that uses the JSON library.
#include "undo/undone.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <nlohmann/json.hpp>

#include "support/system/clock.h"
#include "support/system/identity.h"

namespace {

using Json = nlohmann::ordered_json;

SString FileOf(const SString& run) {
    return run + ".undone";
}

SString Line(const Json& object) {
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json OptionsLine(const char* what, const UndoOptions& options) {
    return {{"time", UniversalTime().Bytes()},
            {what, true},
            {"accounts", options.accounts},
            {"units", options.units}};
}

bool Has(const Json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

void TakeChange(const Json& line, Undone* undone, std::set<size_t>* found) {
    const auto change = line.find("change");
    const auto outcome = line.find("outcome");
    const auto left = line.find("left");
    if (change == line.end() || outcome == line.end() || left == line.end()) return;
    if (!change->is_number_unsigned() || !left->is_array() || !left->empty()) return;
    if (*outcome == kTakenBack) undone->taken_back.insert(change->get<size_t>());
    if (*outcome == kAsBefore) found->insert(change->get<size_t>());
}

/// `found`: the changes as before, until it is known that Undo finished.
void TakeLine(const Json& line, Undone* undone, std::set<size_t>* found) {
    if (!line.is_object()) return;
    undone->is_begun = true;
    undone->is_open = !Has(line, "finished");
    TakeChange(line, undone, found);
    if (undone->is_open) return;
    undone->as_before.merge(*found);
    const auto time = line.find("time");
    undone->finished = time != line.end() && time->is_string() ? SString(time->get<std::string>()) : "once";
    undone->options.accounts |= Has(line, "accounts");
    undone->options.units |= Has(line, "units");
    undone->has_left = Has(line, "left");
}

}  // namespace

Undone ReadUndone(const Records& records, const SString& run) {
    Undone undone;
    if (!records.Has(FileOf(run))) return undone;
    SString fault;
    const std::optional<SString> text = records.Open(FileOf(run), O_RDONLY, &fault).ReadAll();
    if (!text) {
        undone.fault = FileOf(run) + ": " + (fault.IsEmpty() ? SString(strerror(errno)) : fault);
        return undone;
    }
    std::set<size_t> found;
    for (const SString& line : Lines(*text))
        TakeLine(Json::parse(line.Bytes(), nullptr, false), &undone, &found);
    return undone;
}

bool IsDone(const Undone& undone, const UndoOptions& wanted) {
    const bool wants_more =
        (wanted.accounts && !undone.options.accounts) || (wanted.units && !undone.options.units);
    return undone.IsFinished() && !wants_more;
}

void UndoneRecord::Begin(const UndoOptions& options) {
    const AsRoot root;
    SString fault;
    file_ = records_.Open(FileOf(run_), O_RDWR | O_CREAT | O_APPEND, &fault);
    // Whose group the process has by now is the mail owner's.
    if (file_ && fchown(file_.Get(), getuid(), getgid()) != 0) file_.Close();
    // After what a killed Undo may have left of a line.
    const auto status = file_.Stat();
    if (status && status->st_size > 0) Write("\n");
    Write(Line(OptionsLine("begun", options)));
}

void UndoneRecord::Add(size_t change, const SString& outcome, const SStringList& left) {
    Json texts = Json::array();
    for (const SString& text : left) texts.push_back(text.Bytes());
    Write(Line({{"time", UniversalTime().Bytes()},
                {"change", change},
                {"outcome", outcome.Bytes()},
                {"left", texts}}));
}

void UndoneRecord::Finish(const UndoOptions& options, bool has_left) {
    Json line = OptionsLine("finished", options);
    line["left"] = has_left;
    Write(Line(line));
    is_whole_ = is_whole_ && file_.Sync();
}

void UndoneRecord::Write(const SString& line) {
    is_whole_ = is_whole_ && file_.WriteAll(line);
}
