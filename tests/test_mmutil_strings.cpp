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

TEST(MmutilTrim, CharacterSets)
{
    struct Case {
        std::string& (*fn)(std::string&);
        char* (*c_fn)(char*);  // the C-string twin, when there is one
        const char* in;
        const char* out;
    } cases[] = {
        {trim, c_trim, " \tkey = v \r\n", "key = v"},
        {trim, c_trim, "   ", ""},
        // Line ends are only removed on the right.
        {triml, c_triml, "\n\r x", "\n\r x"},
        {triml, c_triml, " \t x \n", "x \n"},
        {trimr, c_trimr, " x \t\r\n", " x"},
        {trimr, nullptr, "\n", ""},
        {sg_trim, nullptr, " \"a b\" ", "ab"},
        {sg_triml, nullptr, "'\"\t x'", "x'"},
        {sg_triml, nullptr, "\nx", "\nx"},
        {sg_trimr, nullptr, "'x \"'\r\n\t", "'x"},
        // Tabs inside stay; only blanks are squeezed out.
        {sg_trim, nullptr, "'a\tb c'", "a\tbc"},
        {sg_trim, nullptr, "\"\"", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(c.fn, c.in), c.out) << '[' << c.in << ']';
        if (c.c_fn) {
            EXPECT_EQ(run_c(c.c_fn, c.in), c.out) << "C string [" << c.in << ']';
        }
    }
}

TEST(MmutilTrim, CTrimrKeepsTheFirstCharacter)
{
    EXPECT_EQ(run_c(c_trimr, " "), " ");
    EXPECT_EQ(run_c(c_trimr, "\n\n\n"), "\n");
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

TEST(FormatString, GrowsPastAnyFixedBuffer)
{
    EXPECT_EQ(format_string("%12.6f|%s", 1.5, "x"), "    1.500000|x");
    EXPECT_EQ(format_string("%.0f", 1e300).size(), 301u);
    EXPECT_EQ(format_string("%s", ""), "");
}
