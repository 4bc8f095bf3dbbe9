// A change of every kind, its texts full of other people's bytes.
#pragma once

#include "install/record/change.h"

inline std::vector<Change> EveryChange() {
    using namespace change;
    using namespace std::string_view_literals;
    const SString path("/home/caf\xE9/\0\n\x1B[2J\"\\\xE2\x80\xA8"sv);
    const SStringList texts({path, "", "\xFF", "plain"});
    const Access access{4294967294U, 100, {04770}, "02000000"};
    return {
        DirectoryMade{path, path + ".new", access},
        ModeSet{path, {0}, {07777}},
        HostFileRewritten{path, path + ".bak", {0444}, "00", "ff"},
        LinkMade{path, "/opt/a", path + ".bak", "00", path, 1, 2},
        DatabasePrepared{path, {true, "a", access}, {UINT64_MAX, 7}, {}},
        DatabaseExchanged{path, access, "aa", "bb", {7, INT64_MIN}},
        DatabaseMade{path, ""},
        SettingChanged{path, "Table", "Key", texts, {}},
        AccountsMade{{{path, "00"}, {"b", "11"}}},
        AccountEdited{{path, "00"}, texts},
        MessageQueued{path, texts, "00"},
        NoticesLeft{"host", {{"a", path, 1, 2}, {path, "", 3, 4}}},
        MaildropGiven{path, access, 1000, 8, true, 4711},
        ProcessesSignalled{"TERM", {{4711, path, 8, texts, "a.service"}, {}}},
        ServerStarted{path},
        RunEnded{-1},
    };
}
