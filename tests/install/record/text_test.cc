#include "install/record/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "every_change.h"
#include "install/record/escapes.h"

namespace {

constexpr const char* kTime = "2026-11-22T17:04:05Z";

bool IsPagerSafe(const SString& line) {
    return std::ranges::none_of(line.Bytes(), [](char c) { return c == 0 || c == 0x1B; }) &&
           Escaped(line.S("\\\\", "/", "g")) == SString(line).Chop().S("\\\\", "/", "g") + "\\x0a";
}

TEST(RecordText, BringsEveryKindBack) {
    const std::vector<Change> changes = EveryChange();
    EXPECT_EQ(changes.size(), std::variant_size_v<Change>);
    for (size_t i = 0; i < changes.size(); ++i) {
        EXPECT_EQ(changes[i].index(), i);
        const SString line = LineOf({kTime, changes[i]});
        EXPECT_EQ(std::ranges::count(line.Bytes(), '\n'), 1) << line;
        EXPECT_TRUE(IsPagerSafe(line)) << line;
        const auto read = ChangeFrom(line);
        ASSERT_TRUE(read) << line;
        EXPECT_EQ(read->time, kTime);
        EXPECT_EQ(read->change.index(), i);
        EXPECT_EQ(LineOf(*read), line);
    }
}

TEST(RecordText, BringsAKindBackFieldForField) {
    const auto all = EveryChange();
    const auto& meant = std::get<change::SettingChanged>(all[7]);
    const auto read = ChangeFrom(LineOf({kTime, meant}));
    const auto& setting = std::get<change::SettingChanged>(read->change);
    EXPECT_EQ(setting.database, meant.database);
    EXPECT_EQ(setting.before, meant.before);
    EXPECT_EQ(setting.after, meant.after);
}

TEST(RecordText, IsALineOfJson) {
    const change::ModeSet set{"/var/mail/", {0755}, {01777}};
    EXPECT_EQ(LineOf({kTime, set}), R"({"time":"2026-11-22T17:04:05Z","kind":"mode","path":"/var/mail/",)"
                                    R"("before":"0755","after":"1777"})"
                                    "\n");
    const change::ProcessesSignalled signalled{"HUP", {{7, "inetd", 1, {"/usr/sbin/inetd", "-i"}, ""}}};
    EXPECT_EQ(LineOf({kTime, signalled}),
              R"({"time":"2026-11-22T17:04:05Z","kind":"signal","signal":"HUP",)"
              R"("processes":[{"id":7,"name":"inetd","user":1,"command":["/usr/sbin/inetd","-i"],)"
              R"("unit":""}]})"
              "\n");
}

TEST(RecordText, NeedsNoLineEndToBeRead) {
    const SString line = LineOf({kTime, change::ServerStarted{"a"}});
    EXPECT_TRUE(ChangeFrom(SString(line).Chop()));
    EXPECT_FALSE(ChangeFrom(line + "\n"));
}

TEST(RecordText, IsRefusedUnlessItIsWhole) {
    const struct {
        const char* fault;
        const char* line;
    } cases[] = {
        {"empty", ""},
        {"no JSON", "x"},
        {"no object", "[]"},
        {"a number", "7"},
        {"cut", R"({"time":"t","kind":"server","program":"a)"},
        {"deep", "[[[[[[[[[[[[[[[[[[[[[[[[[[[[["},
        {"no kind", R"({"time":"t","program":"a"})"},
        {"unknown kind", R"({"time":"t","kind":"x","program":"a"})"},
        {"no time", R"({"kind":"server","program":"a"})"},
        {"a field missing", R"({"time":"t","kind":"server"})"},
        {"a field more", R"({"time":"t","kind":"server","program":"a","x":1})"},
        {"a field twice", R"({"time":"t","kind":"server","program":"b","program":"a"})"},
        {"another order", R"({"kind":"server","time":"t","program":"a"})"},
        {"a number for a text", R"({"time":"t","kind":"server","program":1})"},
        {"a bad escape", R"({"time":"t","kind":"server","program":"\\q"})"},
        {"bad UTF-8", "{\"time\":\"t\",\"kind\":\"server\",\"program\":\"\xFF\"}"},
        {"a text for a number", R"({"time":"t","kind":"end","status":"0"})"},
        {"a fraction", R"({"time":"t","kind":"end","status":0.5})"},
        {"too large", R"({"time":"t","kind":"end","status":18446744073709551615})"},
        {"far too large", R"({"time":"t","kind":"end","status":1e999})"},
        {"a truth for a number", R"({"time":"t","kind":"end","status":true})"},
        {"a mode that is none", R"({"time":"t","kind":"mode","path":"a","before":"0799","after":"0"})"},
        {"a mode too long", R"({"time":"t","kind":"mode","path":"a","before":"17777777","after":"0"})"},
        {"an empty mode", R"({"time":"t","kind":"mode","path":"a","before":"","after":"0644"})"},
        {"an object for a list", R"({"time":"t","kind":"accounts","accounts":{}})"},
        {"an element of another type", R"({"time":"t","kind":"accounts","accounts":[1]})"},
        {"an element cut", R"({"time":"t","kind":"accounts","accounts":[{"uid":"a"}]})"},
    };
    for (const auto& c : cases) EXPECT_FALSE(ChangeFrom(c.line)) << c.fault;
}

TEST(RecordText, IsRefusedWhereverItIsCut) {
    for (const Change& change : EveryChange()) {
        const SString line = LineOf({kTime, change});
        for (size_t length = 0; length + 1 < line.Length(); ++length) {
            EXPECT_FALSE(ChangeFrom(SString(line.Bytes().substr(0, length)))) << line;
        }
    }
}

}  // namespace
