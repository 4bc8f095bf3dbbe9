#include "support/text/pattern_expression.h"

#include <gtest/gtest.h>

namespace {

TEST(PatternExpression, HasThreeForms) {
    using Form = PatternExpression::Form;
    const struct {
        std::string text;
        Form form;
        std::string pattern, replacement;
    } cases[] = {
        {"/a/", Form::Select, "a", ""},         {"//", Form::Select, "", ""},
        {"/a/b/", Form::Select, "a/b", ""},     {"/a\\/b/", Form::Select, "a\\/b", ""},
        {"/a\\\\/", Form::Select, "a\\\\", ""}, {"!/a/", Form::Reject, "a", ""},
        {"s/a/b/", Form::Substitute, "a", "b"}, {"s/a//", Form::Substitute, "a", ""},
        {"s///", Form::Substitute, "", ""},     {"s/\\/a/b\\/c\\d/", Form::Substitute, "\\/a", "b/c\\d"},
    };
    for (const auto& c : cases) {
        const auto parsed = ParsePatternExpression(c.text);
        ASSERT_TRUE(parsed.has_value()) << c.text;
        EXPECT_EQ(parsed->form, c.form) << c.text;
        EXPECT_EQ(parsed->pattern, c.pattern) << c.text;
        EXPECT_EQ(parsed->replacement, c.replacement) << c.text;
    }
}

TEST(PatternExpression, RefusesAnyOtherText) {
    for (const char* text :
         {"",   "/",   "a",    "/a",    "a/",      "/a\\/",   "!",        "!/",       "!/a",      "!a",  "s",
          "s/", "s/a", "s/a/", "s/a/b", "s/a/b/c", "s/a/b/g", "s/a/b/c/", "s/a/b\\/", "s\\/a/b/", " /a/"}) {
        EXPECT_FALSE(ParsePatternExpression(text).has_value()) << text;
    }
}

TEST(WithoutSlashes, TakesAwayOnlyAPair) {
    const struct {
        std::string text, result;
    } cases[] = {
        {"/a/", "a"}, {"a", "a"}, {"/a", "/a"},       {"a/", "a/"},
        {"/", "/"},   {"//", ""}, {"/a\\/", "/a\\/"}, {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(WithoutSlashes(c.text), c.result);
}

}  // namespace
