#include "support/mail/field_text.h"

#include <gtest/gtest.h>

namespace {

SString AllBytes() {
    SString bytes;
    for (int c = 1; c < 256; ++c) {
        if (c != '\r' && c != '\n') bytes += static_cast<char>(c);
    }
    return bytes;
}

struct Shape {
    const char* what;
    SStringList values;
    SString text;
};

const Shape kShapes[] = {
    {"one value", {"one"}, "Name: one\n"},
    {"further values", {"one", "two", "three"}, "Name: one\n\ttwo\n\tthree\n"},
    {"no value", {}, "Name:\n"},
    {"an empty value", {""}, "Name: \n"},
    {"empty values", {"", ""}, "Name: \n\t\n"},
    {"a leading blank", {" one", "  two"}, "Name:  one\n\t  two\n"},
    {"a leading tab", {"\tone", "\ttwo"}, "Name: \tone\n\t\ttwo\n"},
    {"trailing blanks", {"one ", "two\t"}, "Name: one \n\ttwo\t\n"},
    {"colons", {"a: b", "Name: c"}, "Name: a: b\n\tName: c\n"},
    {"any byte", {AllBytes(), AllBytes()}, "Name: " + AllBytes() + "\n\t" + AllBytes() + "\n"},
};

TEST(FieldText, KeepsEveryValueExactly) {
    for (const Shape& shape : kShapes) {
        SNamedStringList fields;
        fields["Name:"] = shape.values;
        EXPECT_EQ(FieldText(fields, "\n"), shape.text) << shape.what;
        const auto read = ParseFieldText(shape.text);
        ASSERT_TRUE(read) << shape.what;
        EXPECT_EQ(read->Keys(), SStringList("Name:")) << shape.what;
        EXPECT_EQ(read->Get("Name:"), shape.values) << shape.what;
    }
}

TEST(FieldText, ReadsBothLineEnds) {
    for (const Shape& shape : kShapes) {
        SNamedStringList fields;
        fields["Name:"] = shape.values;
        const auto read = ParseFieldText(FieldText(fields, "\r\n").value_or(""));
        ASSERT_TRUE(read) << shape.what;
        EXPECT_EQ(read->Get("Name:"), shape.values) << shape.what;
    }
}

TEST(FieldText, KeepsTheOrderOfTheFields) {
    SNamedStringList fields;
    fields["Z:"] = "1";
    fields["A:"] = SStringList({"2", "3"});
    fields["M:"] = SStringList();
    EXPECT_EQ(FieldText(fields, "\n"), "Z: 1\nA: 2\n\t3\nM:\n");
    EXPECT_EQ(ParseFieldText("Z: 1\nA: 2\n\t3\nM:\n")->Keys(), SStringList({"Z:", "A:", "M:"}));
}

TEST(FieldText, RefusesWhatCouldNotBeReadBack) {
    const char* const names[] = {
        "", ":", "Name", "Na:me:", "Na me:", " Name:", "Name: ", "Na\nme:", "\tName:"};
    for (const char* name : names) {
        SNamedStringList fields;
        fields[name] = "one";
        EXPECT_FALSE(FieldText(fields, "\n")) << name;
    }
    const SString values[] = {"a\nb", "a\rb", "\n", "\r", SString(std::string("a\0b", 3))};
    for (const SString& value : values) {
        SNamedStringList fields;
        fields["Name:"] = SStringList({"one", value});
        EXPECT_FALSE(FieldText(fields, "\n")) << value;
    }
}

TEST(ParseFieldText, TakesAnEmptyTextForNoFields) {
    const auto fields = ParseFieldText("");
    ASSERT_TRUE(fields);
    EXPECT_TRUE(fields->Keys().IsEmpty());
}

TEST(ParseFieldText, RefusesOtherShapes) {
    const SString texts[] = {
        "\n",
        "Name: one",                            // cut off
        "Name: one\n\ttw",                      // cut off
        "\tone\n",                              // a further value of nothing
        "Name:\n\tone\n",                       // a further value without a first
        "Name\n",                               // no colon
        "Name:one\n",                           // no blank
        ": one\n",                              // no name
        "Na me: one\n",                         // a blank in the name
        "Name: one\n\nOther: two\n",            // an empty line
        "Name: one\nName: two\n",               // a name twice
        "Name: o\rne\n",                        // a line end within a value
        SString(std::string("Name: \0\n", 8)),  // NUL
    };
    for (const SString& text : texts) EXPECT_FALSE(ParseFieldText(text)) << text;
}

TEST(ParseFieldText, ReadsALongListInOneGo) {
    SNamedStringList fields;
    for (int i = 0; i < 200000; ++i) fields["Account-To:"].Push(SString(i));
    const auto read = ParseFieldText(FieldText(fields, "\n").value_or(""));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Get("Account-To:"), fields.Get("Account-To:"));
}

}  // namespace
