#include <gtest/gtest.h>

#include <cstring>

#include "mmutil.h"

// Left trims take blanks and tabs only, right trims also line ends; the sg_
// forms also take quotes and sg_trim drops inner blanks. The C twins agree
// with the std::string forms except that c_trimr keeps the first character.
TEST(MmutilText, TrimCharacterSets)
{
    const struct { const char *in, *left, *right, *both, *sg_left, *sg_right, *sg_both; } rows[] = {
        {" \tkey = v \r\n", "key = v \r\n", " \tkey = v", "key = v", "key = v \r\n", " \tkey = v", "key=v"},
        {"\n\r'x'\t", "\n\r'x'\t", "\n\r'x'", "\n\r'x'", "\n\r'x'\t", "\n\r'x", "\n\r'x"},
        {"'\"\t a b'", "'\"\t a b'", "'\"\t a b'", "'\"\t a b'", "a b'", "'\"\t a b", "ab"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.in);
        std::string s;
        EXPECT_EQ(triml(s = r.in), r.left);
        EXPECT_EQ(trimr(s = r.in), r.right);
        EXPECT_EQ(trim(s = r.in), r.both);
        EXPECT_EQ(sg_triml(s = r.in), r.sg_left);
        EXPECT_EQ(sg_trimr(s = r.in), r.sg_right);
        EXPECT_EQ(sg_trim(s = r.in), r.sg_both);
        for (const auto& [fn, want] : {std::pair{c_triml, r.left}, {c_trimr, r.right}, {c_trim, r.both}}) {
            std::vector<char> buf(r.in, r.in + strlen(r.in) + 1);
            EXPECT_STREQ(fn(buf.data()), want);
        }
    }
    std::string blank = " ";
    char c_blank[] = " ", ends[] = "\n\n\n";
    EXPECT_EQ(trimr(blank), "");
    EXPECT_STREQ(c_trimr(c_blank), " ");
    EXPECT_STREQ(c_trimr(ends), "\n");
    EXPECT_EQ(c_trim(nullptr), nullptr);
}

TEST(MmutilText, CaseInsensitiveTokensAndTransforms)
{
    EXPECT_TRUE(iequals("Qc_Exe", "QC_EXE"));
    EXPECT_FALSE(iequals("a", "a "));
    EXPECT_TRUE(ci_string("Crystal") == ci_string("CRYSTAL"));
    EXPECT_LT(ci_string("abc").compare("ABD"), 0);
    EXPECT_EQ(ci_string("Crystal").find('S'), 3u);

    std::vector<std::string> out{"stale"};
    EXPECT_EQ(tokenize(out, ",,a;b,,", ",;"), 1);
    EXPECT_EQ(out, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(tokenize(out, nullptr, " "), 0);
    EXPECT_EQ(split_string(" x\t y\n z "), (std::vector<std::string>{"x", "y", "z"}));

    EXPECT_EQ(remove_filename_extension("dir.v2/file"), "dir");
    EXPECT_EQ(RemoveWhiteSpaceUnderscore(" P 21_c n "), "P21cn");
    char path[] = "a/b\\c/d";
    ReplaceSlashWithUnderscore(path);
    EXPECT_STREQ(path, "a_b_c_d");
    EXPECT_TRUE(isAlphabetical("Cl"));
    EXPECT_FALSE(isAlphabetical("") || isAlphabetical("C1"));
    EXPECT_EQ(format_string("%.0f", 1e300).size(), 301u);  // no fixed buffer
}

TEST(MmutilText, StrhedWalksTheCursorAndNumbersLoseTrailingZeros)
{
    char line[] = " \t first \t second\tthird \n ";
    char* cursor = line;
    EXPECT_EQ(strhed(&cursor), line + 3);  // words live in the caller's buffer
    EXPECT_STREQ(line + 3, "first");
    EXPECT_STREQ(cursor, "second\tthird");
    EXPECT_STREQ(strhed(&cursor), "second");
    EXPECT_STREQ(strhed(&cursor), "third");
    EXPECT_STREQ(strhed(&cursor), "");
    char* none = nullptr;
    EXPECT_EQ(strhed(&none), nullptr);

    const std::tuple<std::string, int, const char*> cases[] = {
        {"1.500000", 3, "1.5"}, {"2.000", 2, "2"},      {"100", 2, "100"}, {"10.0", 4, "10"},
        {"3.14159", 2, "3.14"}, {"-0.250", 6, "-0.25"}, {"7.5", 0, "7"},   {"0.0001", 3, "0"}};
    for (const auto& [in, decimals, out] : cases) {
        std::string number = in;
        morphNumericString(&number[0], decimals);
        EXPECT_STREQ(number.c_str(), out) << in << " with " << decimals;
    }
}
