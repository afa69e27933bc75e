#include <gtest/gtest.h>

#include <cstring>

#include "mmutil.h"

static std::string run(std::string& (*fn)(std::string&), std::string s) { return fn(s); }

static std::string run_c(char* (*fn)(char*), const std::string& s)
{
    std::vector<char> buf(s.begin(), s.end());
    buf.push_back('\0');
    return fn(buf.data());
}

TEST(MmutilTrim, LeftAndRightSetsDiffer)
{
    EXPECT_EQ(run(trim, " \tkey = v \r\n"), "key = v");
    EXPECT_EQ(run(trim, "   "), "");
    // Line ends are only removed on the right.
    EXPECT_EQ(run(triml, "\n\r x"), "\n\r x");
    EXPECT_EQ(run(triml, " \t x \n"), "x \n");
    EXPECT_EQ(run(trimr, " x \t\r\n"), " x");
    EXPECT_EQ(run(trimr, "\n"), "");
}

TEST(MmutilTrim, QuotesAndInnerBlanks)
{
    EXPECT_EQ(run(sg_trim, " \"a b\" "), "ab");
    EXPECT_EQ(run(sg_triml, "'\"\t x'"), "x'");
    EXPECT_EQ(run(sg_triml, "\nx"), "\nx");
    EXPECT_EQ(run(sg_trimr, "'x \"'\r\n\t"), "'x");
    // Tabs inside stay; only blanks are squeezed out.
    EXPECT_EQ(run(sg_trim, "'a\tb c'"), "a\tbc");
    EXPECT_EQ(run(sg_trim, "\"\""), "");
}

TEST(MmutilTrim, CStringsInPlace)
{
    EXPECT_EQ(run_c(c_trim, " \tkey = v \r\n"), "key = v");
    EXPECT_EQ(run_c(c_triml, "\nx"), "\nx");
    EXPECT_EQ(run_c(c_trimr, "ab \r\n"), "ab");
    // The first character is never removed by c_trimr.
    EXPECT_EQ(run_c(c_trimr, " "), " ");
    EXPECT_EQ(run_c(c_trimr, "\n\n\n"), "\n");
    EXPECT_EQ(run_c(c_trim, "   "), "");
    EXPECT_EQ(c_trim(nullptr), nullptr);
    EXPECT_EQ(c_triml(nullptr), nullptr);
    EXPECT_EQ(c_trimr(nullptr), nullptr);
}

TEST(MmutilText, CaseInsensitiveKeys)
{
    EXPECT_TRUE(iequals("Qc_Exe", "QC_EXE"));
    EXPECT_FALSE(iequals("a", "a "));
    EXPECT_FALSE(iequals("ab", "ac"));
    EXPECT_TRUE(iequals("", ""));

    ci_string key("Crystal");
    EXPECT_TRUE(key == ci_string("CRYSTAL"));
    EXPECT_LT(ci_string("abc").compare("ABD"), 0);
    EXPECT_GT(ci_string("abd").compare("ABC"), 0);
    EXPECT_EQ(key.find('S'), 3u);
    EXPECT_EQ(key.find('z'), ci_string::npos);
    EXPECT_EQ(ci_char_traits::find("abc", 2, 'C'), nullptr);
    EXPECT_TRUE(ci_char_traits::lt('a', 'B'));
    EXPECT_TRUE(ci_char_traits::ne('a', 'b'));
}

TEST(MmutilText, TokenizeAndSplit)
{
    std::vector<std::string> out{"stale"};
    EXPECT_EQ(tokenize(out, "1  2 3", " "), 1);
    EXPECT_EQ(out, (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_EQ(tokenize(out, ",,a;b,,", ",;"), 1);
    EXPECT_EQ(out, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(tokenize(out, "", " "), 1);
    EXPECT_TRUE(out.empty());
    out.push_back("stale");
    EXPECT_EQ(tokenize(out, nullptr, " "), 0);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(tokenize(out, "a b", nullptr), 0);

    EXPECT_EQ(split_string(" x\t y\n z "), (std::vector<std::string>{"x", "y", "z"}));
    EXPECT_TRUE(split_string(" \t").empty());
}

TEST(MmutilText, StrhedWalksTheCursor)
{
    char line[] = " \t first \t second\tthird \n ";
    char* cursor = line;
    char* w = strhed(&cursor);
    EXPECT_STREQ(w, "first");
    EXPECT_STREQ(cursor, "second\tthird");
    EXPECT_STREQ(strhed(&cursor), "second");
    EXPECT_STREQ(cursor, "third");
    EXPECT_STREQ(strhed(&cursor), "third");
    EXPECT_STREQ(cursor, "");
    EXPECT_STREQ(strhed(&cursor), "");
    EXPECT_STREQ(cursor, "");
    // The words live in the caller's buffer.
    EXPECT_EQ(w, line + 3);

    char* none = nullptr;
    EXPECT_EQ(strhed(&none), nullptr);
}

TEST(MmutilText, MorphNumericString)
{
    struct Case {
        const char* in;
        int decimals;
        const char* out;
    } cases[] = {
        {"1.500000", 3, "1.5"}, {"2.000", 2, "2"},   {"100", 2, "100"},    {"10.0", 4, "10"},
        {"3.14159", 2, "3.14"}, {"-0.250", 6, "-0.25"}, {"7.5", 0, "7"}, {"0.0001", 3, "0"},
    };
    for (const Case& c : cases) {
        std::vector<char> buf(c.in, c.in + strlen(c.in) + 1);
        morphNumericString(buf.data(), c.decimals);
        EXPECT_STREQ(buf.data(), c.out) << c.in << " with " << c.decimals;
    }
}

TEST(MmutilText, SmallTransforms)
{
    EXPECT_EQ(remove_filename_extension("dir.v2/file"), "dir");
    EXPECT_EQ(remove_filename_extension("mol.xyz"), "mol");
    EXPECT_EQ(remove_filename_extension("a.b.c"), "a.b");
    EXPECT_EQ(remove_filename_extension("noext"), "noext");
    EXPECT_EQ(RemoveWhiteSpaceUnderscore(" P 21_c n "), "P21cn");
    char path[] = "a/b\\c/d";
    ReplaceSlashWithUnderscore(path);
    EXPECT_STREQ(path, "a_b_c_d");
    EXPECT_TRUE(isAlphabetical("Cl"));
    EXPECT_FALSE(isAlphabetical(""));
    EXPECT_FALSE(isAlphabetical("C1"));
    EXPECT_FALSE(isAlphabetical("C "));
}
