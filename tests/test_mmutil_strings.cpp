#include <gtest/gtest.h>

#include <cstring>

#include "mmutil.h"

TEST(MmutilText, TrimCharacterSets)
{
    // Left trims take blanks and tabs only; right trims also take line ends.
    struct Case {
        std::string& (*fn)(std::string&);
        char* (*c_fn)(char*);  // the C-string twin, when there is one
        const char *in, *out;
    } cases[] = {
        {trim, c_trim, " \tkey = v \r\n", "key = v"},  {trim, c_trim, "   ", ""},
        {triml, c_triml, "\n\r x", "\n\r x"},          {triml, c_triml, " \t x \n", "x \n"},
        {trimr, c_trimr, " x \t\r\n", " x"},           {trimr, nullptr, "\n", ""},
        {sg_trim, nullptr, "'a\tb c'", "a\tbc"},       {sg_triml, nullptr, "'\"\t x'", "x'"},
        {sg_triml, nullptr, "\nx", "\nx"},             {sg_trimr, nullptr, "'x \"'\r\n\t", "'x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.in);
        std::string s = c.in;
        EXPECT_EQ(c.fn(s), c.out);
        std::vector<char> buf(c.in, c.in + strlen(c.in) + 1);
        EXPECT_STREQ(c.c_fn ? c.c_fn(buf.data()) : c.out, c.out);
    }
    char blank[] = " ", ends[] = "\n\n\n";  // c_trimr keeps the first character
    EXPECT_STREQ(c_trimr(blank), " ");
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
    EXPECT_FALSE(isAlphabetical(""));
    EXPECT_FALSE(isAlphabetical("C1"));
    EXPECT_EQ(format_string("%.0f", 1e300).size(), 301u);  // no fixed buffer
}

TEST(MmutilText, StrhedWalksTheCursor)
{
    char line[] = " \t first \t second\tthird \n ";
    char* cursor = line;
    EXPECT_EQ(strhed(&cursor), line + 3);  // words live in the caller's buffer
    EXPECT_STREQ(line + 3, "first");
    EXPECT_STREQ(cursor, "second\tthird");
    EXPECT_STREQ(strhed(&cursor), "second");
    EXPECT_STREQ(strhed(&cursor), "third");
    EXPECT_STREQ(cursor, "");
    EXPECT_STREQ(strhed(&cursor), "");
    char* none = nullptr;
    EXPECT_EQ(strhed(&none), nullptr);
}

TEST(MmutilText, MorphNumericString)
{
    const std::tuple<std::string, int, const char*> cases[] = {
        {"1.500000", 3, "1.5"}, {"2.000", 2, "2"},      {"100", 2, "100"}, {"10.0", 4, "10"},
        {"3.14159", 2, "3.14"}, {"-0.250", 6, "-0.25"}, {"7.5", 0, "7"},   {"0.0001", 3, "0"}};
    for (const auto& [in, decimals, out] : cases) {
        std::string number = in;
        morphNumericString(&number[0], decimals);
        EXPECT_STREQ(number.c_str(), out) << in << " with " << decimals;
    }
}
