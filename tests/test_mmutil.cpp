// The utility unit: text, files and tables, the fatal-error helper, sorting,
// random numbers, integration and small linear algebra.

#include <cmath>
#include <cstring>
#include <numeric>
#include <random>

#include "fatal.h"
#include "mmutil.h"
#include "test_support.h"

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

TEST(MmutilText, TokensTransformsCursorAndNumbers)
{
    EXPECT_TRUE(iequals("Qc_Exe", "QC_EXE") && !iequals("a", "a "));
    EXPECT_TRUE(ci_string("Crystal") == ci_string("CRYSTAL") && ci_string("abc").compare("ABD") < 0);
    EXPECT_EQ(ci_string("Crystal").find('S'), 3u);
    std::vector<std::string> out{"stale"};
    EXPECT_EQ(tokenize(out, ",,a;b,,", ",;"), 1);
    EXPECT_EQ(out, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(tokenize(out, nullptr, " "), 0);
    EXPECT_EQ(split_string(" x\t y\n z "), (std::vector<std::string>{"x", "y", "z"}));
    EXPECT_EQ(remove_filename_extension("dir.v2/file") + RemoveWhiteSpaceUnderscore(" P 21_c n "), "dirP21cn");
    char path[] = "a/b\\c/d";
    ReplaceSlashWithUnderscore(path);
    EXPECT_STREQ(path, "a_b_c_d");
    EXPECT_TRUE(isAlphabetical("Cl") && !isAlphabetical("") && !isAlphabetical("C1"));
    EXPECT_EQ(format_string("%.0f", 1e300).size(), 301u);  // no fixed buffer

    char line[] = " \t first \t second\tthird \n ";
    char *cursor = line, *none = nullptr;
    EXPECT_EQ(strhed(&cursor), line + 3);  // words live in the caller's buffer
    EXPECT_STREQ(line + 3, "first");
    EXPECT_STREQ(cursor, "second\tthird");
    EXPECT_STREQ(strhed(&cursor), "second");
    EXPECT_STREQ(strhed(&cursor), "third");
    EXPECT_STREQ(strhed(&cursor), "");
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

using MmutilFiles = ScratchDirTest;

TEST_F(MmutilFiles, FatalDirectoriesGlobWholeFilesBackupLinesAndTables)
{
    EXPECT_EXIT((dup2(2, 1), veska_fatal("mmutil", 536, -1, stderr, "%s - overlaps\n", "invert")),
                testing::ExitedWithCode(255), "^\nERROR  transport : mmutil : line 536 : \ninvert - overlaps\n$");
    EXPECT_EXIT(veska_fatal("fileio", 7, 1, stderr, "x"), testing::ExitedWithCode(1), "x");
    EXPECT_EXIT(veska_fatal_open_output("job_scripts", 218, "jobs/a b.pbs"), testing::ExitedWithCode(255),
                "Failed to open output file jobs/a b.pbs\n");
    create_directory("jobs");
    put_file("plain", "x");
    EXPECT_EQ(dir_exists("jobs") * 100 + dir_exists("plain") * 10 + dir_exists("plain/below"), 100);  // ENOTDIR
    EXPECT_EQ(file_exists("plain") * 10 + file_exists("missing"), 10);
    put_file("c.txt", "");
    put_file("a.txt", "");
    EXPECT_EQ(globFileVector("*.txt"), (std::vector<std::string>{"a.txt", "c.txt"}));
    EXPECT_TRUE(globFileVector("*.none").empty());
    EXPECT_EQ(write_text_file("a b;$x.txt", "line\n"), WRITE_OK);
    EXPECT_EQ(read_text_file("a b;$x.txt"), "line\n");
    EXPECT_EQ(write_text_file("missing/x", "x"), WRITE_OPEN_FAILED);
    // A write that fails half way: the file-size limit stands in for a full disk.
    EXPECT_EXIT((limit_file_size(4096), exit(write_text_file("big", std::string(100000, 'x')) == WRITE_FAILED ? 3 : 4)),
                testing::ExitedWithCode(3), "");

    EXPECT_EQ(backup_file("missing.log"), 0);
    EXPECT_FALSE(fileExist("missing.log#"));
    const std::string odd = "a b'\"$(touch pwned);x.log";  // the name reaches no shell
    put_file(odd, "a\r\nb\nc\r");
    EXPECT_EQ(backup_file(odd.c_str()), 0);
    EXPECT_FALSE(fileExist(odd.c_str()) || fileExist("pwned"));
    EXPECT_EQ(count_lines((odd + "#").c_str()), 4);
    put_file("noend", "one line");
    EXPECT_EQ(count_lines("noend"), 0);
    EXPECT_EXIT((dup2(2, 1), count_lines("nope.txt")), testing::ExitedWithCode(255),
                "^ERROR: Failed to open input file nope.txt\n$");

    // Tables of numbers.
    double r0[3] = {1, -2.5, 3}, r1[3] = {0.125, 0, -1}, r2[3] = {10, 20, 30};
    double* m[3] = {r0, r1, r2};
    create_directory("t");
    output_matrix(m, 3, 2, "t/m.dat");
    output_vector(r0, 3, 2, "t/v.dat");
    output_vector(r0, 2, 2, "t/v2.dat");  // a multiple of per_line ends with an empty line
    testing::internal::CaptureStdout();
    output_vvector({{1, 2}, {-0.5, 4}, {0, 1e3}}, "t/c.dat");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ncols = 3\nnrows = 2\n");
    EXPECT_EQ(dump("t"), golden("mmutil_tables.txt"));
    EXPECT_EXIT((dup2(2, 1), output_matrix(m, 1, 1, "no/dir.dat")), testing::ExitedWithCode(1),
                "^\nERROR  transport : mmutil : line 1456 : \nFailed to create file no/dir.dat\n$");
    // Ragged columns are refused before anything is written.
    EXPECT_EXIT(output_vvector({{1, 2}, {3}}, "r.dat"), testing::ExitedWithCode(1), "column 1 has 1 rows");
    EXPECT_FALSE(fileExist("r.dat"));
}

// Expected permutations come from a separate transcription of the two
// partitioning schemes; equal keys show that neither sort is stable.
template <class Key>
static std::vector<int> sort_index(std::vector<Key>& keys, void (*sort)(Key*, int*, int))
{
    std::vector<int> index(keys.size());
    std::iota(index.begin(), index.end(), 0);
    sort(keys.data(), index.data(), static_cast<int>(keys.size()));
    return index;
}

TEST(MmutilSort, IndexPermutations)
{
    struct Case { std::vector<int> keys, sorted, index; } cases[] = {
        {{2, 1, 2, 0}, {0, 1, 2, 2}, {3, 1, 2, 0}}, {{5, 5, 5, 5}, {5, 5, 5, 5}, {1, 2, 3, 0}},
        {{4, 1, 3, 1, 4, 2, 1}, {1, 1, 1, 2, 3, 4, 4}, {1, 3, 6, 5, 2, 4, 0}}, {{7}, {7}, {0}}, {{}, {}, {}}};
    for (Case& c : cases) {
        EXPECT_EQ(sort_index(c.keys, quickSort_i), c.index);
        EXPECT_EQ(c.keys, c.sorted);
    }
    const std::pair<std::vector<double>, std::vector<int>> dcases[] = {
        {{3, 1, 3, 2, 3}, {1, 3, 4, 0, 2}}, {{1, 1, 1}, {2, 1, 0}}, {{1}, {0}}, {{}, {}}};
    for (const auto& [keys, index] : dcases) {
        std::vector<double> moved = keys;
        EXPECT_EQ(sort_index(moved, quickSort_d), index);
        EXPECT_EQ(moved, keys);  // only the index moves
    }
}

// Expected numbers come from an independent transcription of the generator
// (integer arithmetic, truncating division), not from this code.
TEST(MmutilRandom, SequenceSeedsDistributionsAndReactionChoice)
{
    const double from1000[3] = {0.6554163483485531, 0.20099518545185716, 0.8936223876466522};
    ran2_reset_state();
    for (double expected : from1000) EXPECT_EQ(randUniform(), expected);
    // Zero and -1 initialise with seed 1, -5 with seed 5; a positive seed
    // only advances (5 * 40014).
    const std::tuple<long, double, long> seeds[] = {{5, from1000[0], 200070},
                                                    {-5, 0.005088107861806251, 830243691},
                                                    {-1, 0.2853808990946861, 1454538876},
                                                    {0, 0.2853808990946861, 1454538876}};
    long seed = 0;
    for (const auto& [start, first, after] : seeds) {
        ran2_reset_state();
        seed = start;
        EXPECT_EQ(ran2(&seed), first);
        EXPECT_EQ(seed, after);
    }
    EXPECT_EQ(ran2(&seed), 0.2533581892659171);  // from the table the initialisation filled
    // rand() is never negative, so reseeding keeps the (empty) shuffle table.
    ran2_reset_state();
    init_random_seed();
    EXPECT_EQ(randUniform(), from1000[0]);
    ran2_reset_state();
    EXPECT_DOUBLE_EQ(randGaussian(), 0.5794037719352104);
    EXPECT_DOUBLE_EQ(randGaussian(), -1.1147123144821651);
    EXPECT_EQ(randUniform(), from1000[2]);  // the pair used two uniforms
    ran2_reset_state();
    EXPECT_DOUBLE_EQ(randExponential(), 0.4224845989507776);

    double rates[3] = {1, 1, 2}, zero_first[2] = {0, 3};
    // At 0.25 of 4 the running sum 1 is not above 1: the second reaction.
    const std::tuple<double*, int, double, double, int> cases[] = {
        {rates, 3, 0.0, 4, 0}, {rates, 3, 0.25, 4, 1}, {rates, 3, 0.6, 4, 2}, {rates, 3, 1.0, 4, -1},
        {nullptr, 0, 0.1, 4, -1}, {zero_first, 2, 0.0, 3, 1}};
    for (const auto& [r, n, u, total, want] : cases) EXPECT_EQ(select_reaction(r, n, u, total), want) << u;
}

static double cubic(double x, double) { return x * x * x; }
TEST(MmutilIntegrate, RungeKuttaAndLinearRegression)
{
    EXPECT_NEAR(rk4_one(1, 2, 1, cubic), 2 + (16 - 1) / 4.0, 1e-14);  // Simpson: exact for a cubic

    double x[4] = {0, 1, 2, 3}, v[4] = {1, 3, 5, 0}, same[3] = {2, 2, 2}, a, b, s;
    // Four points: a = 2.4, b = -0.1, residual sum of squares 14.7 over 2.
    EXPECT_EQ(LinearRegression(x, v, 4, &a, &b, &s), 0);
    EXPECT_NEAR(a, 2.4, 1e-13);
    EXPECT_NEAR(b, -0.1, 1e-13);
    EXPECT_NEAR(s, sqrt(14.7 / 2), 1e-13);
    EXPECT_EQ(LinearRegression(same, v, 3, &a, &b, &s), 0);
    EXPECT_EQ(std::vector<double>({a, b, s}), std::vector<double>(3, 0.0));
    a = b = s = 9;
    testing::internal::CaptureStderr();
    EXPECT_EQ(LinearRegression(x, v, 2, &a, &b, &s), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Not enough data [2] (at least n > 2)!\n");
    EXPECT_EQ(std::vector<double>({a, b, s}), std::vector<double>(3, 0.0));
}

TEST(MmutilLinalg, ProductsInPlaceRoundingAndInverse)
{
    double a[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}};
    double x[3] = {1, -1, 2};
    mat_vec_mul(a, x, x);
    EXPECT_EQ(std::vector<double>(x, x + 3), (std::vector<double>{5, 11, 19}));
    EXPECT_DOUBLE_EQ(det(a), -3.0);
    double r0[2] = {1, 2}, r1[2] = {3, 4}, s0[2] = {0, 1}, s1[2] = {1, 0}, c0[2] = {9, 9}, c1[2] = {9, 9};
    double *ma[2] = {r0, r1}, *mb[2] = {s0, s1}, *mc[2] = {c0, c1};
    mat_mat_mul_nxn(ma, mb, mc, 2);  // c is cleared first
    EXPECT_EQ(std::vector<double>({c0[0], c0[1], c1[0], c1[1]}), (std::vector<double>{2, 1, 4, 3}));
    EXPECT_EQ(std::vector<double>({anint(2.5), anint(-2.5), anint(-0.4)}), (std::vector<double>{3, -3, 0}));

    double cell[3][3] = {{7.1, 1.3, -0.8}, {0, 9.4, 2.2}, {0.5, 0, 11.7}}, out[3][3];
    invert(cell, out);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            double s = 0;
            for (int k = 0; k < 3; ++k) s += cell[i][k] * out[k][j];
            EXPECT_NEAR(s, i == j ? 1.0 : 0.0, 1e-14);
        }
    EXPECT_EXIT((dup2(2, 1), invert(cell, cell)), testing::ExitedWithCode(255),
                "^\nERROR  transport : mmutil : line 536 : \ninvert - Result matrix overlaps input\n$");
    double tiny[3][3] = {{1e-11, 0, 0}, {0, 1e-10, 0}, {0, 0, 1e-10}};
    EXPECT_EXIT((dup2(2, 1), invert(tiny, out)), testing::ExitedWithCode(255),
                "^\nERROR  transport : mmutil : line 543 : \nDeterminant of matrix is zero.\n$");
}

TEST(MmutilJacobi, RandomSymmetricMatricesAreDiagonalisedAndTiesGoToTheLaterIndex)
{
    std::mt19937 gen(20240611);
    std::uniform_real_distribution<double> U(-10, 10);
    for (int trial = 0; trial < 300; ++trial) {
        SCOPED_TRACE(trial);
        int n = 1 + trial % 3, nrot = 0;
        double a[3][3] = {}, work[3][3], d[3], v[3][3];
        for (int i = 0; i < n; ++i)  // every 11th already diagonal
            for (int j = 0; j <= i; ++j) a[i][j] = a[j][i] = i == j || trial % 11 ? U(gen) : 0.0;
        if (trial % 7 == 0) a[0][0] = a[n - 1][n - 1];  // repeated diagonal entries
        memcpy(work, a, sizeof a);
        jacobi_nr(work, n, d, v, nrot);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                double vtav = 0, vtv = 0;
                for (int k = 0; k < n; ++k) {
                    vtv += v[k][i] * v[k][j];
                    for (int l = 0; l < n; ++l) vtav += v[k][i] * a[k][l] * v[l][j];
                }
                EXPECT_NEAR(vtv, i == j ? 1.0 : 0.0, 1e-13);
                EXPECT_NEAR(vtav, i == j ? d[i] : 0.0, 1e-11);
            }
        eigsrt_nr(d, v, n);
        for (int i = 1; i < n; ++i) EXPECT_GE(d[i - 1], d[i]);
    }
    double d[3] = {1, 3, 3}, e[3] = {2, 5, 1};
    double v[3][3] = {{10, 11, 12}, {20, 21, 22}, {30, 31, 32}};
    eigsrt_nr(d, v, 3);
    EXPECT_EQ(std::vector<double>(d, d + 3), (std::vector<double>{3, 3, 1}));
    // Former column 2 comes first.
    EXPECT_EQ(std::vector<double>(&v[0][0], &v[0][0] + 9), (std::vector<double>{12, 11, 10, 22, 21, 20, 32, 31, 30}));
    eigsrt_nr(e, nullptr, 3);  // without vectors
    EXPECT_EQ(std::vector<double>(e, e + 3), (std::vector<double>{5, 2, 1}));
}
